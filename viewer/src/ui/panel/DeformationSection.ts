import { defaultScale } from '../../scene/Motion';
import { button, make } from '../Dom';
import { check, numberBox, section, slider } from '../Controls';
import { numberText } from '../Numbers';
import type { PanelContext, PanelSection } from './PanelContext';

/** How far displacements are drawn. */
export function deformationSection({ store, result, texts }: PanelContext): PanelSection {
    const t = texts.panel;
    // The slider goes by factors: four decades around the automatic scale, true scale within.
    const automatic = defaultScale(result);
    const middle = Math.log10(automatic);
    const lowest = Math.min(0, middle - 2);
    const highest = Math.max(0, middle + 2);
    const inUse = (): number => store.state.scale ?? automatic;

    const controls = [
        check(
            t.deformed,
            (state) => state.deformed,
            (deformed) => store.set({ deformed }),
        ),
        numberBox(
            t.scale,
            () => inUse(),
            (factor) => store.set({ scale: factor, deformed: true }),
            { min: 0, expected: t.notNegativeExpected },
        ),
        slider(
            '',
            () => (inUse() > 0 ? Math.log10(inUse()) : lowest),
            (power) => store.set({ scale: Number((10 ** power).toPrecision(3)), deformed: true }),
            {
                min: lowest,
                max: highest,
                step: 0.01,
                text: (power) => numberText(Number((10 ** power).toPrecision(3))),
            },
        ),
        check(
            t.animate,
            (state) => state.animated,
            (animated) => store.set(animated ? { animated, deformed: true } : { animated }),
        ),
        check(
            t.outline,
            (state) => state.undeformedOutline,
            (undeformedOutline) => store.set({ undeformedOutline }),
        ),
    ];
    controls[2].root.querySelector('input')!.setAttribute('aria-label', t.scale);
    const presets = make(
        'div',
        { class: 'buttons' },
        button(t.trueScale, () => store.set({ scale: 1, deformed: true })),
        button(t.fivePercent, () => store.set({ scale: undefined, deformed: true })),
    );
    const roots: Node[] = controls.map((control) => control.root);
    roots.splice(3, 0, presets);
    return { root: section(t.deformation, true, ...roots), controls };
}
