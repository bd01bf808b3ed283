// support/FrontArrays.h
// A part of a front for tests of the dense kernels: aligned as the engine stores it, with room around it that shows who
// wrote there.
#pragma once

#include "core/LargeArray.h"
#include "solver/FrontKernels.h"

#include <cstring>
#include <functional>
#include <vector>

namespace tarnvexo::test {

class GuardedFront {
public:
    // Rows rows.begin ... rows.end - 1 (multiples of RowAlignment) of the columns.
    GuardedFront(IndexRange rows, IndexRange columns)
        : rows(rows), columns(columns), values(static_cast<std::size_t>(Stride()) * (columns.Size() + 2)),
          before(values.Size())
    {
        for (std::size_t i = 0; i < values.Size(); ++i) { values.Data()[i] = 1e10 + static_cast<double>(i); }
    }

    FrontArray Array() { return {values.Data() + Stride(), Stride(), rows.begin, columns.begin}; }
    double& At(int row, int column) { return *Array().At(row, column); }

    // Fills what is inside; from now on changes are seen.
    void Fill(const std::function<double(int row, int column)>& value)
    {
        for (int c = columns.begin; c < columns.end; ++c) {
            for (int r = rows.begin; r < rows.end; ++r) { At(r, c) = value(r, c); }
        }
        std::memcpy(before.data(), values.Data(), sizeof(double) * before.size());
    }

    double Before(int row, int column) { return before[static_cast<std::size_t>(&At(row, column) - values.Data())]; }

    // How many entries have other bits now, of those that must not and of all around the front.
    int Changed(const std::function<bool(int row, int column)>& mayChange)
    {
        std::vector<char> allowed(before.size(), 0);
        for (int c = columns.begin; c < columns.end; ++c) {
            for (int r = rows.begin; r < rows.end; ++r) {
                allowed[static_cast<std::size_t>(&At(r, c) - values.Data())] = mayChange(r, c) ? 1 : 0;
            }
        }
        int changed = 0;
        for (std::size_t i = 0; i < before.size(); ++i) {
            changed += allowed[i] == 0 && std::memcmp(&before[i], values.Data() + i, sizeof(double)) != 0 ? 1 : 0;
        }
        return changed;
    }

private:
    std::ptrdiff_t Stride() const { return rows.Size() + RowAlignment; }

    IndexRange rows;
    IndexRange columns;
    LargeArray values; // a column of guards before and behind, RowAlignment of them below every column
    std::vector<double> before;
};

inline int WholeLines(int rows)
{
    return (rows + RowAlignment - 1) / RowAlignment * RowAlignment;
}

} // namespace tarnvexo::test
