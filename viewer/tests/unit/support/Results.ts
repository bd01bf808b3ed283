// Small results made by hand.
import { DOFS, STRESS_COLUMNS, type DistributedLoads, type ModelFacts, type Result } from '../../../src/model/Result';

/** Of shells on nodes at the places given, one vertex per node, stresses and displacements zero; no beams. */
export function shellResult(places: number[][], quads: number[][], tris: number[][] = []): Result {
    const n = places.length;
    return {
        title: 'made by hand',
        structureNodes: n,
        coordinates: Float32Array.from(places.flat()),
        displacements: new Float32Array(DOFS * n),
        vertexNodes: Uint32Array.from({ length: n }, (_, node) => node),
        positiveFace: new Float32Array(STRESS_COLUMNS * n),
        negativeFace: new Float32Array(STRESS_COLUMNS * n),
        shellQuads: quads.length,
        quads: Uint32Array.from(quads.flat()),
        tris: Uint32Array.from(tris.flat()),
        beams: {
            count: 0,
            ends: new Float32Array(0),
            wallBegin: Uint32Array.of(quads.length),
            nodeBegin: Uint32Array.of(n),
        },
    };
}

/** The result with a model that has these loads on its elements and no others. */
export function withLoads(result: Result, part: Partial<DistributedLoads>): Result {
    const none = new Uint32Array(0);
    const noValues = new Float32Array(0);
    const distributed = {
        quads: none,
        quadPressures: noValues,
        tris: none,
        triPressures: noValues,
        beams: none,
        lineLoads: noValues,
        lineDirections: noValues,
        ...part,
    };
    return { ...result, model: { ...(result.model ?? facts(result)), distributed } };
}

/** Facts of a model whose shells all have the first thickness and material; no loads. */
export function facts(result: Result): ModelFacts {
    const quads = result.shellQuads;
    const tris = result.tris.length / 3;
    const beams = result.beams.count;
    return {
        thicknesses: [0.01, 0.02],
        sections: ['T 200x8/100x15', 'L 100x8/50x8'],
        materials: [
            { E: 2.1e11, Mu: 0.3, Density: 7850 },
            { E: 7e10, Mu: 0.33, Density: 2700 },
        ],
        quadThickness: new Uint32Array(quads),
        quadMaterial: new Uint32Array(quads),
        triThickness: new Uint32Array(tris),
        triMaterial: new Uint32Array(tris),
        beamSection: new Uint32Array(beams),
        beamMaterial: new Uint32Array(beams),
        beamNodes: new Uint32Array(2 * beams),
        supportNodes: new Uint32Array(0),
        supportBits: new Uint32Array(0),
        forceNodes: new Uint32Array(0),
        forces: new Float32Array(0),
        inertiaForces: new Float32Array(0),
    };
}
