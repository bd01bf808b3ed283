import { expect, test } from 'vitest';
import { bounds, defaultScale, diagonal } from '../../../src/scene/Motion';
import { plateStrip } from './models';

test('the default scale shows the largest displacement as 5 % of the diagonal', () => {
    const result = plateStrip(4, 3);
    // The largest displacement is 1, the plate is 4 by 3.
    expect(defaultScale(result)).toBeCloseTo(0.25, 6);
});

test('the default scale is 1 where nothing moves', () => {
    const result = plateStrip(4, 3);
    result.displacements.fill(0);
    expect(defaultScale(result)).toBe(1);
});

test('bounds hold the deformed structure', () => {
    expect(bounds(plateStrip(4, 3), 2)).toEqual([0, 4, 0, 3, 0, 2]);
    expect(diagonal(bounds(plateStrip(4, 3), 0))).toBe(5);
});
