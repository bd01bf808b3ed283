// output/ShellStressFiles.h
// The two shell stress files: per element and node two lines, positive face and negative face, each with six stresses
// and the equivalent stress, in columns 15 characters wide.
// Errors: reported on standard error (output/TextFile.h) and told in the result.
#pragma once

#include "core/ModelStore.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

constexpr const char* ShellStressFileName = "Shell element node stress.txt";
constexpr const char* AveragedShellStressFileName = "Shell element average node stress.txt";

// Each element's own stresses.
FileResult WriteShellStresses(const ModelStore& model, const std::string& path);

// The nodal averages.
FileResult WriteAveragedShellStresses(const ModelStore& model, const std::string& path);

} // namespace tarnvexo
