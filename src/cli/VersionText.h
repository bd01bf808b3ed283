// cli/VersionText.h
// What `tarnvexo --version` prints.
#pragma once

#include <string>
#include <vector>

namespace tarnvexo {

// Program version, build type, compiler, vector target in use, and one line per engine ("CHOLMOD 5.1, METIS").
std::string VersionText(const std::vector<std::string>& engines);

} // namespace tarnvexo
