// app/ModelCheck.h
// What no look at a model can start from, and what no analysis can: a model without nodes or elements, elements without
// size. Rules (core/Rules.h) may be switched off, these may not.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// Each the first fault, a complete message; empty: none.
std::string ModelFault(const ModelStore& model, const std::string& modelFile);
std::string ElementFault(const ModelStore& model, const std::string& modelFile);

} // namespace tarnvexo
