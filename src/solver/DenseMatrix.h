// solver/DenseMatrix.h
// Small dense matrices for the element kernels: row-major arrays of doubles, entry (i, j) of r rows and c columns at
// i*c + j. Every output entry is summed in one fixed order, so equal inputs give equal bits. The output never aliases
// an input, except that MatAdd and MatScale may work in place. Always inlined: with sizes that the compiler knows the
// loops are unrolled and vectorised.
#pragma once

namespace tarnvexo {

// out (columns x rows) = in (rows x columns) transposed.
[[gnu::always_inline]] inline void MatTranspose(double* out, const double* in, int rows, int columns)
{
    for (int i = 0; i < rows; ++i) {
        for (int j = 0; j < columns; ++j) { out[j * rows + i] = in[i * columns + j]; }
    }
}

// out (n x m) = A (n x k) · B (k x m); each entry is cleared, then accumulated over l = 0 ... k-1.
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

// out = A + B, entry by entry.
[[gnu::always_inline]] inline void MatAdd(double* out, const double* A, const double* B, int rows, int columns)
{
    for (int i = 0; i < rows * columns; ++i) { out[i] = A[i] + B[i]; }
}

// out = s · in, entry by entry.
[[gnu::always_inline]] inline void MatScale(double* out, const double* in, double s, int rows, int columns)
{
    for (int i = 0; i < rows * columns; ++i) { out[i] = s * in[i]; }
}

// out (Columns x Columns) = Bᵀ·D·B with B (Rows x Columns) and D (Rows x Rows): stiffness from strains, change of axes.
template <int Rows, int Columns> void TripleProduct(double* out, const double* B, const double* D)
{
    double Bt[Columns * Rows];
    double BtD[Columns * Rows];
    MatTranspose(Bt, B, Rows, Columns);
    MatMultiply(BtD, Bt, D, Columns, Rows, Rows);
    MatMultiply(out, BtD, B, Columns, Rows, Columns);
}

// The lower triangle from the upper one.
template <int n> void MirrorUpperTriangle(double K[n][n])
{
    for (int i = 0; i < n; ++i) {
        for (int j = i + 1; j < n; ++j) { K[j][i] = K[i][j]; }
    }
}

} // namespace tarnvexo
