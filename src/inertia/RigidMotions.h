// inertia/RigidMotions.h
// Rigid motions of a connected part, those of them that its supports leave free, and directions to hold for the rest.
//
// A motion is six numbers q = (u, θ·L): the translation u of the part's reference point and the rotation θ times the
// part's size L, both lengths, so that units do not matter. The node at r moves by u + θ × (r − reference) and turns by
// θ·L. All six motions are free at first. Holding a direction takes one away: of the free motions (an orthonormal
// basis) that combination stays out which moves the direction, found by a Householder reflection. Supports are taken
// in the order of how far the free motions still move them, longest first, until none is moved: that is their rank,
// whether they depend on one another or not. Holds continue the same choice among the directions that are not
// restrained, so that they stand far apart and the held structure is as stiff as it can be.
// Cost: O(nodes of the part) for every direction chosen, six at most.
#pragma once

#include "core/ConnectedParts.h"
#include "core/ModelStore.h"

#include <array>
#include <vector>

namespace tarnvexo {

constexpr int RigidMotionCount = 6;
using MotionVector = std::array<double, RigidMotionCount>;

// Supports that the free motions of length 1 move by less hold nothing: levers of a millionth of the part's size.
constexpr double RankTolerance = 1e-6;

// A hold is a translation as long as the free motions move one by more than this. Below, as for a straight line of
// beams that turns about itself, it is a rotation.
constexpr double TranslationHoldTolerance = 1e-4;

struct PartMotions {
    Vector3 reference = {};         // middle of the box around the part's nodes
    double size = 1.0;              // L: largest distance of a node from it                        length
    int restrainedDofs = 0;         // supports of the part; more than their rank when they depend on one another
    std::vector<MotionVector> free; // orthonormal basis of the motions that the supports leave
    std::vector<int> holds;         // equations DofsPerNode·node + DOF that hold them, one per free motion

    // Directions restrained beyond those that take a rigid motion away.
    int RedundantSupports() const { return restrainedDofs + static_cast<int>(free.size()) - RigidMotionCount; }
};

// Displacements (DX, DY, DZ) and rotations times L (RX, RY, RZ) of a node in a motion of its part.
MotionVector MotionAt(const PartMotions& part, const MotionVector& q, const Vector3& node);

// One flag per equation, 1: restrained by the model's supports.
std::vector<unsigned char> RestrainedEquations(const ModelStore& model);

// Free motions and holds of every part.
//   restrained  [DofsPerNode·NPOIN]  1: held by a support; such directions are never chosen as holds
//   holdNodes   nodes to take holds from as long as their translations serve; empty: no preference
// Errors: none reported; node coordinates that are not numbers give fewer holds than free motions.
std::vector<PartMotions> FindPartMotions(const ModelStore& model, const ConnectedParts& parts,
                                         const std::vector<unsigned char>& restrained,
                                         const std::vector<int>& holdNodes = {});

} // namespace tarnvexo
