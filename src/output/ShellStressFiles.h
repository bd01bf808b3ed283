// output/ShellStressFiles.h
// The two shell stress files: per element and node two lines, positive face and negative face, each with six stresses
// and the equivalent stress, in columns 15 characters wide.
// Errors: a file that cannot be opened ends the run with a message, after one key.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

constexpr const char* ShellStressFileName = "Shell element node stress.txt";
constexpr const char* AveragedShellStressFileName = "Shell element average node stress.txt";

// Each element's own stresses.
void WriteShellStresses(const ModelStore& model, const char* fileName);

// The nodal averages.
void WriteAveragedShellStresses(const ModelStore& model, const char* fileName);

} // namespace tarnvexo
