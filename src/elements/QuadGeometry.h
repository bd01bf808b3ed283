// elements/QuadGeometry.h
// The bilinear map of the four-node shell: node 1 at (ξ, η) = (−1, −1), then counter-clockwise; x, y in the element's
// own plane. Shared by stiffness, loads, mass and stress.
#pragma once

#include "core/Dofs.h"

#include <cmath>

namespace tarnvexo {

// Natural coordinates of the nodes.
constexpr double QuadNodeXi[QuadNodeCount] = {-1.0, 1.0, 1.0, -1.0};
constexpr double QuadNodeEta[QuadNodeCount] = {-1.0, -1.0, 1.0, 1.0};

// 2 x 2 Gauss rule: points ±1/√3, weights 1. Loops run over ξ outside, η inside.
inline const double QuadGaussPoints[2] = {-1.0 / std::sqrt(3.0), 1.0 / std::sqrt(3.0)};

// Shape functions and their map at one point, of one element or (Real = Lanes) of one in each lane of a vector.
template <class Real> struct QuadPointOf {
    double N[QuadNodeCount];
    double dNdxi[QuadNodeCount];
    double dNdeta[QuadNodeCount];
    Real detJ; // signed; the integrals use its magnitude
    Real dNdx[QuadNodeCount];
    Real dNdy[QuadNodeCount];
};
using QuadPoint = QuadPointOf<double>;

// x, y [4] local node coordinates. A zero determinant gives non-finite derivatives.
QuadPoint EvaluateQuad(const double x[QuadNodeCount], const double y[QuadNodeCount], double xi, double eta);

} // namespace tarnvexo
