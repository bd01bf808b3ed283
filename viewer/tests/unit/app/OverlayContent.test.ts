import { expect, test } from 'vitest';
import { axisTitle, fieldSubtitle, fieldTitle, scaleLegend, symbolKey } from '../../../src/app/OverlayContent';
import type { Extreme, Extremes } from '../../../src/scene/SceneView';
import { DEFAULT_STATE, type ViewState } from '../../../src/state/ViewState';
import { texts } from '../../../src/ui/Texts';
import { facts, shellResult, withLoads } from '../support/Results';

const english = texts('en');
const state = (part: Partial<ViewState>): ViewState => ({ ...DEFAULT_STATE, ...part });
const extreme = (value: number): Extreme => ({ value, vertex: 0, node: 0, position: [0, 0, 0] });
const from = (min: number, max: number): Extremes => ({ min: extreme(min), max: extreme(max), notFinite: 0 });

test('element values of walls are averaged, and the legend says so while walls are seen', () => {
    const own = state({ average: 'element' });
    expect(fieldSubtitle(own, english, true)).toBe('larger face, element values (beam walls: averaged)');
    expect(fieldSubtitle(own, english, false)).toBe('larger face, element values');
    expect(fieldSubtitle(state({}), english, true)).toBe('larger face, nodal average');
});

test('stresses are told in the unit that is set, motions in that of the model', () => {
    const unit = { unitFactor: 1e6, unitName: 'MPa' };
    expect(fieldTitle(state(unit), english)).toBe('Equivalent stress SE (MPa)');
    expect(fieldTitle(state({ ...unit, field: 'U' }), english)).toBe('Displacement U');
    expect(fieldTitle(state({ unitFactor: 1e6 }), english)).toBe('Equivalent stress SE (× 1e6)');
    expect(scaleLegend(state(unit), [0, 120e6]).range).toEqual([0, 120]);
    expect(scaleLegend(state({ ...unit, field: 'U' }), [0, 2]).range).toEqual([0, 2]);
});

test('the legend has colours for values beyond own limits where there are such', () => {
    const beyond = (part: Partial<ViewState>, found: Extremes) => {
        const { over, under } = scaleLegend(state(part), [10, 80], found);
        return [under !== undefined, over !== undefined];
    };
    const limits: [number, number] = [10, 80];
    expect(beyond({ limits }, from(0, 100))).toEqual([true, true]);
    expect(beyond({ limits }, from(10, 80.00001))).toEqual([false, false]);
    expect(beyond({}, from(9.99, 100))).toEqual([false, false]);
    expect(beyond({ logarithmic: true }, from(0, 80))).toEqual([true, false]);
});

test('arrows that are shown have their colours and largest loads in the legend', () => {
    const result = shellResult([[0, 0, 0]], []);
    result.model = { ...facts(result), forceNodes: Uint32Array.of(0), forces: Float32Array.of(3, 4, 0, 0, 0, 0) };
    expect(symbolKey(state({}), result, english)).toEqual([]);
    const key = symbolKey(state({ showLoads: true, showSupports: true }), result, english);
    expect(key.map(({ text }) => text)).toEqual(['nodal forces, largest 5']);
});

test('pressures and line loads have a line each with the range of their values, moments an arrow with two heads', () => {
    const loaded = withLoads(shellResult([[0, 0, 0]], []), {
        quadPressures: Float32Array.of(-90526.5, 0, 0, -20),
        lineLoads: Float32Array.of(60e3, 60e3),
    });
    loaded.model!.inertiaForces = Float32Array.of(3, 4, 0, 0, 2, 0);
    const shown = state({ showPressures: true, showLineLoads: true, showInertia: true });
    expect(symbolKey(shown, loaded, english).map(({ text, shape }) => `${shape}: ${text}`)).toEqual([
        'arrow: pressures, -90526.5 to 0',
        'arrow: line loads, 60000',
        'arrow: inertia forces, largest 5',
        'doubleArrow: inertia moments, largest 2',
    ]);
    expect(symbolKey(state({ showLoads: true }), loaded, english)).toEqual([]);
});

test('the axis of a graph always has a unit', () => {
    expect(axisTitle(state({ field: 'DX' }), english)).toBe('DX (unit of the model)');
    expect(axisTitle(state({ field: 'RX' }), english)).toBe('RX (rad)');
    expect(axisTitle(state({ unitFactor: 1e6, unitName: 'MPa' }), english)).toBe('SE (MPa)');
});
