// checks/ModelExtent.h
// How large a model is: what lengths in it are compared with, so that no rule depends on the unit of length.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Diagonal of the box around all nodes, length; 0 without nodes.
double ModelExtent(const ModelStore& model);

} // namespace tarnvexo
