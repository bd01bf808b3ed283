// elements/TriGeometry.h
// Area coordinates L1, L2, L3 of the three-node shell and their constant derivatives; x, y in the element's own plane.
#pragma once

#include "core/Dofs.h"

namespace tarnvexo {

// Of one element or (Real = Lanes) of one in each lane of a vector.
template <class Real> struct TriGeometryOf {
    Real area; // always positive
    Real dLdx[TriNodeCount];
    Real dLdy[TriNodeCount];
};
using TriGeometry = TriGeometryOf<double>;

// x, y [3] local node coordinates. A zero area gives non-finite derivatives.
TriGeometry EvaluateTri(const double x[TriNodeCount], const double y[TriNodeCount]);

// Mid-side points, weight one third of the area each: exact for quadratic functions.
constexpr int TriMidsideCount = 3;
constexpr double TriMidsides[TriMidsideCount][TriNodeCount] = {{0.5, 0.5, 0.0}, {0.0, 0.5, 0.5}, {0.5, 0.0, 0.5}};

} // namespace tarnvexo
