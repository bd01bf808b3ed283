// checks/ShellOrientation.h
// Which shells look the other way than their neighbours. Two shells that share an edge look the same way, at any angle
// of a fold, when they run through it in opposite directions. Edges of three or more shells say nothing.
#pragma once

#include "checks/ShellEdges.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

inline bool IsOpposed(const ShellEdge& edge)
{
    return JoinsTwoShells(edge) && edge.uses[0].forward == edge.uses[1].forward;
}

// A panel is what edges of two shells connect; a patch is what of it looks the same way across such edges. In each
// panel the patches are of two sorts, so that turning either sort makes one orientation: the one of fewer shells is
// turned, of equally many the one without the panel's first shell.
struct ShellOrientation {
    std::vector<int> patch;     // [shells] the lowest shell of its patch
    std::vector<int> patchSize; // [shells] of the patch with that lowest shell; 0 for all others
    std::vector<char> turn;     // [shells] it belongs to those to turn
    int opposedPatches = 0;     // patches at an opposed edge
    std::int64_t shellsToTurn = 0;
    std::int64_t twisted = 0; // opposed edges that turning does not mend: a strip with one side only
};

ShellOrientation FindOrientation(const ModelStore& model, const ShellEdges& edges);

} // namespace tarnvexo
