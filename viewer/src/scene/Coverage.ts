// Where in the picture the structure is: what is written over it finds a place beside it. Coarse, and of a large
// structure by some of its elements, since it is asked for with each drawing.
import type { Projection } from './Projection';
import type { Surface } from './Surface';
import { at, dot } from './Vectors';
import type { ClipPlane } from './Visibility';

/** Side of the squares that the picture is divided into, in CSS pixels. */
export const SQUARE = 16;
/** Of more elements than this only so many are looked at, spread over all. */
const MOST_ELEMENTS = 3000;
/** Into how many parts an element is divided each way. */
const MOST_PARTS = 64;
/** The golden section spreads them most evenly, and no regular mesh meets them always in the same row. */
const SPREAD = (Math.sqrt(5) - 1) / 2;

/** Middles of the squares with something of the structure in them; x and y each. places: 3 per node. */
export function coveredSquares(
    surface: Surface,
    shown: Uint8Array,
    places: Float32Array,
    plane: ClipPlane | undefined,
    projection: Projection,
): Float32Array {
    const squares = new Squares(projection.width, projection.height);
    const step = Math.ceil(surface.elementCount / MOST_ELEMENTS);
    const [x, y, beyond] = [new Float64Array(4), new Float64Array(4), new Float64Array(4)];
    for (let lot = 0; lot * step < surface.elementCount; ++lot) {
        const element = Math.min(surface.elementCount - 1, lot * step + Math.floor(step * ((lot * SPREAD) % 1)));
        if (!shown[element]) continue;
        const begin = surface.cornerBegin(element);
        const last = surface.cornerCount(element) - 1;
        let isBehindEye = false;
        for (let i = 0; i < 4; ++i) {
            // A triangle is a quadrilateral whose last two corners are one.
            const place = at(places, surface.cornerNode[begin + Math.min(i, last)]);
            const pixel = projection.toPixel(place);
            if (pixel) [x[i], y[i]] = pixel;
            else isBehindEye = true;
            beyond[i] = plane ? dot(plane.normal, place) - plane.distance : 0;
        }
        if (!isBehindEye) squares.coverElement(x, y, beyond);
    }
    return squares.middles();
}

class Squares {
    private readonly columns: number;
    private readonly rows: number;
    private readonly isCovered: Uint8Array;

    constructor(
        private readonly width: number,
        private readonly height: number,
    ) {
        this.columns = Math.ceil(width / SQUARE);
        this.rows = Math.ceil(height / SQUARE);
        this.isCovered = new Uint8Array(this.columns * this.rows);
    }

    /** Pixels of its corners, and how far each is beyond the plane. Between them bilinear, in perspective nearly so. */
    coverElement(x: Float64Array, y: Float64Array, beyond: Float64Array): void {
        const [left, right] = [Math.min(x[0], x[1], x[2], x[3]), Math.max(x[0], x[1], x[2], x[3])];
        const [top, bottom] = [Math.min(y[0], y[1], y[2], y[3]), Math.max(y[0], y[1], y[2], y[3])];
        if (right < 0 || bottom < 0 || left > this.width || top > this.height) return;
        const parts = Math.min(MOST_PARTS, Math.max(1, Math.ceil(Math.max(right - left, bottom - top) / SQUARE)));
        for (let i = 0; i < parts; ++i) {
            for (let j = 0; j < parts; ++j) {
                const [u, v] = [(i + 0.5) / parts, (j + 0.5) / parts];
                if (bilinear(beyond, u, v) <= 0) this.cover(bilinear(x, u, v), bilinear(y, u, v));
            }
        }
    }

    middles(): Float32Array {
        const middles: number[] = [];
        this.isCovered.forEach((one, i) => {
            const row = Math.floor(i / this.columns);
            if (one) middles.push((i - row * this.columns + 0.5) * SQUARE, (row + 0.5) * SQUARE);
        });
        return Float32Array.from(middles);
    }

    private cover(x: number, y: number): void {
        const [column, row] = [Math.floor(x / SQUARE), Math.floor(y / SQUARE)];
        if (column < 0 || row < 0 || column >= this.columns || row >= this.rows) return;
        this.isCovered[row * this.columns + column] = 1;
    }
}

function bilinear(corners: Float64Array, u: number, v: number): number {
    return (1 - v) * ((1 - u) * corners[0] + u * corners[1]) + v * (u * corners[2] + (1 - u) * corners[3]);
}
