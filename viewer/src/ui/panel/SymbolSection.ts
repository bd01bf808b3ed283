import { lineLoadRange, pressureRange } from '../../model/Loads';
import type { EdgeKind } from '../../state/ViewState';
import { make } from '../Dom';
import { check, choice, section } from '../Controls';
import type { PanelContext, PanelSection } from './PanelContext';

/** Lines and arrows on the structure. */
export function symbolSection({ store, result, texts }: PanelContext): PanelSection {
    const t = texts.panel;
    const model = result.model;
    const reason = (has: boolean, why: string) => (): string | undefined => {
        if (model === undefined) return t.noModel;
        return has ? undefined : why;
    };
    const hasAny = (items: ArrayLike<number> | undefined) => items !== undefined && items.length > 0;
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
            reason(hasAny(model?.forceNodes), t.noneInModel),
        ),
        check(
            t.pressures,
            (state) => state.showPressures,
            (showPressures) => store.set({ showPressures }),
            reason(pressureRange(result) !== undefined, t.noneInModel),
        ),
        check(
            t.lineLoads,
            (state) => state.showLineLoads,
            (showLineLoads) => store.set({ showLineLoads }),
            reason(lineLoadRange(result) !== undefined, t.noneInModel),
        ),
        check(
            t.inertia,
            (state) => state.showInertia,
            (showInertia) => store.set({ showInertia }),
            reason(hasAny(model?.inertiaForces), t.noInertia),
        ),
        check(
            t.supports,
            (state) => state.showSupports,
            (showSupports) => store.set({ showSupports }),
            reason(hasAny(model?.supportNodes), t.noneInModel),
        ),
    ];
    const roots: Node[] = controls.map((control) => control.root);
    if (model === undefined) roots.push(make('p', { class: 'note' }, t.noModel));
    return { root: section(t.symbols, true, ...roots), controls };
}
