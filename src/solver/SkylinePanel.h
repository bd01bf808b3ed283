// solver/SkylinePanel.h
// A panel of consecutive columns of a skyline matrix, copied side by side for the vector units: eight columns to a
// group, one lane each, so that one row of a group is one cache line.
//
// Columns of a panel are dealt to the groups by first row, tallest first. Neighbours in a group then start at about the
// same row even when the heights inside the panel differ widely, and little of the copy is padding.
#pragma once

#include "solver/SkylineSolver.h"

#include <cstddef>

namespace tarnvexo {

constexpr int LaneCount = 8;
constexpr int TileRows = 6;    // rows reduced together: the equations of one node, which share their first row
constexpr int PanelWidth = 48; // columns of a panel, a multiple of LaneCount and TileRows; wider saves memory traffic
constexpr int GroupCount = PanelWidth / LaneCount;

// Row r of lane l stands at rows[(r - topRow)*LaneCount + l]; 0 above the first row of the lane's column and from its
// diagonal down.
struct LaneGroup {
    double* rows;
    int topRow;                        // multiple of TileRows, at most the first row of any lane
    int fullRow;                       // from here down every lane's column has entries
    int firstColumn;                   // smallest column of the group
    int lastColumn;                    // largest one
    int laneCount;                     // lanes in use, the leading ones
    int column[LaneCount];             // column number of the lane
    std::ptrdiff_t address[LaneCount]; // entry (r, column) stands at values[address - r]
    alignas(64) double firstRow[LaneCount];
    alignas(64) double endRow[LaneCount]; // row of the diagonal; unused lanes have 0
    alignas(64) double pivot[LaneCount];  // diagonal, reduced as far as the rows have been
};

struct SkylinePanel {
    int begin; // columns begin ... end-1; begin is a multiple of PanelWidth
    int end;
    int topRow;     // smallest of all groups
    int groupCount; // groups in use
    LaneGroup groups[GroupCount];
    const double* pivot[PanelWidth]; // where the groups hold the diagonal of column begin + i
};

// Doubles that the copy of any panel of this matrix needs at most.
std::size_t PanelWorkSize(const SkylineView& matrix);

// Copies the columns begin ... begin + PanelWidth - 1 (or to the last column). work [PanelWorkSize], aligned to a cache
// line, holds the rows of the groups.
void GatherPanel(const SkylineView& matrix, int begin, double* work, SkylinePanel& panel);

} // namespace tarnvexo
