// The unit in which stresses are told. The results have none: whoever knows that a model is in N and m can have MPa.
import { isStressField } from '../model/Fields';
import type { ViewState } from './ViewState';

export interface Unit {
    /** Of the model's unit: values are divided by it. */
    factor: number;
    /** "MPa", or "× 1e6" where it has no name; empty: that of the model. */
    name: string;
}

export function stressUnit({ unitFactor, unitName }: Pick<ViewState, 'unitFactor' | 'unitName'>): Unit {
    const name = unitName !== '' || unitFactor === 1 ? unitName : `× ${unitFactor.toExponential().replace('e+', 'e')}`;
    return { factor: unitFactor, name };
}

/** Of the field that is shown: only stresses have another unit than the model. */
export function unitOf(state: Pick<ViewState, 'field' | 'unitFactor' | 'unitName'>): Unit {
    return isStressField(state.field) ? stressUnit(state) : { factor: 1, name: '' };
}

/** "SE (MPa)". */
export function withUnit(text: string, { name }: Unit): string {
    return name === '' ? text : `${text} (${name})`;
}
