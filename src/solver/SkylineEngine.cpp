#include "solver/SkylineEngine.h"

#include "solver/SkylineProfile.h"
#include "solver/SkylineSolver.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace tarnvexo {

std::string SkylineEngine::Name() const
{
    return "skyline LDLᵀ";
}

std::string SkylineEngine::Kernels() const
{
    return "Highway " + SkylineVectorUnit();
}

FactorSize SkylineEngine::Analyse(const BlockPattern& pattern)
{
    const std::size_t equations = static_cast<std::size_t>(DofsPerNode) * pattern.Size();
    columnHeight.assign(equations, 1);
    std::vector<int> lowestRow(pattern.Size()); // first row position of each column of the upper triangle
    for (int J = 0; J < pattern.Size(); ++J) { lowestRow[J] = J; }
    for (int J = 0; J < pattern.Size(); ++J) {
        for (std::size_t b = pattern.first[J]; b < pattern.first[J + 1]; ++b) {
            lowestRow[pattern.rows[b]] = std::min(lowestRow[pattern.rows[b]], J);
        }
    }
    for (std::size_t j = 0; j < equations; ++j) {
        columnHeight[j] = static_cast<int>(j) - DofsPerNode * lowestRow[j / DofsPerNode] + 1;
    }
    FactorSize size;
    size.entries = SkylineEntries(columnHeight);
    for (int height : columnHeight) { size.operations += static_cast<double>(height) * height; }
    size.bytes = static_cast<double>(size.entries) * sizeof(double);
    if (size.entries > SkylineLimit) {
        throw std::length_error("the skyline has " + std::to_string(size.entries) +
                                " entries, 32-bit addresses reach " + std::to_string(SkylineLimit));
    }
    diagonalAddress = DiagonalAddresses(columnHeight);
    return size;
}

PivotReport SkylineEngine::Factorise(const BlockMatrix& matrix)
{
    values = LargeArray(static_cast<std::size_t>(SkylineEntries(columnHeight)));
    std::fill(values.Data(), values.Data() + values.Size(), 0.0);
    const BlockPattern& pattern = matrix.pattern;
    for (int J = 0; J < pattern.Size(); ++J) {
        const int blocks = pattern.BlocksOf(J);
        const double* column = matrix.Column(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            for (int k = 0; k < blocks; ++k) {
                const int I = pattern.rows[pattern.first[J] + k];
                // Entry (i, j) of the lower triangle is entry (j, i) of the upper one, i - j above its diagonal.
                for (int u = k == 0 ? v : 0; u < DofsPerNode; ++u) {
                    const int i = DofsPerNode * I + u, j = DofsPerNode * J + v;
                    values.Data()[diagonalAddress[i] + (i - j)] = column[DofsPerNode * (blocks * v + k) + u];
                }
            }
        }
    }
    FactoriseSkyline(
        {static_cast<int>(columnHeight.size()), columnHeight.data(), diagonalAddress.data(), values.Data()});

    PivotReport report;
    report.pivots.assign(columnHeight.size(), 0.0);
    for (std::size_t j = 0; j < columnHeight.size() && report.Complete(); ++j) {
        const double pivot = values.Data()[diagonalAddress[j]];
        if (pivot > 0.0) { // not a number is none
            report.pivots[j] = pivot;
        } else {
            report.failedAt = static_cast<std::int64_t>(j);
        }
    }
    return report;
}

void SkylineEngine::Solve(double* vectors, int count)
{
    const std::size_t equations = columnHeight.size();
    const SkylineView factor = {static_cast<int>(equations), columnHeight.data(), diagonalAddress.data(),
                                values.Data()};
    std::vector<double> solution(equations);
    for (int c = 0; c < count; ++c) {
        double* vector = vectors + equations * c;
        ForwardReduce(factor, vector);
        BackSubstitute(factor, vector, solution.data());
        std::copy(solution.begin(), solution.end(), vector);
    }
}

} // namespace tarnvexo
