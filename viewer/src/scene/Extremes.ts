// Least and largest value of what is shown.
import type { FacePair } from '../model/Fields';
import type { Extreme, Extremes } from './SceneView';
import type { Surface } from './Surface';
import { at } from './Vectors';
import { isKept, type ClipPlane } from './Visibility';

/** Values are single precision: of those that differ by no more than this part, either may come out as the larger. */
const TIE = 1e-6;

/**
 * Of values that are finite, the others are counted; undefined where no value is left. places: 3 per node. Of several
 * places with the same value the first is told, as by the report of the program: in the order of shells, then of nodes
 * of walls, or of nodes alone for values that are of nodes.
 */
export function extremes(
    surface: Surface,
    values: FacePair,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
    areOfNodes: boolean,
): Extremes | undefined {
    let least = -1;
    let largest = -1;
    let min = Infinity;
    let max = -Infinity;
    let notFinite = 0;
    for (let element = 0; element < surface.elementCount; ++element) {
        if (!shown[element]) continue;
        const begin = surface.cornerBegin(element);
        const end = begin + surface.cornerCount(element);
        for (let corner = begin; corner < end; ++corner) {
            const one = values.positive[corner];
            const other = values.negative[corner];
            const areFinite = Number.isFinite(one) && Number.isFinite(other);
            if (areFinite && one >= min && one <= max && other >= min && other <= max) continue;
            if (plane && !isKept(plane, at(places, surface.cornerNode[corner]))) continue;
            if (!areFinite) ++notFinite;
            for (const value of [one, other]) {
                if (!Number.isFinite(value)) continue;
                if (value < min) [min, least] = [value, corner];
                if (value > max) [max, largest] = [value, corner];
            }
        }
    }
    if (least < 0 || largest < 0) return undefined;
    const first = (takes: (value: number) => boolean) =>
        firstCorner(surface, values, shown, places, plane, areOfNodes, takes);
    least = first((value) => value <= min + TIE * Math.abs(min)) ?? least;
    largest = first((value) => value >= max - TIE * Math.abs(max)) ?? largest;
    const extreme = (value: number, corner: number): Extreme => ({
        value,
        vertex: surface.cornerVertex[corner],
        node: surface.cornerNode[corner],
        position: at(surface.result.coordinates, surface.cornerNode[corner]),
    });
    return { min: extreme(min, least), max: extreme(max, largest), notFinite };
}

/** In the order of nodes; or of shells, quadrilaterals before triangles, and behind them of the nodes of walls. */
function firstCorner(
    surface: Surface,
    values: FacePair,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
    areOfNodes: boolean,
    takes: (value: number) => boolean,
): number | undefined {
    const { cornerNode, quadCount, result } = surface;
    const isWall = (corner: number) => corner >= 4 * result.shellQuads && corner < 4 * quadCount;
    let first: number | undefined;
    let least = Infinity;
    for (let corner = 0; corner < cornerNode.length; ++corner) {
        if (!takes(values.positive[corner]) && !takes(values.negative[corner])) continue;
        const ofWall = cornerNode.length + cornerNode[corner];
        const order = areOfNodes ? cornerNode[corner] : isWall(corner) ? ofWall : corner;
        if (order >= least || !shown[surface.elementOfCorner(corner)]) continue;
        if (!plane || isKept(plane, at(places, cornerNode[corner]))) [first, least] = [corner, order];
    }
    return first;
}
