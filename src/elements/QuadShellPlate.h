// elements/QuadShellPlate.h
// Plate part of the four-node flat shell: bending and transverse shear, in the element's local axes.
// Reissner–Mindlin, bilinear w, θx, θy; shear strains tied at the edge midpoints (MITC4), so thin plates do not lock.
// Rotations are right-handed about the local axes, section rotations βx = θy, βy = −θx:
//   κx = ∂θy/∂x, κy = −∂θx/∂y, κxy = ∂θy/∂y − ∂θx/∂x;  γxz = ∂w/∂x + θy, γyz = ∂w/∂y − θx.
// Source: K. J. Bathe, E. N. Dvorkin, Int. J. Numer. Meth. Engng 21 (1985) 367–383.
#pragma once

#include "core/Dofs.h"
#include "elements/Elasticity.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellDofs.h"

namespace tarnvexo {

constexpr int QuadPlateDofCount = QuadNodeCount * PlateDofsPerNode;

// κ = Bb·d at a point; every entry written.
void QuadPlateCurvature(const QuadPoint& point, double Bb[CurvatureCount][QuadPlateDofCount]);

// (γxz, γyz) = Bs·d at (ξ, η), from the tied edge strains; every entry written.
void QuadPlateShear(const double x[QuadNodeCount], const double y[QuadNodeCount], double xi, double eta, double detJ,
                    double Bs[PlateShearCount][QuadPlateDofCount]);

// Kb = ∫ (Bbᵀ·Db·Bb + Bsᵀ·Ds·Bs) dA, 2 x 2 Gauss points.
//   x, y [4]       local node coordinates             length
//   E, Mu, t       modulus, Poisson's ratio, thickness
//   Kb   [12][12]  out, symmetric, every entry written
// Errors: none reported; det J = 0 or a midline of zero length gives non-finite entries.
void QuadPlateStiffness(const double x[QuadNodeCount], const double y[QuadNodeCount], double E, double Mu, double t,
                        double Kb[QuadPlateDofCount][QuadPlateDofCount]);

} // namespace tarnvexo
