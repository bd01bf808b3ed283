// output/ResultCheck.h
// Tells when results are not numbers. The files are written all the same.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// Warning with the share of displacements and stresses that are infinite or not a number and the first place of each
// kind, without a line end behind it; empty when all are finite.
std::string ResultWarning(const ModelStore& model);

} // namespace tarnvexo
