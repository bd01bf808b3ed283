// cli/DroppedModel.h
// A model that was dropped onto the program in a window of files, so that its path is all that stands on the command
// line: it is solved, and the results stand beside it.
#pragma once

#include <string>
#include <vector>

namespace tarnvexo {

// The words of the command for a model file or a directory with fem_solving.txt in it.
std::vector<std::string> CommandForDroppedModel(const std::string& path);

} // namespace tarnvexo
