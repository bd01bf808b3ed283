// Reads "Shell element node stress.txt", the stresses of the elements themselves, for the shells of a result that has
// been read already. docs/formats/shell-stress.md has the layout; strict as the reader of the contour file.
import { STRESS_COLUMNS, type OwnStresses, type Result } from './Result';
import { textFault } from './TextFault';
import { TextScanner } from './TextScanner';

const WIDTH = 15;
const BLANK = 32;
const COLON = 58;
const LABELS = ['Node', 'SX', 'SY', 'SZ', 'TXY', 'TXZ', 'TYZ', 'SE'].map((label) => label.padStart(WIDTH)).join('');
const TO_DO = 'take both files from one run; or solve the model again, if the file was cut off or altered';

/** Throws TextFault; also where elements or nodes are not those of the result. */
export function parseOwnStressText(bytes: Uint8Array, name: string, result: Result): OwnStresses {
    const reader = new OwnStressReader(bytes, name, result.vertexNodes);
    const quads = result.quads.subarray(0, 4 * result.shellQuads);
    const [quadPositive, quadNegative] = reader.readElements('Four-nodes shell element:', quads, 4);
    const [triPositive, triNegative] = reader.readElements('Three-nodes shell element:', result.tris, 3);
    reader.takeEnd();
    return { quadPositive, quadNegative, triPositive, triNegative };
}

class OwnStressReader {
    private readonly scan: TextScanner;
    private where = '';

    constructor(
        private readonly bytes: Uint8Array,
        private readonly name: string,
        private readonly vertexNodes: Uint32Array,
    ) {
        this.scan = new TextScanner(bytes);
    }

    readElements(title: string, vertices: Uint32Array, nodes: number): [Float32Array, Float32Array] {
        const positive = new Float32Array(STRESS_COLUMNS * vertices.length);
        const negative = new Float32Array(STRESS_COLUMNS * vertices.length);
        for (let e = 0; e < vertices.length / nodes; ++e) {
            this.where = `${nodes === 4 ? 'four' : 'three'}-node shell ${e}: `;
            this.takeLine(`${title}${e}`);
            this.takeLine(LABELS);
            for (let corner = nodes * e; corner < nodes * (e + 1); ++corner) {
                const node = this.vertexNodes[vertices[corner]];
                this.takeStresses(node, positive, STRESS_COLUMNS * corner);
                this.takeStresses(node, negative, STRESS_COLUMNS * corner);
            }
        }
        this.where = '';
        return [positive, negative];
    }

    takeEnd(): void {
        if (this.scan.left > 0) this.mismatch(this.scan.at, 'the end of the file behind the last shell of the results');
    }

    private takeLine(text: string): void {
        if (!this.scan.takeText(text)) this.mismatch(this.scan.at, `"${text.trim()}"`);
        this.takeLineEnd();
    }

    private takeLineEnd(): void {
        if (!this.scan.takeLineEnd()) this.mismatch(this.scan.at, 'the end of the line');
    }

    private takeStresses(node: number, to: Float32Array, begin: number): void {
        const { scan } = this;
        const nodeEnd = this.skipBlanks() + WIDTH - 1;
        const position = scan.at;
        if (!scan.takeInteger() || scan.value !== node || scan.at !== nodeEnd || !scan.takeByte(COLON)) {
            this.mismatch(position, `"${node}:" at the end of ${WIDTH} columns, the node of the contour file`);
        }
        for (let i = 0; i < STRESS_COLUMNS; ++i) {
            const end = this.skipBlanks() + WIDTH;
            const number = scan.at;
            if (!scan.takeNumber() || scan.at !== end) {
                this.mismatch(number, `a number with six significant digits at the end of ${WIDTH} columns`);
            }
            to[begin + i] = scan.value;
        }
        this.takeLineEnd();
    }

    /** Returns where they began. */
    private skipBlanks(): number {
        const begin = this.scan.at;
        while (this.scan.takeByte(BLANK));
        return begin;
    }

    private mismatch(position: number, expected: string): never {
        const what = `${this.where}the text does not match the format of the shell stress file`;
        throw textFault(this.bytes, this.name, { position, what, expected, toDo: TO_DO });
    }
}
