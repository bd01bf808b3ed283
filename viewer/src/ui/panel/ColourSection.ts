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
    const current = (): [number, number] => range() ?? store.state.limits ?? [0, 1];
    const noScale = (state: Readonly<ViewState>): string | undefined => (hasScale(state) ? undefined : t.noScale);
    const noOwnLimits = (state: Readonly<ViewState>): string | undefined =>
        noScale(state) ?? (state.limits ? undefined : t.ownLimits);
    const ordered = (low: number, high: number): string | undefined => (low < high ? undefined : t.limitsOrder);
    const noPlace = (low: number): string | undefined =>
        store.state.logarithmic && low <= 0 ? t.noLogarithm : undefined;
    const lowest = numberBox(
        t.lowest,
        () => current()[0],
        (value) => store.set({ limits: [value, current()[1]] }),
        { refuse: (value) => noPlace(value) ?? ordered(value, current()[1]) },
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
            noScale,
        ),
        numberBox(
            t.bandCount,
            (state) => state.bandCount,
            (bandCount) => store.set({ bandCount }),
            { min: 2, max: 32, whole: true, step: 1 },
            (state) => noScale(state) ?? (state.bands ? undefined : t.smooth),
        ),
        select<ColourMap>(
            t.map,
            [{ label: '', options: Object.entries(texts.maps) as [ColourMap, string][] }],
            (state) => state.colourMap,
            (colourMap) => store.set({ colourMap }),
            noScale,
        ),
        check(
            t.ownLimits,
            (state) => state.limits !== undefined,
            (own) => store.set({ limits: own ? (range() ?? [0, 1]) : undefined }),
            noScale,
        ),
        lowest,
        highest,
        check(
            t.logarithmic,
            (state) => state.logarithmic,
            (logarithmic) => store.set({ logarithmic }),
            (state) => noScale(state) ?? (state.logarithmic || current()[1] > 0 ? undefined : t.noLogarithm),
        ),
        check(
            t.flags,
            (state) => state.flags,
            (flags) => store.set({ flags }),
            noScale,
        ),
    ];
    return { root: section(t.colours, true, ...controls.map((control) => control.root)), controls };
}
