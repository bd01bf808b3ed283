import { describe, expect, test } from 'vitest';
import { parseContourText } from '../../../src/model/ContourText';
import { STRESS_FIELDS } from '../../../src/model/FieldNames';
import { cornerValues, cornerVertex, elementValues, vertexValues } from '../../../src/model/Fields';
import { parseOwnStressText } from '../../../src/model/OwnStressText';
import { STRESS_COLUMNS, type Result } from '../../../src/model/Result';
import { CONTOUR_FILE, SMALL_TEXT, bytesOf, caseFile } from '../support/ContourTexts';
import { facts, shellResult } from '../support/Results';

const small = () => parseContourText(bytesOf(SMALL_TEXT), 'small');
const single = (...values: number[]) => Float32Array.from(values);

/** One triangle whose SX are these. */
function triangle(positive: number[], negative: number[]): Result {
    const result = shellResult(
        [
            [0, 0, 0],
            [1, 0, 0],
            [0, 1, 0],
        ],
        [],
        [[0, 1, 2]],
    );
    positive.forEach((value, i) => (result.positiveFace[STRESS_COLUMNS * i] = value));
    negative.forEach((value, i) => (result.negativeFace[STRESS_COLUMNS * i] = value));
    return result;
}

describe('values at vertices', () => {
    test('are those of the face asked for', () => {
        const result = triangle([1, -5, 3], [2, 4, -3]);
        const { positive: onPositive } = vertexValues(result, 'SX', 'positive');
        expect(onPositive).toEqual(single(1, -5, 3));
        expect(vertexValues(result, 'SX', 'negative').positive).toEqual(single(2, 4, -3));
        const viewed = vertexValues(result, 'SX', 'viewed');
        expect([viewed.positive, viewed.negative]).toEqual([single(1, -5, 3), single(2, 4, -3)]);
    });

    test('of the larger face are farther from zero and keep their sign', () => {
        const result = triangle([1, -5, NaN], [2, 4, 7]);
        const { positive, negative } = vertexValues(result, 'SX', 'larger');
        expect(positive).toEqual(single(2, -5, NaN));
        expect(negative).toBe(positive);
        const swapped = triangle([2, 4, 7], [1, -5, NaN]);
        expect(vertexValues(swapped, 'SX', 'larger').positive).toEqual(single(2, -5, NaN));
    });

    test('of every column and principal stress agree with the tensor', () => {
        const result = parseContourText(caseFile('folds', CONTOUR_FILE), 'folds');
        const all = STRESS_FIELDS.map((field) => vertexValues(result, field, 'negative').positive);
        for (let v = 0; v < result.vertexNodes.length; ++v) {
            for (let k = 0; k < STRESS_COLUMNS; ++k) {
                expect(all[k][v]).toBe(result.negativeFace[STRESS_COLUMNS * v + k]);
            }
            // SE² = ½·[(S1 − S2)² + (S2 − S3)² + (S3 − S1)²]; six digits of the components leave five of SE
            const [s1, s2, s3] = [all[7][v], all[8][v], all[9][v]];
            const equivalent = Math.sqrt(((s1 - s2) ** 2 + (s2 - s3) ** 2 + (s3 - s1) ** 2) / 2);
            expect(Math.abs(equivalent - all[6][v])).toBeLessThanOrEqual(2e-5 * Math.max(s1, -s3));
        }
    });

    test('of motion are those of the node', () => {
        const result = small();
        const at = (field: 'U' | 'DY' | 'R' | 'RZ') => vertexValues(result, field, 'larger').positive;
        const vertex = result.vertexNodes.lastIndexOf(2); // of the triangle; the quadrilateral has one there, too
        expect(at('U')[vertex]).toBe(Math.fround(Math.sqrt(14)));
        expect(at('DY')[vertex]).toBe(2);
        expect(at('R')[vertex]).toBe(Math.fround(Math.sqrt(77)));
        expect(at('RZ')[2]).toBe(6);
        expect(at('U')[0]).toBe(0);
    });
});

describe('values at corners', () => {
    test('without own stresses are those of the vertices', () => {
        const result = small();
        const ofVertices = vertexValues(result, 'SX', 'positive').positive;
        const { positive } = cornerValues(result, 'SX', 'positive');
        expect([...positive]).toEqual([10, 11, 12, 13, 30, 31, 32, 33, 20, 21, 22]);
        positive.forEach((value, corner) => expect(value).toBe(ofVertices[cornerVertex(result, corner)]));
    });

    test('are the own ones of shells and the averages of walls', () => {
        const result = small();
        const own = (count: number, first: number) =>
            Float32Array.from({ length: STRESS_COLUMNS * count }, (_, i) => (i % 7 === 0 ? first + i / 7 : 0));
        result.own = {
            quadPositive: own(4, 100),
            quadNegative: own(4, -200),
            triPositive: own(3, 300),
            triNegative: own(3, 0),
        };
        const { positive } = cornerValues(result, 'SX', 'positive');
        expect([...positive]).toEqual([100, 101, 102, 103, 30, 31, 32, 33, 300, 301, 302]);
        const larger = cornerValues(result, 'SX', 'larger').positive;
        expect([...larger]).toEqual([-200, -199, -198, -197, 30, 31, 32, 33, 300, 301, 302]);
    });

    test('of a case are the lines of its file of own stresses', () => {
        const result = parseContourText(caseFile('folds', CONTOUR_FILE), 'folds');
        const text = caseFile('folds', 'Shell element node stress.txt');
        result.own = parseOwnStressText(text, 'own', result);
        const lines = new TextDecoder().decode(text).split(/\r?\n/);
        const se = lines.filter((line) => /^ +\d+:/.test(line)).map((line) => Number(line.trim().split(/ +/)[7]));
        const expected = Float32Array.from(se.filter((_, i) => i % 2 === 0));
        expect(cornerValues(result, 'SE', 'positive').positive).toEqual(expected);
    });
});

describe('values of elements', () => {
    test('are the properties of shells and of the beams of walls', () => {
        const result = small();
        result.model = { ...facts(result), quadThickness: Uint32Array.of(1), beamSection: Uint32Array.of(1) };
        result.model.triMaterial[0] = 1;
        expect(elementValues(result, 'thickness')?.positive).toEqual(single(0.02, NaN, 0.01));
        expect(elementValues(result, 'section')?.positive).toEqual(single(NaN, 1, NaN));
        expect(elementValues(result, 'material')?.positive).toEqual(single(0, 0, 1));
    });

    test('need the model, but for the side', () => {
        expect(elementValues(small(), 'thickness')).toBeUndefined();
        expect(elementValues(small(), 'side')).toEqual({ positive: single(1, 1, 1), negative: single(-1, -1, -1) });
    });
});
