// solver/SolutionCheck.h
// Tells when the factorisation met pivots that no structure held well enough has. The results are written all the same;
// this names the node, so that a free part or a forgotten support is found without searching result files.
#pragma once

#include "core/ModelStore.h"

#include <string>
#include <vector>

namespace tarnvexo {

// A pivot below this share of the assembled diagonal is round-off: the direction is free. Structures that are held have
// 1e-5 and more, free ones 1e-12 and less of either sign.
constexpr double PivotTolerance = 1e-10;

// Diagonal of the assembled matrix, one value per equation; take it before SolveSkyline.
std::vector<double> StiffnessDiagonal(const ModelStore& model);

// Warning about pivots that are not positive or only round-off: how many, and the first one with node and direction.
// Without a line end behind it; empty when there are none. Call it after SolveSkyline.
std::string PivotWarning(const ModelStore& model, const std::vector<double>& assembledDiagonal, const char* modelName);

} // namespace tarnvexo
