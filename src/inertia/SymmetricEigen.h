// inertia/SymmetricEigen.h
// Eigenvalues and eigenvectors of small symmetric matrices (inertia tensors, masses of rigid motions) by cyclic Jacobi
// rotations. Entries beside the diagonal below 1e-14 of the largest entry count as zero: equal eigenvalues keep the
// axes that the matrix came in, and eigenvalues are good to about 1e-15 of the largest.
// Source: W. H. Press et al., Numerical Recipes, 3rd ed., Cambridge University Press 2007, section 11.1.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnvexo {

template <int N> using SquareMatrix = std::array<std::array<double, N>, N>; // rows

template <int N> struct SymmetricEigen {
    std::array<double, N> values = {}; // ascending
    SquareMatrix<N> vectors = {};      // row k: unit vector of values[k]
};

// Errors: none reported; entries that are not numbers give eigenvalues that are not numbers.
template <int N> SymmetricEigen<N> SolveSymmetricEigen(SquareMatrix<N> a)
{
    double largest = 0.0;
    for (const auto& row : a) {
        for (const double entry : row) { largest = std::max(largest, std::fabs(entry)); }
    }
    const double negligible = 1e-14 * largest;
    SymmetricEigen<N> eigen;
    for (int i = 0; i < N; ++i) { eigen.vectors[i][i] = 1.0; }

    constexpr int sweeps = 30; // six to eight are usual: convergence is quadratic
    bool rotated = true;
    for (int sweep = 0; sweep < sweeps && rotated; ++sweep) {
        rotated = false;
        for (int p = 0; p < N; ++p) {
            for (int q = p + 1; q < N; ++q) {
                if (!(std::fabs(a[p][q]) > negligible)) {
                    continue;
                }
                rotated = true;
                // Rotation in the plane p, q that makes a[p][q] vanish, by the smaller of the two angles.
                const double cotangent = (a[q][q] - a[p][p]) / (2.0 * a[p][q]); // of twice the angle
                const double t =
                    std::copysign(1.0, cotangent) / (std::fabs(cotangent) + std::sqrt(cotangent * cotangent + 1.0));
                const double c = 1.0 / std::sqrt(t * t + 1.0), s = t * c;
                for (int k = 0; k < N; ++k) {
                    const double akp = a[k][p], akq = a[k][q];
                    a[k][p] = c * akp - s * akq;
                    a[k][q] = s * akp + c * akq;
                }
                for (int k = 0; k < N; ++k) {
                    const double apk = a[p][k], aqk = a[q][k];
                    a[p][k] = c * apk - s * aqk;
                    a[q][k] = s * apk + c * aqk;
                    const double vp = eigen.vectors[p][k], vq = eigen.vectors[q][k];
                    eigen.vectors[p][k] = c * vp - s * vq;
                    eigen.vectors[q][k] = s * vp + c * vq;
                }
            }
        }
    }

    std::array<int, N> order;
    for (int k = 0; k < N; ++k) { order[k] = k; }
    std::stable_sort(order.begin(), order.end(), [&a](int i, int j) { return a[i][i] < a[j][j]; });
    const SquareMatrix<N> unsorted = eigen.vectors;
    for (int k = 0; k < N; ++k) {
        eigen.values[k] = a[order[k]][order[k]];
        eigen.vectors[k] = unsorted[order[k]];
    }
    return eigen;
}

} // namespace tarnvexo
