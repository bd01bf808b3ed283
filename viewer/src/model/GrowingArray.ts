// Typed arrays whose final length is known only at the end of a file. Twice the room each time: every item is moved
// twice at most on average.

export class GrowingFloats {
    data: Float32Array<ArrayBuffer>;
    length = 0;

    constructor(room = 1024) {
        this.data = new Float32Array(room);
    }

    /** Makes room for so many more and counts them; returns where they begin. */
    extend(count: number): number {
        const begin = this.length;
        this.length += count;
        if (this.length > this.data.length) {
            const larger = new Float32Array(Math.max(this.length, 2 * this.data.length));
            larger.set(this.data.subarray(0, begin));
            this.data = larger;
        }
        return begin;
    }

    append(values: Float32Array): void {
        const begin = this.extend(values.length);
        this.data.set(values, begin);
    }

    /** A copy without the room behind the end. */
    exact(): Float32Array<ArrayBuffer> {
        return this.data.slice(0, this.length);
    }
}

export class GrowingIntegers {
    data: Uint32Array<ArrayBuffer>;
    length = 0;

    constructor(room = 1024) {
        this.data = new Uint32Array(room);
    }

    extend(count: number): number {
        const begin = this.length;
        this.length += count;
        if (this.length > this.data.length) {
            const larger = new Uint32Array(Math.max(this.length, 2 * this.data.length));
            larger.set(this.data.subarray(0, begin));
            this.data = larger;
        }
        return begin;
    }

    push(value: number): void {
        const place = this.extend(1);
        this.data[place] = value;
    }

    exact(): Uint32Array<ArrayBuffer> {
        return this.data.slice(0, this.length);
    }
}
