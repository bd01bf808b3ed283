// Least and largest value of what is shown.
import type { FacePair } from '../model/Fields';
import type { Extreme, Extremes } from './SceneView';
import type { Surface } from './Surface';
import { at } from './Vectors';
import { isKept, type ClipPlane } from './Visibility';

/** Values are single precision: of those that differ by no more than this part, either may come out as the larger. */
const TIE = 1e-6;

/** Of values that are finite, the others are counted; undefined where no value is left. places: 3 per node. */
export function extremes(
    surface: Surface,
    values: FacePair,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
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
    least = firstCorner(surface, values, shown, places, plane, (value) => value <= min + TIE * Math.abs(min)) ?? least;
    largest =
        firstCorner(surface, values, shown, places, plane, (value) => value >= max - TIE * Math.abs(max)) ?? largest;
    const extreme = (value: number, corner: number): Extreme => ({
        value,
        vertex: surface.cornerVertex[corner],
        node: surface.cornerNode[corner],
        position: at(surface.result.coordinates, surface.cornerNode[corner]),
    });
    return { min: extreme(min, least), max: extreme(max, largest), notFinite };
}

/** In the order of the shells, quadrilaterals before triangles, walls of beams last. */
function firstCorner(
    surface: Surface,
    values: FacePair,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
    takes: (value: number) => boolean,
): number | undefined {
    const { quadCount, elementCount, result } = surface;
    for (const [first, end] of [
        [0, result.shellQuads],
        [quadCount, elementCount],
        [result.shellQuads, quadCount],
    ]) {
        for (let element = first; element < end; ++element) {
            if (!shown[element]) continue;
            const begin = surface.cornerBegin(element);
            for (let corner = begin; corner < begin + surface.cornerCount(element); ++corner) {
                const isTaken = takes(values.positive[corner]) || takes(values.negative[corner]);
                if (isTaken && (!plane || isKept(plane, at(places, surface.cornerNode[corner])))) return corner;
            }
        }
    }
    return undefined;
}
