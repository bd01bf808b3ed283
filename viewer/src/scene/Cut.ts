// The line in which a plane cuts the surface, and the values along it.
import type { FacePair } from '../model/Fields';
import type { Ray } from './Projection';
import type { Surface } from './Surface';
import { add, at, cross, dot, minus, norm, scaled, unit, type Vec3 } from './Vectors';
import type { ClipPlane } from './Visibility';

export interface CutLine {
    /** From its beginning, along the surface. A length stands twice where the value jumps. */
    length: Float32Array;
    value: Float32Array;
    /** 3 per point. */
    points: Float32Array;
}

interface HalfSpace {
    normal: Vec3;
    /** Kept is where normal · x <= distance. */
    distance: number;
}

/** Two points with a value each; key: the edge of the mesh that an end lies on, or -1. */
interface Segment {
    point: [Vec3, Vec3];
    value: [number, number];
    key: [number, number];
}

/**
 * Of the plane through two rays, what lies between them and before the clip plane. Lines run from the first ray towards
 * the second, the longest first.
 */
export function cutSurface(
    surface: Surface,
    values: FacePair,
    shown: Uint8Array,
    places: Float32Array,
    rays: [Ray, Ray],
    plane: ClipPlane | undefined,
): CutLine[] {
    const across = minus(rays[1].origin, rays[0].origin);
    const parallel = norm(across) > 0;
    const normal = unit(parallel ? cross(across, rays[0].direction) : cross(rays[1].direction, rays[0].direction));
    if (norm(normal) === 0) return [];
    const { origin } = rays[0];
    // Which way along the line, seen from the eye.
    const onward = unit(minus(across, scaled(rays[0].direction, dot(across, rays[0].direction))));
    const forward = parallel ? onward : unit(minus(rays[1].direction, rays[0].direction));
    const limits: HalfSpace[] = rays.map((ray, i) => {
        const end = unit(cross(normal, ray.direction));
        const outwards = scaled(end, (dot(end, forward) < 0 ? 1 : -1) * (i === 0 ? 1 : -1));
        return { normal: outwards, distance: dot(outwards, ray.origin) };
    });
    if (plane) limits.push(plane);

    const segments: Segment[] = [];
    const height = new Float64Array(3);
    for (let triangle = 0; triangle < surface.triangles.length / 3; ++triangle) {
        if (!shown[surface.elementOfTriangle(triangle)]) continue;
        let above = 0;
        for (let i = 0; i < 3; ++i) {
            const place = 3 * surface.cornerNode[surface.triangles[3 * triangle + i]];
            height[i] =
                normal[0] * (places[place] - origin[0]) +
                normal[1] * (places[place + 1] - origin[1]) +
                normal[2] * (places[place + 2] - origin[2]);
            if (height[i] >= 0) ++above;
        }
        if (above === 0 || above === 3) continue;
        const segment = cutTriangle(surface, values, places, triangle, height, rays[0].direction);
        if (within(segment, limits)) segments.push(segment);
    }
    return chained(segments)
        .map((chain) => measured(segments, chain, forward))
        .sort(longestFirst);
}

const longestFirst = (a: CutLine, b: CutLine) => b.length[b.length.length - 1] - a.length[a.length.length - 1];

function cutTriangle(
    surface: Surface,
    values: FacePair,
    places: Float32Array,
    triangle: number,
    height: Float64Array,
    direction: Vec3,
): Segment {
    const corners = [0, 1, 2].map((i) => surface.triangles[3 * triangle + i]);
    const nodes = corners.map((corner) => surface.cornerNode[corner]);
    const [a, b, c] = nodes.map((node) => at(places, node));
    const seen = dot(cross(minus(b, a), minus(c, a)), direction) <= 0 ? values.positive : values.negative;
    const segment: Segment = { point: [a, b], value: [NaN, NaN], key: [-1, -1] };
    let end = 0;
    for (let i = 0; i < 3; ++i) {
        const j = (i + 1) % 3;
        if (height[i] >= 0 === height[j] >= 0) continue;
        // From the lower node on, so that both neighbours of an edge find the same point.
        const [p, q] = nodes[i] < nodes[j] ? [i, j] : [j, i];
        const part = height[p] / (height[p] - height[q]);
        const from = at(places, nodes[p]);
        segment.point[end] = add(from, scaled(minus(at(places, nodes[q]), from), part));
        segment.value[end] = seen[corners[p]] + part * (seen[corners[q]] - seen[corners[p]]);
        segment.key[end] = nodes[p] * (places.length / 3) + nodes[q];
        ++end;
    }
    return segment;
}

/** Shortens the segment to what is within all limits; false if nothing is left. */
function within(segment: Segment, limits: HalfSpace[]): boolean {
    for (const { normal, distance } of limits) {
        const over = segment.point.map((point) => dot(normal, point) - distance);
        if (over[0] > 0 && over[1] > 0) return false;
        for (const i of [0, 1]) {
            if (over[i] <= 0) continue;
            const part = over[i] / (over[i] - over[1 - i]);
            segment.point[i] = add(segment.point[i], scaled(minus(segment.point[1 - i], segment.point[i]), part));
            segment.value[i] += part * (segment.value[1 - i] - segment.value[i]);
            segment.key[i] = -1;
        }
    }
    return true;
}

/** Ends of segments, 2 · segment + end, in the order in which they follow one another. */
function chained(segments: Segment[]): number[][] {
    const partner = partners(segments);
    const used = new Uint8Array(segments.length);
    const chains: number[][] = [];
    const follow = (first: number) => {
        const chain: number[] = [];
        for (let end = first; end >= 0 && !used[end >> 1]; end = partner[end ^ 1]) {
            used[end >> 1] = 1;
            chain.push(end, end ^ 1);
        }
        chains.push(chain);
    };
    for (let end = 0; end < partner.length; ++end) if (partner[end] < 0 && !used[end >> 1]) follow(end);
    // What is left closes on itself.
    for (let end = 0; end < partner.length; end += 2) if (!used[end >> 1]) follow(end);
    return chains;
}

/** The end that each end meets; -1 where it meets none, or where more than two meet. */
function partners(segments: Segment[]): Int32Array {
    const partner = new Int32Array(2 * segments.length).fill(-1);
    const firstAt = new Map<number, number>();
    const crowded = new Set<number>();
    for (let end = 0; end < partner.length; ++end) {
        const key = segments[end >> 1].key[end & 1];
        if (key < 0) continue;
        const first = firstAt.get(key);
        if (first === undefined) {
            firstAt.set(key, end);
        } else if (partner[first] < 0 && !crowded.has(key)) {
            partner[first] = end;
            partner[end] = first;
        } else {
            crowded.add(key);
            if (partner[first] >= 0) partner[partner[first]] = -1;
            partner[first] = -1;
        }
    }
    return partner;
}

function measured(segments: Segment[], chain: number[], forward: Vec3): CutLine {
    const pointOf = (end: number) => segments[end >> 1].point[end & 1];
    if (dot(minus(pointOf(chain[chain.length - 1]), pointOf(chain[0])), forward) < 0) chain.reverse();
    const length: number[] = [];
    const value: number[] = [];
    const points: number[] = [];
    let run = 0;
    chain.forEach((end, i) => {
        const point = pointOf(end);
        if (i > 0) run += norm(minus(point, pointOf(chain[i - 1])));
        const next = segments[end >> 1].value[end & 1];
        if (i > 0 && run === length[length.length - 1] && next === value[value.length - 1]) return;
        length.push(run);
        value.push(next);
        points.push(...point);
    });
    return { length: Float32Array.from(length), value: Float32Array.from(value), points: Float32Array.from(points) };
}
