// checks/ShellOrientation.h
// Which shells look the other way than their neighbours. Two shells that share an edge look the same way when they run
// through it in opposite directions. Edges of three or more shells say nothing, nor do folds sharper than a limit: at a
// corner of a box no side of one wall is that of the other, and real models turn them as they come.
#pragma once

#include "checks/ShellEdges.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

// Angle between two shells at their common edge, degrees: 0 in a plane, 180 when one lies on the other. NaN beside a
// shell without area.
double FoldAngle(const ModelStore& model, const ShellEdge& edge);

// A panel is what judged edges connect; a patch is what of it looks the same way across them. In each panel the patches
// are of two sorts, so that turning either sort makes one orientation: the one of fewer shells is turned, of equally
// many the one without the panel's first shell.
// Without opposed edges nothing more is looked for, and the tables are empty.
struct ShellOrientation {
    std::vector<ShellEdge> opposed;
    std::vector<int> patch;     // [shells] the lowest shell of its patch
    std::vector<int> patchSize; // [shells] of the patch with that lowest shell; 0 for all others
    std::vector<char> turn;     // [shells] it belongs to those to turn
    int opposedPatches = 0;     // patches at an opposed edge
    std::int64_t shellsToTurn = 0;
    std::int64_t twisted = 0; // opposed edges that turning does not mend: a strip with one side only
};

ShellOrientation FindOrientation(const ModelStore& model, const ShellEdges& edges, double sharpestFold);

} // namespace tarnvexo
