import { expect, test } from 'vitest';
import { parseNumber } from '../../../src/ui/Controls';

test('numbers may be typed with exponent, decimal comma and a minus sign of print', () => {
    expect(parseNumber(' 1.5e6 ')).toBe(1.5e6);
    expect(parseNumber('1,5')).toBe(1.5);
    expect(parseNumber('−3')).toBe(-3);
    expect(parseNumber('.5')).toBe(0.5);
});

test('what is not a number as a whole is none', () => {
    for (const text of ['', '12 mm', '1,000,000', '0x10', 'Infinity', '1e', '1e999x']) {
        expect(parseNumber(text)).toBeUndefined();
    }
});
