// cli/VersionText.h
// What `tarnvexo --version` prints.
#pragma once

#include <string>
#include <vector>

namespace tarnvexo {

// Program version, build type, compiler, vector target in use, and one line per engine (solver/SparseEngine's
// DescribeEngines).
std::string VersionText(const std::vector<std::string>& engines);

} // namespace tarnvexo
