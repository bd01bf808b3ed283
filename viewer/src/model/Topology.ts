// What is next to what: edges of the mesh with the elements on them, elements and vertices around a node. All of it by
// counting sorts, linear in the size of the model. Neighbours are found by nodes, since shells that meet at a fold have
// vertices of their own there. Elements are counted as in Fields: quadrilaterals, then triangles; corners likewise.
import { cornerVertex, elementValues } from './Fields';
import type { Result } from './Result';

/** Bits of MeshEdges.kinds. */
export const FREE_EDGE = 1;
export const FEATURE_EDGE = 2;

/**
 * Surfaces that turn by more than 30° at an edge have a feature there. A degree more, since the walls of tubes turn by
 * exactly 30° and six digits in the coordinates would decide it by chance.
 */
const FEATURE_COSINE = Math.cos((31 * Math.PI) / 180);

/** Items grouped by a number: those of group g are items[begin[g]] ... items[begin[g + 1] - 1], in their order. */
export interface Groups {
    begin: Uint32Array;
    items: Uint32Array;
}

export interface MeshEdges {
    count: number;
    /** 2 per edge. */
    vertices: Uint32Array;
    /** By edge: the corners from which an element goes along it. */
    corners: Groups;
    /** FREE_EDGE: of one element. FEATURE_EDGE: also a fold, a joint of three or more, a change of thickness. */
    kinds: Uint8Array;
}

export function elementOfCorner(result: Result, corner: number): number {
    const quadCorners = result.quads.length;
    return corner < quadCorners ? corner >>> 2 : quadCorners / 4 + Math.floor((corner - quadCorners) / 3);
}

/** Unit normals, 3 per element, towards the positive face; zero for an element without area. */
export function elementNormals(result: Result): Float32Array {
    const { quads, tris } = result;
    const nodes = cornerNodes(result);
    const normals = new Float32Array(3 * (quads.length / 4 + tris.length / 3));
    let n = 0;
    // the diagonals of a quadrilateral, two edges of a triangle
    for (let c = 0; c < quads.length; c += 4, n += 3)
        setNormal(normals, n, result.coordinates, nodes[c], nodes[c + 2], nodes[c + 1], nodes[c + 3]);
    for (let c = quads.length; c < nodes.length; c += 3, n += 3)
        setNormal(normals, n, result.coordinates, nodes[c], nodes[c + 1], nodes[c], nodes[c + 2]);
    return normals;
}

export function meshEdges(result: Result): MeshEdges {
    const nodeCount = result.coordinates.length / 3;
    const from = cornerNodes(result);
    const to = Uint32Array.from(from, (_, corner) => from[nextCorner(result, corner)]);
    const lower = Uint32Array.from(from, (node, corner) => Math.min(node, to[corner]));
    const higher = Uint32Array.from(from, (node, corner) => Math.max(node, to[corner]));

    // Sorted by the higher node and then, keeping that order, by the lower: sides with the same two are neighbours then.
    const byHigher = sortedInto(higher, nodeCount, undefined).items;
    const sides = sortedInto(lower, nodeCount, byHigher).items.filter((corner) => lower[corner] !== higher[corner]);
    const starts = new Uint32Array(sides.length + 1);
    let count = 0;
    for (let i = 0; i < sides.length; ++i) {
        const isNew = i === 0 || lower[sides[i]] !== lower[sides[i - 1]] || higher[sides[i]] !== higher[sides[i - 1]];
        if (isNew) starts[count++] = i;
    }
    starts[count] = sides.length;
    const begin = starts.slice(0, count + 1);

    const vertices = new Uint32Array(2 * count);
    const kinds = new Uint8Array(count);
    const normals = elementNormals(result);
    const thickness = elementValues(result, 'thickness')?.positive;
    for (let e = 0; e < count; ++e) {
        const corner = sides[begin[e]];
        vertices[2 * e] = cornerVertex(result, corner);
        vertices[2 * e + 1] = cornerVertex(result, nextCorner(result, corner));
        const elements = begin[e + 1] - begin[e];
        if (elements === 1) {
            kinds[e] = FREE_EDGE | FEATURE_EDGE;
        } else if (elements > 2) {
            kinds[e] = FEATURE_EDGE;
        } else {
            const other = sides[begin[e] + 1];
            const a = elementOfCorner(result, corner);
            const b = elementOfCorner(result, other);
            // Both go the same way along it: their normals are on opposite sides.
            const turn = from[corner] === from[other] ? -1 : 1;
            const isFold = turn * dot(normals, a, b) < FEATURE_COSINE && hasNormal(normals, a) && hasNormal(normals, b);
            // a comparison with what is not a number, the thickness of a wall, is false
            const isStep = thickness !== undefined && Math.abs(thickness[a] - thickness[b]) > 0;
            if (isFold || isStep) kinds[e] = FEATURE_EDGE;
        }
    }
    return { count, vertices, corners: { begin, items: sides }, kinds };
}

/** 2 vertices per line: edges with one of the bits of kinds (all where it is 0) on an element that is shown. */
export function edgeLines(result: Result, edges: MeshEdges, kinds: number, shown?: Uint8Array): Uint32Array {
    const lines = new Uint32Array(2 * edges.count);
    let length = 0;
    for (let e = 0; e < edges.count; ++e) {
        if (kinds !== 0 && (edges.kinds[e] & kinds) === 0) continue;
        if (shown && !isShown(result, edges.corners, e, shown)) continue;
        lines[length++] = edges.vertices[2 * e];
        lines[length++] = edges.vertices[2 * e + 1];
    }
    return lines.slice(0, length);
}

function isShown(result: Result, { begin, items }: Groups, edge: number, shown: Uint8Array): boolean {
    for (let i = begin[edge]; i < begin[edge + 1]; ++i) {
        if (shown[elementOfCorner(result, items[i])] !== 0) return true;
    }
    return false;
}

/** Counting sort; the items stand in the order given, or from 0 on. */
function sortedInto(keys: Uint32Array, groups: number, order: Uint32Array | undefined): Groups {
    const begin = new Uint32Array(groups + 1);
    for (let i = 0; i < keys.length; ++i) ++begin[keys[i] + 1];
    for (let g = 0; g < groups; ++g) begin[g + 1] += begin[g];
    const next = begin.slice(0, groups);
    const items = new Uint32Array(keys.length);
    for (let i = 0; i < keys.length; ++i) {
        const item = order ? order[i] : i;
        items[next[keys[item]]++] = item;
    }
    return { begin, items };
}

function cornerNodes({ quads, tris, vertexNodes }: Result): Uint32Array {
    const nodes = new Uint32Array(quads.length + tris.length);
    for (let i = 0; i < quads.length; ++i) nodes[i] = vertexNodes[quads[i]];
    for (let i = 0; i < tris.length; ++i) nodes[quads.length + i] = vertexNodes[tris[i]];
    return nodes;
}

function nextCorner({ quads }: Result, corner: number): number {
    if (corner < quads.length) return (corner & 3) === 3 ? corner - 3 : corner + 1;
    return (corner - quads.length) % 3 === 2 ? corner - 2 : corner + 1;
}

/** The unit vector of (b − a) × (d − c). */
function setNormal(
    normals: Float32Array,
    at: number,
    xyz: Float32Array,
    a: number,
    b: number,
    c: number,
    d: number,
): void {
    const ux = xyz[3 * b] - xyz[3 * a];
    const uy = xyz[3 * b + 1] - xyz[3 * a + 1];
    const uz = xyz[3 * b + 2] - xyz[3 * a + 2];
    const vx = xyz[3 * d] - xyz[3 * c];
    const vy = xyz[3 * d + 1] - xyz[3 * c + 1];
    const vz = xyz[3 * d + 2] - xyz[3 * c + 2];
    const nx = uy * vz - uz * vy;
    const ny = uz * vx - ux * vz;
    const nz = ux * vy - uy * vx;
    const length = Math.sqrt(nx * nx + ny * ny + nz * nz);
    if (!(length > 0)) return;
    normals[at] = nx / length;
    normals[at + 1] = ny / length;
    normals[at + 2] = nz / length;
}

function dot(normals: Float32Array, a: number, b: number): number {
    return (
        normals[3 * a] * normals[3 * b] +
        normals[3 * a + 1] * normals[3 * b + 1] +
        normals[3 * a + 2] * normals[3 * b + 2]
    );
}

function hasNormal(normals: Float32Array, element: number): boolean {
    return dot(normals, element, element) > 0;
}
