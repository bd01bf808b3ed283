import type { Result } from '../model/Result';

/** Extent of the undeformed structure: x, y, z from, x, y, z to. */
export function bounds({ coordinates }: Result): [number, number, number, number, number, number] {
    const box: [number, number, number, number, number, number] = [
        Infinity,
        Infinity,
        Infinity,
        -Infinity,
        -Infinity,
        -Infinity,
    ];
    for (let i = 0; i < coordinates.length; ++i) {
        const axis = i % 3;
        if (coordinates[i] < box[axis]) box[axis] = coordinates[i];
        if (coordinates[i] > box[axis + 3]) box[axis + 3] = coordinates[i];
    }
    return coordinates.length > 0 ? box : [0, 0, 0, 0, 0, 0];
}
