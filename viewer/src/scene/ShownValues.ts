// The field that is shown, at the corners of the surface.
import { cornerValues, elementValues, isPropertyField, vertexValues, type FacePair } from '../model/Fields';
import type { ViewState } from '../state/ViewState';
import type { Surface } from './Surface';

/** NaN all over for 'none', and for properties where the model is not known. */
export function shownValues(surface: Surface, state: Pick<ViewState, 'field' | 'face' | 'average'>): FacePair {
    const { result, cornerVertex } = surface;
    const { field, face, average } = state;
    if (field === 'none') return spread(cornerVertex.length, undefined, () => 0);
    if (isPropertyField(field)) {
        const values = elementValues(result, field);
        return spread(cornerVertex.length, values, (corner) => surface.elementOfCorner(corner));
    }
    if (average === 'element') return cornerValues(result, field, face);
    return spread(cornerVertex.length, vertexValues(result, field, face), (corner) => cornerVertex[corner]);
}

function spread(corners: number, values: FacePair | undefined, itemOf: (corner: number) => number): FacePair {
    const side = (items: Float32Array | undefined) => {
        const spreadOut = new Float32Array(corners).fill(NaN);
        if (items) for (let corner = 0; corner < corners; ++corner) spreadOut[corner] = items[itemOf(corner)];
        return spreadOut;
    };
    const positive = side(values?.positive);
    return { positive, negative: values?.negative === values?.positive ? positive : side(values?.negative) };
}
