// Where in the picture the structure is: what is written over it finds a place beside it. Coarse, and of a large
// structure by some of its elements, since it is asked for with each drawing.
import type { Projection } from './Projection';
import type { Surface } from './Surface';
import { at, type Vec3 } from './Vectors';
import { isKept, type ClipPlane } from './Visibility';

/** Side of the squares that the picture is divided into, in CSS pixels. */
export const SQUARE = 12;
/** Of more elements than this only so many are looked at, spread over all. */
const MOST_ELEMENTS = 4000;
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
    const columns = Math.ceil(projection.width / SQUARE);
    const rows = Math.ceil(projection.height / SQUARE);
    const isCovered = new Uint8Array(columns * rows);
    const cover = (point: Vec3): void => {
        const pixel = isKept(plane, point) ? projection.toPixel(point) : undefined;
        if (!pixel) return;
        const [column, row] = pixel.map((x) => Math.floor(x / SQUARE));
        if (column >= 0 && column < columns && row >= 0 && row < rows) isCovered[row * columns + column] = 1;
    };
    const step = Math.ceil(surface.elementCount / MOST_ELEMENTS);
    for (let lot = 0; lot * step < surface.elementCount; ++lot) {
        const element = Math.min(surface.elementCount - 1, lot * step + Math.floor(step * ((lot * SPREAD) % 1)));
        if (!shown[element]) continue;
        // A triangle is a quadrilateral whose last two corners are one.
        const last = surface.cornerCount(element) - 1;
        const corners = [0, 1, 2, 3].map((i) =>
            at(places, surface.cornerNode[surface.cornerBegin(element) + Math.min(i, last)]),
        );
        const parts = partsOf(corners, projection);
        for (let i = 0; i <= parts; ++i) {
            for (let j = 0; j <= parts; ++j) cover(within(corners, i / (parts || 1), j / (parts || 1)));
        }
    }
    const middles: number[] = [];
    isCovered.forEach((one, i) => {
        if (one) middles.push(((i % columns) + 0.5) * SQUARE, (Math.floor(i / columns) + 0.5) * SQUARE);
    });
    return Float32Array.from(middles);
}

/** So many that no square is left out; 0 for an element outside of the picture. */
function partsOf(corners: readonly Vec3[], projection: Projection): number {
    const pixels = corners.map((corner) => projection.toPixel(corner));
    if (pixels.includes(undefined)) return MOST_PARTS;
    const [x, y] = [0, 1].map((axis) => pixels.map((pixel) => pixel![axis]));
    const isOutside =
        Math.max(...x) < 0 ||
        Math.max(...y) < 0 ||
        Math.min(...x) > projection.width ||
        Math.min(...y) > projection.height;
    const extent = Math.max(Math.max(...x) - Math.min(...x), Math.max(...y) - Math.min(...y));
    return isOutside ? 0 : Math.min(MOST_PARTS, Math.max(1, Math.ceil(extent / SQUARE)));
}

/** Bilinear between the corners, 0 to 1 each way. */
function within([a, b, c, d]: readonly Vec3[], u: number, v: number): Vec3 {
    const weighted = (axis: number): number =>
        (1 - v) * ((1 - u) * a[axis] + u * b[axis]) + v * (u * c[axis] + (1 - u) * d[axis]);
    return [weighted(0), weighted(1), weighted(2)];
}
