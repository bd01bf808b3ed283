import { categories } from '../../scene/Categories';
import type { ViewState } from '../../state/ViewState';
import { button, make } from '../Dom';
import { check, section, type Control } from '../Controls';
import { numberText } from '../Numbers';
import type { PanelContext, PanelSection } from './PanelContext';

/** How many elements have each number. */
export function countByNumber(size: number, ...numbers: Uint32Array[]): Uint32Array {
    const counts = new Uint32Array(size);
    for (const list of numbers) for (const number of list) if (number < size) counts[number]++;
    return counts;
}

interface Entry {
    text: string;
    count: number;
    colour: string;
}

type HiddenKey = 'hiddenThicknesses' | 'hiddenSections';

/** Which elements are shown: by kind, thickness and section. */
export function visibleSection({ store, result, texts }: PanelContext): PanelSection {
    const t = texts.panel;
    const counted = (name: string, count: number): Node =>
        make('span', { class: 'counted' }, name, make('span', { class: 'count' }, String(count)));
    const absent = (count: number) => (): string | undefined => (count === 0 ? t.noneInModel : undefined);
    const quads = result.shellQuads;
    const tris = result.tris.length / 3;
    const controls: Control[] = [
        check(
            counted(texts.kinds.quad, quads),
            (state) => state.showQuads,
            (showQuads) => store.set({ showQuads }),
            absent(quads),
        ),
        check(
            counted(texts.kinds.tri, tris),
            (state) => state.showTris,
            (showTris) => store.set({ showTris }),
            absent(tris),
        ),
        check(
            counted(texts.kinds.beam, result.beams.count),
            (state) => state.showBeams,
            (showBeams) => store.set({ showBeams }),
            absent(result.beams.count),
        ),
    ];
    const roots: Node[] = controls.map((control) => control.root);

    const list = (title: string, key: HiddenKey, entries: Entry[]): void => {
        if (entries.every((entry) => entry.count === 0)) return;
        const all = entries.map((_, number) => number);
        const head = make(
            'div',
            { class: 'list-head' },
            make('span', { class: 'label' }, title),
            button(t.all, () => store.set({ [key]: [] } as Partial<ViewState>), { 'aria-label': `${title}: ${t.all}` }),
            button(t.none, () => store.set({ [key]: all } as Partial<ViewState>), {
                'aria-label': `${title}: ${t.none}`,
            }),
        );
        const box = make('div', { class: 'list', role: 'group', 'aria-label': title });
        entries.forEach((entry, number) => {
            if (entry.count === 0) return;
            const swatch = make('span', { class: 'swatch', style: `background:${entry.colour}` });
            const label = make(
                'span',
                { class: 'counted' },
                make('span', {}, swatch, entry.text),
                make('span', { class: 'count' }, String(entry.count)),
            );
            const control = check(
                label,
                (state) => !state[key].includes(number),
                (on) => {
                    const others = store.state[key].filter((hidden) => hidden !== number);
                    store.set({ [key]: on ? others : [...others, number].sort((a, b) => a - b) } as Partial<ViewState>);
                },
            );
            controls.push(control);
            box.append(control.root);
        });
        roots.push(head, box);
    };

    const colours = (field: 'thickness' | 'section'): Map<number, string> =>
        new Map(categories(result, field).map(({ value, colour }) => [value, colour]));
    const ofThickness = colours('thickness');
    const ofSection = colours('section');
    const model = result.model;
    if (model) {
        const shells = countByNumber(model.thicknesses.length, model.quadThickness, model.triThickness);
        const beams = countByNumber(model.sections.length, model.beamSection);
        list(
            t.thicknesses,
            'hiddenThicknesses',
            model.thicknesses.map((thickness, number) => ({
                text: numberText(thickness),
                count: shells[number],
                colour: ofThickness.get(Math.fround(thickness)) ?? '',
            })),
        );
        list(
            t.sections,
            'hiddenSections',
            model.sections.map((text, number) => ({ text, count: beams[number], colour: ofSection.get(number) ?? '' })),
        );
    }
    return { root: section(t.visible, model !== undefined, ...roots), controls };
}
