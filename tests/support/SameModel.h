// support/SameModel.h
// Comparison of two models, table by table.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo::test {

// Name of the first table of the model file in which the two differ in any bit, or "elements" when the tables are the
// same but not what was set up from them; empty for equal models.
std::string DifferentTable(const ModelStore& a, const ModelStore& b);

} // namespace tarnvexo::test
