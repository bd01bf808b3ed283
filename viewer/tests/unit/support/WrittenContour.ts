// Writes the contour text of a result as the program does, for round trips.
import { DOFS, STRESS_COLUMNS, type Result } from '../../../src/model/Result';

/** General notation with six significant digits, "-1.5" or "2e-07", as printf writes it for %g. */
export function generalNumber(value: number): string {
    if (Number.isNaN(value)) return 'nan';
    if (!Number.isFinite(value)) return value < 0 ? '-inf' : 'inf';
    const [digits, exponent] = value.toExponential(5).split('e');
    const power = Number(exponent);
    if (power >= -4 && power < 6) return Object.is(value, -0) ? '-0' : withoutZeros(value.toFixed(5 - power));
    const sign = power < 0 ? '-' : '+';
    return `${withoutZeros(digits)}e${sign}${String(Math.abs(power)).padStart(2, '0')}`;
}

function withoutZeros(text: string): string {
    return text.includes('.') ? text.replace(/\.?0+$/, '') : text;
}

export function writtenContour(result: Result): string {
    const { beams, quads, tris } = result;
    const lines: string[] = [];
    const put = (values: Float32Array): void => void lines.push(Array.from(values, generalNumber).join(','));
    const rows = (array: Float32Array, width: number, begin: number, end: number): void => {
        for (let i = begin; i < end; ++i) put(array.subarray(width * i, width * (i + 1)));
    };
    const nodes = (begin: number, end: number): void => {
        lines.push(`NPOIN=${end - begin}`);
        rows(result.coordinates, 3, begin, end);
        rows(result.displacements, DOFS, begin, end);
    };
    const shells = (key: string, vertices: Uint32Array, corners: number, firstNode: number): void => {
        lines.push(`${key}=${vertices.length / corners}`);
        for (let begin = 0; begin < vertices.length; begin += corners) {
            const element = vertices.subarray(begin, begin + corners);
            lines.push(Array.from(element, (vertex) => result.vertexNodes[vertex] - firstNode).join(','));
            for (const vertex of element) {
                rows(result.positiveFace, STRESS_COLUMNS, vertex, vertex + 1);
                rows(result.negativeFace, STRESS_COLUMNS, vertex, vertex + 1);
            }
        }
    };
    nodes(0, result.structureNodes);
    shells('NELEM_S_4ND', quads.subarray(0, 4 * result.shellQuads), 4, 0);
    shells('NELEM_S_3ND', tris, 3, 0);
    lines.push(`NELEM_B=${beams.count}`);
    for (let b = 0; b < beams.count; ++b) {
        const end = (i: number): string => Array.from(beams.ends.subarray(i, i + 3), generalNumber).join(',');
        lines.push(`BEI=${b}`, `SND(${end(6 * b)})`, `END(${end(6 * b + 3)})`);
        nodes(beams.nodeBegin[b], beams.nodeBegin[b + 1]);
        shells('NELEM', quads.subarray(4 * beams.wallBegin[b], 4 * beams.wallBegin[b + 1]), 4, beams.nodeBegin[b]);
    }
    return lines.join('\n') + '\n';
}
