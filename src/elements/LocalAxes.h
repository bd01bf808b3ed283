// elements/LocalAxes.h
// Vectors and element matrices between local and global axes. The rows of the rotation λ are the local axes in global
// components: e1, e2, e3 of a shell (ShellElement::axes), x', y', z' of a beam (BeamFrame). T is block diagonal, one λ
// per three DOFs, so translations and rotations of every node turn alike.
#pragma once

#include "core/Dofs.h"
#include "core/Vector3.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

// out = λ·v for the three components of v.
inline void ToLocal(const Vector3 lambda[3], const double v[3], double out[3])
{
    for (int i = 0; i < 3; ++i) { out[i] = lambda[i][0] * v[0] + lambda[i][1] * v[1] + lambda[i][2] * v[2]; }
}

// out = λᵀ·v.
inline void ToGlobal(const Vector3 lambda[3], const double v[3], double out[3])
{
    for (int i = 0; i < 3; ++i) { out[i] = lambda[0][i] * v[0] + lambda[1][i] * v[1] + lambda[2][i] * v[2]; }
}

// Translations and rotations of every node to global axes: out = Tᵀ·f; f, out [6·Nodes].
template <int Nodes> void VectorToGlobal(const Vector3 lambda[3], const double* f, double* out)
{
    for (int i = 0; i < 2 * Nodes; ++i) { ToGlobal(lambda, f + 3 * i, out + 3 * i); }
}

// The same to local axes: out = T·d.
template <int Nodes> void VectorToLocal(const Vector3 lambda[3], const double* d, double* out)
{
    for (int i = 0; i < 2 * Nodes; ++i) { ToLocal(lambda, d + 3 * i, out + 3 * i); }
}

// K ← Tᵀ·K·T, T block diagonal with one λ per three DOFs: each 3x3 block X becomes λᵀ·X·λ. K [6·Nodes][6·Nodes],
// symmetric; the upper triangle is read, the whole matrix written.
template <int Nodes> void MatrixToGlobal(const Vector3 lambda[3], double K[6 * Nodes][6 * Nodes])
{
    constexpr int n = Nodes * DofsPerNode;
    double L[3][3], Lt[3][3];
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { L[i][j] = Lt[j][i] = lambda[i][j]; }
    }
    MirrorUpperTriangle(K);
    for (int row = 0; row < n; row += 3) {
        for (int column = row; column < n; column += 3) {
            double X[3][3], LtX[3][3], turned[3][3];
            for (int i = 0; i < 3; ++i) {
                for (int j = 0; j < 3; ++j) { X[i][j] = K[row + i][column + j]; }
            }
            MatMultiply(&LtX[0][0], &Lt[0][0], &X[0][0], 3, 3, 3);
            MatMultiply(&turned[0][0], &LtX[0][0], &L[0][0], 3, 3, 3);
            for (int i = 0; i < 3; ++i) {
                for (int j = 0; j < 3; ++j) { K[row + i][column + j] = turned[i][j]; }
            }
        }
    }
    MirrorUpperTriangle(K);
}

} // namespace tarnvexo
