// elements/QuadShellMembrane-inl.h
// QuadMembraneStiffness for one element or for one in each lane of a vector (see elements/QuadGeometry-inl.h).
// The node blocks i ≤ j are written; the rest of Km follows by symmetry.
#if defined(TARNVEXO_QUAD_SHELL_MEMBRANE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_QUAD_SHELL_MEMBRANE_INL
#undef TARNVEXO_QUAD_SHELL_MEMBRANE_INL
#else
#define TARNVEXO_QUAD_SHELL_MEMBRANE_INL
#endif

#include "elements/QuadGeometry-inl.h"
#include "elements/QuadShellMembrane.h"
#include "elements/ShellMembrane-inl.h"
#include "hwy/highway.h"

#include <cmath>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

template <class Real>
void QuadMembraneStiffness(const Real x[QuadNodeCount], const Real y[QuadNodeCount],
                           const ShellRigidity<Real>& rigidity, Real Km[QuadMembraneDofCount][QuadMembraneDofCount])
{
    using std::fabs;
    PlaneStiffness<Real, QuadNodeCount> plane;
    ClearPlaneStiffness<Real, QuadNodeCount>(plane);
    for (int i = 0; i < QuadMembraneDofCount; ++i) {
        for (int j = FirstOfNode(i); j < QuadMembraneDofCount; ++j) { Km[i][j] = 0.0; }
    }
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPointOf<Real> point = EvaluateQuad<Real>(x, y, xi, eta);
            const Real area = fabs(point.detJ); // Gauss weights are 1
            AddPlaneStress<Real, QuadNodeCount>(rigidity.membrane, point.dNdx, point.dNdy, area * rigidity.thickness,
                                                plane);
            Real b[QuadMembraneDofCount];
            DrillingVector<Real, QuadNodeCount>(point.N, point.dNdx, point.dNdy, b);
            for (int i = 0; i < QuadMembraneDofCount; ++i) {
                const Real gammaB = rigidity.drilling * b[i];
                for (int j = FirstOfNode(i); j < QuadMembraneDofCount; ++j) { Km[i][j] += gammaB * b[j] * area; }
            }
        }
    }
    JoinPlaneStiffness<Real, QuadNodeCount>(plane, Km);
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
