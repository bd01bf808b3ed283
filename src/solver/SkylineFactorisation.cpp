// Active-column factorisation with the vector units across columns.
//
// Column j of the textbook loop: for i = r_j ... j-1 the entry g(i,j) = K(i,j) - Σ U(k,i)·g(k,j), k increasing from
// max(r_i, r_j) to i-1; then U(i,j) = g(i,j)/d_i and d_j = K(j,j) - Σ U(i,j)·g(i,j), i increasing, U(i,j) = 0 left out.
//
// Every column is a chain of its own, so eight of them run in eight lanes with the term order of each unchanged. A
// panel of columns is copied side by side (solver/SkylinePanel.h). All rows above the panel are reduced in tiles of six
// rows, every lane group against the same tile, which stays in the first-level cache; then these rows are divided and
// go back to the skyline as U; then the rows inside the panel follow, divided one by one, because they need each
// other's pivots. Product and difference are rounded separately. Lanes whose column has not begun at row k get the
// product replaced by +0, which changes no bit of the difference whatever U(k,i) is, infinite and not-a-number
// included.
//
// Compiled once for each kind of vector unit; the best one that the processor has is chosen when the program runs.

#include "core/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "solver/SkylineFactorisation.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"
#include "solver/SkylinePanel.h"
#include "solver/SkylineSolver.h"

#include <algorithm>
#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<double, LaneCount>;
using Vector = hn::Vec<Tag>;
constexpr int VectorLanes = static_cast<int>(hn::MaxLanes(Tag()));
// Vectors of a group that a tile is applied to at once: TileRows times as many sums must fit into the registers.
constexpr int BlockVectors = std::min(LaneCount / VectorLanes, 2);
constexpr int BlockLanes = BlockVectors * VectorLanes;

// Six columns of the factor, finished down to row begin - 1 at least.
struct PivotTile {
    int begin;                        // columns begin ... begin + count - 1
    int count;                        // TileRows, less at the end of the matrix
    int commonRow;                    // from here down all of them have entries
    int firstRow[TileRows];           // of each
    const double* diagonal[TileRows]; // U(k, i) stands at diagonal[i - begin][i - k]
};

HWY_INLINE PivotTile MakePivotTile(const SkylineView& matrix, int begin, int end)
{
    PivotTile tile;
    tile.begin = begin;
    tile.count = std::min(TileRows, end - begin);
    tile.commonRow = 0;
    for (int a = 0; a < tile.count; ++a) {
        tile.firstRow[a] = begin + a - matrix.columnHeight[begin + a] + 1;
        tile.diagonal[a] = matrix.values + matrix.diagonalAddress[begin + a];
        tile.commonRow = std::max(tile.commonRow, tile.firstRow[a]);
    }
    return tile;
}

HWY_INLINE double* Row(const LaneGroup& group, int row)
{
    return group.rows + static_cast<std::ptrdiff_t>(row - group.topRow) * LaneCount;
}

// g(i, lanes) -= U(k, i)·g(k, lanes) for one row i = tile.begin + a and k = begin ... end-1.
HWY_INLINE void ReduceRow(const PivotTile& tile, int a, const LaneGroup& group, int begin, int end)
{
    const Tag d;
    const int i = tile.begin + a;
    begin = std::max({begin, tile.firstRow[a], group.topRow});
    for (int lane = 0; lane < LaneCount; lane += VectorLanes) {
        const Vector firstRow = hn::Load(d, group.firstRow + lane);
        double* g = Row(group, i) + lane;
        Vector sum = hn::Load(d, g);
        for (int k = begin; k < end; ++k) {
            const Vector u = hn::Set(d, tile.diagonal[a][i - k]);
            const Vector product = hn::Mul(u, hn::Load(d, Row(group, k) + lane));
            const auto begun = hn::Le(firstRow, hn::Set(d, static_cast<double>(k)));
            sum = hn::Sub(sum, hn::IfThenElseZero(begun, product));
        }
        hn::Store(sum, d, g);
    }
}

// The same for six whole rows, for k where all six pivot columns have entries. Ragged: some lane may not have begun.
// With end = tile.begin and everything begun there, the rows' terms with one another can follow at once: Inside.
template <bool Ragged, bool Inside>
HWY_INLINE void ReduceRows(const PivotTile& tile, const LaneGroup& group, int begin, int end)
{
    const Tag d;
    if (begin >= end) {
        return;
    }
    const double* U[TileRows];
    for (int a = 0; a < TileRows; ++a) { U[a] = tile.diagonal[a] + (tile.begin + a - begin); }
    for (int lane = 0; lane < LaneCount; lane += BlockLanes) {
        Vector firstRow[BlockVectors];
        Vector sum[TileRows][BlockVectors];
        double* g = Row(group, tile.begin) + lane;
        for (int v = 0; v < BlockVectors; ++v) {
            firstRow[v] = hn::Load(d, group.firstRow + lane + v * VectorLanes);
            for (int a = 0; a < TileRows; ++a) { sum[a][v] = hn::Load(d, g + a * LaneCount + v * VectorLanes); }
        }
        const double* above = Row(group, begin) + lane;
        const std::ptrdiff_t count = end - begin;
        for (std::ptrdiff_t k = 0; k < count; ++k, above += LaneCount) {
            for (int v = 0; v < BlockVectors; ++v) {
                const Vector gk = hn::Load(d, above + v * VectorLanes);
                for (int a = 0; a < TileRows; ++a) {
                    Vector product = hn::Mul(hn::Set(d, U[a][-k]), gk);
                    if constexpr (Ragged) {
                        const auto begun = hn::Le(firstRow[v], hn::Set(d, static_cast<double>(begin + k)));
                        product = hn::IfThenElseZero(begun, product);
                    }
                    sum[a][v] = hn::Sub(sum[a][v], product);
                }
            }
        }
        for (int v = 0; v < BlockVectors; ++v) {
            for (int a = 0; a < TileRows; ++a) {
                if constexpr (Inside) {
                    for (int b = 0; b < a; ++b) {
                        sum[a][v] = hn::Sub(sum[a][v], hn::Mul(hn::Set(d, tile.diagonal[a][a - b]), sum[b][v]));
                    }
                }
                hn::Store(sum[a][v], d, g + a * LaneCount + v * VectorLanes);
            }
        }
    }
}

// All terms k < tile.begin of the rows of a tile; with Inside also the terms of these rows with one another.
template <bool Inside> HWY_NOINLINE void ReduceTile(const PivotTile& tile, const LaneGroup& group)
{
    const int end = tile.begin;
    const int common = tile.count == TileRows ? std::clamp(tile.commonRow, group.topRow, end) : end;
    const int full = std::clamp(group.fullRow, common, end);
    for (int a = 0; a < tile.count; ++a) { ReduceRow(tile, a, group, group.topRow, common); }
    ReduceRows<true, false>(tile, group, common, full);
    if (Inside && full < end) {
        ReduceRows<false, true>(tile, group, full, end);
        return;
    }
    ReduceRows<false, false>(tile, group, full, end);
    for (int a = 1; Inside && a < tile.count; ++a) { ReduceRow(tile, a, group, tile.begin, tile.begin + a); }
}

// U = g/d and the diagonal's term -U·g of one row, and U to the skyline.
HWY_INLINE void DivideRow(const SkylineView& matrix, LaneGroup& group, int row, double pivot)
{
    const Tag d;
    const Vector dk = hn::Set(d, pivot);
    const Vector k = hn::Set(d, static_cast<double>(row));
    alignas(64) double U[LaneCount];
    for (int lane = 0; lane < LaneCount; lane += VectorLanes) {
        const Vector g = hn::Load(d, Row(group, row) + lane);
        const Vector u = hn::Div(g, dk);
        const auto above =
            hn::And(hn::Le(hn::Load(d, group.firstRow + lane), k), hn::Lt(k, hn::Load(d, group.endRow + lane)));
        // Not "U != 0": a quotient that is not a number counts.
        const Vector nonzero = hn::IfThenZeroElse(hn::Eq(u, hn::Zero(d)), hn::Mul(u, g));
        const Vector term = hn::IfThenElseZero(above, nonzero);
        hn::Store(hn::Sub(hn::Load(d, group.pivot + lane), term), d, group.pivot + lane);
        hn::Store(u, d, U + lane);
    }
    const bool everyLane = group.fullRow <= row && row < group.firstColumn;
    for (int lane = 0; lane < group.laneCount; ++lane) {
        if (everyLane || (group.firstRow[lane] <= row && row < group.endRow[lane])) {
            matrix.values[group.address[lane] - row] = U[lane];
        }
    }
}

HWY_NOINLINE void DivideRows(const SkylineView& matrix, LaneGroup& group, int begin, int end)
{
    for (int k = begin; k < end; ++k) { DivideRow(matrix, group, k, matrix.values[matrix.diagonalAddress[k]]); }
}

void FactorisePanel(const SkylineView& matrix, SkylinePanel& panel)
{
    // Rows above the panel.
    for (int i = panel.topRow; i < panel.begin; i += TileRows) {
        const PivotTile tile = MakePivotTile(matrix, i, panel.begin);
        for (int g = 0; g < panel.groupCount && panel.groups[g].topRow <= i; ++g) {
            ReduceTile<true>(tile, panel.groups[g]);
        }
    }
    for (int g = 0; g < panel.groupCount; ++g) {
        DivideRows(matrix, panel.groups[g], panel.groups[g].topRow, panel.begin);
    }

    // Rows inside it. A lane is of no interest from its diagonal down: what it gets there is never read.
    for (int i = panel.begin; i < panel.end; i += TileRows) {
        const PivotTile tile = MakePivotTile(matrix, i, panel.end);
        for (int g = 0; g < panel.groupCount; ++g) {
            if (panel.groups[g].lastColumn > i && panel.groups[g].topRow <= i) {
                ReduceTile<false>(tile, panel.groups[g]);
            }
        }
        for (int a = 0; a < tile.count; ++a) {
            const int row = i + a;
            const double pivot = *panel.pivot[row - panel.begin];
            matrix.values[matrix.diagonalAddress[row]] = pivot;
            for (int g = 0; g < panel.groupCount; ++g) {
                LaneGroup& group = panel.groups[g];
                if (group.lastColumn > row && group.topRow <= row) {
                    ReduceRow(tile, a, group, i, row);
                    DivideRow(matrix, group, row, pivot);
                }
            }
        }
    }
}

const char* VectorUnit()
{
    return hwy::TargetName(HWY_TARGET);
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include "hwy/aligned_allocator.h"

#include <new>

namespace tarnvexo {

HWY_EXPORT(FactorisePanel);
HWY_EXPORT(VectorUnit);

std::string SkylineVectorUnit()
{
    return HWY_DYNAMIC_DISPATCH(VectorUnit)();
}

void FactoriseSkyline(const SkylineView& matrix, const ColumnDone& columnDone)
{
    const int n = matrix.equationCount;
    if (n < 1) {
        return;
    }
    const auto work = hwy::AllocateAligned<double>(PanelWorkSize(matrix));
    if (!work) {
        throw std::bad_alloc();
    }
    SkylinePanel panel;
    for (int begin = 0; begin < n; begin += PanelWidth) {
        GatherPanel(matrix, begin, work.get(), panel);
        HWY_DYNAMIC_DISPATCH(FactorisePanel)(matrix, panel);
        for (int column = panel.begin; columnDone && column < panel.end; ++column) { columnDone(column); }
    }
}

} // namespace tarnvexo

#endif // HWY_ONCE
