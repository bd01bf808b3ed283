#include "elements/QuadGeometry.h"

#include "elements/QuadGeometry-inl.h"

namespace tarnvexo {

QuadPoint EvaluateQuad(const double x[QuadNodeCount], const double y[QuadNodeCount], double xi, double eta)
{
    return HWY_NAMESPACE::EvaluateQuad<double>(x, y, xi, eta);
}

} // namespace tarnvexo
