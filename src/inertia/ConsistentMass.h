// inertia/ConsistentMass.h
// Consistent mass of the elements for one translation direction: m[i][j] = ∫ ρ·Ni·Nj dV. The three directions are
// uncoupled and alike, so these few numbers serve the rotational mass and all inertial loads.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Density·t·∫ Ni·Nj dA on the element's plane, 6 x 6 Gauss points (bilinear N).   mass
void QuadMass(const QuadShellElement& element, double m[QuadNodeCount][QuadNodeCount]);

// Density·t·∫ Li·Lj dA, mid-side rule.
void TriMass(const TriShellElement& element, double m[TriNodeCount][TriNodeCount]);

// Density·A·L/6 · [2 1; 1 2], the two-node bar.
void BeamMass(const BeamElement& beam, double m[BeamNodeCount][BeamNodeCount]);

} // namespace tarnvexo
