// checks/TriShape.h
// Shape of a three-node shell from its three corners in space: pure measures, without limits.
// Source: D. A. Field, Int. J. Numer. Meth. Engng 47 (2000) 887–906. The error of linear interpolation grows as an
// angle nears 180 degrees (I. Babuška, A. K. Aziz, SIAM J. Numer. Anal. 13 (1976) 214–226), the condition of the
// stiffness matrix as one nears 0; a limit of the smallest angle holds both. Errors: none reported. Squares of areas
// must be numbers: coordinates from 1e-70 to 1e70.
#pragma once

#include "core/Dofs.h"
#include "core/Vector3.h"

namespace tarnvexo {

struct TriShape {
    double longestSide = 0.0;    //                                             length
    double shortestSide = 0.0;   //                                             length
    int shortestSideStart = 0;   // its first node, 0 to 2
    double area = 0.0;           //                                             length²
    double smallestAngle = 0.0;  // degrees, up to 60
    int smallestAngleCorner = 0; // 0 to 2
};

// nodes [3] in connectivity order.
TriShape MeasureTri(const Vector3 nodes[TriNodeCount]);

// Longest over shortest side.
double AspectRatio(const TriShape& tri);

} // namespace tarnvexo
