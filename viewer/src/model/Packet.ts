// Result packets: the arrays of a Result behind a head that names them, compressed. docs/formats/result-packet.md has
// the layout. Every array and every number that points into another array is checked: what comes out can be drawn.
import { DOFS, STRESS_COLUMNS, type DistributedLoads, type ModelFacts, type OwnStresses, type Result } from './Result';

const MAGIC = 'TVXRES1\n';
const ALIGNMENT = 8;
const HEAD_BEGIN = MAGIC.length + 4;
const ALL_DIRECTIONS = 63;

export class PacketFault extends Error {
    override name = 'PacketFault';
    constructor(what: string, expected: string) {
        super(
            `result packet: error: ${what}\n  expected: ${expected}\n` +
                '  to do:    make the page anew from the results; it was cut off or altered',
        );
    }
}

export interface Packet {
    result: Result;
    /** State of the view to begin with, as the address of the page has it: text. */
    view?: string;
}

interface Head {
    title: string;
    structureNodes: number;
    shellQuads: number;
    beamCount: number;
    arrays: Record<string, ArrayPlace>;
    thicknesses?: number[];
    sections?: string[];
    materials?: ModelFacts['materials'];
    view?: string;
}

interface ArrayPlace {
    type: 'f32' | 'u32';
    offset: number;
    length: number;
}

/** From the text of a page's script element: base64, blanks and line ends anywhere. Throws PacketFault. */
export async function decodePacketText(base64: string): Promise<Packet> {
    let characters: string;
    try {
        characters = atob(base64);
    } catch {
        throw new PacketFault('its text is not base64', 'letters, digits, "+", "/" and "=" at the end');
    }
    const bytes = new Uint8Array(characters.length);
    for (let i = 0; i < bytes.length; ++i) bytes[i] = characters.charCodeAt(i);
    return decodePacket(bytes);
}

/** From compressed bytes. Throws PacketFault. */
export async function decodePacket(compressed: Uint8Array<ArrayBuffer>): Promise<Packet> {
    let bytes: Uint8Array<ArrayBuffer>;
    try {
        bytes = await piped(compressed, new DecompressionStream('gzip'));
    } catch {
        throw new PacketFault('it cannot be decompressed', 'data as gzip compresses them, complete');
    }
    return new PacketReader(bytes).read();
}

export async function encodePacket({ result, view }: Packet): Promise<Uint8Array<ArrayBuffer>> {
    const arrays = namedArrays(result);
    const places: Record<string, ArrayPlace> = {};
    let size = 0;
    for (const [name, array] of arrays) {
        places[name] = { type: array instanceof Float32Array ? 'f32' : 'u32', offset: size, length: array.length };
        size = aligned(size + array.byteLength);
    }
    const { title, structureNodes, shellQuads, model } = result;
    const head: Head = { title, structureNodes, shellQuads, beamCount: result.beams.count, arrays: places };
    if (model)
        Object.assign(head, { thicknesses: model.thicknesses, sections: model.sections, materials: model.materials });
    if (view !== undefined) head.view = view;

    const text = new TextEncoder().encode(JSON.stringify(head));
    const dataBegin = aligned(HEAD_BEGIN + text.length);
    const bytes = new Uint8Array(dataBegin + size).fill(32, 0, dataBegin);
    bytes.set(new TextEncoder().encode(MAGIC));
    new DataView(bytes.buffer).setUint32(MAGIC.length, dataBegin - HEAD_BEGIN, true);
    bytes.set(text, HEAD_BEGIN);
    for (const [name, array] of arrays) {
        bytes.set(new Uint8Array(array.buffer, array.byteOffset, array.byteLength), dataBegin + places[name].offset);
    }
    return piped(bytes, new CompressionStream('gzip'));
}

function aligned(size: number): number {
    return ALIGNMENT * Math.ceil(size / ALIGNMENT);
}

async function piped(
    bytes: Uint8Array<ArrayBuffer>,
    through: ReadableWritablePair<Uint8Array, BufferSource>,
): Promise<Uint8Array<ArrayBuffer>> {
    const stream = new Blob([bytes]).stream().pipeThrough(through);
    return new Uint8Array(await new Response(stream as ReadableStream<Uint8Array<ArrayBuffer>>).arrayBuffer());
}

function namedArrays({ beams, own, model, ...result }: Result): [string, Float32Array | Uint32Array][] {
    const arrays: [string, Float32Array | Uint32Array][] = [
        ['coordinates', result.coordinates],
        ['displacements', result.displacements],
        ['vertexNodes', result.vertexNodes],
        ['positiveFace', result.positiveFace],
        ['negativeFace', result.negativeFace],
        ['quads', result.quads],
        ['tris', result.tris],
        ['beamEnds', beams.ends],
        ['beamWallBegin', beams.wallBegin],
        ['beamNodeBegin', beams.nodeBegin],
    ];
    if (own) {
        arrays.push(
            ['ownQuadPositive', own.quadPositive],
            ['ownQuadNegative', own.quadNegative],
            ['ownTriPositive', own.triPositive],
            ['ownTriNegative', own.triNegative],
        );
    }
    if (model) {
        arrays.push(
            ['quadThickness', model.quadThickness],
            ['quadMaterial', model.quadMaterial],
            ['triThickness', model.triThickness],
            ['triMaterial', model.triMaterial],
            ['beamSection', model.beamSection],
            ['beamMaterial', model.beamMaterial],
            ['beamNodes', model.beamNodes],
            ['supportNodes', model.supportNodes],
            ['supportBits', model.supportBits],
            ['forceNodes', model.forceNodes],
            ['forces', model.forces],
            ['inertiaForces', model.inertiaForces],
        );
    }
    if (model?.distributed) {
        const { distributed } = model;
        arrays.push(
            ['quadPressureElements', distributed.quads],
            ['quadPressures', distributed.quadPressures],
            ['triPressureElements', distributed.tris],
            ['triPressures', distributed.triPressures],
            ['lineLoadBeams', distributed.beams],
            ['lineLoads', distributed.lineLoads],
            ['lineLoadDirections', distributed.lineDirections],
        );
    }
    return arrays;
}

class PacketReader {
    private head!: Head;
    private dataBegin = 0;

    constructor(private readonly bytes: Uint8Array<ArrayBuffer>) {}

    read(): Packet {
        this.readHead();
        const { title, structureNodes, shellQuads, beamCount } = this.head;
        const coordinates = this.floats('coordinates', 3);
        const nodes = coordinates.length / 3;
        if (structureNodes > nodes) fault('"structureNodes" is more than there are nodes', `a count up to ${nodes}`);
        const vertexNodes = this.integers('vertexNodes', 1, undefined, nodes);
        const vertices = vertexNodes.length;
        const quads = this.integers('quads', 4, undefined, vertices);
        const quadCount = quads.length / 4;
        if (shellQuads > quadCount) fault('"shellQuads" is more than there are quads', `a count up to ${quadCount}`);
        const tris = this.integers('tris', 3, undefined, vertices);
        const result: Result = {
            title,
            structureNodes,
            coordinates,
            displacements: this.floats('displacements', DOFS, nodes),
            vertexNodes,
            positiveFace: this.floats('positiveFace', STRESS_COLUMNS, vertices),
            negativeFace: this.floats('negativeFace', STRESS_COLUMNS, vertices),
            shellQuads,
            quads,
            tris,
            beams: {
                count: beamCount,
                ends: this.floats('beamEnds', 6, beamCount),
                wallBegin: this.begins('beamWallBegin', shellQuads, quadCount),
                nodeBegin: this.begins('beamNodeBegin', structureNodes, nodes),
            },
        };
        const triCount = tris.length / 3;
        if (this.has('ownQuadPositive')) result.own = this.readOwn(shellQuads, triCount);
        if (this.has('quadThickness')) {
            result.model = this.readModel(result, triCount);
            if (this.has('quadPressureElements')) result.model.distributed = this.readDistributed(result, triCount);
        }
        return { result, view: this.head.view };
    }

    private readHead(): void {
        const { bytes } = this;
        const magic = String.fromCharCode(...bytes.subarray(0, MAGIC.length));
        if (magic !== MAGIC) fault('it does not begin as a packet of this version does', JSON.stringify(MAGIC));
        const most = bytes.length - HEAD_BEGIN;
        const size = most < 0 ? 0 : new DataView(bytes.buffer, bytes.byteOffset).getUint32(MAGIC.length, true);
        this.dataBegin = HEAD_BEGIN + size;
        if (size > most || this.dataBegin % ALIGNMENT !== 0) {
            fault(
                `its head cannot have ${size} bytes`,
                `at most ${Math.max(0, most)}, up to a multiple of ${ALIGNMENT}`,
            );
        }
        let head: unknown;
        try {
            head = JSON.parse(
                new TextDecoder('utf-8', { fatal: true }).decode(bytes.subarray(HEAD_BEGIN, this.dataBegin)),
            );
        } catch {
            fault('its head is not JSON', 'an object in JSON, UTF-8');
        }
        if (!isRecord(head) || !isRecord(head.arrays)) fault('its head has no "arrays"', 'an object with "arrays"');
        if (typeof head.title !== 'string') fault('its head has no "title"', 'a text');
        for (const name of ['structureNodes', 'shellQuads', 'beamCount']) {
            if (!isCount(head[name])) fault(`its head has no "${name}"`, 'a count from 0');
        }
        if (head.view !== undefined && typeof head.view !== 'string') fault('its "view" is no text', 'a text, or none');
        this.head = head as unknown as Head;
    }

    private has(name: string): boolean {
        return Object.hasOwn(this.head.arrays, name);
    }

    private readOwn(shellQuads: number, tris: number): OwnStresses {
        return {
            quadPositive: this.floats('ownQuadPositive', STRESS_COLUMNS, 4 * shellQuads),
            quadNegative: this.floats('ownQuadNegative', STRESS_COLUMNS, 4 * shellQuads),
            triPositive: this.floats('ownTriPositive', STRESS_COLUMNS, 3 * tris),
            triNegative: this.floats('ownTriNegative', STRESS_COLUMNS, 3 * tris),
        };
    }

    private readModel({ shellQuads, structureNodes, beams }: Result, tris: number): ModelFacts {
        const { thicknesses, sections, materials } = this.head;
        if (!isList(thicknesses, (t) => typeof t === 'number'))
            fault('its head has no "thicknesses"', 'a list of numbers');
        if (!isList(sections, (s) => typeof s === 'string')) fault('its head has no "sections"', 'a list of texts');
        const isMaterial = (m: unknown) =>
            isRecord(m) && [m.E, m.Mu, m.Density].every((value) => typeof value === 'number');
        if (!isList(materials, isMaterial))
            fault('its head has no "materials"', 'a list of objects with E, Mu, Density');
        const supportNodes = this.integers('supportNodes', 1, undefined, structureNodes);
        const forceNodes = this.integers('forceNodes', 1, undefined, structureNodes);
        const inertiaForces = this.floats('inertiaForces', DOFS);
        if (inertiaForces.length > 0 && inertiaForces.length !== DOFS * structureNodes) {
            fault(
                `array "inertiaForces" has ${inertiaForces.length} items`,
                `${DOFS * structureNodes}, 6 for each node of the structure, or none`,
            );
        }
        return {
            thicknesses,
            sections,
            materials,
            quadThickness: this.integers('quadThickness', 1, shellQuads, thicknesses.length),
            quadMaterial: this.integers('quadMaterial', 1, shellQuads, materials.length),
            triThickness: this.integers('triThickness', 1, tris, thicknesses.length),
            triMaterial: this.integers('triMaterial', 1, tris, materials.length),
            beamSection: this.integers('beamSection', 1, beams.count, sections.length),
            beamMaterial: this.integers('beamMaterial', 1, beams.count, materials.length),
            beamNodes: this.integers('beamNodes', 2, beams.count, structureNodes),
            supportNodes,
            supportBits: this.integers('supportBits', 1, supportNodes.length, ALL_DIRECTIONS + 1),
            forceNodes,
            forces: this.floats('forces', DOFS, forceNodes.length),
            inertiaForces,
        };
    }

    private readDistributed({ shellQuads, beams }: Result, tris: number): DistributedLoads {
        const loadedQuads = this.integers('quadPressureElements', 1, undefined, shellQuads);
        const loadedTris = this.integers('triPressureElements', 1, undefined, tris);
        const loadedBeams = this.integers('lineLoadBeams', 1, undefined, beams.count);
        return {
            quads: loadedQuads,
            quadPressures: this.floats('quadPressures', 4, loadedQuads.length),
            tris: loadedTris,
            triPressures: this.floats('triPressures', 3, loadedTris.length),
            beams: loadedBeams,
            lineLoads: this.floats('lineLoads', 2, loadedBeams.length),
            lineDirections: this.floats('lineLoadDirections', 3, loadedBeams.length),
        };
    }

    /** count records of so many items; undefined: as many as there are. */
    private floats(name: string, items: number, count?: number): Float32Array {
        const { offset, length } = this.place(name, 'f32', items, count);
        return new Float32Array(this.bytes.buffer, this.dataBegin + offset, length);
    }

    /** All of them less than `end`. */
    private integers(name: string, items: number, count: number | undefined, end: number): Uint32Array {
        const { offset, length } = this.place(name, 'u32', items, count);
        const array = new Uint32Array(this.bytes.buffer, this.dataBegin + offset, length);
        for (let i = 0; i < length; ++i) {
            if (array[i] >= end) fault(`array "${name}" has ${array[i]} at item ${i}`, `a number below ${end}`);
        }
        return array;
    }

    /** Where each beam begins: from `first` on, never backwards, the last one the end of all. */
    private begins(name: string, first: number, end: number): Uint32Array {
        const array = this.integers(name, 1, this.head.beamCount + 1, end + 1);
        for (let i = 0; i < array.length; ++i) {
            const least = i === 0 ? first : array[i - 1];
            if (array[i] < least || (i === 0 && array[i] > first)) {
                fault(`array "${name}" has ${array[i]} at item ${i}`, i === 0 ? `${first}` : `${least} or more`);
            }
        }
        if (array[array.length - 1] !== end) fault(`array "${name}" ends with ${array[array.length - 1]}`, `${end}`);
        return array;
    }

    private place(name: string, type: ArrayPlace['type'], items: number, count?: number): ArrayPlace {
        if (!this.has(name)) fault(`there is no array "${name}"`, 'all arrays of its paragraph of the format');
        const place: unknown = this.head.arrays[name];
        if (!isRecord(place) || place.type !== type) fault(`array "${name}" has another type`, `"${type}"`);
        const { offset, length } = place;
        if (!isCount(offset) || !isCount(length) || offset % ALIGNMENT !== 0) {
            fault(`array "${name}" has no place`, `an offset, a multiple of ${ALIGNMENT}, and a length`);
        }
        const left = this.bytes.length - this.dataBegin - offset;
        if (4 * length > left) {
            fault(`array "${name}" goes beyond the end: ${4 * length} bytes`, `at most ${Math.max(0, left)} bytes`);
        }
        if (count === undefined ? length % items !== 0 : length !== items * count) {
            fault(
                `array "${name}" has ${length} items`,
                count === undefined ? `a multiple of ${items}` : `${items * count}`,
            );
        }
        return { type, offset, length };
    }
}

function fault(what: string, expected: string): never {
    throw new PacketFault(what, expected);
}

function isRecord(value: unknown): value is Record<string, unknown> {
    return typeof value === 'object' && value !== null;
}

function isCount(value: unknown): value is number {
    return Number.isSafeInteger(value) && (value as number) >= 0;
}

function isList<T>(value: T[] | undefined, isItem: (item: unknown) => boolean): value is T[] {
    return Array.isArray(value) && value.every(isItem);
}
