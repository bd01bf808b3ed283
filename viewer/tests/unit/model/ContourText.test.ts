import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { describe, expect, test } from 'vitest';
import { parseContourText } from '../../../src/model/ContourText';
import { STRESS_COLUMNS, type Result } from '../../../src/model/Result';
import {
    CONTOUR_FILE,
    REPOSITORY,
    SMALL_TEXT,
    bytesOf,
    caseFile,
    caseNames,
    plainContour,
} from '../support/ContourTexts';
import { writtenContour } from '../support/WrittenContour';

const NAME = 'contour.txt';
const parse = (text: string) => parseContourText(bytesOf(text), NAME);

function faultOf(text: string | Uint8Array): string {
    try {
        parseContourText(typeof text === 'string' ? bytesOf(text) : text, NAME);
    } catch (error) {
        return (error as Error).message;
    }
    return '';
}

function replaced(text: string, from: string, to: string): string {
    expect(text).toContain(from);
    return text.replace(from, to);
}

/** Numbers of a result as the file has them, one after the other. */
function expectSame(actual: Float32Array, expected: number[], what: string): void {
    const single = Float32Array.from(expected);
    expect(actual.length, what).toBe(single.length);
    const differs = actual.findIndex((value, i) => value !== single[i]);
    expect(differs < 0 ? 'same' : `${what} ${differs}: ${actual[differs]} is ${single[differs]}`).toBe('same');
}

function stressesByCorner({ vertexNodes, positiveFace, negativeFace }: Result, corners: Uint32Array) {
    const lines: number[] = [];
    for (const vertex of corners) {
        const begin = STRESS_COLUMNS * vertex;
        lines.push(...positiveFace.subarray(begin, begin + STRESS_COLUMNS));
        lines.push(...negativeFace.subarray(begin, begin + STRESS_COLUMNS));
    }
    return { nodes: Array.from(corners, (vertex) => vertexNodes[vertex]), lines: Float32Array.from(lines) };
}

const plainZeros = (line: string) => line.replace(/(^|,)-0(?=,|$)/g, '$10');

describe('a contour file', () => {
    test.each(caseNames())('of the case %s has every value that a plain reader finds', (name) => {
        const bytes = caseFile(name, CONTOUR_FILE);
        const plain = plainContour(new TextDecoder().decode(bytes));
        const result = parseContourText(bytes, CONTOUR_FILE);
        const parts = [plain, ...plain.beams];
        expect(result.structureNodes).toBe(plain.coordinates.length);
        expectSame(result.coordinates, parts.flatMap((part) => part.coordinates).flat(), 'coordinate');
        expectSame(result.displacements, parts.flatMap((part) => part.displacements).flat(), 'displacement');
        expectSame(
            result.beams.ends,
            plain.beams.flatMap((beam) => beam.ends),
            'beam end',
        );

        const firstNodes = [0, ...result.beams.nodeBegin];
        const quadParts = [plain.quads, ...plain.beams.map((beam) => beam.walls)];
        const quadNodes = quadParts.flatMap((part, i) => part.nodes.flat().map((node) => firstNodes[i] + node));
        const quads = stressesByCorner(result, result.quads);
        expect(quads.nodes).toEqual(quadNodes);
        expectSame(quads.lines, quadParts.flatMap((part) => part.stresses).flat(2), 'stress of quads');
        const tris = stressesByCorner(result, result.tris);
        expect(tris.nodes).toEqual(plain.tris.nodes.flat());
        expectSame(tris.lines, plain.tris.stresses.flat(2), 'stress of tris');

        const wallBegin = [plain.quads.nodes.length];
        for (const beam of plain.beams) wallBegin.push(wallBegin[wallBegin.length - 1] + beam.walls.nodes.length);
        expect(result.shellQuads).toBe(wallBegin[0]);
        expect([...result.beams.wallBegin]).toEqual(wallBegin);
    });

    test.each(caseNames())('of the case %s is what writing its result gives, line for line', (name) => {
        const text = new TextDecoder().decode(caseFile(name, CONTOUR_FILE));
        const written = writtenContour(parseContourText(bytesOf(text), CONTOUR_FILE)).split('\n');
        // stresses of -0 are taken for 0; line ends are those of the system
        const lines = text.replaceAll('\r\n', '\n').split('\n');
        const differs = lines.findIndex((line, i) => plainZeros(line) !== plainZeros(written[i] ?? ''));
        expect(differs < 0 ? '' : `${differs + 1}: ${lines[differs]} is ${written[differs]}`).toBe('');
        expect(written.length).toBe(lines.length);
    });

    test('has one vertex for each node and pair of face stresses', () => {
        for (const name of caseNames()) {
            const { vertexNodes, positiveFace, negativeFace } = parseContourText(
                caseFile(name, CONTOUR_FILE),
                CONTOUR_FILE,
            );
            const keys = Array.from(vertexNodes, (node, v) => {
                const range = [STRESS_COLUMNS * v, STRESS_COLUMNS * (v + 1)] as const;
                return [node, ...positiveFace.subarray(...range), ...negativeFace.subarray(...range)].join();
            });
            expect(new Set(keys).size, name).toBe(keys.length);
        }
    });

    test('puts every value in its place', () => {
        const result = parse(SMALL_TEXT);
        expect([...result.coordinates.subarray(9, 12)]).toEqual([0, 1, Math.fround(-2e-7)]);
        expect([...result.displacements.subarray(12, 18)]).toEqual([1, 2, 3, 4, 5, 6]);
        expect(result.structureNodes).toBe(4);
        expect([...result.vertexNodes]).toEqual([0, 1, 2, 3, 2, 1, 0, 7, 6, 5, 4]);
        expect([...result.quads]).toEqual([0, 1, 2, 3, 7, 8, 9, 10]);
        expect([...result.tris]).toEqual([4, 5, 6]);
        expect(result.positiveFace[STRESS_COLUMNS * 5]).toBe(21);
        expect(result.negativeFace[STRESS_COLUMNS * 9 + 6]).toBe(0.5);
        expect(result.shellQuads).toBe(1);
        expect([...result.beams.ends]).toEqual([0, 0, 0, 1, 0, 0]);
        expect([...result.beams.wallBegin]).toEqual([1, 2]);
        expect([...result.beams.nodeBegin]).toEqual([4, 8]);
    });

    test('with the line ends of Windows is the same', () => {
        expect(parse(SMALL_TEXT.replaceAll('\n', '\r\n'))).toEqual(parse(SMALL_TEXT));
    });

    test('merges corners whose stresses differ in the sign of a zero or are both no numbers', () => {
        const shells = (a: string, b: string) => {
            const line = (sx: string) => `0\n${sx},0,0,0,0,0,0\n0,0,0,0,0,0,0\n`.slice(2);
            return `0,0,0\n${line(a) + line(b) + line(a)}`;
        };
        const text = (a: string, b: string) =>
            `NPOIN=1\n0,0,0\n0,0,0,0,0,0\nNELEM_S_4ND=0\nNELEM_S_3ND=1\n${shells(a, b)}NELEM_B=0\n`;
        expect(parse(text('0', '-0')).vertexNodes.length).toBe(1);
        expect(parse(text('nan', '-nan')).vertexNodes.length).toBe(1);
        expect(parse(text('inf', '-inf')).vertexNodes.length).toBe(2);
    });

    test('tells how far it is read', () => {
        const told: number[] = [];
        const bytes = caseFile('tubes', CONTOUR_FILE);
        parseContourText(bytes, NAME, (read) => told.push(read));
        expect(told.length).toBeGreaterThan(1);
        expect([...told].sort((a, b) => a - b)).toEqual(told);
        expect(told[told.length - 1]).toBe(bytes.length);
    });
});

describe('a damaged contour file', () => {
    test('is refused with place, record, what was expected and what to do', () => {
        expect(faultOf(replaced(SMALL_TEXT, '1,2,3,4', '1,2,x,4'))).toBe(
            'contour.txt:8:5: error: displacements of node 2: the text does not match the format of the contour file\n' +
                '  8 | 1,2,x,4,5,6\n' +
                '    |     ^\n' +
                '  expected: a number in general notation with six significant digits, as "-1.5" or "2e-07"\n' +
                '  to do:    solve the model again; the file was cut off or altered',
        );
    });

    test('is refused with the beam of the fault', () => {
        const at = SMALL_TEXT.lastIndexOf('3,2,1,0');
        const fault = faultOf(`${SMALL_TEXT.slice(0, at)}3,2,4,0${SMALL_TEXT.slice(at + 7)}`);
        expect(fault).toContain(':5: error: wall 0 of beam 0: ');
        expect(fault).toContain('expected: a node number below 4\n');
    });

    test.each(['0,1,2,4', '0,1,2,-1', '0,1,2,99999999999', '0,1,2,03', '0,1,2', '0,1,2,3,1'])(
        'is refused for the nodes %s of 4',
        (nodes) => {
            const fault = faultOf(replaced(SMALL_TEXT, '0,1,2,3\n', `${nodes}\n`));
            expect(fault).toMatch(/^contour\.txt:11:/);
            expect(fault).toContain('four-node shell 0');
        },
    );

    test.each(['NPOIN=', 'NELEM_S_4ND=', 'NELEM_S_3ND=', 'NELEM_B=', 'NELEM='])(
        'is refused for a count behind %s that the rest cannot hold, before room is made for it',
        (key) => {
            const fault = faultOf(replaced(SMALL_TEXT, key, `${key}200000000`));
            expect(fault).toContain(', but the rest of the file cannot hold so many ');
            const negative = faultOf(replaced(SMALL_TEXT, key, `${key}-`));
            expect(negative).toContain('expected: an integer from 0 to 2147483647\n');
        },
    );

    test('is refused for beams out of order and for text behind the last beam', () => {
        expect(faultOf(replaced(SMALL_TEXT, 'BEI=0', 'BEI=1'))).toContain('expected: "BEI=0"\n');
        expect(faultOf(`${SMALL_TEXT}\n`)).toContain('expected: the end of the file behind the last beam\n');
    });

    test('is refused when cut after any byte', () => {
        const bytes = bytesOf(SMALL_TEXT);
        for (let size = 0; size < bytes.length; ++size) {
            expect(faultOf(bytes.subarray(0, size)), String(size)).toMatch(/^contour\.txt:/);
        }
    });

    // Inputs kept by the fuzzer of the program's own reader, and those among them which that reader takes.
    test('of the corpus is refused where the program refuses it', () => {
        const corpus = join(REPOSITORY, 'tests/input/contour_corpus');
        const taken = readdirSync(corpus)
            .sort()
            .filter((file) => faultOf(new Uint8Array(readFileSync(join(corpus, file)))) === '');
        const numbers = ['02', '15', '21', '45', '56', '64', '86', '94'];
        expect(taken).toEqual(numbers.map((number) => `input_${number}`));
    });
});
