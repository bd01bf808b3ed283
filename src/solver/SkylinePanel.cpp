#include "solver/SkylinePanel.h"

#include <algorithm>
#include <numeric>

namespace tarnvexo {

namespace {

int FirstRow(const SkylineView& matrix, int column)
{
    return column - matrix.columnHeight[column] + 1;
}

void AssignLane(const SkylineView& matrix, int column, int lane, LaneGroup& group)
{
    group.column[lane] = column;
    group.address[lane] = static_cast<std::ptrdiff_t>(matrix.diagonalAddress[column]) + column;
    group.firstRow[lane] = FirstRow(matrix, column);
    group.endRow[lane] = column;
    group.pivot[lane] = matrix.values[matrix.diagonalAddress[column]];
}

// Columns of the group, by first row; unused lanes start with the last used one, so that they hide nothing.
void AssignLanes(const SkylineView& matrix, const int* columns, int count, LaneGroup& group)
{
    group.laneCount = count;
    group.topRow = FirstRow(matrix, columns[0]) / TileRows * TileRows;
    group.fullRow = FirstRow(matrix, columns[count - 1]);
    group.firstColumn = *std::min_element(columns, columns + count);
    group.lastColumn = *std::max_element(columns, columns + count);
    for (int lane = 0; lane < count; ++lane) { AssignLane(matrix, columns[lane], lane, group); }
    for (int lane = count; lane < LaneCount; ++lane) {
        group.column[lane] = -1;
        group.address[lane] = 0;
        group.firstRow[lane] = group.fullRow;
        group.endRow[lane] = 0.0;
        group.pivot[lane] = 0.0;
    }
}

void CopyColumns(const SkylineView& matrix, int end, LaneGroup& group)
{
    std::fill_n(group.rows, static_cast<std::size_t>(end - group.topRow) * LaneCount, 0.0);
    for (int lane = 0; lane < group.laneCount; ++lane) {
        const int column = group.column[lane];
        const int firstRow = FirstRow(matrix, column);
        const double* diagonal = matrix.values + matrix.diagonalAddress[column];
        double* to = group.rows + static_cast<std::size_t>(firstRow - group.topRow) * LaneCount + lane;
        for (int row = firstRow; row < column; ++row, to += LaneCount) { *to = diagonal[column - row]; }
    }
}

} // namespace

std::size_t PanelWorkSize(const SkylineView& matrix)
{
    const int n = matrix.equationCount;
    const int tallest = *std::max_element(matrix.columnHeight, matrix.columnHeight + n);
    return (static_cast<std::size_t>(tallest) + PanelWidth + TileRows) * PanelWidth;
}

void GatherPanel(const SkylineView& matrix, int begin, double* work, SkylinePanel& panel)
{
    panel.begin = begin;
    panel.end = std::min(begin + PanelWidth, matrix.equationCount);
    const int width = panel.end - begin;
    int columns[PanelWidth];
    std::iota(columns, columns + width, begin);
    std::stable_sort(columns, columns + width,
                     [&matrix](int a, int b) { return FirstRow(matrix, a) < FirstRow(matrix, b); });

    panel.groupCount = (width + LaneCount - 1) / LaneCount;
    for (int g = 0; g < panel.groupCount; ++g) {
        LaneGroup& group = panel.groups[g];
        const int first = g * LaneCount;
        AssignLanes(matrix, columns + first, std::min(LaneCount, width - first), group);
        group.rows = work;
        work += static_cast<std::size_t>(panel.end - group.topRow) * LaneCount;
        CopyColumns(matrix, panel.end, group);
        for (int lane = 0; lane < group.laneCount; ++lane) {
            panel.pivot[group.column[lane] - begin] = &group.pivot[lane];
        }
    }
    panel.topRow = panel.groups[0].topRow;
}

} // namespace tarnvexo
