import { describe, expect, test } from 'vitest';
import { principalStresses } from '../../../src/model/PrincipalStress';

type Six = [number, number, number, number, number, number];

function roots(...components: Six): number[] {
    const out = new Float64Array(3);
    principalStresses(...components, out);
    return [...out];
}

/** diag(a, b, c) turned by a rotation about the axis (1, 2, 3) by 40°. */
function turned(principal: number[]): Six {
    const [x, y, z] = [1, 2, 3].map((v) => v / Math.sqrt(14));
    const c = Math.cos((40 * Math.PI) / 180);
    const s = Math.sin((40 * Math.PI) / 180);
    const R = [
        [c + x * x * (1 - c), x * y * (1 - c) - z * s, x * z * (1 - c) + y * s],
        [y * x * (1 - c) + z * s, c + y * y * (1 - c), y * z * (1 - c) - x * s],
        [z * x * (1 - c) - y * s, z * y * (1 - c) + x * s, c + z * z * (1 - c)],
    ];
    const S = (i: number, j: number) => R[i].reduce((sum, r, k) => sum + r * principal[k] * R[j][k], 0);
    return [S(0, 0), S(1, 1), S(2, 2), S(0, 1), S(0, 2), S(1, 2)];
}

describe('principal stresses', () => {
    test('of pure shear are ±τ and 0', () => {
        const [s1, s2, s3] = roots(0, 0, 0, 5, 0, 0);
        expect(s1).toBeCloseTo(5, 12);
        expect(s2).toBeCloseTo(0, 12);
        expect(s3).toBeCloseTo(-5, 12);
    });

    test('of plane stress are those of the circle of Mohr', () => {
        const [sx, sy, txy] = [80, -20, 30];
        const radius = Math.hypot((sx - sy) / 2, txy);
        const [s1, s2, s3] = roots(sx, sy, 0, txy, 0, 0);
        expect(s1).toBeCloseTo((sx + sy) / 2 + radius, 10);
        expect(s2).toBeCloseTo(0, 10);
        expect(s3).toBeCloseTo((sx + sy) / 2 - radius, 10);
    });

    test.each([
        ['three different roots', [3e7, 1e7, -2e7]],
        ['two equal roots above', [2e7, 2e7, -1e7]],
        ['two equal roots below', [2e7, -1e7, -1e7]],
        ['nearly equal roots', [2e7, 2e7 * (1 - 1e-9), -1e7]],
        ['three equal roots', [4e6, 4e6, 4e6]],
        ['tension along one axis', [1e7, 0, 0]],
        ['very small', [3e-30, 1e-30, -2e-30]],
        ['very large', [3e37, 1e37, -2e37]],
        ['nothing', [0, 0, 0]],
    ])('do not depend on the axes: %s', (_, principal) => {
        const found = roots(...turned(principal));
        const largest = Math.max(...principal.map(Math.abs));
        for (let i = 0; i < 3; ++i) expect(Math.abs(found[i] - principal[i])).toBeLessThanOrEqual(5e-8 * largest);
    });

    test('are in order and have the trace of the tensor', () => {
        let seed = 1;
        const random = () => (seed = (seed * 48271) % 2147483647) / 2147483647 - 0.5;
        for (let i = 0; i < 2000; ++i) {
            const tensor = [random(), random(), random(), random(), random(), random()] as Six;
            const [s1, s2, s3] = roots(...tensor);
            expect(s1).toBeGreaterThanOrEqual(s2);
            expect(s2).toBeGreaterThanOrEqual(s3);
            expect(s1 + s2 + s3).toBeCloseTo(tensor[0] + tensor[1] + tensor[2], 12);
            // the second invariant: the sum of squares of all nine components
            const squares = tensor.reduce((sum, t, k) => sum + (k < 3 ? 1 : 2) * t * t, 0);
            expect(s1 * s1 + s2 * s2 + s3 * s3).toBeCloseTo(squares, 12);
        }
    });

    test('are no numbers where a component is none or infinite', () => {
        expect(roots(NaN, 0, 0, 0, 0, 0)).toEqual([NaN, NaN, NaN]);
        expect(roots(0, 0, 0, Infinity, 0, 0)).toEqual([NaN, NaN, NaN]);
    });
});
