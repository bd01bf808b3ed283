// Colours of values: colour maps, limits that are round numbers, and where a value stands between them.
//
// viridis: S. van der Walt, N. Smith, 2015. cividis: J. R. Nuñez, C. R. Anderton, R. S. Renslow, PLoS ONE 13 (2018)
// e0199239. Both are read alike with and without red-green blindness. turbo: A. Mikhailov, "Turbo, an improved rainbow
// colormap", 2019. coolwarm: K. Moreland, "Diverging color maps for scientific visualization", ISVC 2009, computed from
// his formula in Msh. Each at equal steps, with straight lines of red, green and blue between.

const TABLES = {
    viridis:
        '440154 470d60 48186a 482374 472d7b 453681 424086 3f4989 3b528b 375a8d 33638d 2f6a8e 2c728e 297a8e 26818e 23898e ' +
        '21908c 1f988b 1f9f88 21a685 28ae80 31b57b 3ebc74 4cc26c 5dc963 6ece58 82d34c 96d83f abdc32 c0df24 d5e21a eae51a ' +
        'fde725',
    cividis:
        '002051 00265d 012b65 083169 11366c 1c3c6e 26426e 31476e 3c4d6e 47536d 51586e 5a5e6e 62646f 6a6a70 727071 797673 ' +
        '7f7c75 868276 8c8877 938e78 9a9478 a19b78 a9a177 b2a874 bbaf71 c5b66d cebd68 d8c462 e2cb5c ebd355 f3da4f fae249 ' +
        'fdea45',
    turbo: '30123b 4145ab 4675ed 39a2fc 1bcfd4 24eca6 61fc6c a4fc3b d1e834 f3c63a fe9b2d f36315 d93806 b11901 7a0402',
    coolwarm:
        '3b4cc0 445acc 4e68d7 5875e1 6282ea 6c8ef1 779af7 82a5fb 8db0fe 98b9ff a3c2ff aec9fd b8d0f9 c2d5f4 ccd9ee d5dbe6 ' +
        'dddddd e5d8d1 ecd3c6 f1ccb9 f5c4ad f7bba0 f7b194 f7a687 f49a7b f18d6f ec7f63 e57057 de614c d55042 cb3e38 c0282f ' +
        'b40426',
    grey: '262626 f2f2f2', // neither end is lost before a white or a black ground
};

/** As many as a picture can tell apart, and more. */
export const MOST_BANDS = 64;

export type ColourMap = keyof typeof TABLES;
export const COLOUR_MAPS = Object.keys(TABLES) as ColourMap[];

/** Red, green, blue, 0 to 1; position 0 is the lowest value, 1 the highest. */
export function colourAt(map: ColourMap, position: number): [number, number, number] {
    const table = STOPS[map];
    const last = table.length / 3 - 1;
    const place = Math.min(1, Math.max(0, position)) * last;
    const stop = Math.min(last - 1, Math.floor(place));
    const part = place - stop;
    const mixed = (c: number) => table[3 * stop + c] * (1 - part) + table[3 * stop + 3 + c] * part;
    return [mixed(0), mixed(1), mixed(2)];
}

/** Of values above the limits: no map has it. */
export const OVER_COLOUR: readonly [number, number, number] = [0.95, 0.2, 0.8];

/** Of values below the limits: as light or dark, or of such a hue, as the map is nowhere. */
export const UNDER_COLOURS: Record<ColourMap, readonly [number, number, number]> = {
    viridis: [0.78, 0.9, 1],
    cividis: [0.78, 0.9, 1],
    turbo: [0.8, 0.8, 0.8],
    coolwarm: [0.75, 0.95, 0.25],
    grey: [0.35, 0.72, 1],
};

/** 3 per colour, at the middle of each band, so that bands and smooth colours agree. */
export function colourTable(map: ColourMap, count: number): Float32Array {
    const table = new Float32Array(3 * count);
    for (let i = 0; i < count; ++i) table.set(colourAt(map, (i + 0.5) / count), 3 * i);
    return table;
}

/** For style sheets and canvases: "rgb(253 231 37)". */
export function cssColour(map: ColourMap, position: number): string {
    return cssOf(colourAt(map, position));
}

export function cssOf(colour: readonly number[]): string {
    return `rgb(${colour.map((part) => Math.round(255 * part)).join(' ')})`;
}

/**
 * 0 at the lower limit, 1 at the upper, less and more beyond. Not a number where the value has no place: it is not
 * finite, or not positive on a logarithmic scale.
 */
export function positionOf(value: number, [low, high]: readonly [number, number], logarithmic: boolean): number {
    if (!Number.isFinite(value) || (logarithmic && value <= 0)) return NaN;
    if (low === high) return value === low ? 0.5 : value < low ? -Infinity : Infinity;
    return logarithmic ? Math.log(value / low) / Math.log(high / low) : (value - low) / (high - low);
}

/**
 * How far a position may be beyond 0 or 1 and still be a limit: values are single precision, a millionth of the limit
 * is no excess.
 */
export function positionSlack([low, high]: readonly [number, number], logarithmic: boolean): number {
    const part = 1e-6;
    return logarithmic ? part / Math.log(high / low) : (part * Math.max(Math.abs(low), Math.abs(high))) / (high - low);
}

/** The inverse of positionOf. */
export function valueAt(position: number, [low, high]: readonly [number, number], logarithmic: boolean): number {
    if (position === 1) return high; // without round-off
    return logarithmic ? low * (high / low) ** position : low + (high - low) * position;
}

/**
 * Limits around [min, max] such that all borders of so many bands are round numbers: multiples of a step of 1, 1.2, 1.5,
 * 2, 2.5, 3, 4, 5, 6 or 8 times a power of ten, the least that will do. Zero is a limit where the values nearest to it
 * are less than a band away. A value may be beyond by a thousandth of a band, which no eye tells from the border: the
 * zero of a stress that must vanish is round-off of either sign, and shall not take a band of its own.
 */
export function niceLimits(min: number, max: number, bands: number): [number, number] {
    const largest = Math.max(Math.abs(min), Math.abs(max));
    if (!(max - min > 1e-6 * largest)) {
        // one value, but for the last of six digits: it stands in the middle
        const half = largest === 0 ? 1 : 0.1 * largest;
        return niceLimits(min - half, max + half, bands);
    }
    for (let power = Math.floor(Math.log10((max - min) / bands)); ; ++power) {
        for (const factor of [1, 1.2, 1.5, 2, 2.5, 3, 4, 5, 6, 8]) {
            const step = factor * 10 ** power;
            const slack = 1e-3 * step;
            const first = Math.floor((min + slack) / step);
            if ((first + bands) * step < max - slack) continue;
            return [withoutRoundOff(first * step), withoutRoundOff((first + bands) * step)];
        }
    }
}

/** Decades of a logarithmic scale whose lower limit was given as zero or less. */
const DECADES_BELOW = 3;

/**
 * Limits that a logarithmic scale can have: for a lower one of zero or less another is taken, some decades under the
 * upper one. undefined where that is not positive either.
 */
export function positiveLimits([low, high]: readonly [number, number]): [number, number] | undefined {
    if (low > 0) return [low, high];
    return high > 0 ? [Number((high / 10 ** DECADES_BELOW).toPrecision(12)), high] : undefined;
}

/**
 * Limits of a logarithmic scale: 1, 2 or 5 times a power of ten around the positive values, undefined where there are
 * none. shown: one per value, 0 for those left out.
 */
export function logarithmicLimits(values: Float32Array, shown?: Uint8Array): [number, number] | undefined {
    let min = Infinity;
    let max = 0;
    for (let i = 0; i < values.length; ++i) {
        const value = values[i];
        if ((shown && shown[i] === 0) || !Number.isFinite(value) || value <= 0) continue;
        if (value < min) min = value;
        if (value > max) max = value;
    }
    if (max === 0) return undefined;
    // 10 in single precision is 10
    const low = oneTwoFive(min * (1 + 1e-6)).below;
    const high = oneTwoFive(max * (1 - 1e-6)).above;
    return [low, high > low ? high : oneTwoFive(max * (1 + 1e-6)).above];
}

/** The nearest of 1, 2 and 5 times a power of ten: not above the value, and above it. */
function oneTwoFive(value: number): { below: number; above: number } {
    const power = Math.floor(Math.log10(value));
    const steps = [`1e${power - 1}`, `1e${power}`, `2e${power}`, `5e${power}`, `1e${power + 1}`, `2e${power + 1}`];
    const numbers = steps.map(Number);
    const next = numbers.findIndex((number) => number > value);
    return { below: numbers[next - 1], above: numbers[next] };
}

function withoutRoundOff(value: number): number {
    return Number(value.toPrecision(12)) + 0;
}

const STOPS = Object.fromEntries(
    Object.entries(TABLES).map(([map, colours]) => [
        map,
        Float32Array.from(
            colours.split(' ').flatMap((colour) => [0, 2, 4].map((i) => parseInt(colour.slice(i, i + 2), 16) / 255)),
        ),
    ]),
) as Record<ColourMap, Float32Array>;
