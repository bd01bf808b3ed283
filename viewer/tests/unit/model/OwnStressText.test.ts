import { describe, expect, test } from 'vitest';
import { parseContourText } from '../../../src/model/ContourText';
import { parseOwnStressText } from '../../../src/model/OwnStressText';
import { CONTOUR_FILE, bytesOf, caseFile, caseNames } from '../support/ContourTexts';

const OWN_FILE = 'Shell element node stress.txt';
const contour = (name: string) => parseContourText(caseFile(name, CONTOUR_FILE), name);
const ownText = (name: string) => new TextDecoder().decode(caseFile(name, OWN_FILE));

function faultOf(text: string): string {
    try {
        parseOwnStressText(bytesOf(text), OWN_FILE, contour('single_quad'));
    } catch (error) {
        return (error as Error).message;
    }
    return '';
}

describe('own stresses', () => {
    test.each(caseNames())('of the case %s are those that a plain reader finds', (name) => {
        const rows = ownText(name)
            .split(/\r?\n/)
            .filter((line) => /^ +\d+:/.test(line))
            .map((line) => line.split(':')[1].trim().split(/ +/).map(Number));
        const result = contour(name);
        const { quadPositive, quadNegative, triPositive, triNegative } = parseOwnStressText(
            bytesOf(ownText(name)),
            OWN_FILE,
            result,
        );
        const face = (face: number) => Float32Array.from(rows.filter((_, i) => i % 2 === face).flat());
        expect(Float32Array.of(...quadPositive, ...triPositive)).toEqual(face(0));
        expect(Float32Array.of(...quadNegative, ...triNegative)).toEqual(face(1));
    });

    test('of a single element are its averages', () => {
        const result = contour('single_quad');
        const own = parseOwnStressText(bytesOf(ownText('single_quad')), OWN_FILE, result);
        expect(own.quadPositive.map((value) => value + 0)).toEqual(result.positiveFace);
    });
});

describe('a file of own stresses is refused', () => {
    const text = ownText('single_quad');

    test('with place and element, where a number is not as it is written', () => {
        const lines = text.split('\n');
        lines[3] = lines[3].replace(/\d$/, 'x');
        const fault = faultOf(lines.join('\n'));
        expect(fault).toMatch(
            /^Shell element node stress\.txt:4:\d+: error: four-node shell 0: the text does not match/,
        );
        expect(fault).toContain('a number with six significant digits at the end of 15 columns');
    });

    test('where its nodes are not those of the contour file', () => {
        const fault = faultOf(text.replace('             1:', '             3:'));
        expect(fault).toContain('expected: "1:" at the end of 15 columns, the node of the contour file\n');
        expect(fault).toContain('to do:    take both files from one run');
    });

    test('where it has more or fewer elements than the contour file', () => {
        expect(faultOf(text + text)).toContain('expected: the end of the file behind the last shell of the results');
        expect(faultOf('')).toContain('expected: "Four-nodes shell element:0"');
    });

    test('where it is the file of averages', () => {
        const averages = new TextDecoder().decode(caseFile('single_quad', 'Shell element average node stress.txt'));
        expect(faultOf(averages)).toContain('expected: "Four-nodes shell element:0"');
    });

    test('when cut after any byte', () => {
        for (let size = 0; size < text.length; ++size) expect(faultOf(text.slice(0, size))).not.toBe('');
    });
});
