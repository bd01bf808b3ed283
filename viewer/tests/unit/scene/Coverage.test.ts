import { expect, test } from 'vitest';
import { coveredSquares, SQUARE } from '../../../src/scene/Coverage';
import { Projection } from '../../../src/scene/Projection';
import { Surface } from '../../../src/scene/Surface';
import { standardView } from '../../../src/scene/Views';
import type { ClipPlane } from '../../../src/scene/Visibility';
import { plateStrip } from './models';

const WIDTH = 840;
const HEIGHT = 480;

/** From above, of a plate that is as wide as the picture: extent and number of the squares. */
function covered(
    columns: number,
    rows: number,
    plane?: ClipPlane,
): { x: [number, number]; y: [number, number]; count: number } {
    const result = plateStrip(columns, rows);
    const content = { points: result.coordinates, around: 0 };
    const projection = new Projection(standardView('top', content, WIDTH / HEIGHT, true), true, WIDTH, HEIGHT);
    const all = new Uint8Array(columns * rows).fill(1);
    const middles = coveredSquares(new Surface(result), all, result.coordinates, plane, projection);
    const x = middles.filter((_, i) => i % 2 === 0);
    const y = middles.filter((_, i) => i % 2 === 1);
    return { x: [Math.min(...x), Math.max(...x)], y: [Math.min(...y), Math.max(...y)], count: x.length };
}

test.each([
    ['one element', 2, 1],
    ['elements of a square each', 140, 70],
    ['more elements than are looked at', 400, 200],
])('%s: the squares under a plate are covered, those beside it are not', (_, columns, rows) => {
    const { x, y, count } = covered(columns, rows);
    const [wide, high] = [x[1] - x[0] + SQUARE, y[1] - y[0] + SQUARE];
    // 1 / 1.08 of the picture; of many elements the outermost column may not be among those looked at.
    expect(wide / WIDTH).toBeGreaterThan(0.92 - (2 * SQUARE) / WIDTH);
    expect(high / wide).toBeCloseTo(0.5, 1);
    expect(count * SQUARE * SQUARE).toBeGreaterThan(0.7 * wide * high);
});

test('what is cut away covers nothing', () => {
    const { x } = covered(10, 5, { normal: [1, 0, 0], distance: 5 });
    expect(x[1]).toBeLessThan(WIDTH / 2 + SQUARE);
});
