import type { EdgeKind } from '../../state/ViewState';
import { make } from '../Dom';
import { check, choice, note, section } from '../Controls';
import type { PanelContext, PanelSection } from './PanelContext';

/** Lines and arrows on the structure. */
export function symbolSection({ store, result, texts }: PanelContext): PanelSection {
    const t = texts.panel;
    const model = result.model;
    const reason = (have: number | undefined, why: string) => (): string | undefined => {
        if (model === undefined) return t.noModel;
        return have === 0 ? why : undefined;
    };
    const controls = [
        choice<EdgeKind>(
            t.edges,
            (['none', 'mesh', 'feature', 'free'] as const).map((kind) => [kind, texts.edges[kind]]),
            (state) => state.edges,
            (edges) => store.set({ edges }),
        ),
        check(
            t.loads,
            (state) => state.showLoads,
            (showLoads) => store.set({ showLoads }),
            reason(model?.forceNodes.length, t.noneInModel),
        ),
        note((state) => (model && state.showLoads ? t.loadsHint : undefined)),
        check(
            t.inertia,
            (state) => state.showInertia,
            (showInertia) => store.set({ showInertia }),
            reason(model?.inertiaForces.length, t.noInertia),
        ),
        check(
            t.supports,
            (state) => state.showSupports,
            (showSupports) => store.set({ showSupports }),
            reason(model?.supportNodes.length, t.noneInModel),
        ),
    ];
    const roots: Node[] = controls.map((control) => control.root);
    if (model === undefined) roots.push(make('p', { class: 'note' }, t.noModel));
    return { root: section(t.symbols, true, ...roots), controls };
}
