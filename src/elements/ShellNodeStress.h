// elements/ShellNodeStress.h
// Stresses of the flat shells on their two faces z = ±t/2, at one point: membrane stress ± 6·M/t², turned to global
// axes. Components: SX, SY, SZ, TXY, TZX, TYZ. Transverse shear and the stress through the thickness are taken as zero.
#pragma once

#include "core/ShellElement.h"

namespace tarnvexo {

// d [24] element displacements, global axes; (ξ, η) natural coordinates; faces [6] out.
void QuadNodeStress(const QuadShellElement& element, double positiveFace[StressCount], double negativeFace[StressCount],
                    const double d[QuadDofCount], double xi, double eta);

// d [18] element displacements, global axes; L [3] area coordinates; faces [6] out.
void TriNodeStress(const TriShellElement& element, double positiveFace[StressCount], double negativeFace[StressCount],
                   const double d[TriDofCount], const double L[TriNodeCount]);

// sqrt(½·((SX−SY)² + (SY−SZ)² + (SZ−SX)² + 6·(TXY² + TZX² + TYZ²))), von Mises.
double EquivalentStress(const double stress[StressCount]);

} // namespace tarnvexo
