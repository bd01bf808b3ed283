// elements/QuadShellPlate-inl.h
// QuadPlateStiffness and QuadPlateShear for one element or for one in each lane of a vector (see
// elements/QuadGeometry-inl.h). Of the stiffness the node blocks i ≤ j are written; the rest follows by symmetry.
#if defined(TARNVEXO_QUAD_SHELL_PLATE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_QUAD_SHELL_PLATE_INL
#undef TARNVEXO_QUAD_SHELL_PLATE_INL
#else
#define TARNVEXO_QUAD_SHELL_PLATE_INL
#endif

#include "elements/GradientStiffness-inl.h"
#include "elements/QuadGeometry-inl.h"
#include "elements/QuadShellPlate.h"
#include "hwy/highway.h"

#include <cmath>
#include <initializer_list>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

// Directions of the element: α of the ξ midline (edge 4–1 to edge 2–3), β of the η midline (edge 1–2 to edge 3–4).
template <class Real> struct QuadMidlines {
    Real xXi, yXi;
    Real xEta, yEta;
    Real xTwist, yTwist;
    Real cosAlpha, sinAlpha;
    Real cosBeta, sinBeta;
};

template <class Real> QuadMidlines<Real> MidlinesOfQuad(const Real x[QuadNodeCount], const Real y[QuadNodeCount])
{
    using std::sqrt;
    QuadMidlines<Real> m;
    m.xXi = -x[0] + x[1] + x[2] - x[3];
    m.yXi = -y[0] + y[1] + y[2] - y[3];
    m.xEta = -x[0] - x[1] + x[2] + x[3];
    m.yEta = -y[0] - y[1] + y[2] + y[3];
    m.xTwist = x[0] - x[1] + x[2] - x[3];
    m.yTwist = y[0] - y[1] + y[2] - y[3];
    const Real midlineXi = sqrt(m.xXi * m.xXi + m.yXi * m.yXi);
    const Real midlineEta = sqrt(m.xEta * m.xEta + m.yEta * m.yEta);
    m.cosAlpha = m.xXi / midlineXi;
    m.sinAlpha = m.yXi / midlineXi;
    m.cosBeta = m.xEta / midlineEta;
    m.sinBeta = m.yEta / midlineEta;
    return m;
}

// Shear strain along the edge from node i to node j, tied at its midpoint, times half the edge's length:
// e = (wj − wi)/2 + (xj − xi)·(θyi + θyj)/4 − (yj − yi)·(θxi + θxj)/4; the columns of i and j of row = weight·e.
template <class Real>
void EdgeShear(const Real* x, const Real* y, int i, int j, const Real& weight, Real row[QuadPlateDofCount])
{
    const Real dx = 0.25 * (x[j] - x[i]);
    const Real dy = 0.25 * (y[j] - y[i]);
    row[PlateDofsPerNode * i + PlateW] = -0.5 * weight;
    row[PlateDofsPerNode * j + PlateW] = 0.5 * weight;
    for (int n : {i, j}) {
        row[PlateDofsPerNode * n + PlateRX] = -(weight * dy);
        row[PlateDofsPerNode * n + PlateRY] = weight * dx;
    }
}

template <class Real>
void QuadPlateShear(const QuadMidlines<Real>& m, const Real x[QuadNodeCount], const Real y[QuadNodeCount], double xi,
                    double eta, const Real& detJ, Real Bs[PlateShearCount][QuadPlateDofCount])
{
    using std::fabs;
    using std::sqrt;
    // Lengths of the natural base vectors at the point: |gξ|, |gη|.
    const Real gxX = 0.25 * (m.xXi + eta * m.xTwist), gxY = 0.25 * (m.yXi + eta * m.yTwist);
    const Real geX = 0.25 * (m.xEta + xi * m.xTwist), geY = 0.25 * (m.yEta + xi * m.yTwist);
    const Real factorXi = sqrt(geX * geX + geY * geY) / (2.0 * fabs(detJ));
    const Real factorEta = sqrt(gxX * gxX + gxY * gxY) / (2.0 * fabs(detJ));

    // Covariant strains, interpolated between opposite edges.
    Real gammaXi[QuadPlateDofCount], gammaEta[QuadPlateDofCount];
    EdgeShear<Real>(x, y, 0, 1, factorXi * (1.0 - eta), gammaXi);
    EdgeShear<Real>(x, y, 3, 2, factorXi * (1.0 + eta), gammaXi);
    EdgeShear<Real>(x, y, 0, 3, factorEta * (1.0 - xi), gammaEta);
    EdgeShear<Real>(x, y, 1, 2, factorEta * (1.0 + xi), gammaEta);

    for (int j = 0; j < QuadPlateDofCount; ++j) {
        Bs[GammaXZ][j] = gammaXi[j] * m.sinBeta - gammaEta[j] * m.sinAlpha;
        Bs[GammaYZ][j] = gammaEta[j] * m.cosAlpha - gammaXi[j] * m.cosBeta;
    }
}

template <class Real>
void QuadPlateStiffness(const Real x[QuadNodeCount], const Real y[QuadNodeCount], const ShellRigidity<Real>& rigidity,
                        Real Kb[QuadPlateDofCount][QuadPlateDofCount])
{
    using std::fabs;
    const QuadMidlines<Real> midlines = MidlinesOfQuad<Real>(x, y);
    for (int i = 0; i < QuadPlateDofCount; ++i) {
        for (int j = FirstOfNode(i); j < QuadPlateDofCount; ++j) { Kb[i][j] = 0.0; }
    }
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPointOf<Real> point = EvaluateQuad<Real>(x, y, xi, eta);
            const Real area = fabs(point.detJ); // Gauss weights are 1

            // Bending: Bbᵀ·Db·Bb, the gradient of (βx, βy) = (θy, −θx)
            for (int i = 0; i < QuadNodeCount; ++i) {
                const GradientStress<Real> moment = StressOfNode<Real>(rigidity.bending, point.dNdx[i], point.dNdy[i]);
                for (int j = i; j < QuadNodeCount; ++j) {
                    const GradientBlock<Real> block = StiffnessOfNodes<Real>(moment, point.dNdx[j], point.dNdy[j]);
                    const int row = PlateDofsPerNode * i, column = PlateDofsPerNode * j;
                    Kb[row + PlateRX][column + PlateRX] += area * block.yy;
                    Kb[row + PlateRX][column + PlateRY] -= area * block.yx;
                    Kb[row + PlateRY][column + PlateRX] -= area * block.xy;
                    Kb[row + PlateRY][column + PlateRY] += area * block.xx;
                }
            }

            // Shear: k·Bsᵀ·Bs
            Real Bs[PlateShearCount][QuadPlateDofCount];
            QuadPlateShear<Real>(midlines, x, y, xi, eta, point.detJ, Bs);
            for (int i = 0; i < QuadPlateDofCount; ++i) {
                const Real forceX = rigidity.shear * Bs[GammaXZ][i];
                const Real forceY = rigidity.shear * Bs[GammaYZ][i];
                for (int j = FirstOfNode(i); j < QuadPlateDofCount; ++j) {
                    Kb[i][j] += area * (forceX * Bs[GammaXZ][j] + forceY * Bs[GammaYZ][j]);
                }
            }
        }
    }
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
