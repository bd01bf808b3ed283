// solver/SolutionCheck.h
// Tells when the factorisation met pivots that no structure held well enough has. The results are written all the same;
// this names the node, so that a free part or a forgotten support is found without searching result files.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// Warning about pivots that are zero, negative or not a number: how many, and the first one with node and direction.
// Without a line end behind it; empty when all are positive. Call it after SolveSkyline.
std::string PivotWarning(const ModelStore& model);

} // namespace tarnvexo
