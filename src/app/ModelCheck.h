// app/ModelCheck.h
// What no analysis can start from: a model without nodes or elements, elements without size.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// The first fault of a model that has been read, a complete message; empty: none.
std::string ModelFault(const ModelStore& model, const std::string& modelFile);

} // namespace tarnvexo
