#include "solver/SkylineSolver.h"

#include "core/Console.h"

#include <algorithm>
#include <cstdint>

namespace tarnvexo {

void FactoriseSkyline(const SkylineView& m, const ColumnDone& columnDone)
{
    for (int j = 0; j < m.equationCount; ++j) {
        const int rj = j - m.columnHeight[j] + 1;
        double* Kj = m.values + m.diagonalAddress[j];
        for (int i = rj; i < j; ++i) {
            const int ri = i - m.columnHeight[i] + 1;
            const double* Ki = m.values + m.diagonalAddress[i];
            double s = Kj[j - i];
            for (int k = std::max(ri, rj); k < i; ++k) {
                s -= Ki[i - k] * Kj[j - k];
            }
            Kj[j - i] = s;
        }
        for (int i = rj; i < j; ++i) {
            const double t = Kj[j - i];
            Kj[j - i] = t / m.values[m.diagonalAddress[i]];
            if (Kj[j - i] != 0.0) {
                Kj[0] -= Kj[j - i] * t;
            }
        }
        if (columnDone) {
            columnDone(j);
        }
    }
}

void ForwardReduce(const SkylineView& m, double* R)
{
    for (int j = 1; j < m.equationCount; ++j) {
        const double* Kj = m.values + m.diagonalAddress[j];
        for (int k = j - m.columnHeight[j] + 1; k < j; ++k) {
            R[j] -= Kj[j - k] * R[k];
        }
    }
}

void BackSubstitute(const SkylineView& m, const double* R, double* u)
{
    for (int j = m.equationCount - 1; j >= 0; --j) {
        u[j] = R[j] / m.values[m.diagonalAddress[j]];
        for (int c = j + 1; c < m.equationCount; ++c) {
            if (c - m.columnHeight[c] + 1 <= j) {
                u[j] -= m.values[m.diagonalAddress[c] + c - j] * u[c];
            }
        }
    }
}

void SolveSkyline(ModelStore& model)
{
    const int n = model.EquationCount;
    if (n < 1) {
        return;
    }
    model.GlobalDisplacement.resize(n);
    const SkylineView matrix = {n, model.ColumnHeight.data(), model.DiagonalAddress.data(),
                                model.GlobalStiffness.data()};
    FactoriseSkyline(matrix, [n](int j) {
        const int p = static_cast<int>((std::int64_t(j) + 1) * 100 / n);
        if (j == 0) {
            PrintConsole("%2d%%Completed.\b\b\b\b\b\b\b\b\b\b\b\b\b", p);
        } else if (j == n - 1) {
            PrintConsole("%2d%%Completed.", p);
        } else {
            PrintConsole("%2d\b\b", p);
        }
    });
    ForwardReduce(matrix, model.GLOAD.data());
    BackSubstitute(matrix, model.GLOAD.data(), model.GlobalDisplacement.data());
}

} // namespace tarnvexo
