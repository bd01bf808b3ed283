// inertia/MassOrthogonal.h
// Displacements of free parts without their rigid-body share. Where a free part is held while its equations are solved
// is arbitrary, and so is the rigid motion in its displacement. Of all displacements that differ by a free motion only
// one is orthogonal to them in the mass: u − N·a with Nᵀ·M·(u − N·a) = 0, N the free motions of the part. It keeps the
// part's centre of gravity and its principal axes in place, as an elastic body in free flight does, whatever was held.
//
// The products with the mass are those of the inertial loads, M·r = −f for the loads f of the acceleration r, so no
// mass matrix is built. A motion without mass, as that of a straight line of beams about itself, is left alone.
// Cost: one pass over nodes and beams.
#pragma once

#include "core/ConnectedParts.h"
#include "core/ModelStore.h"
#include "inertia/InertialLoads.h"
#include "inertia/RigidMotions.h"

#include <vector>

namespace tarnvexo {

// Rᵀ·M·u for the six rigid motions R of every part, numbered as in MotionVector: linear momentum of the displacement
// and angular momentum about the part's reference point, that divided by its size.   mass·length
//   shellInertia, parts, motions   made with the origin where it stands now
//   u  [DofsPerNode·NPOIN]         displacements
std::vector<MotionVector> MassProducts(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                                       const ConnectedParts& parts, const std::vector<PartMotions>& motions,
                                       const std::vector<double>& u);

// Takes the free motions out of the displacements u of every part; parts that their supports hold keep theirs.
void MakeMassOrthogonal(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                        const ConnectedParts& parts, const std::vector<PartMotions>& motions, std::vector<double>& u);

} // namespace tarnvexo
