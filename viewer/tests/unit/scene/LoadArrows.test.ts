import { expect, test } from 'vitest';
import type { Result } from '../../../src/model/Result';
import { lineLoadArrows, nodalArrows, pressureArrows, type ArrowSet } from '../../../src/scene/LoadArrows';
import { translations } from '../../../src/scene/Motion';
import { shellResult, withLoads } from '../support/Results';
import { emptyResult, plateStrip, stiffenedPlate } from './models';

const ALL = new Uint8Array(10_000).fill(1);

/** To five digits: place of the point, its motion, vector. */
function listed({ places, motions, vectors }: ArrowSet): number[][][] {
    const triple = (values: Float32Array, i: number) =>
        Array.from(values.subarray(3 * i, 3 * i + 3), (value) => Number(value.toFixed(5)) + 0);
    return Array.from({ length: places.length / 3 }, (_, i) => [places, motions, vectors].map((v) => triple(v, i)));
}

function pressures(result: Result, spacing: number, visible = ALL): number[][][] {
    return listed(pressureArrows(result, translations(result), visible, spacing));
}

test('nodal loads stand at their nodes and move with them', () => {
    const result = plateStrip(2, 1);
    const arrows = { nodes: Uint32Array.of(5), vectors: Float32Array.of(0, 3, 0), longest: 3 };
    const set = nodalArrows(arrows, result.coordinates, translations(result));
    expect(listed(set)).toEqual([
        [
            [2, 1, 0],
            [0, 0, 1],
            [0, 3, 0],
        ],
    ]);
});

test('a positive pressure pushes along the normal of the first three nodes, in the middle of its quadrilateral', () => {
    const result = withLoads(plateStrip(2, 1), {
        quads: Uint32Array.of(1),
        quadPressures: Float32Array.of(1, 3, 3, 1),
    });
    expect(pressures(result, 9)).toEqual([
        [
            [1.5, 0.5, 0],
            [0, 0, 0.625],
            [0, 0, 2],
        ],
    ]);
    result.quads.subarray(4).reverse();
    expect(pressures(result, 9)[0][2]).toEqual([0, 0, -2]);
});

test('the pressure of a triangle points along its normal, against it where it is negative', () => {
    const places = [
        [0, 0, 0],
        [0, 3, 0],
        [0, 0, 3],
    ];
    const loads = { tris: Uint32Array.of(0, 0), triPressures: Float32Array.of(3, 6, 9, -1, -1, -1) };
    const result = withLoads(shellResult(places, [], [[0, 1, 2]]), loads);
    expect(pressures(result, 99).map(([place, , vector]) => [place, vector])).toEqual([
        [
            [0, 1, 1],
            [6, 0, 0],
        ],
        [
            [0, 1, 1],
            [-1, 0, 0],
        ],
    ]);
});

test('an element larger than the spacing has several arrows, each as long as the pressure where it stands', () => {
    const places = [
        [0, 0, 0],
        [4, 0, 0],
        [4, 2, 0],
        [0, 2, 0],
    ];
    const loads = { quads: Uint32Array.of(0), quadPressures: Float32Array.of(0, 4, 4, 0) };
    const found = pressures(withLoads(shellResult(places, [[0, 1, 2, 3]]), loads), 1);
    expect(found.length).toBe(8);
    for (const [[x, y], , [, , pressure]] of found) {
        expect(pressure).toBeCloseTo(x, 5);
        expect([0.5, 1.5]).toContain(y);
    }
    const tri = { tris: Uint32Array.of(0), triPressures: Float32Array.of(0, 4, 4) };
    const inTriangle = pressures(withLoads(shellResult(places, [], [[0, 1, 2]]), tri), 1);
    expect(inTriangle.length).toBe(9);
    for (const [[x, y], , [, , pressure]] of inTriangle) {
        expect(pressure).toBeCloseTo(x, 4);
        expect(y > 0 && y < x / 2).toBe(true);
    }
});

test('pressures of zero, of no number and of hidden elements have no arrow, and lengths stay those of all', () => {
    const result = withLoads(plateStrip(4, 1), {
        quads: Uint32Array.of(0, 1, 2, 3),
        quadPressures: Float32Array.of(0, 0, 0, 0, NaN, 1, 1, 1, 2, 2, 2, 2, -8, -8, -8, -8),
    });
    const set = pressureArrows(result, translations(result), Uint8Array.of(1, 1, 1, 0), 9);
    expect([...set.vectors]).toEqual([0, 0, 2]);
    expect(set.longest).toBe(8);
});

test('every one of many loaded elements has its arrow', () => {
    const quads = Uint32Array.from({ length: 3000 }, (_, i) => i);
    const result = withLoads(plateStrip(100, 30), { quads, quadPressures: new Float32Array(12_000).fill(1) });
    const { places } = pressureArrows(result, translations(result), ALL, 1.5);
    expect(places.length).toBe(9000);
    expect([...places.subarray(3 * 2999)]).toEqual([99.5, 29.5, 0]);
});

/** A beam of length 3 along x between two nodes, with one wall. */
function beamOf(lineLoads: number[], lineDirections = [0, 0, -1]): Result {
    const result = emptyResult(2, 4);
    result.coordinates.set([3, 0, 0], 3);
    result.quads = Uint32Array.of(2, 3, 4, 5);
    result.beams = {
        count: 1,
        ends: Float32Array.of(0, 0, 0, 3, 0, 0),
        wallBegin: Uint32Array.of(0, 1),
        nodeBegin: Uint32Array.of(2, 6),
    };
    const loaded = withLoads(result, {
        beams: Uint32Array.of(0),
        lineLoads: Float32Array.from(lineLoads),
        lineDirections: Float32Array.from(lineDirections),
    });
    loaded.model!.beamNodes = Uint32Array.of(0, 1);
    return loaded;
}

function row(result: Result, spacing: number): number[][][] {
    return listed(lineLoadArrows(result, translations(result), ALL, spacing));
}

test('a line load is a row of arrows from end to end of its beam', () => {
    const result = beamOf([4, -2]);
    expect(row(result, 1).map(([place, , vector]) => [place[0], vector[2]])).toEqual([
        [0, -4],
        [1, -2],
        [2, 0],
        [3, 2],
    ]);
    const { rowBegin, longest } = lineLoadArrows(result, translations(result), ALL, 1);
    expect([...rowBegin]).toEqual([0, 4]);
    expect(longest).toBe(4);
    expect(row(result, 99).length).toBe(2);
});

test('the row bends as the beam does: turned about its middle, moved and stretched as a body', () => {
    const result = beamOf([1, 1]);
    // Both ends are turned by 1 about y: slopes of -1, which a beam that stays in place follows as a cubic.
    result.displacements[4] = result.displacements[10] = 1;
    const turned = row(result, 1.5)[1][1];
    expect(turned).toEqual([0, 0, 0]);
    expect(row(result, 1)[1][1][2]).toBeCloseTo(-3 * ((1 / 3) * (4 / 9) - (1 / 9) * (2 / 3)), 5);
    // Turned as a body about its first node, and stretched.
    result.displacements.set([6, 0, -3], 6);
    expect(row(result, 1).map(([, motion]) => motion)).toEqual([
        [0, 0, 0],
        [2, 0, -1],
        [4, 0, -2],
        [6, 0, -3],
    ]);
});

test('a beam that is hidden has no row', () => {
    const result = stiffenedPlate(4, 2, 2, 3);
    const loads = { beams: Uint32Array.of(1, 0), lineLoads: Float32Array.of(1, 1, 2, 2) };
    const loaded = withLoads(result, { ...loads, lineDirections: Float32Array.of(0, 0, 1, 0, 0, 1) });
    const visible = new Uint8Array(result.quads.length / 4).fill(1, result.beams.wallBegin[1]);
    const { rowBegin, vectors } = lineLoadArrows(loaded, translations(loaded), visible, 9);
    expect([...rowBegin]).toEqual([0, 2]);
    expect([...vectors]).toEqual([0, 0, 1, 0, 0, 1]);
});
