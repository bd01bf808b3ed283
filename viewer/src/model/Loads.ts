// What acts on a model, as arrows: applied forces, inertia loads that balance them, supports; and how large the loads
// on its elements are.
import { DOFS, type Result } from './Result';

/** Forces (or moments) that are not zero. */
export interface Arrows {
    nodes: Uint32Array;
    /** 3 per arrow. */
    vectors: Float32Array;
    /** Length of the longest vector; 0 where there are none. */
    longest: number;
}

/** Loads and components below this part of the largest are round-off and not shown. */
export const LEAST_PART = 1e-9;

export interface LoadArrows {
    forces: Arrows;
    moments: Arrows;
}

export interface Supports {
    nodes: Uint32Array;
    /** 1 dx, 2 dy, 4 dz, 8 rx, 16 ry, 32 rz. */
    bits: Uint32Array;
}

/** Several forces at one node are one arrow each. */
export function appliedLoads({ model }: Result): LoadArrows {
    return model ? loadArrows(model.forceNodes, model.forces) : loadArrows(new Uint32Array(0), new Float32Array(0));
}

/** Empty where the inertia loads are not known. */
export function inertiaLoads({ model, structureNodes }: Result): LoadArrows {
    const forces = model?.inertiaForces ?? new Float32Array(0);
    const nodes = Uint32Array.from({ length: Math.min(structureNodes, forces.length / DOFS) }, (_, node) => node);
    return loadArrows(nodes, forces);
}

/** Lowest and highest, positive along the normals of the shells; undefined where there are none. */
export function pressureRange({ model }: Result): [number, number] | undefined {
    return rangeOf(model?.distributed?.quadPressures, model?.distributed?.triPressures);
}

/** Of loads per length, positive along the axes z' of the beams; undefined where there are none. */
export function lineLoadRange({ model }: Result): [number, number] | undefined {
    return rangeOf(model?.distributed?.lineLoads);
}

/** A node that has several supports appears once, with the directions of all. */
export function supports({ model, structureNodes }: Result): Supports {
    if (!model) return { nodes: new Uint32Array(0), bits: new Uint32Array(0) };
    const bitsOfNodes = new Uint32Array(structureNodes);
    for (let i = 0; i < model.supportNodes.length; ++i) bitsOfNodes[model.supportNodes[i]] |= model.supportBits[i];
    const nodes = model.supportNodes.slice().sort();
    const once = nodes.filter((node, i) => (i === 0 || node !== nodes[i - 1]) && bitsOfNodes[node] !== 0);
    return { nodes: once, bits: once.map((node) => bitsOfNodes[node]) };
}

function loadArrows(nodes: Uint32Array, loads: Float32Array): LoadArrows {
    return { forces: arrows(nodes, loads, 0), moments: arrows(nodes, loads, 3) };
}

function arrows(nodes: Uint32Array, loads: Float32Array, first: number): Arrows {
    const isArrow = (_: number, i: number) => lengthOf(loads, DOFS * i + first) > 0;
    const places = Uint32Array.from(nodes, (_, i) => i).filter(isArrow);
    const vectors = new Float32Array(3 * places.length);
    let longest = 0;
    places.forEach((place, i) => {
        const begin = DOFS * place + first;
        vectors.set(loads.subarray(begin, begin + 3), 3 * i);
        longest = Math.max(longest, lengthOf(loads, begin));
    });
    return { nodes: places.map((place) => nodes[place]), vectors, longest };
}

/** Of what is finite; undefined where nothing of it differs from zero. */
function rangeOf(...lists: (Float32Array | undefined)[]): [number, number] | undefined {
    let [low, high] = [Infinity, -Infinity];
    for (const list of lists) {
        for (const value of list ?? []) {
            if (!Number.isFinite(value)) continue;
            low = Math.min(low, value);
            high = Math.max(high, value);
        }
    }
    const least = LEAST_PART * Math.max(Math.abs(low), Math.abs(high));
    const rounded = (value: number) => (Math.abs(value) < least ? 0 : value);
    return low < high || (low === high && low !== 0) ? [rounded(low), rounded(high)] : undefined;
}

function lengthOf(values: Float32Array, begin: number): number {
    return Math.hypot(values[begin], values[begin + 1], values[begin + 2]);
}
