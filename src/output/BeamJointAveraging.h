// output/BeamJointAveraging.h
// Smooths the corner stresses of the beams' section walls where walls meet, within a beam and between beams that share
// an end. A corner takes the mean over all corners at its place, of its own beam and of beams with an end within
// JointTolerance of one of its ends, whose faces lie where its own do (output/NodalAveraging.h).
// The first corner visited at a node of a section mesh decides the node's values for the whole mesh.
// Cost: near-linear in the number of corners, through a spatial hash; K² at a place where K corners meet.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

constexpr double JointTolerance = 0.001; // absolute, in model units

// Fills `averaged` of every record from its raw corner stresses.
void AverageBeamJoints(ModelStore& model);

} // namespace tarnvexo
