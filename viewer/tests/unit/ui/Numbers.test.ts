import { expect, test } from 'vitest';
import { numberText, placeText, roundNumbers, scaleTexts } from '../../../src/ui/Numbers';

test('numbers keep the six digits of the result files, also out of single precision', () => {
    for (const text of ['93.582', '0.019099', '788288', '-0.5', '1234.56']) {
        expect(numberText(Math.fround(Number(text)))).toBe(text);
    }
});

test('large and small numbers have exponents that are multiples of three', () => {
    expect(numberText(16823200)).toBe('16.8232e6');
    expect(numberText(-8.52658e-4)).toBe('-852.658e-6');
    expect(numberText(999999.9)).toBe('1e6');
    expect(numberText(2.5e-31)).toBe('250e-33');
});

test('what is no number does not look like one', () => {
    expect(numberText(NaN)).toBe('–');
    expect(numberText(-Infinity)).toBe('-∞');
});

test('numbers of one scale have the same exponent and decimals', () => {
    expect(scaleTexts([0, 2.5e6, 5e6, 7.5e6, 10e6])).toEqual(['0', '2.5e6', '5.0e6', '7.5e6', '10.0e6']);
    expect(scaleTexts([-0.02, 0, 0.02])).toEqual(['-0.02', '0', '0.02']);
});

test('a scale is written as the numbers beside it', () => {
    for (const value of [0.0016, 0.02, 6, 120000, 120e6, 160e-6]) {
        expect(scaleTexts([0, value])).toEqual(['0', numberText(value)]);
    }
});

test('round-off in a place is zero', () => {
    expect(placeText([9.98372, 4.89859e-18, 1.28])).toBe('9.98372, 0, 1.28');
    expect(placeText([0, 2e-9, 0])).toBe('0, 2e-9, 0');
});

test('round numbers are multiples of 1, 2 or 5 times a power of ten within the range', () => {
    expect(roundNumbers(-0.13, 0.37, 5)).toEqual([-0.1, 0, 0.1, 0.2, 0.3]);
    expect(roundNumbers(0, 1e7, 5)).toEqual([0, 2e6, 4e6, 6e6, 8e6, 1e7]);
    expect(roundNumbers(3, 3, 5)).toEqual([3]);
});

test('one rule writes a row: from six digits before the point on, and under a hundredth, with exponents', () => {
    expect([-0.00145109, 0.000612308, -0.000518, 0.0145109].map((x) => numberText(x))).toEqual([
        '-1.45109e-3',
        '612.308e-6',
        '-518e-6',
        '0.0145109',
    ]);
});

test('round-off in a place is zero beside the size of the model too', () => {
    expect(placeText([4.8986e-18, 0, 0], 30)).toBe('0, 0, 0');
});
