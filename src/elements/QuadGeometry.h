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

// Shape functions and their map at one point.
struct QuadPoint {
    double N[QuadNodeCount];
    double dNdxi[QuadNodeCount];
    double dNdeta[QuadNodeCount];
    double detJ; // signed; the integrals use its magnitude
    double dNdx[QuadNodeCount];
    double dNdy[QuadNodeCount];
};

// x, y [4] local node coordinates. A zero determinant gives non-finite derivatives.
inline QuadPoint EvaluateQuad(const double x[QuadNodeCount], const double y[QuadNodeCount], double xi, double eta)
{
    QuadPoint p;
    double J11 = 0.0, J12 = 0.0, J21 = 0.0, J22 = 0.0; // ∂(x, y)/∂(ξ, η), rows ξ and η
    for (int i = 0; i < QuadNodeCount; ++i) {
        // N = ¼(1 + ξi·ξ)(1 + ηi·η)
        const double alongXi = 1.0 + QuadNodeXi[i] * xi;
        const double alongEta = 1.0 + QuadNodeEta[i] * eta;
        p.N[i] = 0.25 * alongXi * alongEta;
        p.dNdxi[i] = 0.25 * QuadNodeXi[i] * alongEta;
        p.dNdeta[i] = 0.25 * QuadNodeEta[i] * alongXi;
        J11 += p.dNdxi[i] * x[i];
        J12 += p.dNdxi[i] * y[i];
        J21 += p.dNdeta[i] * x[i];
        J22 += p.dNdeta[i] * y[i];
    }
    p.detJ = J11 * J22 - J21 * J12;
    const double inverse = 1.0 / p.detJ;
    for (int i = 0; i < QuadNodeCount; ++i) {
        p.dNdx[i] = inverse * (J22 * p.dNdxi[i] - J12 * p.dNdeta[i]);
        p.dNdy[i] = inverse * (J11 * p.dNdeta[i] - J21 * p.dNdxi[i]);
    }
    return p;
}

} // namespace tarnvexo
