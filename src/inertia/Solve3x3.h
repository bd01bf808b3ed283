// inertia/Solve3x3.h
// Three equations by Gaussian elimination with complete pivoting; the first of equally large pivots is taken.
// Errors: none reported; a singular matrix gives non-finite numbers.
#pragma once

#include "inertia/MassProperties.h"

namespace tarnvexo {

// Solution x of a·x = b.
Vector3 Solve3x3(Matrix3 a, Vector3 b);

} // namespace tarnvexo
