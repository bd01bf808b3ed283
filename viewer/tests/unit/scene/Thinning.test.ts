import { expect, test } from 'vitest';
import { thinned } from '../../../src/scene/Thinning';

/** side x side places at distance 1 in a plane, all with a vector of this length and direction. */
function field(side: number, z: number, vector: [number, number, number]): [number[], number[]] {
    const places: number[] = [];
    const vectors: number[] = [];
    for (let i = 0; i < side * side; ++i) {
        places.push(i % side, Math.floor(i / side), z);
        vectors.push(...vector);
    }
    return [places, vectors];
}

test('as many as may be drawn are all drawn', () => {
    const [places, vectors] = field(3, 0, [0, 0, 1]);
    expect([...thinned(Float32Array.from(places), Float32Array.from(vectors), 9, 0)]).toEqual([...Array(9).keys()]);
});

test('too many are thinned to the number allowed, evenly over rows and columns', () => {
    const [places, vectors] = field(60, 0, [0, 0, -2]);
    const drawn = thinned(Float32Array.from(places), Float32Array.from(vectors), 100, 0);
    expect(drawn.length).toBeLessThanOrEqual(100);
    expect(drawn.length).toBeGreaterThan(40);
    const inCorner = [...drawn].filter((i) => i % 60 < 30 && i < 1800).length;
    expect(Math.abs(inCorner / drawn.length - 0.25)).toBeLessThan(0.08);
});

test('of a cube a long one is drawn, and of those about as long the one in its middle', () => {
    const places = Float32Array.of(0, 0, 0, 0.5, 0.5, 0.5, 0.9, 0.9, 0.9, 2.5, 0, 0);
    const vectors = Float32Array.of(0, 0, 1, 0, 0, 0.95, 0, 0, 1, 0, 0, 1);
    expect([...thinned(places, vectors, 9, 1)]).toEqual([1, 3]);
    vectors[2] = 9;
    expect([...thinned(places, vectors, 9, 1)]).toEqual([0, 3]);
});

test('both sides of a gap that is narrower than a cube keep their arrows', () => {
    const [below, up] = field(2, 0, [0, 0, 1]);
    const [above, down] = field(2, 0.1, [0, 0, -5]);
    const drawn = thinned(Float32Array.from([...below, ...above]), Float32Array.from([...up, ...down]), 99, 4);
    expect([...drawn].map((i) => i < 4)).toEqual([true, false]);
});

test('any number at one place leaves one', () => {
    const vectors = new Float32Array(300).fill(1);
    expect(thinned(new Float32Array(300).fill(7), vectors, 10, 0).length).toBe(1);
});
