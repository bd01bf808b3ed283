// The deformed shape: places of nodes are coordinates + scale · displacement.
import { DOFS, type Result } from '../model/Result';

export type Bounds = [number, number, number, number, number, number];

/** The largest displacement is shown as this part of the diagonal of the model. */
export const DEFAULT_PART = 0.05;

/** x from, x to, y from ... of all nodes at coordinates + scale · displacements; all zero if there are none. */
export function bounds(result: Result, scale: number): Bounds {
    const nodes = result.coordinates.length / 3;
    const box: Bounds = [Infinity, -Infinity, Infinity, -Infinity, Infinity, -Infinity];
    for (let node = 0; node < nodes; ++node) {
        for (let axis = 0; axis < 3; ++axis) {
            const place = result.coordinates[3 * node + axis] + scale * result.displacements[DOFS * node + axis];
            if (place < box[2 * axis]) box[2 * axis] = place;
            if (place > box[2 * axis + 1]) box[2 * axis + 1] = place;
        }
    }
    return nodes > 0 ? box : [0, 0, 0, 0, 0, 0];
}

export function union(a: Bounds, b: Bounds): Bounds {
    return a.map((value, i) => (i % 2 === 0 ? Math.min(value, b[i]) : Math.max(value, b[i]))) as Bounds;
}

export function widened(box: Bounds, by: number): Bounds {
    return box.map((value, i) => (i % 2 === 0 ? value - by : value + by)) as Bounds;
}

export function diagonal(box: Bounds): number {
    return Math.hypot(box[1] - box[0], box[3] - box[2], box[5] - box[4]);
}

/** 1 where nothing moves or the model is a point. */
export function defaultScale(result: Result): number {
    let largest = 0;
    for (let i = 0; i < result.displacements.length; i += DOFS) {
        const [x, y, z] = [result.displacements[i], result.displacements[i + 1], result.displacements[i + 2]];
        const square = x * x + y * y + z * z;
        if (square > largest) largest = square;
    }
    const scale = (DEFAULT_PART * diagonal(bounds(result, 0))) / Math.sqrt(largest);
    return Number.isFinite(scale) && scale > 0 ? scale : 1;
}

/** 3 per node. */
export function translations(result: Result): Float32Array {
    const nodes = result.displacements.length / DOFS;
    const motion = new Float32Array(3 * nodes);
    for (let node = 0; node < nodes; ++node) {
        for (let axis = 0; axis < 3; ++axis) motion[3 * node + axis] = result.displacements[DOFS * node + axis];
    }
    return motion;
}

/** Places of all nodes, 3 each, written into the array given. */
export function place(coordinates: Float32Array, motion: Float32Array, scale: number, out: Float32Array): void {
    for (let i = 0; i < out.length; ++i) out[i] = coordinates[i] + scale * motion[i];
}
