// inertia/InertiaRelief.h
// Balances the load vector by the inertial loads of a rigid-body acceleration, so that a structure that floats or is
// held only by nominal supports can be analysed as if in equilibrium. Needs the origin at the structure's centroid and
// GLOAD complete. Prints the balance before and after on the console.
//
// The translational acceleration is (Σ F)/M, the angular one solves (rotational mass)·α = Σ M.
// Limits: the balance closes to round-off for shells of one density (distorted quadrilaterals: to the decimals of the
// Gauss rule, inertia/ConsistentMass). With several densities, the origin being the centroid of the volume, a force and
// a moment remain; with beams, whose torsional inertia stands at (x, x), a moment about x. The supports carry them.
// inertia/BalanceSheet has the balance that leaves nothing over.
#pragma once

#include "core/ModelStore.h"
#include "inertia/InertialLoads.h"
#include "inertia/MassProperties.h"

namespace tarnvexo {

// Forces and moments about the origin of a load vector laid out like GLOAD.
struct LoadResultant {
    Vector3 force = {};
    Vector3 moment = {};
};
LoadResultant ResultantOfLoads(const ModelStore& model);

// mass·a = Σ F, rotationalMass·alpha = Σ M, each by Gaussian elimination (inertia/Solve3x3).
RigidAcceleration ClassicAcceleration(double mass, const Matrix3& rotationalMass, const LoadResultant& applied);

// Errors: none reported; a model without mass or inertia gives non-finite loads.
void BalanceByInertiaRelief(ModelStore& model);

} // namespace tarnvexo
