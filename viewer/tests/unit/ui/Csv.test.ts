import { expect, test } from 'vitest';
import { plainNumber, tableText } from '../../../src/ui/Csv';

test('six digits of a file survive single precision', () => {
    for (const text of ['-5413090', '0.000471069', '1.59852e-32', '788288']) {
        expect(Number(plainNumber(Math.fround(Number(text))))).toBe(Number(text));
    }
});

test('a cell with the separator or quotes is quoted', () => {
    expect(tableText([['beam 2, wall 3', 'a "b"', 1.5]], ',')).toBe('"beam 2, wall 3","a ""b""",1.5\n');
    expect(tableText([['beam 2, wall 3', 1]], '\t')).toBe('beam 2, wall 3\t1\n');
});
