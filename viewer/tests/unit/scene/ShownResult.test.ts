import { describe, expect, test } from 'vitest';
import { STRESS_COLUMNS, type Result } from '../../../src/model/Result';
import { ShownResult } from '../../../src/scene/ShownResult';
import type { Vec3 } from '../../../src/scene/Vectors';
import { DEFAULT_STATE, type ViewState } from '../../../src/state/ViewState';
import { emptyResult, plateStrip, stiffenedPlate } from './models';

const DOWN: Vec3 = [0, 0, -1];
const UP: Vec3 = [0, 0, 1];

function shown(result: Result, state: Partial<ViewState> = {}): ShownResult {
    return new ShownResult(result, { ...DEFAULT_STATE, ...state });
}

/** Two plates of a quadrilateral each, one over the other. */
function twoStoreys(): Result {
    const plate = plateStrip(1, 1);
    const result = emptyResult(8);
    result.coordinates.set(plate.coordinates);
    result.coordinates.set(
        plate.coordinates.map((x, i) => (i % 3 === 2 ? 1 : x)),
        12,
    );
    result.quads = Uint32Array.of(...plate.quads, ...plate.quads.map((vertex) => vertex + 4));
    result.shellQuads = 2;
    result.positiveFace.set(plate.positiveFace.map((x) => x + 10));
    result.positiveFace.set(
        plate.positiveFace.map((x) => x + 20),
        28,
    );
    result.negativeFace.set(result.positiveFace.map((x) => -x));
    return result;
}

function withThicknesses(result: Result, quadThickness: number[]): Result {
    const none = new Uint32Array(0);
    result.model = {
        thicknesses: [0.01, 0.02],
        sections: [],
        materials: [],
        quadThickness: Uint32Array.from(quadThickness),
        quadMaterial: new Uint32Array(quadThickness.length),
        triThickness: none,
        triMaterial: none,
        beamSection: new Uint32Array(result.beams.count).map((_, beam) => beam),
        beamMaterial: new Uint32Array(result.beams.count),
        beamNodes: none,
        supportNodes: none,
        supportBits: none,
        forceNodes: none,
        forces: new Float32Array(0),
        inertiaForces: new Float32Array(0),
    };
    return result;
}

describe('probe', () => {
    test('tells element, nearest corner and the value between the corners', () => {
        const probe = shown(plateStrip(4, 2), { face: 'positive' }).probe(
            { origin: [2.75, 1.25, 9], direction: DOWN },
            true,
        );
        expect(probe).toMatchObject({ kind: 'quad', element: 6, node: 8, vertex: 8, face: 'positive', cornerValue: 3 });
        expect(probe!.value).toBeCloseTo(2.75, 6);
        expect(probe!.hit).toEqual([2.75, 1.25, 0]);
        expect(probe!.position).toEqual([3, 1, 0]);
    });

    test('sees the negative face and its values from below', () => {
        const probe = shown(plateStrip(4, 2), { face: 'viewed' }).probe(
            { origin: [1.5, 0.5, -9], direction: UP },
            true,
        );
        expect(probe!.face).toBe('negative');
        expect(probe!.value).toBeCloseTo(101.5, 5);
    });

    test('hits the deformed surface and tells the undeformed place of the corner', () => {
        const result = shown(plateStrip(2, 1));
        result.setScale(10);
        const probe = result.probe({ origin: [2, 0.5, 99], direction: DOWN }, true);
        expect(probe!.hit[2]).toBeCloseTo(10, 5);
        expect(probe!.position[2]).toBe(0);
    });

    test('goes through what is hidden by its thickness', () => {
        const result = withThicknesses(twoStoreys(), [0, 1]);
        const ray = { origin: [0.4, 0.4, 9] as Vec3, direction: DOWN };
        expect(shown(result).probe(ray, true)!.element).toBe(1);
        expect(shown(result, { hiddenThicknesses: [1] }).probe(ray, true)!.element).toBe(0);
        expect(shown(result, { showQuads: false }).probe(ray, true)).toBeUndefined();
    });

    test('goes through what is cut away', () => {
        const ray = { origin: [0.4, 0.4, 9] as Vec3, direction: DOWN };
        expect(shown(twoStoreys(), { clip: { normal: [0, 0, 1], offset: 0.5 } }).probe(ray, true)!.element).toBe(0);
    });

    test('does not see what stands behind the eye in perspective', () => {
        const ray = { origin: [0.4, 0.4, 0.5] as Vec3, direction: DOWN };
        expect(shown(twoStoreys()).probe(ray, false)!.element).toBe(0);
    });

    test('tells a wall by its beam and its number within it', () => {
        const result = stiffenedPlate(4, 2, 2, 3);
        const probe = shown(result).probe({ origin: [1.5, -9, -0.5], direction: [0, 1, 0] }, true);
        expect(probe).toMatchObject({ kind: 'wall', beam: 1, element: 6 });
    });
});

describe('extremes', () => {
    test('are of what is shown, with the place where they are', () => {
        expect(shown(twoStoreys(), { face: 'positive' }).extremes()).toMatchObject({
            min: { value: 10, node: 0, position: [0, 0, 0] },
            max: { value: 21, node: 5, position: [1, 0, 1] },
        });
        const state: Partial<ViewState> = { face: 'positive', clip: { normal: [0, 0, 1], offset: 0.5 } };
        expect(shown(twoStoreys(), state).extremes()!.max.value).toBe(11);
    });

    test('are of both faces where each is shown on its own side', () => {
        expect(shown(twoStoreys(), { face: 'viewed' }).extremes()!.min.value).toBe(-21);
    });

    test('leave out what is no number, and count it', () => {
        const result = plateStrip(2, 1);
        result.positiveFace[6] = NaN;
        result.positiveFace[3 * STRESS_COLUMNS + 6] = -Infinity;
        const found = shown(result, { face: 'positive' }).extremes()!;
        expect(found.min.value).toBe(1);
        expect(found.notFinite).toBe(2);
    });

    test('and limits are those of the structure at rest while it swings through the plane that cuts it', () => {
        const state: ViewState = { ...DEFAULT_STATE, face: 'positive', clip: { normal: [1, 0, 0], offset: 0.5 } };
        const result = plateStrip(4, 1);
        for (let node = 0; node < result.structureNodes; ++node) result.displacements[6 * node] = 2;
        const moved = shown(result, state);
        moved.setScale(1);
        moved.swing(-1);
        expect(moved.extremes()!.max.value).toBe(0);
        expect(moved.range({ ...state, logarithmic: true })).toBeUndefined();
        expect(moved.places()[0]).toBe(-2);
    });

    test('that several corners share are told of the first shell in order and its first corner', () => {
        const result = stiffenedPlate(4, 2, 1, 3);
        for (let i = 0; i < result.positiveFace.length; i += STRESS_COLUMNS) result.positiveFace[i + 6] = 7;
        // A later one is larger, but by less than single precision can tell after a sum.
        result.positiveFace[STRESS_COLUMNS * 9 + 6] = 7.000001;
        const found = shown(result, { face: 'positive' }).extremes()!;
        expect(found.max.node).toBe(result.vertexNodes[result.quads[0]]);
        expect(found.min.node).toBe(found.max.node);
        expect(found.max.value).toBeCloseTo(7.000001, 6);
    });

    test('that several walls share are told of the first node of the first beam', () => {
        const result = stiffenedPlate(4, 2, 2, 3);
        const first = result.beams.nodeBegin[0];
        // The first wall runs by nodes 0, 6, 7, 1 of its beam.
        for (const node of [0, 6, 7, 1]) result.positiveFace[STRESS_COLUMNS * (first + node) + 6] = 9;
        result.positiveFace[STRESS_COLUMNS * first + 6] = 0;
        const state: Partial<ViewState> = { face: 'positive', showQuads: false };
        expect(shown(result, state).extremes()!.max.node).toBe(first + 1);
    });

    test('of displacements that several nodes share are told of the first node', () => {
        const result = plateStrip(4, 1);
        result.displacements.fill(0);
        // Elements name node 5 before node 4.
        for (const node of [4, 5]) result.displacements[6 * node] = 2;
        expect(shown(result, { field: 'DX' }).extremes()!.max.node).toBe(4);
        expect(shown(result, { field: 'DX' }).extremes()!.min.node).toBe(0);
    });

    test('are undefined where nothing is shown', () => {
        expect(shown(twoStoreys(), { showQuads: false }).extremes()).toBeUndefined();
    });
});

describe('visibility', () => {
    test('hides beams by their section', () => {
        const result = withThicknesses(stiffenedPlate(4, 2, 2, 3), new Array(8).fill(0));
        const { visible } = shown(result, { hiddenSections: [0] });
        const walls = Array.from(visible.subarray(result.shellQuads));
        expect(walls).toEqual([...new Array(15).fill(0), ...new Array(15).fill(1)]);
    });

    test('shows elements whose centre is within the box', () => {
        const { visible } = shown(plateStrip(4, 1), { box: [0.6, 0, -1, 2.5, 1, 1] });
        expect(Array.from(visible)).toEqual([0, 1, 1, 0]);
    });

    test('keeps what the normal of the clip plane does not point to', () => {
        expect(shown(plateStrip(4, 1), { clip: { normal: [2, 0, 0], offset: 0.25 } }).clip).toEqual({
            normal: [1, 0, 0],
            distance: 1,
        });
    });
});

describe('find', () => {
    test('gives the nodes of an element, and nothing for numbers that do not occur', () => {
        const result = shown(stiffenedPlate(4, 2, 2, 3));
        expect(result.find('quad', 1)!.nodes).toEqual([1, 2, 7, 6]);
        expect(result.find('beam', 1)!.rings).toHaveLength(15);
        expect(result.find('node', 14)!.nodes).toEqual([14]);
        expect(result.find('quad', 8)).toBeUndefined();
        expect(result.find('tri', 0)).toBeUndefined();
        expect(result.find('beam', 2)).toBeUndefined();
        expect(result.find('node', -1)).toBeUndefined();
    });
});

describe('what stands before a node', () => {
    const from = ([x, y]: number[]) => ({ origin: [x, y, 9] as Vec3, direction: DOWN });

    test('hides it, unless it is hidden itself or cut away', () => {
        const result = withThicknesses(twoStoreys(), [0, 1]);
        expect(shown(result).hides(0, from([0, 0]), true)).toBe(true);
        expect(shown(result).hides(4, from([0, 0]), true)).toBe(false);
        expect(shown(result, { hiddenThicknesses: [1] }).hides(0, from([0, 0]), true)).toBe(false);
        expect(shown(result, { clip: { normal: [0, 0, 1], offset: 0.5 } }).hides(0, from([0, 0]), true)).toBe(false);
    });

    test('is no element of its own, and none that touches it with a node of its own', () => {
        const result = stiffenedPlate(4, 2, 1, 3);
        for (let node = 0; node < result.structureNodes; ++node) {
            const [x, y] = result.coordinates.subarray(3 * node, 3 * node + 2);
            expect(shown(result).hides(node, from([x, y]), true)).toBe(false);
        }
    });
});

describe('values of what is searched', () => {
    test('are of each corner of an element', () => {
        const found = shown(plateStrip(4, 2), { face: 'positive' }).valuesOf('quad', 1);
        expect(found.map(({ node }) => node)).toEqual([1, 2, 7, 6]);
        expect(found.map(({ value }) => value)).toEqual([1, 2, 2, 1]);
    });

    test('are of a node once for each pair of face stresses', () => {
        const result = shown(plateStrip(4, 2), { face: 'positive' });
        expect(result.valuesOf('node', 7)).toMatchObject([{ kind: 'quad', element: 1, node: 7, value: 2 }]);
    });

    test('follow the field that is shown', () => {
        const result = shown(plateStrip(4, 2), { face: 'positive' });
        const [probe] = result.valuesOf('node', 8);
        expect(result.valueOf(probe)).toBe(3);
        result.updateValues({ ...DEFAULT_STATE, face: 'negative' });
        expect(result.valueOf(probe)).toBe(103);
    });

    test('are none for a node without shells, which has its displacements', () => {
        const result = plateStrip(4, 2);
        result.quads = result.quads.subarray(4);
        result.shellQuads -= 1;
        expect(shown(result).valuesOf('node', 0)).toMatchObject([{ kind: 'node', node: 0, vertex: -1 }]);
        expect(shown(result).valueOf(shown(result).valuesOf('node', 0)[0])).toBeNaN();
    });

    test('are of a beam where it has its largest', () => {
        const result = stiffenedPlate(4, 2, 2, 3);
        const vertex = result.quads[4 * result.beams.wallBegin[1] + 6];
        result.positiveFace[STRESS_COLUMNS * vertex + 6] = 1e4;
        expect(shown(result, { face: 'positive' }).valuesOf('beam', 1)).toMatchObject([
            { beam: 1, vertex, value: 1e4 },
        ]);
    });
});

describe('range', () => {
    test('is of round numbers around the values', () => {
        const state = { ...DEFAULT_STATE, face: 'positive', bandCount: 10 } as const;
        expect(shown(plateStrip(10, 1), state).range(state)).toEqual([0, 10]);
    });

    test('is of 1, 2 or 5 times powers of ten around the positive values on a logarithmic scale', () => {
        const state = { ...DEFAULT_STATE, face: 'positive', logarithmic: true } as const;
        expect(shown(plateStrip(30, 1), state).range(state)).toEqual([1, 50]);
    });
});
