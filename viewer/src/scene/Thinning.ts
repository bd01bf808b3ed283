// Which of many arrows are drawn: evenly spread over the space that they take, and among neighbours the largest.

/**
 * Numbers of those that are drawn, at most `most`. Of those that share a cube of the side `cell` and point into about
 * the same direction, so that both sides of a gap keep theirs, the longest is drawn, of equal ones the first; cubes
 * grow until no more are left. places, vectors: 3 per arrow; cell 0: all are drawn unless they are too many.
 */
export function thinned(places: Float32Array, vectors: Float32Array, most: number, cell: number): Uint32Array {
    const count = places.length / 3;
    if (cell === 0 && count <= most) return Uint32Array.from({ length: count }, (_, i) => i);
    const cubes = new Cubes(places, vectors);
    let side = cell || cubes.extent / 1000;
    let drawn = cubes.longest(side);
    while (drawn.length > most) {
        side *= Math.max(1.2, Math.sqrt(drawn.length / most)); // arrows stand on surfaces
        drawn = cubes.longest(side);
    }
    return drawn;
}

/** Parts of the largest by which arrows must differ for one to be the longer one. */
const TIE = 1e-6;

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

    /** In each cube, of each direction. */
    longest(side: number): Uint32Array {
        const across = Math.floor(this.extent / side) + 1;
        const longestIn = new Map<number, number>();
        for (let i = 0; i < this.squares.length; ++i) {
            let cube = this.directions[i];
            for (let axis = 0; axis < 3; ++axis) {
                cube = cube * across + Math.floor((this.places[3 * i + axis] - this.origin[axis]) / side);
            }
            const other = longestIn.get(cube);
            if (other === undefined || this.squares[i] > (1 + TIE) * this.squares[other]) longestIn.set(cube, i);
        }
        return Uint32Array.from(longestIn.values());
    }
}
