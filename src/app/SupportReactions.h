// app/SupportReactions.h
// Forces and moments that act on the structure where directions are held: K·u − f, from the elements around the held
// nodes alone, K being the stiffness without supports.
#pragma once

#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

// One value per equation of the list, in its order.
//   equations             DofsPerNode·node + DOF
//   displacements, loads  [DofsPerNode·NPOIN]
// Cost: one pass over the connectivity, and the stiffness of the elements at the held nodes.
std::vector<double> ReactionsAt(const ModelStore& model, const std::vector<int>& equations,
                                const std::vector<double>& displacements, const std::vector<double>& loads);

} // namespace tarnvexo
