// elements/ShellPressureLoad.h
// Consistent nodal loads of a pressure normal to a flat shell, positive along e3, given at the element's first three
// nodes and linear over its plane; a quadrilateral's fourth value follows from that plane. Forces only, no moments.
// Errors: none reported; collinear first nodes give non-finite loads.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Value at (px, py) of the plane through the values q at nodes 1, 2, 3.
//   x, y   [3]   local coordinates of these nodes   length
double PressureInPlane(const double x[3], const double y[3], const double q[3], double px, double py);

// f [24] out, global axes, DOFs node by node.
void QuadShellPressureLoad(const QuadShellElement& element, const ShellDistributedLoad& load, double f[QuadDofCount]);

// f [18] out, global axes, DOFs node by node.
void TriShellPressureLoad(const TriShellElement& element, const ShellDistributedLoad& load, double f[TriDofCount]);

} // namespace tarnvexo
