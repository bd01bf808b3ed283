import { expect, test } from 'vitest';
import { appliedLoads, inertiaLoads, lineLoadRange, pressureRange, supports } from '../../../src/model/Loads';
import type { ModelFacts, Result } from '../../../src/model/Result';
import { facts, shellResult, withLoads } from '../support/Results';

function loaded(part: Partial<ModelFacts>): Result {
    const result = shellResult([[0, 0, 0], [1, 0, 0], [0, 1, 0]], [], [[0, 1, 2]]); // prettier-ignore
    result.model = { ...facts(result), ...part };
    return result;
}

test('forces and moments are arrows apart, and what is zero is none', () => {
    const { forces, moments } = appliedLoads(
        loaded({
            forceNodes: Uint32Array.of(2, 0, 1),
            forces: Float32Array.of(3, 4, 0, 0, 0, 0, 0, 0, 0, 0, 0, -2, 0, 0, 1, 0, 7, 0),
        }),
    );
    expect([...forces.nodes]).toEqual([2, 1]);
    expect([...forces.vectors]).toEqual([3, 4, 0, 0, 0, 1]);
    expect(forces.longest).toBe(5);
    expect([...moments.nodes]).toEqual([0, 1]);
    expect([...moments.vectors]).toEqual([0, 0, -2, 0, 7, 0]);
    expect(moments.longest).toBe(7);
});

test('inertia loads stand at the nodes of the structure', () => {
    const inertiaForces = new Float32Array(18);
    inertiaForces.set([0, 0, -9], 6);
    const { forces, moments } = inertiaLoads(loaded({ inertiaForces }));
    expect([...forces.nodes]).toEqual([1]);
    expect([...forces.vectors]).toEqual([0, 0, -9]);
    expect(moments.nodes.length).toBe(0);
    expect(inertiaLoads(loaded({})).forces.nodes.length).toBe(0);
});

test('inertia loads have moments of their own', () => {
    const inertiaForces = new Float32Array(18);
    inertiaForces.set([0, 0, -9, 2, 0, 0], 12);
    const { moments } = inertiaLoads(loaded({ inertiaForces }));
    expect([...moments.nodes]).toEqual([2]);
    expect([...moments.vectors]).toEqual([2, 0, 0]);
});

test('pressures of both kinds of shells have one range, line loads another', () => {
    const result = withLoads(loaded({}), {
        quadPressures: Float32Array.of(-3, 1, NaN, 2),
        triPressures: Float32Array.of(5, 0, 1),
        lineLoads: Float32Array.of(7, 7),
    });
    expect(pressureRange(result)).toEqual([-3, 5]);
    expect(lineLoadRange(result)).toEqual([7, 7]);
});

test('a range ends at zero and not at round-off', () => {
    const part = { quadPressures: Float32Array.of(-90526.5, 9.1e-12, 0, -1) };
    expect(pressureRange(withLoads(loaded({}), part))).toEqual([-90526.5, 0]);
});

test('loads of zero, and models that tell of none, have no range', () => {
    expect(pressureRange(withLoads(loaded({}), { triPressures: new Float32Array(3) }))).toBeUndefined();
    expect(pressureRange(loaded({}))).toBeUndefined();
    expect(lineLoadRange(loaded({}))).toBeUndefined();
});

test('a node with several supports has the directions of all', () => {
    const { nodes, bits } = supports(
        loaded({ supportNodes: Uint32Array.of(2, 0, 2, 1), supportBits: Uint32Array.of(1, 7, 4, 0) }),
    );
    expect([...nodes]).toEqual([0, 2]);
    expect([...bits]).toEqual([7, 5]);
});

test('without the model there is nothing to draw', () => {
    const result = loaded({});
    delete result.model;
    expect(appliedLoads(result).forces.nodes.length).toBe(0);
    expect(inertiaLoads(result).moments.nodes.length).toBe(0);
    expect(supports(result).nodes.length).toBe(0);
});
