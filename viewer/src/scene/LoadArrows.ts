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
    const nodesOf = (vertices: Uint32Array) => Array.from(vertices, (vertex) => result.vertexNodes[vertex]);
    const edge = (a: number, b: number) => norm(minus(at(result.coordinates, a), at(result.coordinates, b)));
    const addShell = (nodes: number[], pressures: Float32Array, points: number[][]): void => {
        const [first, second, third] = nodes.map((node) => at(result.coordinates, node));
        const normal = unit(cross(minus(second, first), minus(third, first)));
        for (const weights of points) {
            const pressure = weights.reduce((sum, weight, i) => sum + weight * pressures[i], 0);
            if (pressure === 0 || !Number.isFinite(pressure)) continue;
            list.add(mean(result.coordinates, nodes, weights), mean(motion, nodes, weights), scaled(normal, pressure));
        }
    };
    loads.quads.forEach((quad, i) => {
        if (!visible[quad]) return;
        const nodes = nodesOf(result.quads.subarray(4 * quad, 4 * quad + 4));
        const [a, b, c, d] = nodes;
        const points = quadPoints(parts((edge(a, b) + edge(d, c)) / 2), parts((edge(b, c) + edge(a, d)) / 2));
        addShell(nodes, loads.quadPressures.subarray(4 * i, 4 * i + 4), points);
    });
    const firstTri = result.quads.length / 4;
    loads.tris.forEach((tri, i) => {
        if (!visible[firstTri + tri]) return;
        const nodes = nodesOf(result.tris.subarray(3 * tri, 3 * tri + 3));
        const [a, b, c] = nodes;
        const points = triPoints(parts((edge(a, b) + edge(b, c) + edge(c, a)) / 3));
        addShell(nodes, loads.triPressures.subarray(3 * i, 3 * i + 3), points);
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
        const parts = divisions(norm(minus(second, first)), spacing, mostAlong);
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
        for (const [list, values] of [
            [this.places, place],
            [this.motions, motion],
            [this.vectors, vector],
        ] as const) {
            const begin = list.extend(3);
            list.data.set(values, begin);
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

/** Weights of the corners in the middle of each part. */
function quadPoints(across: number, along: number): number[][] {
    const points: number[][] = [];
    for (let i = 0; i < across; ++i) {
        for (let j = 0; j < along; ++j) {
            const [x, y] = [(i + 0.5) / across, (j + 0.5) / along];
            points.push([(1 - x) * (1 - y), x * (1 - y), x * y, (1 - x) * y]);
        }
    }
    return points;
}

/** Likewise, in triangles of equal size, of which every second one stands upside down. */
function triPoints(parts: number): number[][] {
    const points: number[][] = [];
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

/** Of 3 values per node. */
function mean(values: Float32Array, nodes: number[], weights: number[]): Vec3 {
    return nodes.reduce<Vec3>((sum, node, i) => add(sum, scaled(at(values, node), weights[i])), [0, 0, 0]);
}
