// Principal stresses: the eigenvalues of the symmetric stress tensor, in closed form.
// Source: O. K. Smith, "Eigenvalues of a symmetric 3 × 3 matrix", Comm. ACM 4 (1961) 168. The error is some 1e-8 of the
// largest stress where two roots coincide and 1e-15 elsewhere: below the last digit of the single precision arrays.

/**
 * out[0] ≥ out[1] ≥ out[2], units of stress. Not a number where one of the components is not, or is infinite.
 */
export function principalStresses(
    sx: number,
    sy: number,
    sz: number,
    txy: number,
    txz: number,
    tyz: number,
    out: Float64Array,
): void {
    // σ = m·I + p·B, with B free of trace and of unit size: its eigenvalues are 2·cos of three angles
    const m = (sx + sy + sz) / 3;
    const x = sx - m;
    const y = sy - m;
    const z = sz - m;
    const p = Math.sqrt((x * x + y * y + z * z + 2 * (txy * txy + txz * txz + tyz * tyz)) / 6);
    if (p === 0) {
        out.fill(m);
        return;
    }
    const determinant = x * (y * z - tyz * tyz) - txy * (txy * z - tyz * txz) + txz * (txy * tyz - y * txz);
    const halfOfB = determinant / (2 * p * p * p); // det B / 2 = cos 3φ, beyond ±1 by round-off only
    const angle = Math.acos(Math.min(1, Math.max(-1, halfOfB))) / 3; // 0 ... π/3
    out[0] = m + 2 * p * Math.cos(angle);
    out[2] = m + 2 * p * Math.cos(angle + (2 * Math.PI) / 3);
    out[1] = 3 * m - out[0] - out[2];
    if (out[1] > out[0]) out[1] = out[0];
    if (out[1] < out[2]) out[1] = out[2];
}
