// cli/DroppedModel.h
// Models that were dropped onto the program in a window of files, so that their paths are all that stands on the
// command line.
#pragma once

#include <string>

namespace tarnvexo {

// Where the results of a model file, or of a directory with fem_solving.txt in it, go: as in the console run beside the
// model if that has its usual name, else into a directory "NAME results" beside it, so that models of one directory do
// not replace each other's.
std::string ResultsOfDroppedModel(const std::string& path);

} // namespace tarnvexo
