// app/ModelCheck.h
// What no look at a model can start from, and what no analysis can: numbers that are none, elements without size or
// direction.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// The first fault of a model that has been read, a complete message; empty: none.
// ModelFault: no nodes, no elements, coordinates that are no numbers; without it the model checks can run.
std::string ModelFault(const ModelStore& model, const std::string& modelFile);
// ElementFault: an element that has no stiffness.
std::string ElementFault(const ModelStore& model, const std::string& modelFile);

} // namespace tarnvexo
