// Which of many arrows are drawn: evenly spread over the space that they take, and among neighbours a long one.

/**
 * Numbers of those that are drawn, at most `most`. Of those that share a cube of the side `cell` and point into about
 * the same direction, so that both sides of a gap keep theirs, one is drawn: the nearest to the middle of those that
 * are about as long as the longest. Cubes grow until no more are left. places, vectors: 3 per arrow; cell 0: all are
 * drawn unless they are too many.
 */
export function thinned(places: Float32Array, vectors: Float32Array, most: number, cell: number): Uint32Array {
    const count = places.length / 3;
    if (cell === 0 && count <= most) return Uint32Array.from({ length: count }, (_, i) => i);
    const cubes = new Cubes(places, vectors);
    let side = cell || cubes.extent / 1000;
    let drawn = cubes.oneOfEach(side);
    while (drawn.length > most) {
        side *= Math.max(1.2, Math.sqrt(drawn.length / most)); // arrows stand on surfaces
        drawn = cubes.oneOfEach(side);
    }
    return drawn;
}

/** Of the longest's length: as long as that is about as long. */
const NEARLY = 0.9;

class Cubes {
    /** The longest side of the box around all. */
    readonly extent: number;
    private readonly origin: [number, number, number] = [Infinity, Infinity, Infinity];
    /** Of each arrow: its squared length, and one of six directions. */
    private readonly squares: Float64Array;
    private readonly directions: Uint8Array;

    constructor(
        private readonly places: Float32Array,
        vectors: Float32Array,
    ) {
        const ends = [-Infinity, -Infinity, -Infinity];
        this.squares = new Float64Array(places.length / 3);
        this.directions = new Uint8Array(places.length / 3);
        for (let i = 0; i < places.length; i += 3) {
            let main = 0;
            for (let axis = 0; axis < 3; ++axis) {
                const x = places[i + axis];
                if (x < this.origin[axis]) this.origin[axis] = x;
                if (x > ends[axis]) ends[axis] = x;
                this.squares[i / 3] += vectors[i + axis] ** 2;
                if (Math.abs(vectors[i + axis]) > Math.abs(vectors[i + main])) main = axis;
            }
            this.directions[i / 3] = 2 * main + (vectors[i + main] < 0 ? 1 : 0);
        }
        this.extent = Math.max(0, ...ends.map((end, axis) => end - this.origin[axis]));
    }

    /** Of each cube and direction. */
    oneOfEach(side: number): Uint32Array {
        const { squares } = this;
        const across = Math.floor(this.extent / side) + 1;
        const numbers = new Map<number, number>();
        const cubeOf = new Uint32Array(squares.length);
        const longest: number[] = [];
        for (let i = 0; i < squares.length; ++i) {
            const key = this.key(i, side, across);
            let cube = numbers.get(key);
            if (cube === undefined) numbers.set(key, (cube = longest.push(0) - 1));
            cubeOf[i] = cube;
            if (squares[i] > longest[cube]) longest[cube] = squares[i];
        }
        const chosen = new Uint32Array(longest.length);
        const nearest = new Float64Array(longest.length).fill(Infinity);
        for (let i = 0; i < squares.length; ++i) {
            const cube = cubeOf[i];
            if (squares[i] < NEARLY ** 2 * longest[cube]) continue;
            const distance = this.fromMiddle(i, side);
            if (distance < nearest[cube]) [nearest[cube], chosen[cube]] = [distance, i];
        }
        return chosen;
    }

    private key(arrow: number, side: number, across: number): number {
        let key = this.directions[arrow];
        for (let axis = 0; axis < 3; ++axis) {
            key = key * across + Math.floor((this.places[3 * arrow + axis] - this.origin[axis]) / side);
        }
        return key;
    }

    /** Of its cube; squared, in sides. */
    private fromMiddle(arrow: number, side: number): number {
        let square = 0;
        for (let axis = 0; axis < 3; ++axis) {
            square += ((((this.places[3 * arrow + axis] - this.origin[axis]) / side) % 1) - 0.5) ** 2;
        }
        return square;
    }
}
