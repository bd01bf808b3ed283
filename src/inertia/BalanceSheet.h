// inertia/BalanceSheet.h
// Mass, loads and rigid-body accelerations of a free structure in one record: what inertia relief starts from, what it
// applies and what it leaves over.
//
// Accelerations are those of the rigid body: a of the point at the origin of the analysis (the centroid of the material
// volume), alpha about it; a point r moves with a + alpha × r.
//   classic  a = Σ F / M, alpha from the rotational mass matrix: right for shells of one density
//   exact    from the 6 x 6 matrix of the elements' own inertial loads: leaves nothing over, whatever the structure
#pragma once

#include "core/Vector3.h"
#include "inertia/InertiaRelief.h"
#include "inertia/MassProperties.h"

namespace tarnvexo {

enum class BalanceKind { Classic, Exact };

struct RigidAcceleration {
    Vector3 a = {};     // length/time²
    Vector3 alpha = {}; // rad/time²
};

struct MassSummary {
    double mass = 0.0;
    Vector3 volumeCentroid = {};   // model file's coordinates
    Vector3 centreOfGravity = {};  // model file's coordinates
    Matrix3 inertia = {};          // about the centre of gravity, global axes   mass·length²
    Vector3 principalMoments = {}; // ascending
    Vector3 principalAxes[3] = {}; // unit vectors, right-handed, one per moment
};

struct BalanceSheet {
    MassSummary mass;
    LoadResultant appliedAboutCentroid;
    LoadResultant appliedAboutOrigin; // of the model file
    double forceSize = 0.0;           // Σ|F| of the applied loads: what "relative" is relative to
    double momentSize = 0.0;          // Σ(|r|·|F| + |M|) about the centroid

    BalanceKind kind = BalanceKind::Exact; // the way that was applied
    RigidAcceleration applied;             // its accelerations
    LoadResultant remaining;               // resultant about the centroid of the loads after balancing
    double relativeForce = 0.0;            // |remaining.force| / forceSize
    double relativeMoment = 0.0;           // |remaining.moment| / momentSize

    RigidAcceleration classic;      // what the classic way takes ...
    LoadResultant classicRemaining; // ... and what it leaves or would leave
};

} // namespace tarnvexo
