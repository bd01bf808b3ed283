// inertia/BalanceSheet.h
// Mass, loads and rigid-body accelerations of a free structure in one record: what inertia relief starts from, what it
// applies and what it leaves over.
//
// Accelerations are those of the rigid body: a of the point at the origin of the analysis (the centroid of the material
// volume), alpha about it; a point r moves with a + alpha × r.
//   classic  a = Σ F / M, alpha from the rotational mass matrix: right for shells of one density
//   exact    q = (a, alpha) from A·q = (Σ F, Σ M) with the 6 x 6 matrix A of the elements' own inertial loads,
//            A_kl = −r_lᵀ·f_k for the loads f_k of unit acceleration k and the rigid motions r_l: leaves nothing over,
//            whatever the structure
// A is [m·I, −S(c)·m; S(c)·m, J] with the mass m, the centre of gravity c and the inertia tensor J about the origin.
// About the centre of gravity it falls apart into m·I and the tensor there, and that into its three principal moments:
// Newton's and Euler's equations, solved one number at a time.
#pragma once

#include "core/Vector3.h"
#include "inertia/BalanceCheck.h"
#include "inertia/InertiaRelief.h"
#include "inertia/InertialLoads.h"
#include "inertia/MassProperties.h"

#include <string>
#include <vector>

namespace tarnvexo {

enum class BalanceKind { Classic, Exact };

// Principal moments below this share of the largest one are none: all mass stands on one line.
constexpr double InertiaTolerance = 1e-12;

// Moments about such a line below this share of the loads' moments are none either.
constexpr double LineMomentTolerance = 1e-10;

struct MassSummary {
    double mass = 0.0;
    Vector3 volumeCentroid = {};   // model file's coordinates
    Vector3 centreOfGravity = {};  // model file's coordinates; the centroid when there is no mass
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

    // Why no acceleration balances the loads the exact way (no mass), to be put behind "error: "; empty when one does.
    // Then nothing was applied.
    std::string shortage;

    // What an exact balance leaves about a line that all mass stands on, a text to be put behind "warning: "; empty
    // when it leaves nothing. Supports have to carry it.
    std::string aboutLine;
};

// moments: about the origin. model.StructureCentroid: where that is in the model file's coordinates.
MassSummary SummariseMass(const ModelStore& model, const MassMoments& moments);

// Resultant about the origin of the inertial loads of an acceleration, −A·q.
LoadResultant InertialResultant(const MassMoments& moments, const RigidAcceleration& acceleration);

// Fills the sheet from GLOAD and adds to GLOAD the inertial loads of the chosen kind. The origin stands at the
// structure's centroid, about which shellInertia (inertia/InertialLoads) is, too. Prints nothing.
// Errors: shortage, for the exact way; the classic way gives non-finite loads.
BalanceSheet BalanceLoads(ModelStore& model, const std::vector<NodeInertia>& shellInertia, BalanceKind kind);

} // namespace tarnvexo
