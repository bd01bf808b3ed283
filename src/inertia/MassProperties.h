// inertia/MassProperties.h
// Mass of the structure and its rotational mass matrix (inertia tensor) about the origin, which stands at the
// structure's centroid when inertia relief asks. Global axes.
//
// Every element contributes Σij m_ij·((ri·rj)·I − rj·riᵀ), which is Gᵀ·M·G with M its consistent mass matrix and G the
// stack of −S(ri), S the skew matrix of the node position: for positions linear between nodes the exact ∫ρ((r·r)I −
// r·rᵀ).
#pragma once

#include "core/ModelStore.h"

#include <array>

namespace tarnvexo {

using Matrix3 = std::array<std::array<double, 3>, 3>; // rows

Matrix3 BeamRotationalMass(const BeamElement& beam);
Matrix3 QuadRotationalMass(const QuadShellElement& element);
Matrix3 TriRotationalMass(const TriShellElement& element);

// Σ volume·Density over beams, quadrilaterals, triangles.   mass
double TotalMass(const ModelStore& model);

// Sum of the element contributions.   mass·length²
Matrix3 RotationalMass(const ModelStore& model);

} // namespace tarnvexo
