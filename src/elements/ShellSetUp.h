// elements/ShellSetUp.h
// Set-up of the flat shell elements: coordinates, material and the local frame of the first three nodes:
// e1 along node 1→2, e3 along (X2 − X1) × (X3 − X1), e2 = e3 × e1. A warped quadrilateral is treated as its projection
// on that plane.
// Errors: a node count that is not the element's prints one message and goes on; coincident or collinear first nodes
// give non-finite axes.
#pragma once

#include "core/ShellElement.h"

namespace tarnvexo {

// nodes [4] global coordinates in connectivity order.
void QuadShellSetUp(QuadShellElement& element, const Vector3 nodes[QuadNodeCount], int nodeCount, double E, double Mu,
                    double Density, double TK);

// nodes [3] global coordinates in connectivity order.
void TriShellSetUp(TriShellElement& element, const Vector3 nodes[TriNodeCount], int nodeCount, double E, double Mu,
                   double TK, double Density);

} // namespace tarnvexo
