// Reads Tarn+Vexo_AverageStrs.txt, the results of a run in one text; docs/formats/contour-file.md has the grammar.
// Strict: it takes what the program writes and nothing else, and a fault is told in the words of the program's own
// reader. Counts are checked against the rest of the text before anything is allocated.
import { GrowingFloats, GrowingIntegers } from './GrowingArray';
import { DOFS, STRESS_COLUMNS, type Result } from './Result';
import { textFault } from './TextFault';
import { TextScanner } from './TextScanner';
import { VertexMerger } from './VertexMerger';

const COMMA = 44;
const QUAD_NODES = 4;
const TRI_NODES = 3;
const NUMBER = 'a number in general notation with six significant digits, as "-1.5" or "2e-07"';

/** Bytes between two reports of progress. */
const PROGRESS_STEP = 1 << 21;

/** Bytes of the shortest line of so many values: "0,0,0" with its end. */
const shortestLine = (values: number) => 2 * values;
const SHORTEST_NODE = shortestLine(3) + shortestLine(DOFS);
const shortestShell = (nodes: number) => shortestLine(nodes) + 2 * nodes * shortestLine(STRESS_COLUMNS);
const SHORTEST_BEAM = 'BEI=0\nSND(0,0,0)\nEND(0,0,0)\nNPOIN=0\nNELEM=0\n'.length;

/** Throws TextFault. onProgress gets the bytes read so far. */
export function parseContourText(
    bytes: Uint8Array,
    name: string,
    onProgress: (bytesRead: number) => void = () => {},
): Result {
    return new ContourTextReader(bytes, name, onProgress).read();
}

class ContourTextReader {
    private readonly scan: TextScanner;
    private readonly vertices = new VertexMerger();
    private readonly coordinates = new GrowingFloats();
    private readonly displacements = new GrowingFloats();
    private readonly quads = new GrowingIntegers();
    private readonly tris = new GrowingIntegers();
    private readonly beamEnds = new GrowingFloats();
    private readonly corners = new Uint32Array(QUAD_NODES);

    // What is read, for messages: "displacements of node 7 of the walls of beam 2" and the like.
    private record = '';
    private recordNumber = 0;
    private beam = -1;
    private nextProgress = PROGRESS_STEP;

    constructor(
        private readonly bytes: Uint8Array,
        private readonly name: string,
        private readonly onProgress: (bytesRead: number) => void,
    ) {
        this.scan = new TextScanner(bytes);
    }

    read(): Result {
        const structureNodes = this.readNodes();
        this.readShells('NELEM_S_4ND=', 'four-node shell', QUAD_NODES, this.quads, 0, structureNodes);
        const shellQuads = this.quads.length / QUAD_NODES;
        this.readShells('NELEM_S_3ND=', 'three-node shell', TRI_NODES, this.tris, 0, structureNodes);
        const beamCount = this.takeCount('NELEM_B=', SHORTEST_BEAM, 'beams');
        const wallBegin = new Uint32Array(beamCount + 1);
        const nodeBegin = new Uint32Array(beamCount + 1);
        wallBegin[0] = shellQuads;
        nodeBegin[0] = structureNodes;
        for (let b = 0; b < beamCount; ++b) {
            this.readBeam(b, nodeBegin[b]);
            wallBegin[b + 1] = this.quads.length / QUAD_NODES;
            nodeBegin[b + 1] = this.coordinates.length / 3;
        }
        this.record = '';
        this.beam = -1;
        if (this.scan.left > 0) this.mismatch('the end of the file behind the last beam');
        this.onProgress(this.bytes.length);
        return {
            title: this.name,
            structureNodes,
            coordinates: this.coordinates.exact(),
            displacements: this.displacements.exact(),
            vertexNodes: this.vertices.nodes.exact(),
            positiveFace: this.vertices.positiveFace.exact(),
            negativeFace: this.vertices.negativeFace.exact(),
            shellQuads,
            quads: this.quads.exact(),
            tris: this.tris.exact(),
            beams: { count: beamCount, ends: this.beamEnds.exact(), wallBegin, nodeBegin },
        };
    }

    private readNodes(): number {
        const count = this.takeCount('NPOIN=', SHORTEST_NODE, 'nodes');
        this.readNodeLines('coordinates of node', count, 3, this.coordinates);
        this.readNodeLines('displacements of node', count, DOFS, this.displacements);
        this.record = '';
        return count;
    }

    private readNodeLines(record: string, count: number, columns: number, to: GrowingFloats): void {
        const begin = to.extend(columns * count);
        this.record = record;
        for (let n = 0; n < count; ++n) {
            this.recordNumber = n;
            this.takeNumbers(to.data, begin + columns * n, columns);
            this.takeLineEnd();
            this.tellProgress();
        }
    }

    /** Node numbers of the text count from the node `firstNode` of the result. */
    private readShells(
        key: string,
        kind: string,
        nodes: number,
        to: GrowingIntegers,
        firstNode: number,
        nodeCount: number,
    ): void {
        const { vertices, corners } = this;
        const count = this.takeCount(key, shortestShell(nodes), 'elements');
        const begin = to.extend(nodes * count);
        this.record = kind;
        for (let e = 0; e < count; ++e) {
            this.recordNumber = e;
            this.takeNodeNumbers(nodes, nodeCount);
            for (let i = 0; i < nodes; ++i) {
                this.takeNumbers(vertices.positive, 0, STRESS_COLUMNS);
                this.takeLineEnd();
                this.takeNumbers(vertices.negative, 0, STRESS_COLUMNS);
                this.takeLineEnd();
                to.data[begin + nodes * e + i] = vertices.find(firstNode + corners[i]);
            }
            this.tellProgress();
        }
        this.record = '';
    }

    private readBeam(number: number, firstNode: number): void {
        this.record = '';
        this.beam = number;
        this.takeText(`BEI=${number}`);
        this.takeLineEnd();
        this.readBeamEnd('SND(');
        this.readBeamEnd('END(');
        const nodeCount = this.readNodes();
        this.readShells('NELEM=', 'wall', QUAD_NODES, this.quads, firstNode, nodeCount);
    }

    private readBeamEnd(key: string): void {
        this.takeText(key);
        const begin = this.beamEnds.extend(3);
        this.takeNumbers(this.beamEnds.data, begin, 3);
        this.takeText(')');
        this.takeLineEnd();
    }

    private takeCount(key: string, shortestRecord: number, records: string): number {
        this.takeText(key);
        const position = this.scan.at;
        this.takeInteger();
        this.takeLineEnd();
        const count = this.scan.value;
        const left = this.scan.left;
        const most = Math.floor(left / shortestRecord);
        if (count <= most) return count;
        return this.report(
            position,
            `${key}${count}, but the rest of the file cannot hold so many ${records}`,
            `at most ${most} (${left} bytes follow, each takes ${shortestRecord} or more)`,
        );
    }

    private takeText(text: string): void {
        if (!this.scan.takeText(text)) this.mismatch(`"${text}"`);
    }

    private takeLineEnd(): void {
        if (!this.scan.takeLineEnd()) this.mismatch('the end of the line');
    }

    private takeInteger(): void {
        if (!this.scan.takeInteger()) this.mismatch('an integer from 0 to 2147483647');
    }

    private takeNumbers(to: Float32Array, begin: number, count: number): void {
        const scan = this.scan;
        for (let i = 0; i < count; ++i) {
            if (i > 0 && !scan.takeByte(COMMA)) this.mismatch('","');
            if (!scan.takeNumber()) this.mismatch(NUMBER);
            to[begin + i] = scan.value;
        }
    }

    private takeNodeNumbers(count: number, nodeCount: number): void {
        for (let i = 0; i < count; ++i) {
            if (i > 0 && !this.scan.takeByte(COMMA)) this.mismatch('","');
            const position = this.scan.at;
            this.takeInteger();
            if (this.scan.value >= nodeCount) this.mismatch(`a node number below ${nodeCount}`, position);
            this.corners[i] = this.scan.value;
        }
        this.takeLineEnd();
    }

    private tellProgress(): void {
        if (this.scan.at < this.nextProgress) return;
        this.onProgress(this.scan.at);
        this.nextProgress = this.scan.at + PROGRESS_STEP;
    }

    private mismatch(expected: string, position = this.scan.at): never {
        let where = this.record === '' ? '' : `${this.record} ${this.recordNumber}`;
        if (this.beam >= 0) where += `${where === '' ? 'beam' : ' of beam'} ${this.beam}`;
        const what = 'the text does not match the format of the contour file';
        return this.report(position, where === '' ? what : `${where}: ${what}`, expected);
    }

    private report(position: number, what: string, expected: string): never {
        throw textFault(this.bytes, this.name, {
            position,
            what,
            expected,
            toDo: 'solve the model again; the file was cut off or altered',
        });
    }
}
