import { isPropertyField } from '../../model/Fields';
import type { ColourMap, ViewState } from '../../state/ViewState';
import { check, choice, numberBox, section, select } from '../Controls';
import type { PanelContext, PanelSection } from './PanelContext';

/** Whether the field has values on a scale, so that limits, bands and flags mean something. */
export function hasScale(state: Readonly<ViewState>): boolean {
    return state.field !== 'none' && !isPropertyField(state.field);
}

/** How values become colours. */
export function colourSection({ store, texts, range }: PanelContext): PanelSection {
    const t = texts.panel;
    const current = (): [number, number] => store.state.limits ?? range() ?? [0, 1];
    const noOwnLimits = (state: Readonly<ViewState>): string | undefined => (state.limits ? undefined : t.ownLimits);
    const ordered = (low: number, high: number): string | undefined => (low < high ? undefined : t.limitsOrder);
    const lowest = numberBox(
        t.lowest,
        () => current()[0],
        (value) => store.set({ limits: [value, current()[1]] }),
        { refuse: (value) => ordered(value, current()[1]) },
        noOwnLimits,
    );
    const highest = numberBox(
        t.highest,
        () => current()[1],
        (value) => store.set({ limits: [current()[0], value] }),
        { refuse: (value) => ordered(current()[0], value) },
        noOwnLimits,
    );

    const controls = [
        choice<'bands' | 'smooth'>(
            t.colours,
            [
                ['bands', t.bands],
                ['smooth', t.smooth],
            ],
            (state) => (state.bands ? 'bands' : 'smooth'),
            (kind) => store.set({ bands: kind === 'bands' }),
        ),
        numberBox(
            t.bandCount,
            (state) => state.bandCount,
            (bandCount) => store.set({ bandCount }),
            { min: 2, max: 32, whole: true, step: 1 },
            (state) => (state.bands ? undefined : t.smooth),
        ),
        select<ColourMap>(
            t.map,
            [{ label: '', options: Object.entries(texts.maps) as [ColourMap, string][] }],
            (state) => state.colourMap,
            (colourMap) => store.set({ colourMap }),
        ),
        check(
            t.ownLimits,
            (state) => state.limits !== undefined,
            (own) => store.set({ limits: own ? (range() ?? [0, 1]) : undefined }),
        ),
        lowest,
        highest,
        check(
            t.logarithmic,
            (state) => state.logarithmic,
            (logarithmic) => store.set({ logarithmic }),
            (state) => (state.logarithmic || current()[1] > 0 ? undefined : t.noLogarithm),
        ),
        check(
            t.flags,
            (state) => state.flags,
            (flags) => store.set({ flags }),
        ),
    ];
    return { root: section(t.colours, true, ...controls.map((control) => control.root)), controls };
}
