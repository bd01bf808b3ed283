import { describe, expect, test } from 'vitest';
import {
    COLOUR_MAPS,
    colourAt,
    colourTable,
    cssColour,
    logarithmicLimits,
    niceLimits,
    OVER_COLOUR,
    positionOf,
    positionSlack,
    positiveLimits,
    UNDER_COLOURS,
    valueAt,
} from '../../../src/model/ColourScale';

/** Lightness L* of CIELAB, from linear light. */
function lightness(colour: readonly number[]): number {
    const linear = colour.map((c) => (c > 0.04045 ? ((c + 0.055) / 1.055) ** 2.4 : c / 12.92));
    const y = 0.2126 * linear[0] + 0.7152 * linear[1] + 0.0722 * linear[2];
    return y > 0.008856 ? 116 * Math.cbrt(y) - 16 : 903.3 * y;
}

describe('colours', () => {
    test('begin and end as published', () => {
        const ends = (map: (typeof COLOUR_MAPS)[number]) => [cssColour(map, 0), cssColour(map, 1)];
        expect(ends('viridis')).toEqual(['rgb(68 1 84)', 'rgb(253 231 37)']);
        expect(ends('cividis')).toEqual(['rgb(0 32 81)', 'rgb(253 234 69)']);
        expect(ends('turbo')).toEqual(['rgb(48 18 59)', 'rgb(122 4 2)']);
        expect(ends('coolwarm')).toEqual(['rgb(59 76 192)', 'rgb(180 4 38)']);
    });

    test.each(['viridis', 'cividis', 'grey'] as const)('of %s get lighter all the way', (map) => {
        for (let i = 1; i <= 100; ++i) {
            expect(lightness(colourAt(map, i / 100))).toBeGreaterThan(lightness(colourAt(map, (i - 1) / 100)));
        }
    });

    test('of coolwarm are lightest in the middle', () => {
        expect(cssColour('coolwarm', 0.5)).toBe('rgb(221 221 221)');
        for (let i = 1; i <= 50; ++i) {
            expect(lightness(colourAt('coolwarm', i / 100))).toBeGreaterThan(
                lightness(colourAt('coolwarm', (i - 1) / 100)),
            );
            expect(lightness(colourAt('coolwarm', 1 - i / 100))).toBeGreaterThan(
                lightness(colourAt('coolwarm', 1 - (i - 1) / 100)),
            );
        }
    });

    test('stay at the ends beyond them', () => {
        for (const map of COLOUR_MAPS) {
            expect(colourAt(map, -3)).toEqual(colourAt(map, 0));
            expect(colourAt(map, Infinity)).toEqual(colourAt(map, 1));
        }
    });

    test('of values beyond the limits are far from all of the map', () => {
        for (const map of COLOUR_MAPS) {
            for (const beyond of [OVER_COLOUR, UNDER_COLOURS[map]]) {
                for (let i = 0; i <= 100; ++i) {
                    const apart = colourAt(map, i / 100).map((part, axis) => part - beyond[axis]);
                    expect(Math.hypot(...apart)).toBeGreaterThan(0.4);
                }
            }
        }
    });

    // Blue and lightness are seen with and without red-green blindness. The other maps use up all of both.
    test.each(['viridis', 'cividis', 'grey'] as const)('beyond the limits of %s differ in blue or lightness', (map) => {
        for (const beyond of [OVER_COLOUR, UNDER_COLOURS[map]]) {
            for (let i = 0; i <= 100; ++i) {
                const colour = colourAt(map, i / 100);
                const blue = Math.abs(colour[2] - beyond[2]);
                const light = Math.abs(lightness(colour) - lightness(beyond)) / 100;
                expect(Math.max(blue, light)).toBeGreaterThan(0.12);
            }
        }
    });

    test('of bands are those in the middle of each', () => {
        const table = colourTable('viridis', 4);
        expect([...table.subarray(3, 6)]).toEqual(colourAt('viridis', 3 / 8).map(Math.fround));
    });
});

describe('limits', () => {
    test.each([
        [0, 1, 10, [0, 1]],
        [0, 9.7e6, 12, [0, 1.2e7]],
        [0.3, 99.5, 10, [0, 100]],
        [-41.2, 38.9, 9, [-50, 40]],
        [1e-9, 7.3e-7, 8, [0, 8e-7]],
        [-6.9, -0.2, 12, [-7.2, 0]],
        [-7, -1, 12, [-7, -1]],
        [100, 130, 12, [100, 130]],
        [100, 130.5, 12, [99, 135]],
        [-68.5e6, 1.1, 12, [-7.2e7, 0]],
        [-0.0009, 108, 12, [0, 120]],
    ])('of %s to %s with %s bands are %s', (min, max, bands, limits) => {
        expect(niceLimits(min, max, bands)).toEqual(limits);
    });

    test('hold all values but for a thousandth of a band, and every border of a band is a short number', () => {
        let seed = 1;
        const random = () => (seed = (seed * 48271) % 2147483647) / 2147483647;
        for (let i = 0; i < 3000; ++i) {
            const scale = 10 ** Math.floor(40 * random() - 20);
            const a = scale * (random() - 0.5);
            const b = scale * (random() - 0.5);
            const [min, max] = [Math.min(a, b), Math.max(a, b)];
            if (max - min < 1e-3 * scale) continue;
            const bands = 2 + Math.floor(20 * random());
            const [low, high] = niceLimits(min, max, bands);
            const step = (high - low) / bands;
            expect(low).toBeLessThanOrEqual(min + 1e-3 * step);
            expect(high).toBeGreaterThanOrEqual(max - 1e-3 * step);
            const digits = step / 10 ** Math.floor(Math.log10(step) + 1e-9);
            expect(Math.abs(digits * 10 - Math.round(digits * 10))).toBeLessThan(1e-3);
            expect(Math.abs(low / step - Math.round(low / step))).toBeLessThan(1e-3);
        }
    });

    test('around a single value have it within', () => {
        for (const value of [0, 5, -3e-9, 1e12]) {
            const [low, high] = niceLimits(value, value, 12);
            expect(low).toBeLessThan(value);
            expect(high).toBeGreaterThan(value);
        }
    });

    test('of a logarithmic scale are 1, 2 or 5 times powers of ten around positive values', () => {
        const values = Float32Array.of(0, -5, 3, 20, 450, NaN, Infinity, 1e9);
        const shown = Uint8Array.of(1, 1, 1, 1, 1, 1, 1, 0);
        expect(logarithmicLimits(values, shown)).toEqual([2, 500]);
        expect(logarithmicLimits(Float32Array.of(1e-3, 1e6))).toEqual([1e-3, 1e6]);
        expect(logarithmicLimits(Float32Array.of(10, 10))).toEqual([10, 20]);
        expect(logarithmicLimits(Float32Array.of(1.07e8))).toEqual([1e8, 2e8]);
        expect(logarithmicLimits(Float32Array.of(0, -1))).toBeUndefined();
    });

    test('of a logarithmic scale begin above zero where zero was asked for', () => {
        expect(positiveLimits([0, 80e6])).toEqual([80e3, 80e6]);
        expect(positiveLimits([-5, 10])).toEqual([0.01, 10]);
        expect(positiveLimits([2, 10])).toEqual([2, 10]);
        expect(positiveLimits([-5, 0])).toBeUndefined();
    });

    test('leave little to values: S1 from -4 to 111e6 begins at zero', () => {
        expect(niceLimits(-4, 111e6, 12)).toEqual([0, 120e6]);
    });
});

describe('the place of a value', () => {
    test('is between 0 and 1 within the limits and beyond them outside', () => {
        expect([-10, 0, 5, 10, 20].map((v) => positionOf(v, [0, 10], false))).toEqual([-1, 0, 0.5, 1, 2]);
        expect(positionOf(100, [1, 1e4], true)).toBeCloseTo(0.5, 14);
        expect([1, 2, 3].map((v) => positionOf(v, [2, 2], false))).toEqual([-Infinity, 0.5, Infinity]);
    });

    test('is none for what is not finite, and for zero and less on a logarithmic scale', () => {
        for (const value of [NaN, Infinity, -Infinity]) expect(positionOf(value, [0, 1], false)).toBeNaN();
        for (const value of [0, -1]) expect(positionOf(value, [1, 10], true)).toBeNaN();
    });

    test('may be beyond a limit by what single precision loses', () => {
        const limits: [number, number] = [79e6, 80.3e6];
        const beyond = positionOf(Math.fround(80.3e6) + 8, limits, false) - 1;
        expect(beyond).toBeGreaterThan(0);
        expect(beyond).toBeLessThan(positionSlack(limits, false));
        expect(positionOf(80.4e6, limits, false) - 1).toBeGreaterThan(positionSlack(limits, false));
        expect(positionOf(1001, [1, 1000], true) - 1).toBeGreaterThan(positionSlack([1, 1000], true));
    });

    test('leads back to the value', () => {
        expect(valueAt(positionOf(3, [-2, 10], false), [-2, 10], false)).toBeCloseTo(3, 14);
        expect(valueAt(positionOf(3e4, [1, 1e6], true), [1, 1e6], true)).toBeCloseTo(3e4, 8);
    });
});
