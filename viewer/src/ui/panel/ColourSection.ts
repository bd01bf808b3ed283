import { MOST_BANDS } from '../../model/ColourScale';
import { isPropertyField, isStressField } from '../../model/Fields';
import { unitOf } from '../../state/Units';
import { LONGEST_NAME } from '../../state/ViewAddress';
import type { ColourMap, ViewState } from '../../state/ViewState';
import { check, choice, note, numberBox, section, select, textBox } from '../Controls';
import { make } from '../Dom';
import { numberText } from '../Numbers';
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
    const noPlace = (limit: number): string | undefined =>
        store.state.logarithmic && limit <= 0 ? t.noLogarithm : undefined;
    // Typed and shown in the unit of the legend, kept in that of the model.
    const factor = (): number => unitOf(store.state).factor;
    const lowest = numberBox(
        t.lowest,
        () => current()[0] / factor(),
        (value) => store.set({ limits: [value * factor(), current()[1]] }),
        {
            expected: t.numberExpected,
            refuse: (value) => noPlace(value) ?? ordered(value * factor(), current()[1]),
        },
        noOwnLimits,
    );
    const highest = numberBox(
        t.highest,
        () => current()[1] / factor(),
        // A lower limit that a logarithmic scale has replaced for now stays as it was given.
        (value) => store.set({ limits: [store.state.limits?.[0] ?? current()[0], value * factor()] }),
        {
            expected: t.numberExpected,
            refuse: (value) => noPlace(value) ?? ordered(store.state.limits?.[0] ?? current()[0], value * factor()),
        },
        noOwnLimits,
    );
    const replaced = note((state) => {
        const isReplaced = hasScale(state) && state.logarithmic && state.limits && state.limits[0] <= 0;
        return isReplaced ? t.lowestReplaced(numberText(current()[0] / factor())) : undefined;
    });
    const notStress = (state: Readonly<ViewState>): string | undefined =>
        isStressField(state.field) ? undefined : t.notStress;
    const unitFactor = numberBox(
        t.unitFactor,
        (state) => state.unitFactor,
        (value) => store.set({ unitFactor: value }),
        {
            expected: t.positiveExpected,
            refuse: (value) => (value > 0 ? undefined : t.positiveExpected),
        },
        notStress,
    );
    const unitName = textBox(
        t.unitName,
        (state) => state.unitName,
        (name) => store.set({ unitName: name }),
        LONGEST_NAME,
        notStress,
    );
    const unit = make(
        'div',
        { class: 'unit', role: 'group', 'aria-label': t.unit, title: t.unitHint },
        make('span', { class: 'label' }, t.unit),
        make('div', { class: 'pair' }, unitFactor.root, unitName.root),
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
            { min: 2, max: MOST_BANDS, whole: true, step: 1, expected: t.wholeExpected(2, MOST_BANDS) },
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
        replaced,
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
    const roots = controls.map((control) => control.root);
    return { root: section(t.colours, true, ...roots, unit), controls: [...controls, unitFactor, unitName] };
}
