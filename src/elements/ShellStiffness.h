// elements/ShellStiffness.h
// Stiffness of the flat shell elements in global axes: membrane with drilling rotation and plate, joined in local axes
// where they are uncoupled, then rotated, K = Tᵀ·Klocal·T. DOFs node by node: dx, dy, dz, rx, ry, rz.
// A warped quadrilateral is treated as its projection on the plane of its first three nodes.
// Errors: none reported; degenerate geometry gives non-finite entries.
#pragma once

#include "core/ShellElement.h"

namespace tarnvexo {

// K [24][24] out, symmetric, every entry written.
void QuadShellStiffness(const QuadShellElement& element, double K[QuadDofCount][QuadDofCount]);

// K [18][18] out, symmetric, every entry written.
void TriShellStiffness(const TriShellElement& element, double K[TriDofCount][TriDofCount]);

} // namespace tarnvexo
