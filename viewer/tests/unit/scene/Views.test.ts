import { expect, test } from 'vitest';
import { Projection } from '../../../src/scene/Projection';
import { dot, minus, type Vec3 } from '../../../src/scene/Vectors';
import { fitted, panned, standardView, turned, zoomed } from '../../../src/scene/Views';

const BOX = [-2, 6, 1, 4, 0, 10];
const WIDTH = 800;
const HEIGHT = 500;

function corners(): Vec3[] {
    return Array.from({ length: 8 }, (_, i) => [BOX[i & 1], BOX[2 + ((i >> 1) & 1)], BOX[4 + (i >> 2)]]);
}

const CONTENT = { points: Float32Array.from(corners().flat()), around: 0 };

test.each([true, false])('all corners of the box are within a fitted picture, parallel: %s', (parallel) => {
    for (const view of ['iso', 'front', 'back', 'left', 'right', 'top', 'bottom'] as const) {
        const camera = standardView(view, CONTENT, WIDTH / HEIGHT, parallel);
        const projection = new Projection(camera, parallel, WIDTH, HEIGHT);
        const pixels = corners().map((corner) => projection.toPixel(corner)!);
        for (const [x, y] of pixels) {
            expect(x).toBeGreaterThan(0);
            expect(x).toBeLessThan(WIDTH);
            expect(y).toBeGreaterThan(0);
            expect(y).toBeLessThan(HEIGHT);
        }
        const fills = (i: 0 | 1, size: number) =>
            (Math.max(...pixels.map((p) => p[i])) - Math.min(...pixels.map((p) => p[i]))) / size;
        expect(Math.max(fills(0, WIDTH), fills(1, HEIGHT))).toBeGreaterThan(0.75);
    }
});

test.each([true, false])('the ray through a pixel meets the point that is seen there, parallel: %s', (parallel) => {
    const camera = standardView('iso', CONTENT, WIDTH / HEIGHT, parallel);
    const projection = new Projection(camera, parallel, WIDTH, HEIGHT);
    for (const corner of corners()) {
        const ray = projection.ray(...projection.toPixel(corner)!);
        const from = minus(corner, ray.origin);
        const along = dot(from, ray.direction);
        expect(Math.hypot(...from.map((x, i) => x - along * ray.direction[i]))).toBeLessThan(1e-10);
    }
});

test('the point under the pointer stays in its place when zooming', () => {
    const camera = standardView('iso', CONTENT, WIDTH / HEIGHT, true);
    const [x, y] = [650, 120];
    const { origin } = new Projection(camera, true, WIDTH, HEIGHT).ray(x, y);
    const nearer = zoomed(camera, 1.7, (2 * x - WIDTH) / HEIGHT, (2 * y - HEIGHT) / HEIGHT);
    const pixel = new Projection(nearer, true, WIDTH, HEIGHT).toPixel(origin)!;
    expect(pixel[0]).toBeCloseTo(x, 8);
    expect(pixel[1]).toBeCloseTo(y, 8);
});

test('a focal point looks equally large in parallel and in perspective', () => {
    const camera = zoomed(fitted(standardView('top', CONTENT, 1, false), CONTENT, 1, false), 2.5);
    const beside: Vec3 = [camera.focalPoint[0] + 0.5, camera.focalPoint[1], camera.focalPoint[2]];
    const [a, b] = [true, false].map((parallel) => new Projection(camera, parallel, WIDTH, HEIGHT).toPixel(beside)!);
    expect(a[0]).toBeCloseTo(b[0], 8);
});

test('dragging to the right and down moves what is in front that way', () => {
    const camera = standardView('front', CONTENT, 1, true);
    const front: Vec3 = [camera.focalPoint[0], BOX[2], camera.focalPoint[2]];
    const middle = [WIDTH / 2, HEIGHT / 2];
    for (const moved of [turned(camera, 0.2, 0.1), panned(camera, 0.2, 0.1)]) {
        const pixel = new Projection(moved, true, WIDTH, HEIGHT).toPixel(front)!;
        expect(pixel[0]).toBeGreaterThan(middle[0]);
        expect(pixel[1]).toBeGreaterThan(middle[1]);
    }
});

test('what is behind the eye stands nowhere in a perspective picture', () => {
    const camera = standardView('front', CONTENT, 1, false);
    const behind: Vec3 = [camera.position[0], camera.position[1] - 1, camera.position[2]];
    expect(new Projection(camera, false, WIDTH, HEIGHT).toPixel(behind)).toBeUndefined();
});

test('a slanting bar fills a fitted picture from end to end', () => {
    const bar = { points: Float32Array.of(0, 0, 0, 9, 12, 8), around: 0 };
    const aspect = WIDTH / HEIGHT;
    for (const view of ['iso', 'front', 'left', 'top'] as const) {
        const projection = new Projection(standardView(view, bar, aspect, true), true, WIDTH, HEIGHT);
        const [a, b] = [0, 3].map((i) => projection.toPixel([bar.points[i], bar.points[i + 1], bar.points[i + 2]])!);
        const part = Math.max(Math.abs(a[0] - b[0]) / WIDTH, Math.abs(a[1] - b[1]) / HEIGHT);
        expect(part).toBeCloseTo(1 / 1.08, 6);
    }
});

test('what stands out of the points has its place in a fitted picture', () => {
    const around = 3;
    const camera = standardView('front', { ...CONTENT, around }, WIDTH / HEIGHT, true);
    const projection = new Projection(camera, true, WIDTH, HEIGHT);
    expect(projection.toPixel([2, 2.5, BOX[5] + around])![1]).toBeGreaterThan(0);
    expect(projection.toPixel([2, 2.5, BOX[4] - around])![1]).toBeLessThan(HEIGHT);
});
