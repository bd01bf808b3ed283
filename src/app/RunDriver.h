// app/RunDriver.h
// The console run: one pass over fem_solving.txt of the current directory, six result files, then the viewer.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Returns the exit code of a complete run (0). Stages that cannot go on end the process themselves with exit code 1.
int RunConsole();

// Frees everything that the store holds.
void ReleaseModel(ModelStore& model);

} // namespace tarnvexo
