// elements/BeamStiffness.h
// Shear-deformable space beam: stiffness in global axes, the section's offset from the node line included.
// DOFs: node 1 dx, dy, dz, rx, ry, rz, then node 2.
// Source: J. S. Przemieniecki, Theory of Matrix Structural Analysis, McGraw-Hill 1968, section 5.6.
#pragma once

#include "core/BeamElement.h"
#include "core/Dofs.h"

namespace tarnvexo {

// K [12][12] out, symmetric, every entry written.
// Errors: none reported; a zero length or an undefined frame gives non-finite entries.
void BeamStiffness(const BeamElement& beam, double K[BeamDofCount][BeamDofCount]);

} // namespace tarnvexo
