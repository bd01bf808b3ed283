// Least and largest value of what is shown.
import type { FacePair } from '../model/Fields';
import type { Extreme, Extremes } from './SceneView';
import type { Surface } from './Surface';
import { at } from './Vectors';
import { isKept, type ClipPlane } from './Visibility';

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
    const extreme = (value: number, corner: number): Extreme => ({
        value,
        vertex: surface.cornerVertex[corner],
        node: surface.cornerNode[corner],
        position: at(surface.result.coordinates, surface.cornerNode[corner]),
    });
    return { min: extreme(min, least), max: extreme(max, largest), notFinite };
}
