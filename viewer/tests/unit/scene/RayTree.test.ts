import { expect, test } from 'vitest';
import { RayTree, type Hit } from '../../../src/scene/RayTree';
import { unit, type Vec3 } from '../../../src/scene/Vectors';

/** Numbers from 0 to 1 that are the same in every run. */
function sequence(seed: number): () => number {
    let state = seed;
    return () => (state = (state * 16807) % 2147483647) / 2147483647;
}

function triangleCloud(count: number): { nodes: Uint32Array; places: Float32Array } {
    const random = sequence(7);
    const places = new Float32Array(9 * count);
    for (let triangle = 0; triangle < count; ++triangle) {
        const centre = [10 * random(), 10 * random(), 0.1 * random()];
        for (let i = 0; i < 9; ++i) places[9 * triangle + i] = centre[i % 3] + random() - 0.5;
    }
    return { nodes: Uint32Array.from({ length: 3 * count }, (_, i) => i), places };
}

const everything = () => true;

test('the first triangle along a ray is the nearest of those that each triangle alone gives', () => {
    const { nodes, places } = triangleCloud(500);
    const tree = new RayTree(nodes, places);
    const alone = Array.from({ length: 500 }, (_, i) => new RayTree(nodes.subarray(3 * i, 3 * i + 3), places));
    const random = sequence(11);
    let hits = 0;
    for (let i = 0; i < 200; ++i) {
        const origin: Vec3 = [10 * random(), 10 * random(), 5];
        const ray = { origin, direction: unit([random() - 0.5, random() - 0.5, -1]) };
        const nearest = alone
            .map((each) => each.cast(ray, everything)?.distance ?? Infinity)
            .reduce((least, distance) => Math.min(least, distance), Infinity);
        expect(tree.cast(ray, everything)?.distance ?? Infinity).toBe(nearest);
        if (nearest < Infinity) ++hits;
    }
    expect(hits).toBeGreaterThan(40);
});

test('a ray along an axis within the plane of a box hits', () => {
    const nodes = Uint32Array.of(0, 1, 2);
    const places = Float32Array.of(0, 0, 0, 1, 0, 0, 0, 0, 1);
    const hit = new RayTree(nodes, places).cast({ origin: [0.25, -3, 0.25], direction: [0, 1, 0] }, everything);
    expect(hit).toEqual({ triangle: 0, distance: 3, u: 0.25, v: 0.25 } satisfies Hit);
});

test('what is not accepted lets the ray through to what is behind', () => {
    const nodes = Uint32Array.of(0, 1, 2, 3, 4, 5);
    const places = Float32Array.of(0, 0, 2, 1, 0, 2, 0, 1, 2, 0, 0, 1, 1, 0, 1, 0, 1, 1);
    const ray = { origin: [0.2, 0.2, 5] as Vec3, direction: [0, 0, -1] as Vec3 };
    const tree = new RayTree(nodes, places);
    expect(tree.cast(ray, everything)?.triangle).toBe(0);
    expect(tree.cast(ray, (hit) => hit.triangle !== 0)?.triangle).toBe(1);
});

test('after a refit rays hit the triangles in their new places', () => {
    const { nodes, places } = triangleCloud(300);
    const tree = new RayTree(nodes, places);
    const moved = places.map((x, i) => (i % 3 === 2 ? x + 4 : x * 2));
    tree.refit(moved);
    const fresh = new RayTree(nodes, moved);
    for (let i = 0; i < 50; ++i) {
        const ray = { origin: [0.4 * i, 0.37 * i, 20] as Vec3, direction: [0, 0, -1] as Vec3 };
        expect(tree.cast(ray, everything)).toEqual(fresh.cast(ray, everything));
    }
});

test('without triangles nothing is hit', () => {
    const tree = new RayTree(new Uint32Array(0), new Float32Array(0));
    expect(tree.cast({ origin: [0, 0, 1], direction: [0, 0, -1] }, everything)).toBeUndefined();
});
