// elements/TriGeometry-inl.h
// EvaluateTri for one element or for one in each lane of a vector (see elements/QuadGeometry-inl.h).
#if defined(TARNVEXO_TRI_GEOMETRY_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_TRI_GEOMETRY_INL
#undef TARNVEXO_TRI_GEOMETRY_INL
#else
#define TARNVEXO_TRI_GEOMETRY_INL
#endif

#include "elements/TriGeometry.h"
#include "hwy/highway.h"

#include <cmath>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

template <class Real> TriGeometryOf<Real> EvaluateTri(const Real x[TriNodeCount], const Real y[TriNodeCount])
{
    using std::fabs;
    TriGeometryOf<Real> g;
    g.area = 0.5 * fabs((x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]));
    for (int i = 0; i < TriNodeCount; ++i) {
        const int j = (i + 1) % TriNodeCount;
        const int k = (i + 2) % TriNodeCount;
        g.dLdx[i] = (y[j] - y[k]) / (2.0 * g.area);
        g.dLdy[i] = (x[k] - x[j]) / (2.0 * g.area);
    }
    return g;
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
