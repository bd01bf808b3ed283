// app/CutOffRuns.h
// What is left of the result files of runs that could not clear away behind themselves: a power failure, or a system
// that ends every process at once. Such files are removed. When a run was cut off while its files took their names
// (platform/FileReplacement), the files that bore the names before are put back first.
#pragma once

#include <string>
#include <vector>

namespace tarnvexo {

// Clears the directory of what was left of files of these names. A run writes all files of a set, or none: a set of
// which it left nothing unfinished or moved aside is taken for one that it did not write. To be called only while no
// other run writes there.
// Returns a note for the user, "" when nothing was there. Errors: none; what cannot be removed stays.
std::string ClearCutOffRuns(const std::string& directory, const std::vector<std::vector<std::string>>& sets);

} // namespace tarnvexo
