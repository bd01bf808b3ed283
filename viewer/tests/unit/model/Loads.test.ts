import { expect, test } from 'vitest';
import { appliedLoads, inertiaLoads, supports } from '../../../src/model/Loads';
import type { ModelFacts, Result } from '../../../src/model/Result';
import { facts, shellResult } from '../support/Results';

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
