// The edges that are drawn.
import type { Result } from '../model/Result';
import { edgeLines, FEATURE_EDGE, FREE_EDGE, type MeshEdges } from '../model/Topology';
import type { EdgeKind } from '../state/ViewState';
import { at, cross, dot, minus, norm, unit } from './Vectors';

const KINDS: Record<Exclude<EdgeKind, 'none'>, number> = { mesh: 0, feature: FEATURE_EDGE, free: FREE_EDGE };

/** A part of the height of a section: so near to the axis it is joined to a plate there, or its axis runs within it. */
const ON_AXIS = 0.1;
/** Cosine to the axis of what runs along a beam. */
const ALONG = 0.9;

/**
 * 2 nodes per line, of elements that are shown. The section walls of beams are no mesh of the model: they have no free
 * edges to be looked for; features are their lines along the beam, but for those next to its axis, which mostly lies
 * within a plate: they would shine through it; the mesh has no part of them that is not also a feature.
 */
export function shownEdges(
    result: Result,
    edges: MeshEdges,
    kind: Exclude<EdgeKind, 'none'>,
    shown: Uint8Array,
): Uint32Array {
    const ofShells = shellEdges(result, edges, kind, shown);
    if (kind === 'free' || result.beams.count === 0) return ofShells;
    const ofWalls = wallLines(result, nodesOf(result, edgeLines(result, edges, FEATURE_EDGE, shown)));
    const lines = new Uint32Array(ofShells.length + ofWalls.length);
    lines.set(ofShells);
    lines.set(ofWalls, ofShells.length);
    return lines;
}

/** 2 nodes per line: what one needs to see of the undeformed structure; beams by their axes where there is no shell. */
export function outline(result: Result, edges: MeshEdges): Uint32Array {
    if (result.shellQuads > 0 || result.tris.length > 0) return shellEdges(result, edges, 'feature');
    const ends = new Uint32Array(2 * result.beams.count);
    for (let beam = 0; beam < result.beams.count; ++beam) {
        // The first and last node of a section model are the ends of its beam.
        ends[2 * beam] = result.beams.nodeBegin[beam];
        ends[2 * beam + 1] = result.beams.nodeBegin[beam + 1] - 1;
    }
    return ends;
}

function shellEdges(
    result: Result,
    edges: MeshEdges,
    kind: Exclude<EdgeKind, 'none'>,
    shown?: Uint8Array,
): Uint32Array {
    return nodesOf(result, edgeLines(result, edges, KINDS[kind], shown)).filter(isShell(result));
}

const nodesOf = (result: Result, lines: Uint32Array) => lines.map((vertex) => result.vertexNodes[vertex]);

/** Both nodes of a line belong to the structure, or both to a beam. */
const isShell = (result: Result) => (node: number) => node < result.structureNodes;

function wallLines(result: Result, lines: Uint32Array): Uint32Array {
    const { beams, coordinates } = result;
    const beamOf = new Uint32Array(coordinates.length / 3 - result.structureNodes);
    for (let beam = 0; beam < beams.count; ++beam) {
        const begin = beams.nodeBegin[beam] - result.structureNodes;
        beamOf.fill(beam, begin, beams.nodeBegin[beam + 1] - result.structureNodes);
    }
    const axisOf = (beam: number) => minus(at(beams.ends, 2 * beam + 1), at(beams.ends, 2 * beam));
    const height = (node: number, beam: number) =>
        norm(cross(minus(at(coordinates, node), at(beams.ends, 2 * beam)), unit(axisOf(beam))));
    const highest = new Float32Array(beams.count);
    beamOf.forEach((beam, i) => (highest[beam] = Math.max(highest[beam], height(result.structureNodes + i, beam))));
    let length = 0;
    for (let i = 0; i < lines.length; i += 2) {
        if (lines[i] < result.structureNodes) continue;
        const beam = beamOf[lines[i] - result.structureNodes];
        const axis = axisOf(beam);
        const step = minus(at(coordinates, lines[i + 1]), at(coordinates, lines[i]));
        const isAlong = Math.abs(dot(step, axis)) > ALONG * norm(step) * norm(axis);
        if (!isAlong || height(lines[i], beam) < ON_AXIS * highest[beam]) continue;
        lines[length++] = lines[i];
        lines[length++] = lines[i + 1];
    }
    return lines.subarray(0, length);
}
