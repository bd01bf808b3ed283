import { expect, test } from 'vitest';
import type { Ray } from '../../../src/scene/Projection';
import { ShownResult } from '../../../src/scene/ShownResult';
import type { Vec3 } from '../../../src/scene/Vectors';
import { DEFAULT_STATE, type ViewState } from '../../../src/state/ViewState';
import { plateStrip } from './models';

const STATE: ViewState = { ...DEFAULT_STATE, face: 'positive' };

function fromAbove(x: number, y: number): Ray {
    return { origin: [x, y, 10], direction: [0, 0, -1] };
}

function last(values: Float32Array): number {
    return values[values.length - 1];
}

test('a cut along a plate is one line with the values of the field', () => {
    const lines = new ShownResult(plateStrip(6, 3), STATE).cut([fromAbove(-1, 1.3), fromAbove(7, 1.3)]);
    expect(lines).toHaveLength(1);
    expect(last(lines[0].length)).toBeCloseTo(6, 5);
    lines[0].length.forEach((length, i) => expect(lines[0].value[i]).toBeCloseTo(length, 5));
});

test('the line runs from the first point to the second and not beyond', () => {
    const [line, ...others] = new ShownResult(plateStrip(6, 3), STATE).cut([fromAbove(4.5, 1.3), fromAbove(1.25, 1.3)]);
    expect(others).toEqual([]);
    expect(line.value[0]).toBeCloseTo(4.5, 5);
    expect(last(line.value)).toBeCloseTo(1.25, 5);
    expect(last(line.length)).toBeCloseTo(3.25, 5);
});

test('lengths are measured along the deformed surface', () => {
    const result = new ShownResult(plateStrip(1, 1), STATE);
    result.setScale(1);
    const [line] = result.cut([fromAbove(-1, 0.5), fromAbove(2, 0.5)]);
    expect(last(line.length)).toBeCloseTo(Math.SQRT2, 5);
});

test('what is hidden parts the line in two, the longer one first', () => {
    const result = new ShownResult(plateStrip(6, 1), STATE);
    result.visible[1] = 0;
    const lines = result.cut([fromAbove(-1, 0.5), fromAbove(7, 0.5)]);
    expect(lines.map((line) => Math.round(last(line.length)))).toEqual([4, 1]);
});

test('the clip plane ends the line', () => {
    const result = new ShownResult(plateStrip(6, 1), { ...STATE, clip: { normal: [1, 0, 0], offset: 0.4 } });
    const [line] = result.cut([fromAbove(-1, 0.5), fromAbove(7, 0.5)]);
    expect(last(line.value)).toBeCloseTo(2.4, 5);
});

test('a value that jumps between elements stands twice at the same length', () => {
    const plate = plateStrip(2, 1);
    const result = new ShownResult(plate, STATE);
    for (const corner of [1, 2]) result.values.positive[corner] = 50;
    const [line] = result.cut([fromAbove(-1, 0.5), fromAbove(7, 0.5)]);
    const at1 = Array.from(line.length).flatMap((length, i) => (Math.abs(length - 1) < 1e-6 ? [line.value[i]] : []));
    expect(at1).toEqual([50, 1]);
});

test('rays of a perspective picture cut the plane through the eye', () => {
    const eye: Vec3 = [3, 0.5, 10];
    const towards = (x: number): Ray => {
        const direction: Vec3 = [x - eye[0], 0, -10];
        const length = Math.hypot(...direction);
        return { origin: eye, direction: direction.map((part) => part / length) as Vec3 };
    };
    const [line] = new ShownResult(plateStrip(6, 1), STATE).cut([towards(1), towards(5)]);
    expect(line.value[0]).toBeCloseTo(1, 5);
    expect(last(line.value)).toBeCloseTo(5, 5);
});

test('two points that are one cut nothing', () => {
    expect(new ShownResult(plateStrip(6, 1), STATE).cut([fromAbove(1, 0.5), fromAbove(1, 0.5)])).toEqual([]);
});
