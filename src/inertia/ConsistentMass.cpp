#include "inertia/ConsistentMass.h"

#include "elements/BeamSection.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellTransform.h"
#include "elements/TriGeometry.h"
#include "inertia/StructureCentroid.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Six-point Gauss–Legendre rule. Deliberate: nine and seven decimals, as handbooks print them. Their weights add up to 2
// exactly and ∫ξ² is 3e-8 off, so masses and balance of distorted quadrilaterals are good to about 1e-8. Keep: printed
// masses compare with those of existing models only with these values.
struct GaussPoint {
    double abscissa;
    double weight;
};
constexpr GaussPoint SixPointRule[] = {
    {-0.932469514, 0.1713245}, {-0.661209386, 0.3607616}, {-0.238619186, 0.4679139},
    {0.238619186, 0.4679139},  {0.661209386, 0.3607616},  {0.932469514, 0.1713245},
};

} // namespace

void QuadMass(const QuadShellElement& element, double m[QuadNodeCount][QuadNodeCount])
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    for (int i = 0; i < QuadNodeCount; ++i) {
        for (int j = 0; j < QuadNodeCount; ++j) { m[i][j] = 0.0; }
    }
    for (const GaussPoint& xi : SixPointRule) {
        for (const GaussPoint& eta : SixPointRule) {
            const QuadPoint point = EvaluateQuad(x, y, xi.abscissa, eta.abscissa);
            const double factor = std::fabs(point.detJ) * element.Density * element.thickness * xi.weight * eta.weight;
            for (int i = 0; i < QuadNodeCount; ++i) {
                for (int j = 0; j < QuadNodeCount; ++j) { m[i][j] += factor * point.N[i] * point.N[j]; }
            }
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
