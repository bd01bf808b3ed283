// Finds the vertices of a result: corners of elements at one node with the same stresses of both faces are one vertex.
// A table of hashes with open addressing: constant time per corner, however many elements meet at a node.
import { GrowingFloats, GrowingIntegers } from './GrowingArray';
import { STRESS_COLUMNS } from './Result';

export class VertexMerger {
    /** To be filled before find(): the stresses of a corner. */
    readonly positive = new Float32Array(STRESS_COLUMNS);
    readonly negative = new Float32Array(STRESS_COLUMNS);

    readonly nodes = new GrowingIntegers();
    readonly positiveFace = new GrowingFloats();
    readonly negativeFace = new GrowingFloats();

    private readonly positiveBits = new Uint32Array(this.positive.buffer);
    private readonly negativeBits = new Uint32Array(this.negative.buffer);
    private readonly hashes = new GrowingIntegers();
    /** Number of a vertex + 1, or 0; a power of two places, half of them free at least. */
    private table = new Uint32Array(4096);

    /** The vertex of a corner at a node. -0 counts as 0, and all values that are not a number as one. */
    find(node: number): number {
        for (let i = 0; i < STRESS_COLUMNS; ++i) {
            this.positive[i] = plain(this.positive[i]);
            this.negative[i] = plain(this.negative[i]);
        }
        const hash = this.hash(node);
        const mask = this.table.length - 1;
        let place = hash & mask;
        for (; this.table[place] !== 0; place = (place + 1) & mask) {
            const vertex = this.table[place] - 1;
            if (this.hashes.data[vertex] === hash && this.isSame(vertex, node)) return vertex;
        }
        const vertex = this.nodes.length;
        this.nodes.push(node);
        this.hashes.push(hash);
        this.positiveFace.append(this.positive);
        this.negativeFace.append(this.negative);
        this.table[place] = vertex + 1;
        if (2 * this.nodes.length > this.table.length) this.enlarge();
        return vertex;
    }

    // The multiplier is 2^32 divided by the golden ratio, as in Fibonacci hashing.
    private hash(node: number): number {
        let h = Math.imul(node + 1, 0x9e3779b1);
        for (let i = 0; i < STRESS_COLUMNS; ++i) {
            h = Math.imul((h ^ (h >>> 15)) + this.positiveBits[i], 0x9e3779b1);
            h = Math.imul((h ^ (h >>> 15)) + this.negativeBits[i], 0x9e3779b1);
        }
        return (h ^ (h >>> 16)) >>> 0;
    }

    private isSame(vertex: number, node: number): boolean {
        if (this.nodes.data[vertex] !== node) return false;
        const begin = STRESS_COLUMNS * vertex;
        for (let i = 0; i < STRESS_COLUMNS; ++i) {
            if (!Object.is(this.positiveFace.data[begin + i], this.positive[i])) return false;
            if (!Object.is(this.negativeFace.data[begin + i], this.negative[i])) return false;
        }
        return true;
    }

    private enlarge(): void {
        const table = new Uint32Array(2 * this.table.length);
        const mask = table.length - 1;
        for (let vertex = 0; vertex < this.nodes.length; ++vertex) {
            let place = this.hashes.data[vertex] & mask;
            while (table[place] !== 0) place = (place + 1) & mask;
            table[place] = vertex + 1;
        }
        this.table = table;
    }
}

// -0 + 0 is 0; NaN is written anew, so that it has the same bits each time.
function plain(value: number): number {
    return value !== value ? NaN : value + 0;
}
