import { describe, expect, test } from 'vitest';
import { TextScanner } from '../../../src/model/TextScanner';
import { bytesOf } from '../support/ContourTexts';

/** The value and what stands behind it; undefined: refused. */
function taken(text: string): { value: number; rest: string } | undefined {
    const scan = new TextScanner(bytesOf(text));
    if (!scan.takeNumber()) {
        expect(scan.at).toBe(0);
        return undefined;
    }
    return { value: scan.value, rest: text.slice(scan.at) };
}

describe('a number', () => {
    test.each([
        '0',
        '-0',
        '1',
        '-1.5',
        '123456',
        '999999',
        '1e+06',
        '0.0001',
        '0.000123457',
        '0.5',
        '1e-05',
        '1.23457e-05',
        '1e+22',
        '1e-22',
        '9.99999e-17',
        '1e+100',
        '1.23457e+100',
        '1.59852e-32',
        '1.79769e+308',
        '2.22507e-308',
        '4.94066e-324',
        '1.23457e-310',
        '-2.5e+300',
    ])('%s is taken as it is written', (text) => {
        const number = taken(`${text},7`);
        expect(number?.rest).toBe(',7');
        // powers of ten beyond 22 are not exact in a double
        expect(Math.abs(number!.value - Number(text))).toBeLessThanOrEqual(4e-16 * Math.abs(Number(text)));
        expect(Object.is(Math.sign(number!.value), Math.sign(Number(text)))).toBe(true);
    });

    test.each([
        ['inf', Infinity],
        ['-inf', -Infinity],
        ['nan', NaN],
        ['-nan', NaN],
    ])('%s is taken', (text, value) => {
        expect(taken(`${text}\n`)).toEqual({ value, rest: '\n' });
    });

    test.each([
        '',
        ' 1.5',
        '+1.5',
        '1.50',
        '01.5',
        '.5',
        '1.',
        '15e-1',
        '1.5E0',
        '1.234567',
        '1e5',
        '1e6',
        '1e-5',
        '1e+05',
        '0.00001',
        '0.0001234567',
        '1234567',
        '1e400',
        '1e+400',
        '1e-400',
        '1.7977e+308',
        '5e-324',
        '1e-0100',
        '0e+10',
        '0.5e+10',
        '12.5e+10',
        '0.0',
        'infinity',
        'INF',
        'NAN',
        'nan(1)',
        '-',
    ])('is not written as "%s"', (text) => {
        expect(taken(`${text},7`)).toBeUndefined();
    });

    test('ends before an "e" without an exponent', () => {
        expect(taken('1.5e,7')).toEqual({ value: 1.5, rest: 'e,7' });
    });

    test('of up to six digits without exponent is the nearest double', () => {
        for (let i = 1; i < 100000; i += 7) {
            const text = String(i / 1000);
            expect(taken(`${text}\n`)?.value).toBe(Number(text));
        }
    });
});

test('an integer has no sign, no zeros in front and 31 bits at most', () => {
    const value = (text: string) => {
        const scan = new TextScanner(bytesOf(text));
        return scan.takeInteger() ? scan.value : undefined;
    };
    expect(value('0,')).toBe(0);
    expect(value('2147483647')).toBe(2147483647);
    for (const text of ['', '-1', '+1', '01', '2147483648', '99999999999999999999']) {
        expect(value(text), text).toBeUndefined();
    }
});

test('a line ends with a line feed, alone or behind a carriage return', () => {
    const ends = (text: string) => new TextScanner(bytesOf(text)).takeLineEnd();
    expect([ends('\n'), ends('\r\n'), ends('\r'), ends(''), ends(' \n')]).toEqual([true, true, false, false, false]);
});
