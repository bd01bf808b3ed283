import { expect, test } from 'vitest';
import { mapping } from '../../../src/app/Compose';

test('a picture of another shape shows the same height of the model, its middle in the middle', () => {
    const map = mapping({ width: 1000, height: 500 }, { width: 1600, height: 1000 });
    expect(map([500, 250])).toEqual([800, 500]);
    expect(map([500, 0])).toEqual([800, 0]);
    expect(map([600, 500])).toEqual([1000, 1000]);
});
