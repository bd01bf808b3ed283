// inertia/MassProperties.h
// Mass of the structure, its static moment and its second moments about the origin, and the rotational mass matrix of
// the console run. Global axes. The mass is that of the elements' inertial loads (inertia/InertialLoads): shells with
// their consistent mass at the true node positions, beams as lines of mass through the section centroids.
#pragma once

#include "core/ModelStore.h"
#include "inertia/InertialLoads.h"

#include <array>
#include <vector>

namespace tarnvexo {

using Matrix3 = std::array<std::array<double, 3>, 3>; // rows

// ∫dm, ∫r dm, ∫r·rᵀ dm about the origin: with them the resultant of the inertial loads of any acceleration is known.
struct MassMoments {
    double mass = 0.0;   // mass
    Vector3 first = {};  // mass·length
    Matrix3 second = {}; // mass·length², symmetric
};

// About the point `about`; a node's inertia is about the origin.
//   node  Σj m_ij, Σj m_ij·(rj − about), and ½·Σj m_ij·[(ri − about)·(rj − about)ᵀ + transposed]
//   beam  of the rod, with ρ·A·L/6·[2 1; 1 2] for the ends of its centroid line
MassMoments NodeMoments(const NodeInertia& node, const Vector3& position, const Vector3& about = {});
MassMoments BeamMoments(const BeamElement& beam, const Vector3& about = {});

void AddMoments(MassMoments& sum, const MassMoments& term);

// Sum over all nodes and beams, about the origin.
MassMoments MomentsOfMass(const ModelStore& model, const std::vector<NodeInertia>& shellInertia);

// trace(P)·I − P: ∫(r·r)·I − r·rᵀ dm from the second moments P.
Matrix3 InertiaTensor(const Matrix3& second);

Vector3 Multiply(const Matrix3& matrix, const Vector3& v);

// Σ volume·Density over beams, quadrilaterals, triangles.   mass
double TotalMass(const ModelStore& model);

// Rotational mass of the console run: inertia tensor about the origin with the torsional inertia Length·Density·J of
// every beam at (x, x) in place of its own entry there.   mass·length²
Matrix3 BeamRotationalMass(const BeamElement& beam);
Matrix3 RotationalMass(const ModelStore& model, const std::vector<NodeInertia>& shellInertia);

} // namespace tarnvexo
