// elements/TriShellPlate-inl.h
// TriPlateCurvature and TriPlateStiffness for one element or for one in each lane of a vector (see
// elements/QuadGeometry-inl.h). Of the stiffness the node blocks i ≤ j are written; the rest follows by symmetry.
#if defined(TARNVEXO_TRI_SHELL_PLATE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_TRI_SHELL_PLATE_INL
#undef TARNVEXO_TRI_SHELL_PLATE_INL
#else
#define TARNVEXO_TRI_SHELL_PLATE_INL
#endif

#include "elements/TriGeometry-inl.h"
#include "elements/TriShellPlate.h"
#include "hwy/highway.h"

#include <initializer_list>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

// Mid-sides: N = 4·Li·Lj. Along the side w is cubic and β_s = −∂w/∂s holds at its middle,
//   β_s(m) = −3/2·(wj − wi)/l − 1/4·(β_s(i) + β_s(j)),   β_n(m) = 1/2·(β_n(i) + β_n(j)),
// which in x, y with the side's direction (c, s) reads
//   βx(m) = −3/2·c/l·(wj − wi) + (s²/2 − c²/4)·(βxi + βxj) − 3/4·c·s·(βyi + βyj)
//   βy(m) = −3/2·s/l·(wj − wi) + (c²/2 − s²/4)·(βyi + βyj) − 3/4·c·s·(βxi + βxj)
template <class Real> struct KirchhoffSide {
    Real cPerL;  // 3/2·c/l
    Real sPerL;  // 3/2·s/l
    Real alongX; // s²/2 − c²/4
    Real alongY; // c²/2 − s²/4
    Real mixed;  // −3/4·c·s
};

// Side i runs from node i to the next one.
template <class Real>
void KirchhoffSides(const Real x[TriNodeCount], const Real y[TriNodeCount], KirchhoffSide<Real> sides[TriNodeCount])
{
    for (int i = 0; i < TriNodeCount; ++i) {
        const int j = (i + 1) % TriNodeCount;
        const Real xij = x[j] - x[i];
        const Real yij = y[j] - y[i];
        const Real ll = xij * xij + yij * yij;
        sides[i] = {1.5 * xij / ll, 1.5 * yij / ll, (0.5 * yij * yij - 0.25 * xij * xij) / ll,
                    (0.5 * xij * xij - 0.25 * yij * yij) / ll, -0.75 * xij * yij / ll};
    }
}

// Adds a node's part in κ: the derivatives of its N times its β = (cx, cy)·d.
template <class Real>
void AddRotation(const Real& dNdx, const Real& dNdy, int dof, const Real& cx, const Real& cy,
                 Real Bb[CurvatureCount][TriPlateDofCount])
{
    Bb[KappaX][dof] += dNdx * cx;              // κx  = ∂βx/∂x
    Bb[KappaY][dof] += dNdy * cy;              // κy  = ∂βy/∂y
    Bb[KappaXY][dof] += dNdy * cx + dNdx * cy; // κxy = ∂βx/∂y + ∂βy/∂x
}

// β = Σ N·β over six nodes with quadratic N.
template <class Real>
void TriPlateCurvature(const TriGeometryOf<Real>& geometry, const KirchhoffSide<Real> sides[TriNodeCount],
                       const double L[TriNodeCount], Real Bb[CurvatureCount][TriPlateDofCount])
{
    // Corners: N = L(2L − 1), βx = θy, βy = −θx.
    for (int i = 0; i < TriNodeCount; ++i) {
        const double slope = 4.0 * L[i] - 1.0;
        const Real dNdx = slope * geometry.dLdx[i];
        const Real dNdy = slope * geometry.dLdy[i];
        const int n = PlateDofsPerNode * i;
        Bb[KappaX][n + PlateW] = Bb[KappaY][n + PlateW] = Bb[KappaXY][n + PlateW] = 0.0;
        Bb[KappaX][n + PlateRX] = 0.0;
        Bb[KappaY][n + PlateRX] = -dNdy;
        Bb[KappaXY][n + PlateRX] = -dNdx;
        Bb[KappaX][n + PlateRY] = dNdx;
        Bb[KappaY][n + PlateRY] = 0.0;
        Bb[KappaXY][n + PlateRY] = dNdy;
    }
    for (int i = 0; i < TriNodeCount; ++i) {
        const int j = (i + 1) % TriNodeCount;
        const KirchhoffSide<Real>& side = sides[i];
        const Real dNdx = 4.0 * (L[i] * geometry.dLdx[j] + L[j] * geometry.dLdx[i]);
        const Real dNdy = 4.0 * (L[i] * geometry.dLdy[j] + L[j] * geometry.dLdy[i]);
        AddRotation<Real>(dNdx, dNdy, PlateDofsPerNode * i + PlateW, side.cPerL, side.sPerL, Bb);
        AddRotation<Real>(dNdx, dNdy, PlateDofsPerNode * j + PlateW, -side.cPerL, -side.sPerL, Bb);
        for (int n : {PlateDofsPerNode * i, PlateDofsPerNode * j}) {
            AddRotation<Real>(dNdx, dNdy, n + PlateRX, -side.mixed, -side.alongY, Bb); // through βy = −θx
            AddRotation<Real>(dNdx, dNdy, n + PlateRY, side.alongX, side.mixed, Bb);   // through βx = θy
        }
    }
}

template <class Real>
void TriPlateStiffness(const TriGeometryOf<Real>& geometry, const Real x[TriNodeCount], const Real y[TriNodeCount],
                       const ShellRigidity<Real>& rigidity, Real Kb[TriPlateDofCount][TriPlateDofCount])
{
    const IsotropicPlane<Real>& Db = rigidity.bending;
    const Real weight = geometry.area / TriMidsideCount;
    KirchhoffSide<Real> sides[TriNodeCount];
    KirchhoffSides<Real>(x, y, sides);
    for (int i = 0; i < TriPlateDofCount; ++i) {
        for (int j = FirstOfNode(i); j < TriPlateDofCount; ++j) { Kb[i][j] = 0.0; }
    }
    for (const double(&L)[TriNodeCount] : TriMidsides) {
        Real Bb[CurvatureCount][TriPlateDofCount];
        TriPlateCurvature<Real>(geometry, sides, L, Bb);
        for (int i = 0; i < TriPlateDofCount; ++i) {
            const Real momentX = Bb[KappaX][i] * Db.D11 + Bb[KappaY][i] * Db.D12;
            const Real momentY = Bb[KappaX][i] * Db.D12 + Bb[KappaY][i] * Db.D11;
            const Real momentXY = Bb[KappaXY][i] * Db.D33;
            for (int j = FirstOfNode(i); j < TriPlateDofCount; ++j) {
                Kb[i][j] += weight * (momentX * Bb[KappaX][j] + momentY * Bb[KappaY][j] + momentXY * Bb[KappaXY][j]);
            }
        }
    }
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
