// Starts a program anew when OpenBLAS and CHOLMOD were loaded without the settings that tarnvexo gives them.
#pragma once

namespace tarnvexo {

// Call first in main, before any time is taken. Returns in a process that has been started with the settings of
// SetBlasEnvironment (solver/SparseEngine.h) in its environment.
void StartWithBlasEnvironment(char** argv);

} // namespace tarnvexo
