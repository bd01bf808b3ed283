// A small contour text, and a plain reader of contour texts to compare with: lines and numbers as strings, every value
// where it stands in the file.
import { readFileSync, readdirSync } from 'node:fs';
import { join } from 'node:path';
import { fileURLToPath } from 'node:url';

export const REPOSITORY = fileURLToPath(new URL('../../../..', import.meta.url));
export const CONTOUR_FILE = 'Tarn+Vexo_AverageStrs.txt';

export const bytesOf = (text: string) => new TextEncoder().encode(text);

/** Names of the cases of the repository that have results. */
export function caseNames(): string[] {
    const cases = join(REPOSITORY, 'tests/cases');
    return readdirSync(cases, { withFileTypes: true })
        .filter((entry) => entry.isDirectory() && readdirSync(join(cases, entry.name)).includes('expected'))
        .map((entry) => entry.name);
}

export function caseFile(name: string, file: string): Uint8Array<ArrayBuffer> {
    return new Uint8Array(readFileSync(join(REPOSITORY, 'tests/cases', name, 'expected', file)));
}

const stressLine = (sx: number, se = 0) => `${sx},0,0,0,0,0,${se}\n`;

/** Corner i has SX = first + i on both faces; SE is 0.5 on the negative one. */
function shell(nodes: number[], first: number): string {
    return `${nodes.join()}\n` + nodes.map((_, i) => stressLine(first + i) + stressLine(first + i, 0.5)).join('');
}

const NODES = 'NPOIN=4\n0,0,0\n1,0,0\n1,1.5,0\n0,1,-2e-07\n0,0,0,0,0,0\n0,0,0,0,0,0\n1,2,3,4,5,6\n0,0,0,0,0,0\n';

/** A shell of each kind and a beam of one wall, on four nodes. */
export const SMALL_TEXT =
    NODES +
    `NELEM_S_4ND=1\n${shell([0, 1, 2, 3], 10)}` +
    `NELEM_S_3ND=1\n${shell([2, 1, 0], 20)}` +
    `NELEM_B=1\nBEI=0\nSND(0,0,0)\nEND(1,0,0)\n${NODES}NELEM=1\n${shell([3, 2, 1, 0], 30)}`;

export interface PlainShells {
    nodes: number[][];
    /** By corner, element after element: the lines of the positive and the negative face. */
    stresses: number[][][];
}

export interface PlainContour {
    coordinates: number[][];
    displacements: number[][];
    quads: PlainShells;
    tris: PlainShells;
    beams: { ends: number[]; coordinates: number[][]; displacements: number[][]; walls: PlainShells }[];
}

export function plainContour(text: string): PlainContour {
    const lines = text.split(/\r?\n/);
    let at = 0;
    const count = () => Number(lines[at++].split('=')[1]);
    const row = () => lines[at++].split(',').map(plainNumber);
    const rows = (size: number) => Array.from({ length: size }, row);
    const nodes = () => {
        const size = count();
        return { coordinates: rows(size), displacements: rows(size) };
    };
    const shells = (): PlainShells => {
        const read: PlainShells = { nodes: [], stresses: [] };
        for (let left = count(); left > 0; --left) {
            const corners = row();
            read.nodes.push(corners);
            read.stresses.push(...corners.map(() => [row(), row()]));
        }
        return read;
    };
    const structure = nodes();
    const quads = shells();
    const tris = shells();
    const beams = Array.from({ length: count() }, () => {
        ++at; // BEI=
        const ends = [lines[at++], lines[at++]].flatMap((line) => line.slice(4, -1).split(',').map(plainNumber));
        return { ends, ...nodes(), walls: shells() };
    });
    return { ...structure, quads, tris, beams };
}

function plainNumber(text: string): number {
    if (/inf/.test(text)) return text.startsWith('-') ? -Infinity : Infinity;
    return /nan/.test(text) ? NaN : Number(text);
}
