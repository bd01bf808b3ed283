#include "inertia/ConsistentMass.h"

#include "elements/BeamSection.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellTransform.h"
#include "elements/TriGeometry.h"
#include "inertia/StructureCentroid.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Six-point Gauss–Legendre rule. Deliberate: nine and seven decimals, as handbooks print them. Their weights add up to
// 2 exactly and ∫ξ² is 3e-8 off, so masses and balance of distorted quadrilaterals are good to about 1e-8. Keep:
// printed masses compare with those of existing models only with these values.
struct GaussPoint {
    double abscissa;
    double weight;
};
constexpr GaussPoint SixPointRule[] = {
    {-0.932469514, 0.1713245}, {-0.661209386, 0.3607616}, {-0.238619186, 0.4679139},
    {0.238619186, 0.4679139},  {0.661209386, 0.3607616},  {0.932469514, 0.1713245},
};

// ∫ N_i·N_j, ∫ ξ·N_i·N_j and ∫ η·N_i·N_j over −1 ... 1 by that rule: all that the mass needs of it where det J keeps
// its sign.
struct MassTable {
    double constant[QuadNodeCount][QuadNodeCount];
    double alongXi[QuadNodeCount][QuadNodeCount];
    double alongEta[QuadNodeCount][QuadNodeCount];
};

constexpr MassTable SumMassTable()
{
    MassTable table = {};
    for (const GaussPoint& xi : SixPointRule) {
        for (const GaussPoint& eta : SixPointRule) {
            double N[QuadNodeCount] = {};
            for (int i = 0; i < QuadNodeCount; ++i) {
                N[i] = 0.25 * (1.0 + QuadNodeXi[i] * xi.abscissa) * (1.0 + QuadNodeEta[i] * eta.abscissa);
            }
            for (int i = 0; i < QuadNodeCount; ++i) {
                for (int j = 0; j < QuadNodeCount; ++j) {
                    const double term = xi.weight * eta.weight * N[i] * N[j];
                    table.constant[i][j] += term;
                    table.alongXi[i][j] += xi.abscissa * term;
                    table.alongEta[i][j] += eta.abscissa * term;
                }
            }
        }
    }
    return table;
}

constexpr MassTable QuadMassTable = SumMassTable();

// det J = constant + alongXi·ξ + alongEta·η: the product ξ·η cancels in the determinant of a bilinear map.
struct LinearDeterminant {
    double constant;
    double alongXi;
    double alongEta;
};

LinearDeterminant DeterminantOfQuad(const double x[QuadNodeCount], const double y[QuadNodeCount])
{
    double xXi = 0.0, xEta = 0.0, xTwist = 0.0; // x = ... + ¼·(xXi·ξ + xEta·η + xTwist·ξ·η)
    double yXi = 0.0, yEta = 0.0, yTwist = 0.0;
    for (int i = 0; i < QuadNodeCount; ++i) {
        const double xi = QuadNodeXi[i], eta = QuadNodeEta[i];
        xXi += xi * x[i];
        yXi += xi * y[i];
        xEta += eta * x[i];
        yEta += eta * y[i];
        xTwist += xi * eta * x[i];
        yTwist += xi * eta * y[i];
    }
    return {0.0625 * (xXi * yEta - xEta * yXi), 0.0625 * (xXi * yTwist - xTwist * yXi),
            0.0625 * (xTwist * yEta - xEta * yTwist)};
}

// ∫ |det J|·N_i·N_j where det J changes its sign inside a crossed or folded element: point by point.
void SumPointByPoint(const double x[QuadNodeCount], const double y[QuadNodeCount], double factor,
                     double m[QuadNodeCount][QuadNodeCount])
{
    for (int i = 0; i < QuadNodeCount; ++i) {
        for (int j = 0; j < QuadNodeCount; ++j) { m[i][j] = 0.0; }
    }
    for (const GaussPoint& xi : SixPointRule) {
        for (const GaussPoint& eta : SixPointRule) {
            const QuadPoint point = EvaluateQuad(x, y, xi.abscissa, eta.abscissa);
            const double weight = std::fabs(point.detJ) * factor * xi.weight * eta.weight;
            for (int i = 0; i < QuadNodeCount; ++i) {
                for (int j = 0; j < QuadNodeCount; ++j) { m[i][j] += weight * point.N[i] * point.N[j]; }
            }
        }
    }
}

} // namespace

void QuadMass(const QuadShellElement& element, double m[QuadNodeCount][QuadNodeCount])
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    const double factor = element.Density * element.thickness;

    // The smallest and the largest det J stand at corners.
    const LinearDeterminant detJ = DeterminantOfQuad(x, y);
    const double variation = std::fabs(detJ.alongXi) + std::fabs(detJ.alongEta);
    if (!(variation <= std::fabs(detJ.constant))) {
        SumPointByPoint(x, y, factor, m);
        return;
    }
    const double scale = detJ.constant < 0.0 ? -factor : factor;
    for (int i = 0; i < QuadNodeCount; ++i) {
        for (int j = 0; j < QuadNodeCount; ++j) {
            m[i][j] =
                scale * (detJ.constant * QuadMassTable.constant[i][j] + detJ.alongXi * QuadMassTable.alongXi[i][j] +
                         detJ.alongEta * QuadMassTable.alongEta[i][j]);
        }
    }
}

void TriMass(const TriShellElement& element, double m[TriNodeCount][TriNodeCount])
{
    const double factor = TriArea(element) / TriMidsideCount * element.thickness * element.Density;
    for (int i = 0; i < TriNodeCount; ++i) {
        for (int j = 0; j < TriNodeCount; ++j) {
            m[i][j] = 0.0;
            for (const double(&L)[TriNodeCount] : TriMidsides) { m[i][j] += factor * L[i] * L[j]; }
        }
    }
}

void BeamMass(const BeamElement& beam, double m[BeamNodeCount][BeamNodeCount])
{
    const double sixth = beam.section.A * beam.Density * BeamLength(beam) / 6.0;
    m[0][0] = m[1][1] = 2.0 * sixth;
    m[0][1] = m[1][0] = sixth;
}

} // namespace tarnvexo
