// elements/TriShellMembrane-inl.h
// TriMembraneStiffness for one element or for one in each lane of a vector (see elements/QuadGeometry-inl.h).
// The node blocks i ≤ j are written; the rest of Km follows by symmetry.
#if defined(TARNVEXO_TRI_SHELL_MEMBRANE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_TRI_SHELL_MEMBRANE_INL
#undef TARNVEXO_TRI_SHELL_MEMBRANE_INL
#else
#define TARNVEXO_TRI_SHELL_MEMBRANE_INL
#endif

#include "elements/ShellMembrane-inl.h"
#include "elements/TriGeometry-inl.h"
#include "elements/TriShellMembrane.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

// Points and weights of the drilling term.
// Deliberate: the centroid weight is +27/48 (published four-point rule: −27/48), so the weights add up to 2.125.
// Against the exact integral the u, v entries of the drilling term are 2.125 times as large, its θz entries 1.75 times
// on the diagonal and 2.5 times off it. Keep: results compare with those of existing models only with this weight.
struct DrillingPoint {
    double L[TriNodeCount];
    double weight;
};
constexpr DrillingPoint DrillingRule[] = {
    {{1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0}, 0.5625},
    {{0.6, 0.2, 0.2}, 25.0 / 48.0},
    {{0.2, 0.6, 0.2}, 25.0 / 48.0},
    {{0.2, 0.2, 0.6}, 25.0 / 48.0},
};

template <class Real>
void TriMembraneStiffness(const TriGeometryOf<Real>& geometry, const ShellRigidity<Real>& rigidity,
                          Real Km[TriMembraneDofCount][TriMembraneDofCount])
{
    for (int i = 0; i < TriMembraneDofCount; ++i) {
        for (int j = FirstOfNode(i); j < TriMembraneDofCount; ++j) { Km[i][j] = 0.0; }
    }
    for (const DrillingPoint& point : DrillingRule) {
        Real b[TriMembraneDofCount];
        DrillingVector<Real, TriNodeCount>(point.L, geometry.dLdx, geometry.dLdy, b);
        const Real factor = geometry.area * point.weight * rigidity.drilling;
        for (int i = 0; i < TriMembraneDofCount; ++i) {
            const Real gammaB = factor * b[i];
            for (int j = FirstOfNode(i); j < TriMembraneDofCount; ++j) { Km[i][j] += gammaB * b[j]; }
        }
    }

    PlaneStiffness<Real, TriNodeCount> plane;
    ClearPlaneStiffness<Real, TriNodeCount>(plane);
    AddPlaneStress<Real, TriNodeCount>(rigidity.membrane, geometry.dLdx, geometry.dLdy,
                                       geometry.area * rigidity.thickness, plane);
    JoinPlaneStiffness<Real, TriNodeCount>(plane, Km);
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
