#include "support/LiteralSkyline.h"

#include <algorithm>
#include <cstddef>

namespace tarnvexo::literal {

namespace {

int FirstRow(const SkylineView& matrix, int column)
{
    return column - matrix.columnHeight[column] + 1;
}

// &K(0, j), were it stored: K(i, j) stands at [-i].
double* Column(const SkylineView& matrix, int j)
{
    return matrix.values + (static_cast<std::ptrdiff_t>(matrix.diagonalAddress[j]) + j);
}

} // namespace

void FactoriseSkyline(const SkylineView& matrix)
{
    for (int j = 0; j < matrix.equationCount; ++j) {
        const int firstRow = FirstRow(matrix, j);
        double* Kj = Column(matrix, j);
        for (int i = firstRow; i < j; ++i) {
            const double* Ki = Column(matrix, i);
            double sum = Kj[-i];
            for (int k = std::max(FirstRow(matrix, i), firstRow); k < i; ++k) { sum -= Ki[-k] * Kj[-k]; }
            Kj[-i] = sum;
        }
        double pivot = Kj[-j];
        for (int i = firstRow; i < j; ++i) {
            const double t = Kj[-i];
            const double u = t / Column(matrix, i)[-i];
            Kj[-i] = u;
            if (u != 0.0) {
                pivot -= u * t;
            }
        }
        Kj[-j] = pivot;
    }
}

void ForwardReduce(const SkylineView& factor, double* R)
{
    for (int j = 1; j < factor.equationCount; ++j) {
        for (int k = FirstRow(factor, j); k < j; ++k) { R[j] -= Column(factor, j)[-k] * R[k]; }
    }
}

void BackSubstitute(const SkylineView& factor, const double* R, double* u)
{
    for (int j = factor.equationCount - 1; j >= 0; --j) {
        u[j] = R[j] / Column(factor, j)[-j];
        for (int m = j + 1; m < factor.equationCount; ++m) {
            if (FirstRow(factor, m) <= j) {
                u[j] -= Column(factor, m)[-j] * u[m];
            }
        }
    }
}

} // namespace tarnvexo::literal
