// The results of a run in typed arrays. No objects per node or element: 200,000 elements are 30 MB this way.
// Lengths, forces and stresses are in the units of the model; stresses in global axes.

/** SX SY SZ TXY TXZ TYZ SE, as the contour file has them. */
export const STRESS_COLUMNS = 7;

/** dx dy dz rx ry rz. */
export const DOFS = 6;

/**
 * Nodes of the structure come first, those of the section walls of beam 0, 1, ... follow. A vertex is a node with one
 * pair of face stresses: shells that share a node share a vertex where they have the same averaged stresses there.
 * Shells come first among the quadrilaterals, section walls of the beams follow.
 */
export interface Result {
    /** What it is called: the name of a file or directory. */
    title: string;
    structureNodes: number;
    /** 3 per node. */
    coordinates: Float32Array;
    /** DOFS per node. */
    displacements: Float32Array;

    /** The node of each vertex. */
    vertexNodes: Uint32Array;
    /** STRESS_COLUMNS per vertex, nodal averages. */
    positiveFace: Float32Array;
    negativeFace: Float32Array;

    shellQuads: number;
    /** 4 vertices per quadrilateral, shells and walls. The positive face is the one from which they run anticlockwise. */
    quads: Uint32Array;
    /** 3 vertices per triangle. */
    tris: Uint32Array;

    beams: Beams;
    /** Stresses of the elements themselves, where the results have them. */
    own?: OwnStresses;
    /** What the model file says, where it stands beside the results. */
    model?: ModelFacts;
}

export interface Beams {
    count: number;
    /** 6 per beam: places of its first and second node. */
    ends: Float32Array;
    /** count + 1: the section walls of beam b are quads[wallBegin[b]] ... quads[wallBegin[b + 1] - 1]. */
    wallBegin: Uint32Array;
    /** count + 1: likewise among the nodes. */
    nodeBegin: Uint32Array;
}

/** STRESS_COLUMNS per corner of each shell (not of walls), quadrilaterals as in Result.quads, then triangles. */
export interface OwnStresses {
    quadPositive: Float32Array;
    quadNegative: Float32Array;
    triPositive: Float32Array;
    triNegative: Float32Array;
}

export interface ModelFacts {
    thicknesses: number[];
    /** "T 200x8/100x15", by number of section: T sections, then L, then tubes. */
    sections: string[];
    materials: { E: number; Mu: number; Density: number }[];
    /** Number of thickness and material by shell, of section and material by beam. */
    quadThickness: Uint32Array;
    quadMaterial: Uint32Array;
    triThickness: Uint32Array;
    triMaterial: Uint32Array;
    beamSection: Uint32Array;
    beamMaterial: Uint32Array;
    /** 2 per beam. */
    beamNodes: Uint32Array;
    /** The node, and one bit per held direction: 1 dx, 2 dy, 4 dz, 8 rx, 16 ry, 32 rz. */
    supportNodes: Uint32Array;
    supportBits: Uint32Array;
    /** The node, and DOFS components. */
    forceNodes: Uint32Array;
    forces: Float32Array;
    /** Per node of the structure, DOFS components: the inertia loads that balance the applied ones; empty: not known. */
    inertiaForces: Float32Array;
    /** undefined: a packet of a program that did not tell them. */
    distributed?: DistributedLoads;
}

/** Of several on one element each has its own record. */
export interface DistributedLoads {
    /** The quadrilateral under each pressure, and 4 values at its nodes, positive along its normal. */
    quads: Uint32Array;
    quadPressures: Float32Array;
    /** Likewise, 3 values. */
    tris: Uint32Array;
    triPressures: Float32Array;
    /** The beam under each line load, 2 values at its ends, and 3 components of the direction in which these are positive. */
    beams: Uint32Array;
    lineLoads: Float32Array;
    lineDirections: Float32Array;
}
