// Which triangle a ray hits first. Triangles are ordered once along a Morton curve; a complete binary tree of boxes over
// this order is filled anew, in one pass, whenever the places of the nodes have changed: O(N) both.
// Source of the order: C. Lauterbach et al., Computer Graphics Forum 28 (2009) 375–384.
import type { Ray } from './Projection';

export interface Hit {
    triangle: number;
    /** Along the ray. */
    distance: number;
    /** Weights of the second and third corner. */
    u: number;
    v: number;
}

const LEAF_SIZE = 4;
/** Per axis; three axes fill the 30 bits that a radix sort of three passes takes. */
const MORTON_BITS = 10;
const DIGITS = 1 << MORTON_BITS;

export class RayTree {
    private readonly order: Uint32Array;
    private readonly leafCount: number;
    /** Box i has the boxes 2i and 2i + 1 below it; leaves are from leafCount on. x, y, z from, x, y, z to. */
    private readonly boxes: Float32Array;
    private places: Float32Array;

    /** corners: 3 indices of nodes per triangle; places: 3 per node. */
    constructor(
        private readonly nodes: Uint32Array,
        places: Float32Array,
    ) {
        this.places = places;
        this.order = mortonOrder(nodes, places);
        this.leafCount = 1;
        while (this.leafCount * LEAF_SIZE < this.order.length) this.leafCount *= 2;
        this.boxes = new Float32Array(12 * this.leafCount);
        this.refit(places);
    }

    refit(places: Float32Array): void {
        this.places = places;
        const { boxes, order, nodes, leafCount } = this;
        for (let leaf = 0; leaf < leafCount; ++leaf) {
            const box = 6 * (leafCount + leaf);
            boxes.fill(Infinity, box, box + 3);
            boxes.fill(-Infinity, box + 3, box + 6);
            const end = Math.min(order.length, LEAF_SIZE * (leaf + 1));
            for (let i = LEAF_SIZE * leaf; i < end; ++i) {
                for (let corner = 3 * order[i]; corner < 3 * order[i] + 3; ++corner) {
                    const place = 3 * nodes[corner];
                    for (let axis = 0; axis < 3; ++axis) {
                        const x = places[place + axis];
                        if (x < boxes[box + axis]) boxes[box + axis] = x;
                        if (x > boxes[box + 3 + axis]) boxes[box + 3 + axis] = x;
                    }
                }
            }
        }
        for (let i = leafCount - 1; i > 0; --i) {
            for (let axis = 0; axis < 3; ++axis) {
                boxes[6 * i + axis] = Math.min(boxes[12 * i + axis], boxes[12 * i + 6 + axis]);
                boxes[6 * i + 3 + axis] = Math.max(boxes[12 * i + 3 + axis], boxes[12 * i + 9 + axis]);
            }
        }
    }

    /** The first hit that is accepted. */
    cast(ray: Ray, accepts: (hit: Hit) => boolean): Hit | undefined {
        let best: Hit | undefined;
        const inverse = ray.direction.map((x) => 1 / x);
        const stack = [1];
        const distances = [this.enter(1, ray, inverse)];
        while (stack.length > 0) {
            const box = stack.pop()!;
            const distance = distances.pop()!;
            if (!(distance < (best?.distance ?? Infinity))) continue;
            if (box >= this.leafCount) {
                best = this.castLeaf(box - this.leafCount, ray, best, accepts);
                continue;
            }
            const left = this.enter(2 * box, ray, inverse);
            const right = this.enter(2 * box + 1, ray, inverse);
            // The nearer one is looked at first.
            const order = left < right ? [2 * box + 1, right, 2 * box, left] : [2 * box, left, 2 * box + 1, right];
            if (order[1] < Infinity) (distances.push(order[1]), stack.push(order[0]));
            if (order[3] < Infinity) (distances.push(order[3]), stack.push(order[2]));
        }
        return best;
    }

    private castLeaf(leaf: number, ray: Ray, best: Hit | undefined, accepts: (hit: Hit) => boolean): Hit | undefined {
        const end = Math.min(this.order.length, LEAF_SIZE * (leaf + 1));
        for (let i = LEAF_SIZE * leaf; i < end; ++i) {
            const hit = hitTriangle(ray, this.order[i], this.nodes, this.places);
            if (hit && hit.distance < (best?.distance ?? Infinity) && accepts(hit)) best = hit;
        }
        return best;
    }

    /** Where a ray comes into a box; Infinity: never. Also behind its origin, since parallel rays have no beginning. */
    private enter(box: number, ray: Ray, inverse: number[]): number {
        let from = -Infinity;
        let to = Infinity;
        for (let axis = 0; axis < 3; ++axis) {
            const low = this.boxes[6 * box + axis] - ray.origin[axis];
            const high = this.boxes[6 * box + 3 + axis] - ray.origin[axis];
            if (low > high) return Infinity;
            if (ray.direction[axis] === 0) {
                if (low > 0 || high < 0) return Infinity;
                continue;
            }
            const a = low * inverse[axis];
            const b = high * inverse[axis];
            from = Math.max(from, Math.min(a, b));
            to = Math.min(to, Math.max(a, b));
        }
        return from <= to ? from : Infinity;
    }
}

/** Source: T. Möller, B. Trumbore, J. Graphics Tools 2 (1997) 21–28. */
function hitTriangle(ray: Ray, triangle: number, nodes: Uint32Array, x: Float32Array): Hit | undefined {
    const a = 3 * nodes[3 * triangle];
    const b = 3 * nodes[3 * triangle + 1];
    const c = 3 * nodes[3 * triangle + 2];
    const [dx, dy, dz] = ray.direction;
    const e1x = x[b] - x[a];
    const e1y = x[b + 1] - x[a + 1];
    const e1z = x[b + 2] - x[a + 2];
    const e2x = x[c] - x[a];
    const e2y = x[c + 1] - x[a + 1];
    const e2z = x[c + 2] - x[a + 2];
    const px = dy * e2z - dz * e2y;
    const py = dz * e2x - dx * e2z;
    const pz = dx * e2y - dy * e2x;
    const determinant = e1x * px + e1y * py + e1z * pz;
    if (determinant === 0) return undefined;
    const sx = ray.origin[0] - x[a];
    const sy = ray.origin[1] - x[a + 1];
    const sz = ray.origin[2] - x[a + 2];
    const u = (sx * px + sy * py + sz * pz) / determinant;
    if (u < 0 || u > 1) return undefined;
    const qx = sy * e1z - sz * e1y;
    const qy = sz * e1x - sx * e1z;
    const qz = sx * e1y - sy * e1x;
    const v = (dx * qx + dy * qy + dz * qz) / determinant;
    if (v < 0 || u + v > 1) return undefined;
    return { triangle, u, v, distance: (e2x * qx + e2y * qy + e2z * qz) / determinant };
}

function mortonOrder(nodes: Uint32Array, places: Float32Array): Uint32Array {
    const count = nodes.length / 3;
    const low = [Infinity, Infinity, Infinity];
    const high = [-Infinity, -Infinity, -Infinity];
    for (let i = 0; i < nodes.length; ++i) {
        for (let axis = 0; axis < 3; ++axis) {
            const x = places[3 * nodes[i] + axis];
            if (x < low[axis]) low[axis] = x;
            if (x > high[axis]) high[axis] = x;
        }
    }
    const size = Math.max(high[0] - low[0], high[1] - low[1], high[2] - low[2]);
    const steps = size > 0 ? (DIGITS - 1) / size : 0;
    const codes = new Uint32Array(count);
    for (let triangle = 0; triangle < count; ++triangle) {
        for (let axis = 0; axis < 3; ++axis) {
            let sum = 0;
            for (let corner = 0; corner < 3; ++corner) sum += places[3 * nodes[3 * triangle + corner] + axis];
            codes[triangle] |= spread(Math.floor((sum / 3 - low[axis]) * steps)) << axis;
        }
    }
    return radixSorted(codes);
}

/** Bits of a number of MORTON_BITS, with two free places between each. */
function spread(x: number): number {
    x = (x | (x << 16)) & 0x030000ff;
    x = (x | (x << 8)) & 0x0300f00f;
    x = (x | (x << 4)) & 0x030c30c3;
    return (x | (x << 2)) & 0x09249249;
}

function radixSorted(codes: Uint32Array): Uint32Array {
    let order = Uint32Array.from(codes, (_, i) => i);
    let next = new Uint32Array(codes.length);
    for (let shift = 0; shift < 3 * MORTON_BITS; shift += MORTON_BITS) {
        const begin = new Uint32Array(DIGITS + 1);
        for (let i = 0; i < codes.length; ++i) ++begin[((codes[i] >> shift) & (DIGITS - 1)) + 1];
        for (let digit = 0; digit < DIGITS; ++digit) begin[digit + 1] += begin[digit];
        for (let i = 0; i < order.length; ++i) next[begin[(codes[order[i]] >> shift) & (DIGITS - 1)]++] = order[i];
        [order, next] = [next, order];
    }
    return order;
}
