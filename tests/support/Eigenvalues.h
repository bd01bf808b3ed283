// support/Eigenvalues.h
// Eigenvalues of small symmetric matrices, for the question which motions an element matrix resists.
#pragma once

#include <vector>

namespace tarnvexo::test {

// Ascending. K [n][n] row-major, symmetric; cyclic Jacobi rotations, absolute errors of about 1e-15 of the largest.
std::vector<double> SymmetricEigenvalues(const double* K, int n);

// How many eigenvalues vanish beside the largest one (below 1e-12 of it). Negative ones do not count as vanishing.
int ZeroEigenvalues(const double* K, int n);

// Smallest eigenvalue that does not vanish, as a fraction of the largest; negative for an indefinite matrix.
double SmallestResistance(const double* K, int n);

} // namespace tarnvexo::test
