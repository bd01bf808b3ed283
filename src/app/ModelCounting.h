// app/ModelCounting.h
// What a model consists of, in figures for a report.
#pragma once

#include "app/SolveReport.h"
#include "core/ModelStore.h"

namespace tarnvexo {

// EquationCount is set. The box is in the coordinates of the model file, wherever the origin stands.
ModelCounts CountsOf(const ModelStore& model);

} // namespace tarnvexo
