// checks/QuadShape.h
// Shape of a four-node shell from its four corners in space: pure measures, without limits. All but lengths and areas
// are ratios and angles, the same in every unit of length and every position in space.
//
// The mean plane is normal to X13 × X24, the cross product of the diagonals; the nodes lie off it by +h, −h, +h, −h.
// Corner i is the triangle of node i and its two neighbours. In the mean plane corners 1 and 3 make up the area, so do
// 2 and 4; det J of the bilinear map is half the corner's area at its node and linear between the nodes.
//
// Sources: J. Robinson, Engineering Computations 4 (1987) 113–118 (aspect, skew, taper, warp of a quadrilateral, and
// what they are in the Jacobian); D. A. Field, Int. J. Numer. Meth. Engng 47 (2000) 887–906; C. J. Stimpson et al.,
// The Verdict Geometric Quality Library, SAND2007-1751 (2007).
// Errors: none reported. Squares of areas must be numbers: coordinates from 1e-70 to 1e70.
#pragma once

#include "core/Dofs.h"
#include "core/Vector3.h"

namespace tarnvexo {

struct QuadShape {
    Vector3 side[QuadNodeCount];   // from node i to the next one                                   length
    double longestSide = 0.0;      //                                                               length
    double shortestSide = 0.0;     //                                                               length
    int shortestSideStart = 0;     // its first node, 0 to 3
    Vector3 corner[QuadNodeCount]; // vector area of the triangle at node i: ½·side(i−1) × side(i)  length²
    Vector3 normal = {};           // of the mean plane, unit; where the diagonals are parallel, of the largest corner
    double area = 0.0;             // of the projection on the mean plane: ½·|X13 × X24|            length²
    double cornerArea[QuadNodeCount] = {}; // corner · normal: negative where it points inwards     length²
};

// nodes [4] in connectivity order.
QuadShape MeasureQuad(const Vector3 nodes[QuadNodeCount]);

// Two sides cross in the mean plane (bow tie): two corners turn one way and two the other. A quadrilateral that does
// not cross itself has at most one such corner.
bool CrossesItself(const QuadShape& quad);

// The least of det J at the 2 × 2 integration points over its mean in the element, in the element's own frame, the
// plane of nodes 1, 2, 3 (elements/ShellSetUp): 1 for a parallelogram, 0 or less for an element that is folded over
// itself. Not a number where nodes 1, 2, 3 stand on one line.
double LeastJacobian(const QuadShape& quad);

// Interior angles of the projection on the mean plane, degrees: 0 to 360, above 180 where a corner points inwards.
void QuadCornerAngles(const QuadShape& quad, double angles[QuadNodeCount]);

// Either diagonal divides the quadrilateral in two triangles: the larger of the two angles between their normals,
// degrees. 0: flat.
double WarpingAngle(const QuadShape& quad);

// Longest over shortest side.
double AspectRatio(const QuadShape& quad);

// The largest |Ai − A/2| over A/2, Ai the area of corner i in the mean plane. 0: parallelogram. A trapezoid with
// parallel sides a, b has |a − b| / (a + b); a triangle with a node in the middle of a side has 1. corner: out, where
// it is.
double Taper(const QuadShape& quad, int& corner);

} // namespace tarnvexo
