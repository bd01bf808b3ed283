// elements/QuadGeometry-inl.h
// EvaluateQuad for one element or for one in each lane of a vector.
//
// The files *-inl.h hold the formulas of the shell kernels as templates over the number type Real: double, or Lanes of
// elements/ShellStiffnessBatch.cpp. A source that wants all kinds of vector units includes them once for each, inside
// the namespace of that kind (HWY_NAMESPACE); their guards therefore open and close with HWY_TARGET_TOGGLE. Only
// sources include them; everybody else includes the header of the same name.
#if defined(TARNVEXO_QUAD_GEOMETRY_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_QUAD_GEOMETRY_INL
#undef TARNVEXO_QUAD_GEOMETRY_INL
#else
#define TARNVEXO_QUAD_GEOMETRY_INL
#endif

#include "elements/QuadGeometry.h"
#include "hwy/highway.h"

#include <cmath>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

template <class Real>
QuadPointOf<Real> EvaluateQuad(const Real x[QuadNodeCount], const Real y[QuadNodeCount], double xi, double eta)
{
    QuadPointOf<Real> p;
    Real J11 = 0.0, J12 = 0.0, J21 = 0.0, J22 = 0.0; // ∂(x, y)/∂(ξ, η), rows ξ and η
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
    const Real inverse = 1.0 / p.detJ;
    for (int i = 0; i < QuadNodeCount; ++i) {
        p.dNdx[i] = inverse * (J22 * p.dNdxi[i] - J12 * p.dNdeta[i]);
        p.dNdy[i] = inverse * (J11 * p.dNdeta[i] - J21 * p.dNdxi[i]);
    }
    return p;
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
