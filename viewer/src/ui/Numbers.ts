// Numbers as the page writes them. The unit is that of the model, which the page does not know.

/** As the result files and the reports have them. */
const DIGITS = 6;

/** Six significant digits; exponents are multiples of three: 16.8646e6. */
export function numberText(value: number): string {
    if (value === 0) return '0';
    if (!Number.isFinite(value)) return Number.isNaN(value) ? '–' : value > 0 ? '∞' : '-∞';
    const rounded = Number(value.toPrecision(DIGITS));
    const exponent = exponentOf(rounded);
    const thousands = thousandsOf(exponent);
    if (thousands === 0) return String(rounded);
    return `${Number((rounded / 10 ** thousands).toPrecision(DIGITS))}e${thousands}`;
}

/** Coordinates: what is round-off beside the others, or beside the size of the model, is 0. */
export function placeTexts(position: ArrayLike<number>, size = 0): string[] {
    const coordinates = Array.from(position);
    const noise = 1e-9 * Math.max(size, ...coordinates.map(Math.abs));
    return coordinates.map((x) => numberText(Math.abs(x) < noise ? 0 : x));
}

/** "2.16, 5.1, 0". */
export function placeText(position: ArrayLike<number>, size = 0): string {
    return placeTexts(position, size).join(', ');
}

/** Numbers of one scale: the same exponent and the same decimals for all. */
export function scaleTexts(values: readonly number[]): string[] {
    const largest = Math.max(...values.map(Math.abs), 0);
    if (largest === 0) return values.map(() => '0');
    const thousands = thousandsOf(exponentOf(largest));
    const divided = values.map((value) => value / 10 ** thousands);
    const decimals = decimalsFor(divided);
    return divided.map((value) => {
        const text = value.toFixed(decimals);
        if (Number(text) === 0) return '0';
        return thousands === 0 ? text : `${text}e${thousands}`;
    });
}

/** Round numbers within [from, to], about so many: steps of 1, 2 or 5 times a power of ten. */
export function roundNumbers(from: number, to: number, about: number): number[] {
    if (!(to > from) || !Number.isFinite(to - from)) return [from];
    const rough = (to - from) / Math.max(1, about);
    const power = 10 ** exponentOf(rough);
    const step = power * ([1, 2, 5].find((factor) => factor * power >= rough * (1 - 1e-9)) ?? 10);
    const numbers: number[] = [];
    const slack = 1e-9 * (to - from);
    for (let k = Math.ceil((from - slack) / step); k * step <= to + slack; ++k) {
        numbers.push(Number((k * step).toPrecision(12)));
    }
    return numbers;
}

/** As many decimals as tell neighbours apart with two digits, and none that are zero for all. */
function decimalsFor(values: readonly number[]): number {
    const largest = Math.max(...values.map(Math.abs));
    let gap = Infinity;
    for (let i = 1; i < values.length; ++i) {
        const difference = Math.abs(values[i] - values[i - 1]);
        if (difference > 1e-9 * largest) gap = Math.min(gap, difference);
    }
    if (gap === Infinity) gap = largest;
    for (let decimals = 0; decimals < 12; ++decimals) {
        const unit = 10 ** -decimals;
        if (values.every((value) => Math.abs(value - Math.round(value / unit) * unit) < 0.01 * gap)) return decimals;
    }
    return 12;
}

/** The exponent that is written; 0 for numbers that are short enough without, in a scale and beside it alike. */
function thousandsOf(exponent: number): number {
    return exponent >= -2 && exponent < 6 ? 0 : 3 * Math.floor(exponent / 3);
}

function exponentOf(value: number): number {
    return value === 0 ? 0 : Math.floor(Math.log10(Math.abs(value)) + 1e-12);
}
