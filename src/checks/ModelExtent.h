// checks/ModelExtent.h
// How large a model is: what lengths in it are compared with, so that no rule depends on the unit of length.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Diagonal of the box around the nodes of elements, length; 0 without elements. A node that was left over far away says
// nothing of the structure.
double ModelExtent(const ModelStore& model);

} // namespace tarnvexo
