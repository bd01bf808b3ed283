#include "elements/TriGeometry.h"

#include "elements/TriGeometry-inl.h"

namespace tarnvexo {

TriGeometry EvaluateTri(const double x[TriNodeCount], const double y[TriNodeCount])
{
    return HWY_NAMESPACE::EvaluateTri<double>(x, y);
}

} // namespace tarnvexo
