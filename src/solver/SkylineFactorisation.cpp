// FactoriseSkyline of solver/SkylineSolver.h, vectorised across columns without changing the order of any sum.
//
// The literal procedure: for every column j, from its first row down,
//     g(i,j) = K(i,j) − Σk U(k,i)·g(k,j),   k increasing from the later of the two columns' first rows to i − 1,
// then U(i,j) = g(i,j)/d(i) and d(j) = K(j,j) − Σi U(i,j)·g(i,j), i increasing.
//
// Here a panel of PanelWidth columns goes down together. Eight neighbouring columns are a group; each vector lane is
// one column, so that an entry gets exactly the terms of the literal procedure in its order. Rows are taken in tiles of
// six, the equations of a node, whose columns begin at the same row: six accumulators share each vector of g. The pivot
// columns U(·,i) of a tile stay in cache for all groups of the panel.
//
//      k →  rows above the tile: one sweep, six rows at once
//      tile rows i0 … i0+5 among themselves: row by row (the triangle)
//      rows inside the panel: as soon as row i is reduced, it is divided by d(i) for the columns right of it
//
// Columns of a group begin at different rows. Above its first row a lane's product is masked to +0, and x − (+0) = x
// for every x, so neither signs of zero nor infinities of another column reach it. Multiplication and subtraction stay
// two operations (-ffp-contract=off).
#include "solver/SkylineSolver.h"

#include <algorithm>
#include <limits>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "solver/SkylineFactorisation.cpp"
#include "hwy/aligned_allocator.h"
#include "hwy/foreach_target.h" // compiles the rest of this file once per instruction set
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace tarnvexo::HWY_NAMESPACE {
namespace {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int GroupWidth = 8;  // columns of a group
constexpr int PanelGroups = 6; // more do not fit the second-level cache beside the pivot columns
constexpr int PanelWidth = PanelGroups * GroupWidth;
constexpr int TileRows = 6;
static_assert(PanelWidth % TileRows == 0, "panels begin at a node, as tiles do");

constexpr hn::CappedTag<double, GroupWidth> D;
using Vector = hn::Vec<decltype(D)>;
constexpr int Lanes = hn::MaxLanes(D);
constexpr int Vectors = GroupWidth / Lanes; // vectors of a group's row

// Entries g of eight columns, one row after the other, from the group's lowest first row down to the panel's last row.
struct Group {
    int firstRow;                              // lowest first row of its columns
    int commonRow;                             // from here on every column has entries
    double* g;                                 // [row − firstRow][GroupWidth], 0 where a column has no entry
    HWY_ALIGN double laneFirstRow[GroupWidth]; // infinite for a lane without a column
    HWY_ALIGN double laneColumn[GroupWidth];   // −1 for a lane without a column
    HWY_ALIGN double diagonal[GroupWidth];

    double* Row(int row) { return g + std::ptrdiff_t(row - firstRow) * GroupWidth; }
};

// A column of the matrix with Entry(k) = K(k, j), whatever the order in storage.
struct Column {
    Column(const SkylineView& matrix, int j)
        : zero(matrix.values + matrix.diagonalAddress[j] + j), firstRow(j - matrix.columnHeight[j] + 1)
    {
    }
    double& Entry(int k) const { return zero[-k]; }

    double* zero; // where row 0 would stand
    int firstRow;
};

// acc[row] −= U(k, row)·g(k) for k = from ... to − 1.
template <int Rows, bool Masked>
HWY_INLINE void Sweep(const Column* pivots, int from, int to, Group& group, Vector (&acc)[Rows][Vectors])
{
    const double* g = group.Row(from);
    for (int k = from; k < to; ++k, g += GroupWidth) {
        for (int v = 0; v < Vectors; ++v) {
            const Vector gk = hn::Load(D, g + v * Lanes);
            for (int r = 0; r < Rows; ++r) {
                Vector product = hn::Mul(hn::Set(D, pivots[r].Entry(k)), gk);
                if constexpr (Masked) {
                    const Vector laneFirstRow = hn::Load(D, group.laneFirstRow + v * Lanes);
                    product = hn::IfThenElseZero(hn::Le(laneFirstRow, hn::Set(D, double(k))), product);
                }
                acc[r][v] = hn::Sub(acc[r][v], product);
            }
        }
    }
}

// Terms k = from ... to − 1 of the rows row ... row + Rows − 1, whose pivot columns all reach up to `from`.
template <int Rows> HWY_INLINE void SubtractTerms(const Column* pivots, int row, int from, int to, Group& group)
{
    if (from >= to) {
        return;
    }
    Vector acc[Rows][Vectors];
    double* g = group.Row(row);
    for (int r = 0; r < Rows; ++r) {
        for (int v = 0; v < Vectors; ++v) { acc[r][v] = hn::Load(D, g + r * GroupWidth + v * Lanes); }
    }
    const int common = std::clamp(group.commonRow, from, to);
    Sweep<Rows, true>(pivots, from, common, group, acc);
    Sweep<Rows, false>(pivots, common, to, group, acc);
    for (int r = 0; r < Rows; ++r) {
        for (int v = 0; v < Vectors; ++v) { hn::Store(acc[r][v], D, g + r * GroupWidth + v * Lanes); }
    }
}

// The work on one panel: columns first ... last − 1.
class Panel {
public:
    Panel(const SkylineView& matrix, int first, double* buffer)
        : matrix(matrix), first(first), last(std::min(first + PanelWidth, matrix.equationCount))
    {
        for (int j = first; j < last; j += GroupWidth) {
            Gather(groups[groupCount], j, buffer);
            lowestRow = groupCount == 0 ? groups[0].firstRow : std::min(lowestRow, groups[groupCount].firstRow);
            ++groupCount;
        }
    }

    void Reduce()
    {
        // Rows above the panel: their pivot columns are complete.
        for (int row = lowestRow - lowestRow % TileRows; row < first; row += TileRows) {
            const int end = std::min(row + TileRows, first);
            ReduceTileFromAbove(row, end, 0);
            for (int i = row + 1; i < end; ++i) { ReduceWithinTile(i, row, 0); }
        }
        for (int q = 0; q < groupCount; ++q) { Divide(groups[q], groups[q].firstRow, first); }

        // Rows of the panel: each completes its own column before it divides the columns right of it.
        for (int row = first; row < last; row += TileRows) {
            const int end = std::min(row + TileRows, last);
            ReduceTileFromAbove(row, end, (row - first) / GroupWidth);
            for (int i = row; i < end; ++i) {
                const int own = (i - first) / GroupWidth;
                ReduceWithinTile(i, row, own);
                matrix.values[matrix.diagonalAddress[i]] = groups[own].diagonal[(i - first) % GroupWidth];
                for (int q = own; q < groupCount; ++q) { Divide(groups[q], i, i + 1); }
            }
        }
    }

private:
    // Takes the columns from `column` on as a group, their entries at `buffer`, which moves behind them.
    void Gather(Group& group, int column, double*& buffer)
    {
        const int width = std::min(GroupWidth, last - column);
        group.firstRow = column;
        group.commonRow = width < GroupWidth ? std::numeric_limits<int>::max() : 0;
        for (int lane = 0; lane < GroupWidth; ++lane) {
            group.laneFirstRow[lane] = std::numeric_limits<double>::infinity();
            group.laneColumn[lane] = -1.0;
            group.diagonal[lane] = 0.0;
            if (lane < width) {
                const Column source(matrix, column + lane);
                group.laneFirstRow[lane] = source.firstRow;
                group.laneColumn[lane] = column + lane;
                group.diagonal[lane] = source.Entry(column + lane);
                group.firstRow = std::min(group.firstRow, source.firstRow);
                group.commonRow = std::max(group.commonRow, source.firstRow);
            }
        }
        group.g = buffer;
        buffer += std::ptrdiff_t(last - group.firstRow) * GroupWidth;
        std::fill(group.g, buffer, 0.0);
        for (int lane = 0; lane < width; ++lane) {
            const Column source(matrix, column + lane);
            for (int k = source.firstRow; k < column + lane; ++k) { group.Row(k)[lane] = source.Entry(k); }
        }
    }

    // Rows row ... end − 1 of the groups from `firstGroup` on: all terms with k < row.
    void ReduceTileFromAbove(int row, int end, int firstGroup)
    {
        const Column pivots[TileRows] = {Pivot(row, end),     Pivot(row + 1, end), Pivot(row + 2, end),
                                         Pivot(row + 3, end), Pivot(row + 4, end), Pivot(row + 5, end)};
        int pivotsReach = 0; // from here on every pivot column of the tile has entries
        for (int r = 0; r < end - row; ++r) { pivotsReach = std::max(pivotsReach, pivots[r].firstRow); }

        for (int q = firstGroup; q < groupCount; ++q) {
            Group& group = groups[q];
            const int together = std::max(pivotsReach, group.firstRow);
            const bool sweepTogether = end - row == TileRows && together < row;
            const int alone = sweepTogether ? together : row;
            for (int i = std::max(row, group.firstRow); i < end; ++i) {
                const Column* pivot = pivots + (i - row);
                SubtractTerms<1>(pivot, i, std::max(pivot->firstRow, group.firstRow), alone, group);
            }
            if (sweepTogether) {
                SubtractTerms<TileRows>(pivots, row, together, row, group);
            }
        }
    }

    // Row i: the terms of its own tile, k = tileRow ... i − 1.
    void ReduceWithinTile(int i, int tileRow, int firstGroup)
    {
        const Column pivot(matrix, i);
        for (int q = firstGroup; q < groupCount; ++q) {
            Group& group = groups[q];
            SubtractTerms<1>(&pivot, i, std::max({pivot.firstRow, group.firstRow, tileRow}), i, group);
        }
    }

    // Rows from ... to − 1 of a group: U(k,j) = g(k,j)/d(k) into the matrix, d(j) −= U(k,j)·g(k,j) unless U(k,j) is 0.
    void Divide(Group& group, int from, int to)
    {
        constexpr int chunk = 32; // rows held until they are spread over the columns
        HWY_ALIGN double u[chunk * GroupWidth];
        Vector diagonal[Vectors];
        for (int v = 0; v < Vectors; ++v) { diagonal[v] = hn::Load(D, group.diagonal + v * Lanes); }
        for (int begin = std::max(from, group.firstRow); begin < to; begin += chunk) {
            const int end = std::min(begin + chunk, to);
            for (int k = begin; k < end; ++k) {
                const Vector row = hn::Set(D, double(k));
                const Vector pivot = hn::Set(D, matrix.values[matrix.diagonalAddress[k]]);
                for (int v = 0; v < Vectors; ++v) {
                    const Vector g = hn::Load(D, group.Row(k) + v * Lanes);
                    const Vector quotient = hn::Div(g, pivot);
                    hn::Store(quotient, D, u + (k - begin) * GroupWidth + v * Lanes);
                    const auto inColumn = hn::And(hn::Le(hn::Load(D, group.laneFirstRow + v * Lanes), row),
                                                  hn::Lt(row, hn::Load(D, group.laneColumn + v * Lanes)));
                    const auto counts = hn::And(inColumn, hn::Not(hn::Eq(quotient, hn::Zero(D)))); // nan counts
                    diagonal[v] = hn::Sub(diagonal[v], hn::IfThenElseZero(counts, hn::Mul(quotient, g)));
                }
            }
            for (int lane = 0; lane < GroupWidth; ++lane) {
                const int j = static_cast<int>(group.laneColumn[lane]);
                if (j < 0) {
                    continue;
                }
                const Column column(matrix, j);
                for (int k = std::max(begin, column.firstRow); k < std::min(end, j); ++k) {
                    column.Entry(k) = u[(k - begin) * GroupWidth + lane];
                }
            }
        }
        for (int v = 0; v < Vectors; ++v) { hn::Store(diagonal[v], D, group.diagonal + v * Lanes); }
    }

    // Column i, or the last one before `end` in its place at the end of the matrix, where a tile has fewer rows.
    Column Pivot(int i, int end) const { return Column(matrix, std::min(i, end - 1)); }

    const SkylineView& matrix;
    int first;
    int last;
    int lowestRow = 0;
    int groupCount = 0;
    Group groups[PanelGroups];
};

void FactorisePanels(const SkylineView& matrix, const ColumnDone& columnDone)
{
    const int tallest = *std::max_element(matrix.columnHeight, matrix.columnHeight + matrix.equationCount);
    const auto buffer = hwy::AllocateAligned<double>((std::size_t(tallest) + PanelWidth) * PanelWidth);
    if (!buffer) {
        throw std::bad_alloc();
    }
    for (int first = 0; first < matrix.equationCount; first += PanelWidth) {
        Panel(matrix, first, buffer.get()).Reduce();
        if (columnDone) {
            for (int j = first; j < std::min(first + PanelWidth, matrix.equationCount); ++j) { columnDone(j); }
        }
    }
}

} // namespace
} // namespace tarnvexo::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tarnvexo {

HWY_EXPORT(FactorisePanels);

void FactoriseSkyline(const SkylineView& matrix, const ColumnDone& columnDone)
{
    if (matrix.equationCount > 0) {
        HWY_DYNAMIC_DISPATCH(FactorisePanels)(matrix, columnDone);
    }
}

} // namespace tarnvexo
#endif
