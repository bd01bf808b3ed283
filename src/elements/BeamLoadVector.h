// elements/BeamLoadVector.h
// Consistent nodal loads of distributed loads that vary linearly along a beam (Hermite shape functions).
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

//   length      of the beam                                              length
//   q1, q2 [3]  load at node 1 and node 2 along x', y', z'               force/length
//   f      [12] out, local axes, DOFs node by node                       force, force·length
void BeamLinearLoad(double length, const double q1[3], const double q2[3], double f[BeamDofCount]);

// Load record along z'; f [12] out, global axes. The loads act on the node line: the section's offset does not enter.
void BeamLoadVector(const BeamElement& beam, const BeamDistributedLoad& load, double f[BeamDofCount]);

} // namespace tarnvexo
