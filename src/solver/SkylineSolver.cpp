#include "solver/SkylineSolver.h"

#include "core/Console.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>

namespace tarnvexo {

namespace {

int FirstRow(const SkylineView& matrix, int column)
{
    return column - matrix.columnHeight[column] + 1;
}

} // namespace

void ForwardReduce(const SkylineView& factor, double* R)
{
    for (int j = 1; j < factor.equationCount; ++j) {
        const double* diagonal = factor.values + factor.diagonalAddress[j];
        double reduced = R[j];
        for (int k = FirstRow(factor, j); k < j; ++k) { reduced -= diagonal[j - k] * R[k]; }
        R[j] = reduced;
    }
}

namespace {

constexpr int BlockRows = 8; // entries of a cache line

// Terms of one column in the rows of a block; +0 in the rows it does not reach.
void ColumnTerms(const double* entry, double u, int reached, double* term)
{
    if (reached == BlockRows) {
        for (int t = 0; t < BlockRows; ++t) { term[t] = entry[t] * u; }
    } else {
        for (int t = 0; t < BlockRows; ++t) { term[t] = t < reached ? entry[t] * u : 0.0; }
    }
}

} // namespace

// Row j takes its terms from the columns that reach it, in increasing order. Going up in blocks of rows, the columns
// right of a block stand in active[begin ... end-1], in increasing order: the columns of the last block enter in front,
// and a column that does not reach the block's lowest row is dropped for good. Their terms K(j,m)·u[m] are known when
// the block begins and are laid out row beside row; only the subtractions have to wait for one another. Where a column
// does not reach a row its term is +0, which changes no bit. One step per stored entry, not per pair of equations.
void BackSubstitute(const SkylineView& factor, const double* R, double* u)
{
    const int n = factor.equationCount;
    std::vector<int> active(static_cast<std::size_t>(std::max(n, 0)));
    std::vector<double> terms; // [column of active][row, the lowest of the block first]
    int begin = n;
    int end = n;
    for (int lowest = n - 1; lowest >= 0; lowest -= BlockRows) {
        const int rowCount = std::min(BlockRows, lowest + 1);
        terms.resize(std::max(terms.size(), static_cast<std::size_t>(end - begin) * BlockRows));
        double* term = terms.data();
        int kept = begin;
        for (int a = begin; a < end; ++a) {
            const int m = active[a];
            const int reached = std::min(rowCount, lowest - FirstRow(factor, m) + 1);
            if (reached <= 0) {
                continue;
            }
            const double* entry = factor.values + factor.diagonalAddress[m] + (m - lowest);
            ColumnTerms(entry, u[m], reached, term);
            term += BlockRows;
            active[kept++] = m;
        }
        end = kept;

        for (int t = 0; t < rowCount; ++t) {
            const int j = lowest - t;
            double value = R[j] / factor.values[factor.diagonalAddress[j]];
            for (int m = j + 1; m <= lowest; ++m) {
                if (FirstRow(factor, m) <= j) {
                    value -= factor.values[factor.diagonalAddress[m] + (m - j)] * u[m];
                }
            }
            for (int a = 0; a < end - begin; ++a) { value -= terms[static_cast<std::size_t>(a) * BlockRows + t]; }
            u[j] = value;
        }
        for (int t = 0; t < rowCount; ++t) { active[--begin] = lowest - t; }
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
