// elements/TriGeometry.h
// Area coordinates L1, L2, L3 of the three-node shell and their constant derivatives; x, y in the element's own plane.
#pragma once

#include "core/Dofs.h"

#include <cmath>

namespace tarnvexo {

struct TriGeometry {
    double area; // always positive
    double dLdx[TriNodeCount];
    double dLdy[TriNodeCount];
};

// x, y [3] local node coordinates. A zero area gives non-finite derivatives.
inline TriGeometry EvaluateTri(const double x[TriNodeCount], const double y[TriNodeCount])
{
    TriGeometry g;
    g.area = 0.5 * std::fabs((x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]));
    for (int i = 0; i < TriNodeCount; ++i) {
        const int j = (i + 1) % TriNodeCount;
        const int k = (i + 2) % TriNodeCount;
        g.dLdx[i] = (y[j] - y[k]) / (2.0 * g.area);
        g.dLdy[i] = (x[k] - x[j]) / (2.0 * g.area);
    }
    return g;
}

// Mid-side points, weight one third of the area each: exact for quadratic functions.
constexpr int TriMidsideCount = 3;
constexpr double TriMidsides[TriMidsideCount][TriNodeCount] = {{0.5, 0.5, 0.0}, {0.0, 0.5, 0.5}, {0.5, 0.0, 0.5}};

} // namespace tarnvexo
