// Where arrows stand: those of nodes at the nodes, pressures spread over the faces of shells, line loads in rows along
// beams. All of them move with the structure.
import { GrowingFloats, GrowingIntegers } from '../model/GrowingArray';
import { lineLoadRange, pressureRange, type Arrows } from '../model/Loads';
import { DOFS, type Result } from '../model/Result';
import { add, at, cross, dot, minus, norm, scaled, unit, type Vec3 } from './Vectors';

/** 3 per arrow. */
export interface ArrowSet {
    /** Of the point, where the load acts, and how that place moves. */
    places: Float32Array;
    motions: Float32Array;
    vectors: Float32Array;
    /** Length of the longest of all vectors of this kind; 0 where there are none. */
    longest: number;
}

/** Arrows in rows, some of them perhaps of length zero: row r from rowBegin[r] to rowBegin[r + 1]. */
export interface ArrowRows extends ArrowSet {
    rowBegin: Uint32Array;
}

/** At most about so many arrows are tried, however large elements are beside the spacing. */
const MOST_TRIED = 200_000;

/** coordinates, motion: 3 per node. */
export function nodalArrows(arrows: Arrows, coordinates: Float32Array, motion: Float32Array): ArrowSet {
    const { nodes, vectors, longest } = arrows;
    return { places: ofNodes(coordinates, nodes), motions: ofNodes(motion, nodes), vectors, longest };
}

/** 3 values of each of the nodes. */
export function ofNodes(values: Float32Array, nodes: Uint32Array): Float32Array {
    const gathered = new Float32Array(3 * nodes.length);
    nodes.forEach((node, i) => gathered.set(values.subarray(3 * node, 3 * node + 3), 3 * i));
    return gathered;
}

/**
 * One arrow in the middle of each shell, or more where it is larger than the spacing; along the normal of its first
 * three nodes where the pressure is positive. motion: 3 per node; visible: 1 for each element of the surface that is.
 */
export function pressureArrows(result: Result, motion: Float32Array, visible: Uint8Array, spacing: number): ArrowSet {
    const loads = result.model?.distributed;
    const list = new ArrowList(largestOf(pressureRange(result)));
    if (!loads) return list.arrows();
    const mostAcross = Math.floor(Math.sqrt(MOST_TRIED / (loads.quads.length + loads.tris.length || 1)));
    const parts = (length: number) => divisions(length, spacing, mostAcross);
    const addShell = (
        vertices: Uint32Array,
        pressures: Float32Array,
        pointsOf: (corners: Vec3[]) => Weights[],
    ): void => {
        const nodes = Array.from(vertices, (vertex) => result.vertexNodes[vertex]);
        const corners = nodes.map((node) => at(result.coordinates, node));
        const motions = nodes.map((node) => at(motion, node));
        const normal = unit(cross(minus(corners[1], corners[0]), minus(corners[2], corners[0])));
        for (const weights of pointsOf(corners)) {
            const pressure = weights.reduce((sum, weight, i) => sum + weight * pressures[i], 0);
            if (pressure === 0 || !Number.isFinite(pressure)) continue;
            list.add(mean(corners, weights), mean(motions, weights), scaled(normal, pressure));
        }
    };
    const quadParts = ([a, b, c, d]: Vec3[]) =>
        quadPoints(parts((distance(a, b) + distance(d, c)) / 2), parts((distance(b, c) + distance(a, d)) / 2));
    const triParts = ([a, b, c]: Vec3[]) => triPoints(parts((distance(a, b) + distance(b, c) + distance(c, a)) / 3));
    loads.quads.forEach((quad, i) => {
        if (!visible[quad]) return;
        addShell(
            result.quads.subarray(4 * quad, 4 * quad + 4),
            loads.quadPressures.subarray(4 * i, 4 * i + 4),
            quadParts,
        );
    });
    const firstTri = result.quads.length / 4;
    loads.tris.forEach((tri, i) => {
        if (!visible[firstTri + tri]) return;
        addShell(result.tris.subarray(3 * tri, 3 * tri + 3), loads.triPressures.subarray(3 * i, 3 * i + 3), triParts);
    });
    return list.arrows();
}

/** A row along each beam, from end to end, arrows no nearer to each other than the spacing. */
export function lineLoadArrows(result: Result, motion: Float32Array, visible: Uint8Array, spacing: number): ArrowRows {
    const { model, beams } = result;
    const list = new ArrowList(largestOf(lineLoadRange(result)));
    const rowBegin = new GrowingIntegers();
    const loads = model?.distributed;
    const isVisible = (beam: number) => visible.subarray(beams.wallBegin[beam], beams.wallBegin[beam + 1]).includes(1);
    const mostAlong = Math.floor(MOST_TRIED / (loads?.beams.length || 1));
    loads?.beams.forEach((beam, i) => {
        if (!isVisible(beam)) return;
        const [first, second] = [at(beams.ends, 2 * beam), at(beams.ends, 2 * beam + 1)];
        const [from, to] = [loads.lineLoads[2 * i], loads.lineLoads[2 * i + 1]];
        const direction = at(loads.lineDirections, i);
        const moved = bending(result, motion, beam);
        const parts = divisions(distance(first, second), spacing, mostAlong);
        rowBegin.push(list.count);
        for (let part = 0; part <= parts; ++part) {
            const s = part / parts;
            const place = add(scaled(first, 1 - s), scaled(second, s));
            list.add(place, moved(s), scaled(direction, (1 - s) * from + s * to));
        }
    });
    rowBegin.push(list.count);
    return { ...list.arrows(), rowBegin: rowBegin.exact() };
}

/** How the axis of a beam moves, at 0 to 1 of its length: its walls bend with the rotations of its ends (Hermite). */
function bending({ beams, displacements, model }: Result, motion: Float32Array, beam: number): (s: number) => Vec3 {
    const axis = minus(at(beams.ends, 2 * beam + 1), at(beams.ends, 2 * beam));
    const along = unit(axis);
    const [first, second] = [0, 1].map((end) => {
        const node = model!.beamNodes[2 * beam + end];
        const rotation = displacements.subarray(DOFS * node + 3, DOFS * node + DOFS);
        return { moved: at(motion, node), slope: cross(at(rotation, 0), axis) };
    });
    return (s) => {
        const later = s * s * (3 - 2 * s);
        const bent = add(
            add(scaled(first.moved, 1 - later), scaled(second.moved, later)),
            add(scaled(first.slope, s * (1 - s) ** 2), scaled(second.slope, s * s * (s - 1))),
        );
        // Along the beam it moves in proportion.
        return add(bent, scaled(along, (s - later) * dot(minus(second.moved, first.moved), along)));
    };
}

class ArrowList {
    private readonly places = new GrowingFloats();
    private readonly motions = new GrowingFloats();
    private readonly vectors = new GrowingFloats();

    constructor(private readonly longest: number) {}

    get count(): number {
        return this.places.length / 3;
    }

    add(place: Vec3, motion: Vec3, vector: Vec3): void {
        const begin = this.places.extend(3);
        this.motions.extend(3);
        this.vectors.extend(3);
        for (let axis = 0; axis < 3; ++axis) {
            this.places.data[begin + axis] = place[axis];
            this.motions.data[begin + axis] = motion[axis];
            this.vectors.data[begin + axis] = vector[axis];
        }
    }

    arrows(): ArrowSet {
        return {
            places: this.places.exact(),
            motions: this.motions.exact(),
            vectors: this.vectors.exact(),
            longest: this.longest,
        };
    }
}

function largestOf(range: [number, number] | undefined): number {
    return range ? Math.max(Math.abs(range[0]), Math.abs(range[1])) : 0;
}

function divisions(length: number, spacing: number, most: number): number {
    return Math.max(1, Math.min(most, Math.floor(length / spacing)) || 1);
}

/** Of the corners of an element, for a place on it. */
type Weights = number[];

/** In the middle of each part. */
function quadPoints(across: number, along: number): Weights[] {
    const points: Weights[] = [];
    for (let i = 0; i < across; ++i) {
        for (let j = 0; j < along; ++j) {
            const [x, y] = [(i + 0.5) / across, (j + 0.5) / along];
            points.push([(1 - x) * (1 - y), x * (1 - y), x * y, (1 - x) * y]);
        }
    }
    return points;
}

/** Likewise, in triangles of equal size, of which every second one stands upside down. */
function triPoints(parts: number): Weights[] {
    const points: Weights[] = [];
    for (let i = 0; i < parts; ++i) {
        for (let j = 0; i + j < parts; ++j) {
            for (const third of i + j < parts - 1 ? [1 / 3, 2 / 3] : [1 / 3]) {
                const [x, y] = [(i + third) / parts, (j + third) / parts];
                points.push([1 - x - y, x, y]);
            }
        }
    }
    return points;
}

function mean(vectors: Vec3[], weights: Weights): Vec3 {
    const sum: Vec3 = [0, 0, 0];
    for (let i = 0; i < weights.length; ++i) {
        for (let axis = 0; axis < 3; ++axis) sum[axis] += weights[i] * vectors[i][axis];
    }
    return sum;
}

function distance(a: Vec3, b: Vec3): number {
    return norm(minus(a, b));
}
