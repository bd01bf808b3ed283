#include "checks/TriShape.h"

#include "checks/Angles.h"

#include <algorithm>

namespace tarnvexo {

TriShape MeasureTri(const Vector3 nodes[TriNodeCount])
{
    TriShape tri;
    Vector3 side[TriNodeCount];
    double lengths[TriNodeCount];
    for (int i = 0; i < TriNodeCount; ++i) {
        side[i] = nodes[(i + 1) % TriNodeCount] - nodes[i];
        lengths[i] = Length(side[i]);
    }
    tri.longestSide = *std::max_element(lengths, lengths + TriNodeCount);
    tri.shortestSideStart = static_cast<int>(std::min_element(lengths, lengths + TriNodeCount) - lengths);
    tri.shortestSide = lengths[tri.shortestSideStart];
    tri.area = 0.5 * Length(Cross(side[0], side[1]));

    // The smallest angle is opposite to the shortest side.
    tri.smallestAngleCorner = (tri.shortestSideStart + 2) % TriNodeCount;
    tri.smallestAngle =
        AngleBetween(side[tri.smallestAngleCorner], -side[(tri.smallestAngleCorner + 2) % TriNodeCount]);
    return tri;
}

double AspectRatio(const TriShape& tri)
{
    return tri.longestSide / tri.shortestSide;
}

} // namespace tarnvexo
