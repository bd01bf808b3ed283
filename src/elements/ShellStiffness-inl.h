// elements/ShellStiffness-inl.h
// QuadShellStiffness and TriShellStiffness for one element or for one in each lane of a vector (see
// elements/QuadGeometry-inl.h). The upper triangle of K is written; the rest follows by symmetry.
#if defined(TARNVEXO_SHELL_STIFFNESS_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_SHELL_STIFFNESS_INL
#undef TARNVEXO_SHELL_STIFFNESS_INL
#else
#define TARNVEXO_SHELL_STIFFNESS_INL
#endif

#include "elements/QuadShellMembrane-inl.h"
#include "elements/QuadShellPlate-inl.h"
#include "elements/ShellStiffness.h"
#include "elements/ShellTransform-inl.h"
#include "elements/TriShellMembrane-inl.h"
#include "elements/TriShellPlate-inl.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

template <class Real>
void QuadShellStiffness(const LocalShell<Real, QuadNodeCount>& shell, Real K[QuadDofCount][QuadDofCount])
{
    Real Km[QuadMembraneDofCount][QuadMembraneDofCount];
    Real Kb[QuadPlateDofCount][QuadPlateDofCount];
    QuadMembraneStiffness<Real>(shell.x, shell.y, shell.rigidity, Km);
    QuadPlateStiffness<Real>(shell.x, shell.y, shell.rigidity, Kb);
    ShellToGlobal<Real, QuadNodeCount>(shell.lambda, Km, Kb, K);
}

template <class Real>
void TriShellStiffness(const LocalShell<Real, TriNodeCount>& shell, Real K[TriDofCount][TriDofCount])
{
    const TriGeometryOf<Real> geometry = EvaluateTri<Real>(shell.x, shell.y);
    Real Km[TriMembraneDofCount][TriMembraneDofCount];
    Real Kb[TriPlateDofCount][TriPlateDofCount];
    TriMembraneStiffness<Real>(geometry, shell.rigidity, Km);
    TriPlateStiffness<Real>(geometry, shell.x, shell.y, shell.rigidity, Kb);
    ShellToGlobal<Real, TriNodeCount>(shell.lambda, Km, Kb, K);
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
