// Colours of properties, which have no order: each value that occurs has one of its own, as far as there are enough.
import { elementValues } from '../model/Fields';
import type { Result } from '../model/Result';
import type { PropertyField } from '../state/ViewState';

/** Told apart with and without red-green blindness: M. Okabe, K. Ito, 2002, and lighter or darker ones of them. */
const PALETTE = [
    '0072b2 e69f00 009e73 cc79a7 56b4e9 d55e00 f0e442 7f7f7f',
    '8cc5e8 8a5f00 7fd1b9 7d3f63 1f5f82 f2b48c 9b932b c9c9c9',
]
    .join(' ')
    .split(' ');

export interface Category {
    /** As Fields has it: a thickness, or the number of a section or material, or 1 and -1 for the sides. */
    value: number;
    /** "#0072b2". */
    colour: string;
}

/** In ascending order; of the sides the positive one first. Empty where the model is not known. */
export function categories(result: Result, field: PropertyField): Category[] {
    const values = elementValues(result, field);
    if (!values) return [];
    const occurring = new Set(values.positive);
    if (values.negative !== values.positive) for (const value of values.negative) occurring.add(value);
    const ordered = [...occurring].filter((value) => Number.isFinite(value)).sort((a, b) => a - b);
    if (field === 'side') ordered.reverse();
    return ordered.map((value, i) => ({ value, colour: `#${PALETTE[i % PALETTE.length]}` }));
}

/** 3 per category, 0 to 1. */
export function categoryColours(): Float32Array {
    return Float32Array.from(
        PALETTE.flatMap((colour) => [0, 2, 4].map((i) => parseInt(colour.slice(i, i + 2), 16) / 255)),
    );
}
