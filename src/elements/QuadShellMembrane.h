// elements/QuadShellMembrane.h
// Membrane part of the four-node flat shell: bilinear plane stress with a drilling rotation θz at each node, in the
// element's local axes. The rotation is tied to the rotation of the membrane by the penalty ½·γ·(θz − ½(∂v/∂x −
// ∂u/∂y))², integrated in full. Source of the tie: T. J. R. Hughes, F. Brezzi, Comput. Meth. Appl. Mech. Engng 72
// (1989) 105–121.
#pragma once

#include "core/Dofs.h"
#include "elements/Elasticity.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellDofs.h"

namespace tarnvexo {

constexpr int QuadMembraneDofCount = QuadNodeCount * MembraneDofsPerNode;
constexpr int QuadPlaneDofCount = QuadNodeCount * PlaneDofsPerNode;

// ε = B·d at a point, d = (u, v) node by node; every entry written.
void QuadMembraneStrain(const QuadPoint& point, double B[PlaneStrainCount][QuadPlaneDofCount]);

// Km = ∫ t·Bᵀ·D·B dA + ∫ γ·bᵀ·b dA, 2 x 2 Gauss points.
//   x, y [4]       local node coordinates             length
//   E, Mu, t       modulus, Poisson's ratio, thickness
//   Km   [12][12]  out, symmetric, every entry written
// Errors: none reported; det J = 0 gives non-finite entries.
void QuadMembraneStiffness(const double x[QuadNodeCount], const double y[QuadNodeCount], double E, double Mu, double t,
                           double Km[QuadMembraneDofCount][QuadMembraneDofCount]);

} // namespace tarnvexo
