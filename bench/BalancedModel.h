// What the programs that compare whole runs start from: a model as `tarnvexo solve` has it before the stiffness.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// The model file with the origin at the centroid and loads in GLOAD that inertia relief has balanced.
// Errors: throws RunFailure (app/SolveDriver.h).
ModelStore BalancedModel(const char* modelFile);

} // namespace tarnvexo
