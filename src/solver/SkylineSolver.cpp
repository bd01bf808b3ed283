#include "solver/SkylineSolver.h"

#include "core/Console.h"

#include <cstdint>
#include <cstdio>

namespace tarnvexo {

void ForwardReduce(const SkylineView& factor, double* R)
{
    for (int j = 1; j < factor.equationCount; ++j) {
        const double* diagonal = factor.values + factor.diagonalAddress[j];
        double reduced = R[j];
        for (int k = j - factor.columnHeight[j] + 1; k < j; ++k) { reduced -= diagonal[j - k] * R[k]; }
        R[j] = reduced;
    }
}

// Row j takes its terms from the columns that reach it, in increasing order. They hang together as a list that grows at
// its head as j goes up, and loses columns when j has passed their first row: one step per stored entry, not per pair
// of equations.
void BackSubstitute(const SkylineView& factor, const double* R, double* u)
{
    constexpr int none = -1;
    const int n = factor.equationCount;
    std::vector<int> next(n > 0 ? n : 0, none); // column behind each column of the list
    int head = none;
    for (int j = n - 1; j >= 0; --j) {
        double value = R[j] / factor.values[factor.diagonalAddress[j]];
        int* link = &head;
        while (*link != none) {
            const int m = *link;
            const int firstRow = m - factor.columnHeight[m] + 1;
            if (firstRow > j) {
                *link = next[m]; // ends below row j, and so below all rows to come
                continue;
            }
            value -= factor.values[factor.diagonalAddress[m] + (m - j)] * u[m];
            link = &next[m];
        }
        u[j] = value;
        next[j] = head;
        head = j;
    }
}

namespace {

// Back over the number alone, and over the number and "%Completed.".
constexpr const char* BackOverNumber = "\b\b";
constexpr const char* BackOverText = "\b\b\b\b\b\b\b\b\b\b\b\b\b";

int Percentage(int column, int equationCount)
{
    return static_cast<int>((std::int64_t(column) + 1) * 100 / equationCount);
}

} // namespace

std::string SolutionProgress(int column, int equationCount)
{
    const bool isFirst = column == 0;
    const bool isLast = column == equationCount - 1;
    char text[40];
    std::snprintf(text, sizeof text, "%2d%s%s", Percentage(column, equationCount),
                  isFirst || isLast ? "%Completed." : "", isFirst ? BackOverText : (isLast ? "" : BackOverNumber));
    return text;
}

void SolveSkyline(ModelStore& model)
{
    const int n = model.EquationCount;
    if (n < 1) {
        return;
    }
    const SkylineView matrix = {n, model.ColumnHeight.data(), model.DiagonalAddress.data(),
                                model.GlobalStiffness.data()};
    model.GlobalDisplacement.resize(n);
    FactoriseSkyline(matrix, [n](int column) {
        PrintConsole("%s", SolutionProgress(column, n).c_str());
        if (column == 0 || Percentage(column, n) != Percentage(column - 1, n)) {
            FlushConsole(); // what the user sees changes only here
        }
    });
    ForwardReduce(matrix, model.GLOAD.data());
    BackSubstitute(matrix, model.GLOAD.data(), model.GlobalDisplacement.data());
}

} // namespace tarnvexo
