// Least and largest value of what is shown.
import type { FacePair } from '../model/Fields';
import type { Extreme } from './SceneView';
import type { Surface } from './Surface';
import { at } from './Vectors';
import { isKept, type ClipPlane } from './Visibility';

/** Values that are no numbers count for nothing; undefined where no value is left. places: 3 per node. */
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
      const a = values.positive[corner];
      const b = values.negative[corner];
      const [low, high] = a < b ? [a, b] : [b, a];
      if (!(low < min || high > max)) continue;
      if (plane && !isKept(plane, at(places, surface.cornerNode[corner]))) continue;
      if (low < min) [min, least] = [low, corner];
      if (high > max) [max, largest] = [high, corner];
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
