// What acts on a model, as arrows: applied forces, inertia loads that balance them, supports.
import { DOFS, type Result } from './Result';

/** Forces (or moments) that are not zero. */
export interface Arrows {
    nodes: Uint32Array;
    /** 3 per arrow. */
    vectors: Float32Array;
    /** Length of the longest vector; 0 where there are none. */
    longest: number;
}

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

function lengthOf(values: Float32Array, begin: number): number {
    return Math.hypot(values[begin], values[begin + 1], values[begin + 2]);
}
