import { gunzipSync, gzipSync } from 'node:zlib';
import { describe, expect, test } from 'vitest';
import { parseContourText } from '../../../src/model/ContourText';
import { parseOwnStressText } from '../../../src/model/OwnStressText';
import { decodePacket, decodePacketText, encodePacket } from '../../../src/model/Packet';
import type { Result } from '../../../src/model/Result';
import { CONTOUR_FILE, SMALL_TEXT, bytesOf, caseFile, caseNames } from '../support/ContourTexts';
import { facts } from '../support/Results';

/** The small result with everything that a packet may hold. */
function fullResult(): Result {
    const result = parseContourText(bytesOf(SMALL_TEXT), 'small ä 梁');
    const corners = (count: number) => Float32Array.from({ length: 7 * count }, (_, i) => i / 8);
    result.own = {
        quadPositive: corners(4),
        quadNegative: corners(4),
        triPositive: corners(3),
        triNegative: corners(3),
    };
    result.model = {
        ...facts(result),
        beamNodes: Uint32Array.of(0, 1),
        beamSection: Uint32Array.of(1),
        supportNodes: Uint32Array.of(0, 3),
        supportBits: Uint32Array.of(63, 7),
        forceNodes: Uint32Array.of(2),
        forces: Float32Array.of(1, 2, 3, 4, 5, 6),
        inertiaForces: new Float32Array(24).fill(0.25),
        distributed: {
            quads: Uint32Array.of(0, 0),
            quadPressures: Float32Array.of(1, 2, 3, 2, -1, -1, -1, -1),
            tris: Uint32Array.of(0),
            triPressures: Float32Array.of(4, 5, 6),
            beams: Uint32Array.of(0),
            lineLoads: Float32Array.of(-7, 8),
            lineDirections: Float32Array.of(0, 0, 1),
        },
    };
    return result;
}

/** Head and arrays of a packet, changed and put together again. */
async function damaged(change: (head: any, data: DataView) => void): Promise<Uint8Array<ArrayBuffer>> {
    const plain = gunzipSync(await encodePacket({ result: fullResult() }));
    const headSize = plain.readUInt32LE(8);
    const head = JSON.parse(plain.subarray(12, 12 + headSize).toString());
    const data = new Uint8Array(plain.subarray(12 + headSize));
    change(head, new DataView(data.buffer));
    const text = Buffer.from(JSON.stringify(head));
    const size = 8 * Math.ceil((12 + text.length) / 8) - 12;
    const bytes = Buffer.alloc(12 + size, ' ');
    bytes.write('TVXRES1\n');
    bytes.writeUInt32LE(size, 8);
    text.copy(bytes, 12);
    return new Uint8Array(gzipSync(Buffer.concat([bytes, data])));
}

describe('a packet', () => {
    test('gives back the result that it was made of', async () => {
        const result = fullResult();
        const view = 'v=1&field=SX';
        expect(await decodePacket(await encodePacket({ result, view }))).toEqual({ result, view });
    });

    test.each(caseNames())('gives back the results of the case %s', async (name) => {
        const result = parseContourText(caseFile(name, CONTOUR_FILE), name);
        result.own = parseOwnStressText(caseFile(name, 'Shell element node stress.txt'), name, result);
        expect((await decodePacket(await encodePacket({ result }))).result).toEqual(result);
    });

    test('that tells nothing of loads on elements is read without them', async () => {
        const bytes = await damaged((head) => {
            for (const name of Object.keys(head.arrays)) if (/Pressure|lineLoad/.test(name)) delete head.arrays[name];
        });
        const { result } = await decodePacket(bytes);
        expect(result.model?.distributed).toBeUndefined();
        expect(result.model?.forceNodes.length).toBe(1);
    });

    test('is read from the text of a page, line ends in it or not', async () => {
        const bytes = await encodePacket({ result: fullResult() });
        const text = Buffer.from(bytes).toString('base64').replace(/.{76}/g, '$&\n');
        expect((await decodePacketText(`\n${text}\n`)).result).toEqual(fullResult());
    });
});

describe('a damaged packet', () => {
    const messageOf = async (bytes: Uint8Array<ArrayBuffer>) =>
        decodePacket(bytes).then(
            () => 'no fault',
            (error: Error) => error.message,
        );

    test('is refused with what is wrong, what was expected and what to do', async () => {
        const bytes = await damaged((head) => (head.arrays.quads.length = 7));
        expect(await messageOf(bytes)).toBe(
            'result packet: error: array "quads" has 7 items\n' +
                '  expected: a multiple of 4\n' +
                '  to do:    make the page anew from the results; it was cut off or altered',
        );
    });

    const faults: [string, (head: any, data: DataView) => void][] = [
        ['its head has no "title"', (head) => delete head.title],
        ['its head has no "beamCount"', (head) => (head.beamCount = -1)],
        ['"structureNodes" is more than there are nodes', (head) => (head.structureNodes = 9)],
        ['"shellQuads" is more than there are quads', (head) => (head.shellQuads = 3)],
        ['its "view" is no text', (head) => (head.view = {})],
        ['its head has no "thicknesses"', (head) => delete head.thicknesses],
        ['its head has no "materials"', (head) => (head.materials = [{ E: 1 }])],
        ['there is no array "positiveFace"', (head) => delete head.arrays.positiveFace],
        ['there is no array "ownTriNegative"', (head) => delete head.arrays.ownTriNegative],
        ['array "tris" has another type', (head) => (head.arrays.tris.type = 'f32')],
        ['array "tris" has no place', (head) => (head.arrays.tris.offset = 4)],
        ['array "coordinates" goes beyond the end', (head) => (head.arrays.coordinates.length = 3e6)],
        ['array "coordinates" goes beyond the end', (head) => (head.arrays.coordinates.offset = 8e6)],
        ['array "displacements" has 42 items', (head) => (head.arrays.displacements.length = 42)],
        ['array "inertiaForces" has 18 items', (head) => (head.arrays.inertiaForces.length = 18)],
        ['array "vertexNodes" has 8 at item 3', index('vertexNodes', 3, 8)],
        ['array "quads" has 11 at item 0', index('quads', 0, 11)],
        ['array "tris" has 4294967295 at item 2', index('tris', 2, 4294967295)],
        ['array "quadThickness" has 2 at item 0', index('quadThickness', 0, 2)],
        ['array "beamNodes" has 4 at item 1', index('beamNodes', 1, 4)],
        ['array "supportBits" has 64 at item 1', index('supportBits', 1, 64)],
        ['array "quadPressureElements" has 1 at item 1', index('quadPressureElements', 1, 1)],
        ['array "triPressures" has 2 items', (head) => (head.arrays.triPressures.length = 2)],
        ['array "lineLoadBeams" has 1 at item 0', index('lineLoadBeams', 0, 1)],
        ['there is no array "lineLoadDirections"', (head) => delete head.arrays.lineLoadDirections],
        ['array "beamWallBegin" has 0 at item 0', index('beamWallBegin', 0, 0)],
        ['array "beamWallBegin" has 0 at item 1', index('beamWallBegin', 1, 0)],
        ['array "beamNodeBegin" ends with 7', index('beamNodeBegin', 1, 7)],
    ];

    function index(name: string, item: number, value: number) {
        return (head: any, data: DataView) => data.setUint32(head.arrays[name].offset + 4 * item, value, true);
    }

    test.each(faults)('is refused: %s', async (what, change) => {
        expect(await messageOf(await damaged(change))).toContain(`error: ${what}`);
    });

    test('is refused when compressed data are cut off, and when they are none', async () => {
        const bytes = await encodePacket({ result: fullResult() });
        for (const part of [bytes.slice(0, bytes.length >> 1), bytes.slice(1), new Uint8Array(0)]) {
            expect(await messageOf(part)).toContain('it cannot be decompressed');
        }
        await expect(decodePacketText('***')).rejects.toThrow('its text is not base64');
    });

    test('is refused when cut off anywhere before it was compressed', async () => {
        const plain = gunzipSync(await encodePacket({ result: fullResult() }));
        for (let size = 0; size < plain.length; size += 13) {
            const message = await messageOf(new Uint8Array(gzipSync(plain.subarray(0, size))));
            expect(message, String(size)).toMatch(/^result packet: error: /);
        }
    });
});
