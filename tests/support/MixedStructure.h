// support/MixedStructure.h
// A structure that makes every shortcut of the balance fail: warped quadrilaterals, triangles and offset beams along x,
// y, z and askew, each kind of another density.
#pragma once

#include "core/ModelStore.h"
#include "support/MeshBuilder.h"

namespace tarnvexo::test {

// Far from the origin, without supports and loads.
MeshBuilder MixedStructure();

// Moves the origin to the centroid of the material volume, as a run does.
void MoveOriginToCentroid(ModelStore& model);

// Fills GLOAD with forces and moments of −1 ... 1 on every equation, from a fixed seed.
void LoadAtRandom(ModelStore& model, unsigned seed);

} // namespace tarnvexo::test
