// Least and largest value of what is shown.
import type { FacePair } from '../model/Fields';
import type { Extreme } from './SceneView';
import type { Surface } from './Surface';
import { at } from './Vectors';
import { isKept, type ClipPlane } from './Visibility';

/** Values that are not finite count for nothing; undefined where no value is left. places: 3 per node. */
export function extremes(
    surface: Surface,
    values: FacePair,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
): { min: Extreme; max: Extreme } | undefined {
    let least = -1;
    let largest = -1;
    let min = Infinity;
    let max = -Infinity;
    for (let element = 0; element < surface.elementCount; ++element) {
        if (!shown[element]) continue;
        const begin = surface.cornerBegin(element);
        const end = begin + surface.cornerCount(element);
        for (let corner = begin; corner < end; ++corner) {
            for (const value of [values.positive[corner], values.negative[corner]]) {
                if (!Number.isFinite(value) || (value >= min && value <= max)) continue;
                if (plane && !isKept(plane, at(places, surface.cornerNode[corner]))) continue;
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
    return { min: extreme(min, least), max: extreme(max, largest) };
}
