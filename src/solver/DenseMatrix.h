// solver/DenseMatrix.h
// Small dense matrices for the element kernels: row-major arrays of doubles.
#pragma once

namespace tarnvexo {

// out (n x m) = A (n x k) · B (k x m); each entry is cleared, then accumulated over l = 0 ... k-1, so equal inputs give
// equal bits. Entry (i, j) of a matrix with c columns stands at i*c + j; out aliases no input. Always inlined: with
// sizes that the compiler knows the loops are unrolled and vectorised.
[[gnu::always_inline]] inline void MatMultiply(double* __restrict out, const double* __restrict A,
                                               const double* __restrict B, int n, int k, int m)
{
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < m; ++j) { out[i * m + j] = 0.0; }
        for (int l = 0; l < k; ++l) {
            for (int j = 0; j < m; ++j) { out[i * m + j] += A[i * k + l] * B[l * m + j]; }
        }
    }
}

// The lower triangle from the upper one.
template <int n> void MirrorUpperTriangle(double K[n][n])
{
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) { K[j][i] = K[i][j]; }
    }
}

} // namespace tarnvexo
