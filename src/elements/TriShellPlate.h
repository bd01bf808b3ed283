// elements/TriShellPlate.h
// Plate part of the three-node flat shell: the discrete Kirchhoff triangle (DKT), local axes, per node (w, θx, θy) with
// the rotation signs of the four-node plate (βx = θy, βy = −θx). No transverse shear.
// Source: J.-L. Batoz, K. J. Bathe, L. W. Ho, Int. J. Numer. Meth. Engng 15 (1980) 1771–1812.
#pragma once

#include "elements/Elasticity.h"
#include "elements/ShellDofs.h"
#include "elements/TriGeometry.h"

namespace tarnvexo {

constexpr int TriPlateDofCount = TriNodeCount * PlateDofsPerNode;

// κ = Bb·d at the area coordinates L [3]; every entry written.
void TriPlateCurvature(const double x[TriNodeCount], const double y[TriNodeCount], const double L[TriNodeCount],
                       double Bb[CurvatureCount][TriPlateDofCount]);

// Kb = ∫ Bbᵀ·Db·Bb dA by the mid-side rule, exact here because the curvatures are linear.
//   x, y [3]     local node coordinates             length
//   E, Mu, t     modulus, Poisson's ratio, thickness
//   Kb   [9][9]  out, symmetric, every entry written
// Errors: none reported; a zero area or side gives non-finite entries.
void TriPlateStiffness(const double x[TriNodeCount], const double y[TriNodeCount], double E, double Mu, double t,
                       double Kb[TriPlateDofCount][TriPlateDofCount]);

} // namespace tarnvexo
