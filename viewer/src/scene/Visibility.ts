// What of the structure is shown: by kind, thickness, section, box and clip plane.
import type { ViewState } from '../state/ViewState';
import type { Surface } from './Surface';
import { dot, unit, type Vec3 } from './Vectors';

/** Parts of the state that change which elements are shown. */
export const VISIBILITY_KEYS = [
    'showQuads',
    'showTris',
    'showBeams',
    'hiddenThicknesses',
    'hiddenSections',
    'box',
] as const satisfies readonly (keyof ViewState)[];

type VisibilityState = Pick<ViewState, (typeof VISIBILITY_KEYS)[number]>;

/** 1 for each element that is shown, else 0. Thicknesses and sections hide nothing where the model is not known. */
export function shownElements(surface: Surface, state: VisibilityState): Uint8Array {
    const { result, quadCount, elementCount } = surface;
    const { model, shellQuads } = result;
    const hiddenThicknesses = new Set(state.hiddenThicknesses);
    const hiddenSections = new Set(state.hiddenSections);
    const shown = new Uint8Array(elementCount);
    for (let element = 0; element < elementCount; ++element) {
        let visible: boolean;
        if (element >= quadCount) {
            visible = state.showTris && !(model && hiddenThicknesses.has(model.triThickness[element - quadCount]));
        } else if (element < shellQuads) {
            visible = state.showQuads && !(model && hiddenThicknesses.has(model.quadThickness[element]));
        } else {
            const beam = surface.wallBeam[element - shellQuads];
            visible = state.showBeams && !(model && hiddenSections.has(model.beamSection[beam]));
        }
        shown[element] = visible && (!state.box || centreWithin(surface, element, state.box)) ? 1 : 0;
    }
    return shown;
}

function centreWithin(surface: Surface, element: number, box: NonNullable<ViewState['box']>): boolean {
    const begin = surface.cornerBegin(element);
    const count = surface.cornerCount(element);
    for (let axis = 0; axis < 3; ++axis) {
        let sum = 0;
        for (let i = begin; i < begin + count; ++i) sum += surface.result.coordinates[3 * surface.cornerNode[i] + axis];
        if (sum / count < box[axis] || sum / count > box[3 + axis]) return false;
    }
    return true;
}

/** Shown is where normal · x <= distance: what the normal points to is cut away. */
export interface ClipPlane {
    normal: Vec3;
    distance: number;
}

/** undefined: nothing is cut away. */
export function clipPlane(clip: ViewState['clip'], coordinates: Float32Array): ClipPlane | undefined {
    if (!clip || clip.offset >= 1) return undefined;
    const normal = unit(clip.normal);
    let low = Infinity;
    let high = -Infinity;
    for (let i = 0; i < coordinates.length; i += 3) {
        const x = normal[0] * coordinates[i] + normal[1] * coordinates[i + 1] + normal[2] * coordinates[i + 2];
        if (x < low) low = x;
        if (x > high) high = x;
    }
    return { normal, distance: low + clip.offset * (high - low) };
}

export function isKept(plane: ClipPlane | undefined, point: Vec3): boolean {
    return !plane || dot(plane.normal, point) <= plane.distance;
}
