// Values of any field of a result: per vertex, per corner of an element, or per element. Single precision throughout;
// what is not a finite number is kept.
import {
    MOTION_FIELDS,
    PROPERTY_FIELDS,
    STRESS_FIELDS,
    type Face,
    type Field,
    type MotionField,
    type PropertyField,
    type StressField,
} from './FieldNames';
import { principalStresses } from './PrincipalStress';
import { DOFS, STRESS_COLUMNS, type Result } from './Result';

/** Of each side of the surface; one and the same array unless the sides differ. */
export interface FacePair {
    positive: Float32Array;
    negative: Float32Array;
}

export function isStressField(field: Field): field is StressField {
    return (STRESS_FIELDS as readonly string[]).includes(field);
}

export function isMotionField(field: Field): field is MotionField {
    return (MOTION_FIELDS as readonly string[]).includes(field);
}

export function isPropertyField(field: Field): field is PropertyField {
    return (PROPERTY_FIELDS as readonly string[]).includes(field);
}

/** One value per vertex: nodal averages of stresses, or motions. */
export function vertexValues(result: Result, field: StressField | MotionField, face: Face): FacePair {
    if (isMotionField(field)) {
        const ofNodes = nodeMotions(result.displacements, field);
        const values = Float32Array.from(result.vertexNodes, (node) => ofNodes[node]);
        return { positive: values, negative: values };
    }
    return facePair(face, (side) =>
        stressValues(side === 'positive' ? result.positiveFace : result.negativeFace, field),
    );
}

/**
 * One value per corner: 4 per quadrilateral, shells and walls, in the order of Result.quads, then 3 per triangle.
 * Stresses are the elements' own where the result has them; walls of beams have nodal averages only.
 */
export function cornerValues(result: Result, field: StressField | MotionField, face: Face): FacePair {
    const { own } = result;
    if (!own || isMotionField(field)) {
        const { positive, negative } = vertexValues(result, field, face);
        const ofPositive = spreadToCorners(result, positive);
        return {
            positive: ofPositive,
            negative: negative === positive ? ofPositive : spreadToCorners(result, negative),
        };
    }
    const wallVertices = result.quads.subarray(4 * result.shellQuads);
    return facePair(face, (side) => {
        const isPositive = side === 'positive';
        const values = new Float32Array(cornerCount(result));
        values.set(stressValues(isPositive ? own.quadPositive : own.quadNegative, field));
        const averages = stressValues(isPositive ? result.positiveFace : result.negativeFace, field);
        const wallBegin = 4 * result.shellQuads;
        for (let i = 0; i < wallVertices.length; ++i) values[wallBegin + i] = averages[wallVertices[i]];
        values.set(stressValues(isPositive ? own.triPositive : own.triNegative, field), result.quads.length);
        return values;
    });
}

export function cornerCount(result: Result): number {
    return result.quads.length + result.tris.length;
}

/** The vertex of a corner as cornerValues counts them. */
export function cornerVertex(result: Result, corner: number): number {
    const quadCorners = result.quads.length;
    return corner < quadCorners ? result.quads[corner] : result.tris[corner - quadCorners];
}

/**
 * One value per element, quadrilaterals (shells and walls), then triangles; not a number where an element has no such
 * property: sections are those of beams, thicknesses those of shells. undefined without the model. 'side' is 1 on the
 * positive face and -1 on the negative one.
 */
export function elementValues(result: Result, field: PropertyField): FacePair | undefined {
    const shells = result.shellQuads;
    const quads = result.quads.length / 4;
    const values = new Float32Array(quads + result.tris.length / 3).fill(NaN);
    if (field === 'side') return { positive: values.fill(1), negative: new Float32Array(values.length).fill(-1) };
    const { model, beams } = result;
    if (!model) return undefined;
    if (field === 'thickness') {
        for (let e = 0; e < shells; ++e) values[e] = model.thicknesses[model.quadThickness[e]];
        for (let e = quads; e < values.length; ++e) values[e] = model.thicknesses[model.triThickness[e - quads]];
    } else {
        const ofBeams = field === 'section' ? model.beamSection : model.beamMaterial;
        for (let b = 0; b < beams.count; ++b) values.fill(ofBeams[b], beams.wallBegin[b], beams.wallBegin[b + 1]);
        if (field === 'material') {
            values.set(model.quadMaterial);
            values.set(model.triMaterial, quads);
        }
    }
    return { positive: values, negative: values };
}

/** From STRESS_COLUMNS per item. */
export function stressValues(stresses: Float32Array, field: StressField): Float32Array {
    const values = new Float32Array(stresses.length / STRESS_COLUMNS);
    const column = STRESS_FIELDS.indexOf(field);
    if (column < STRESS_COLUMNS) {
        for (let i = 0; i < values.length; ++i) values[i] = stresses[STRESS_COLUMNS * i + column];
        return values;
    }
    const root = column - STRESS_COLUMNS;
    const roots = new Float64Array(3);
    for (let i = 0, s = 0; i < values.length; ++i, s += STRESS_COLUMNS) {
        principalStresses(
            stresses[s],
            stresses[s + 1],
            stresses[s + 2],
            stresses[s + 3],
            stresses[s + 4],
            stresses[s + 5],
            roots,
        );
        values[i] = roots[root];
    }
    return values;
}

/** One value per node, from DOFS per node; U and R are lengths of displacement and rotation. */
export function nodeMotions(displacements: Float32Array, field: MotionField): Float32Array {
    const values = new Float32Array(displacements.length / DOFS);
    const first = field.startsWith('R') ? 3 : 0;
    const axis = 'XYZ'.indexOf(field.slice(1)); // of "U" and "R": 0, since the rest of the name is empty
    const isLength = field === 'U' || field === 'R';
    for (let n = 0, d = first; n < values.length; ++n, d += DOFS) {
        values[n] = isLength
            ? Math.hypot(displacements[d], displacements[d + 1], displacements[d + 2])
            : displacements[d + axis];
    }
    return values;
}

/** Of each item the value that is farther from zero, with its sign. What is not a number stays to be seen. */
export function fartherFromZero(a: Float32Array, b: Float32Array): Float32Array {
    const values = new Float32Array(a.length);
    for (let i = 0; i < values.length; ++i) {
        values[i] = Number.isNaN(a[i]) || Math.abs(a[i]) >= Math.abs(b[i]) ? a[i] : b[i];
    }
    return values;
}

function facePair(face: Face, valuesOf: (side: 'positive' | 'negative') => Float32Array): FacePair {
    if (face === 'positive' || face === 'negative') {
        const values = valuesOf(face);
        return { positive: values, negative: values };
    }
    const positive = valuesOf('positive');
    const negative = valuesOf('negative');
    if (face === 'viewed') return { positive, negative };
    const larger = fartherFromZero(positive, negative);
    return { positive: larger, negative: larger };
}

function spreadToCorners({ quads, tris }: Result, values: Float32Array): Float32Array {
    const ofCorners = new Float32Array(quads.length + tris.length);
    for (let i = 0; i < quads.length; ++i) ofCorners[i] = values[quads[i]];
    for (let i = 0; i < tris.length; ++i) ofCorners[quads.length + i] = values[tris[i]];
    return ofCorners;
}
