// elements/TriShellMembrane.h
// Membrane part of the three-node flat shell: constant-strain plane stress with a drilling rotation θz at each node,
// tied to the membrane's rotation as in the four-node element. Local axes.
#pragma once

#include "elements/Elasticity.h"
#include "elements/ShellDofs.h"
#include "elements/TriGeometry.h"

namespace tarnvexo {

constexpr int TriMembraneDofCount = TriNodeCount * MembraneDofsPerNode;
constexpr int TriPlaneDofCount = TriNodeCount * PlaneDofsPerNode;

// ε = B·d, d = (u, v) node by node, the same everywhere in the element; every entry written.
void TriMembraneStrain(const TriGeometry& geometry, double B[PlaneStrainCount][TriPlaneDofCount]);

// Km = A·t·Bᵀ·D·B + ∫ γ·bᵀ·b dA.
//   x, y [3]     local node coordinates             length
//   E, Mu, t     modulus, Poisson's ratio, thickness
//   Km   [9][9]  out, symmetric, every entry written
// Errors: none reported; a zero area gives non-finite entries.
void TriMembraneStiffness(const double x[TriNodeCount], const double y[TriNodeCount], double E, double Mu, double t,
                          double Km[TriMembraneDofCount][TriMembraneDofCount]);

} // namespace tarnvexo
