import { expect, test } from 'vitest';
import { legendTicks, wrapped, type ScaleLegend } from '../../../src/ui/Legend';

function scale(part: Partial<ScaleLegend>): ScaleLegend {
    return { kind: 'scale', range: [0, 120], bands: 12, logarithmic: false, colourAt: () => '', ...part };
}

test('every border of the bands has its number', () => {
    const ticks = legendTicks(scale({}), 300);
    expect(ticks.map((tick) => tick.text)).toEqual(Array.from({ length: 13 }, (_, i) => String(10 * i)));
    ticks.forEach((tick, i) => expect(tick.position).toBeCloseTo(i / 12, 12));
});

test('where there is no place for all borders, equally spaced ones from end to end are named', () => {
    expect(legendTicks(scale({}), 80).map((tick) => tick.value)).toEqual([0, 30, 60, 90, 120]);
});

test('smooth colours have round numbers where they belong, and both ends', () => {
    const ticks = legendTicks(scale({ bands: undefined, range: [-10, 110] }), 300);
    expect(ticks[0].value).toBe(-10);
    expect(ticks[ticks.length - 1].value).toBe(110);
    for (const { position, value } of ticks) expect(position).toBeCloseTo((value + 10) / 120, 12);
});

test('bands of a logarithmic scale have equal factors', () => {
    const ticks = legendTicks(scale({ bands: 3, range: [1, 1000], logarithmic: true }), 300);
    expect(ticks.map((tick) => tick.text)).toEqual(['1', '10', '100', '1000']);
});

test('no two numbers stand nearer than a line of text', () => {
    for (const height of [60, 100, 173, 300]) {
        for (const bands of [undefined, 2, 7, 12, 32]) {
            const ticks = legendTicks(scale({ bands, range: [3, 97] }), height);
            for (let i = 1; i < ticks.length; ++i) {
                expect((ticks[i].position - ticks[i - 1].position) * height).toBeGreaterThan(14);
            }
        }
    }
});

test('a range of a single value has a single number', () => {
    expect(legendTicks(scale({ range: [5, 5] }), 300).map((tick) => tick.text)).toEqual(['5']);
});

test('a subtitle that is too wide goes on in the next line, word by word', () => {
    const lines = (text: string) => wrapped(text, 10, (line) => line.length);
    expect(lines('larger face, nodal average')).toEqual(['larger', 'face,', 'nodal', 'average']);
    expect(lines('one two three')).toEqual(['one two', 'three']);
    expect(lines('indivisibly')).toEqual(['indivisibly']);
    expect(lines('')).toEqual([]);
});
