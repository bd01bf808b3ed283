import { DOFS, STRESS_COLUMNS, type Result } from '../model/Result';
import type { Probe } from '../scene/SceneView';
import { tableText } from './Csv';
import { button, copyText, make, save } from './Dom';
import { elementName, nodeName } from './Names';
import { withUnit, type Unit } from '../state/Units';
import { numberText, placeTexts } from './Numbers';
import type { Texts } from './Texts';

const STRESSES = ['SX', 'SY', 'SZ', 'TXY', 'TXZ', 'TYZ', 'SE'];
const MOTIONS = ['dx', 'dy', 'dz', 'rx', 'ry', 'rz'];

/** The field that is shown: a column of its own, which is seen without scrolling. */
export interface ShownColumn {
    /** "SE (MPa)". */
    name: string;
    /** In that unit. */
    valueOf(probe: Probe): number;
}

const PLACES = 3;

/** Names of the columns behind node and element. */
function columns(texts: Texts, unit: Unit): string[] {
    const { positive, negative } = texts.probe;
    return [
        'x',
        'y',
        'z',
        ...MOTIONS,
        ...STRESSES.map((name) => withUnit(`${name} ${positive}`, unit)),
        ...STRESSES.map((name) => withUnit(`${name} ${negative}`, unit)),
    ];
}

/** Place, displacements and the nodal averages of both faces at the corner that was probed; without stresses if none. */
export function probeValues(result: Result, { node, vertex }: Probe, unit: Unit): number[] {
    const of = (array: Float32Array, index: number, width: number): number[] => [
        ...array.subarray(width * index, width * (index + 1)),
    ];
    const stresses = (face: Float32Array): number[] =>
        vertex < 0
            ? new Array<number>(STRESS_COLUMNS).fill(NaN)
            : of(face, vertex, STRESS_COLUMNS).map((stress) => stress / unit.factor);
    return [
        ...of(result.coordinates, node, 3),
        ...of(result.displacements, node, DOFS),
        ...stresses(result.positiveFace),
        ...stresses(result.negativeFace),
    ];
}

/** Points that were clicked, as a table that can be taken away. */
export class ProbeTable {
    readonly root = make('div', { class: 'probe-table' });
    private probes: Probe[] = [];
    onChange: () => void = () => undefined;

    get points(): readonly Probe[] {
        return this.probes;
    }

    add(probe: Probe): void {
        this.probes.push(probe);
        this.onChange();
    }

    addAll(probes: readonly Probe[]): void {
        this.probes.push(...probes);
        this.onChange();
    }

    clear(): void {
        this.probes = [];
        this.onChange();
    }

    /** unit: of stresses. size: of the model, beside which round-off in places is zero. */
    render(
        result: Result,
        texts: Texts,
        unit: Unit,
        field: ShownColumn | undefined,
        size: number,
        say: (text: string) => void,
    ): void {
        const t = texts.probe;
        const rows = this.probes.map((probe, i) => [
            i + 1,
            nodeName(result, probe.node, texts),
            elementName(probe, texts),
            ...(field ? [field.valueOf(probe)] : []),
            ...probeValues(result, probe, unit),
        ]);
        const head = ['#', t.node, t.element, ...(field ? [field.name] : []), ...columns(texts, unit)];
        const place = head.indexOf('x');
        const shown = (row: (string | number)[]): string[] => {
            const places = placeTexts(row.slice(place, place + PLACES) as number[], size);
            return row.map((cell, i) => {
                if (i >= place && i < place + PLACES) return places[i - place];
                return typeof cell === 'number' ? numberText(cell) : cell;
            });
        };
        const table = make(
            'table',
            {},
            make('thead', {}, make('tr', {}, ...head.map((name) => make('th', { scope: 'col' }, name)), make('th'))),
        );
        const body = make('tbody');
        rows.forEach((row, i) => {
            const line = make('tr', {}, ...shown(row).map((cell) => make('td', {}, cell)));
            const remove = button(
                '×',
                () => {
                    this.probes.splice(i, 1);
                    this.onChange();
                },
                { 'aria-label': `${t.remove} (${i + 1})`, title: t.remove },
            );
            line.append(make('td', {}, remove));
            body.append(line);
        });
        table.append(body);
        const text = (separator: '\t' | ','): string => tableText([head, ...rows], separator);
        this.root.replaceChildren(
            make(
                'div',
                { class: 'buttons' },
                button(t.copy, () => void copyText(text('\t')).then(() => say(texts.copied))),
                button(t.saveCsv, () => save('tarnvexo-points.csv', new Blob([text(',')], { type: 'text/csv' }))),
                button(t.removeAll, () => this.clear()),
            ),
            make('div', { class: 'scroll', tabindex: 0, role: 'region', 'aria-label': t.title }, table),
        );
    }
}
