// Points that say how far the shown structure reaches: a picture is fitted to them.
import type { Surface } from './Surface';
import { at, dot } from './Vectors';
import type { ClipPlane } from './Visibility';

/** Nodes of what is shown, and where the plane cuts its elements; 3 coordinates each. places: 3 per node. */
export function shownPoints(
    surface: Surface,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
): Float32Array {
    const isNodeShown = new Uint8Array(places.length / 3);
    const onPlane: number[] = [];
    const beyond = (node: number) => (plane ? dot(plane.normal, at(places, node)) - plane.distance : 0);
    for (let element = 0; element < surface.elementCount; ++element) {
        if (!shown[element]) continue;
        const begin = surface.cornerBegin(element);
        const end = begin + surface.cornerCount(element);
        let [last, lastBeyond] = [surface.cornerNode[end - 1], beyond(surface.cornerNode[end - 1])];
        for (let corner = begin; corner < end; ++corner) {
            const node = surface.cornerNode[corner];
            const nodeBeyond = beyond(node);
            if (nodeBeyond <= 0) isNodeShown[node] = 1;
            if (nodeBeyond > 0 !== lastBeyond > 0) {
                const part = lastBeyond / (lastBeyond - nodeBeyond);
                for (let axis = 0; axis < 3; ++axis) {
                    onPlane.push((1 - part) * places[3 * last + axis] + part * places[3 * node + axis]);
                }
            }
            [last, lastBeyond] = [node, nodeBeyond];
        }
    }
    const count = isNodeShown.reduce((sum, one) => sum + one, 0);
    const points = new Float32Array(3 * count + onPlane.length);
    let next = 0;
    isNodeShown.forEach((one, node) => {
        if (one) for (let axis = 0; axis < 3; ++axis) points[next++] = places[3 * node + axis];
    });
    points.set(onPlane, next);
    return points;
}
