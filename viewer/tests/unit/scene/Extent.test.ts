import { expect, test } from 'vitest';
import { shownPoints } from '../../../src/scene/Extent';
import { Surface } from '../../../src/scene/Surface';
import type { ClipPlane } from '../../../src/scene/Visibility';
import { plateStrip } from './models';

/** Of x, from and to. */
function reach(hidden: number[], plane?: ClipPlane): [number, number] {
    const result = plateStrip(4, 1);
    const shown = Uint8Array.from({ length: 4 }, (_, element) => (hidden.includes(element) ? 0 : 1));
    const x = shownPoints(new Surface(result), shown, result.coordinates, plane).filter((_, i) => i % 3 === 0);
    return [Math.min(...x), Math.max(...x)];
}

test('what is shown reaches from its first node to its last', () => {
    expect(reach([])).toEqual([0, 4]);
    expect(reach([0])).toEqual([1, 4]);
});

test('it ends at the plane that cuts it', () => {
    expect(reach([], { normal: [1, 0, 0], distance: 2.25 })).toEqual([0, 2.25]);
    expect(reach([3], { normal: [-1, 0, 0], distance: -1.5 })).toEqual([1.5, 3]);
});

test('nothing has no points', () => {
    const result = plateStrip(1, 1);
    expect(shownPoints(new Surface(result), Uint8Array.of(0), result.coordinates, undefined)).toHaveLength(0);
});
