#include "checks/QuadShape.h"

#include "checks/Angles.h"

#include <algorithm>
#include <cmath>

namespace tarnvexo {

namespace {

// Of the square of the longest side: below it an area has no sign, and the diagonals count as parallel.
constexpr double NoArea = 1e-9;

constexpr int Previous(int i)
{
    return (i + QuadNodeCount - 1) % QuadNodeCount;
}

} // namespace

QuadShape MeasureQuad(const Vector3 nodes[QuadNodeCount])
{
    QuadShape quad;
    double lengths[QuadNodeCount];
    for (int i = 0; i < QuadNodeCount; ++i) {
        quad.side[i] = nodes[(i + 1) % QuadNodeCount] - nodes[i];
        lengths[i] = Length(quad.side[i]);
    }
    quad.longestSide = *std::max_element(lengths, lengths + QuadNodeCount);
    quad.shortestSideStart = static_cast<int>(std::min_element(lengths, lengths + QuadNodeCount) - lengths);
    quad.shortestSide = lengths[quad.shortestSideStart];
    for (int i = 0; i < QuadNodeCount; ++i) { quad.corner[i] = 0.5 * Cross(quad.side[Previous(i)], quad.side[i]); }

    const Vector3 vectorArea = 0.5 * Cross(nodes[2] - nodes[0], nodes[3] - nodes[1]);
    quad.area = Length(vectorArea);
    Vector3 normal = vectorArea;
    if (quad.area <= NoArea * quad.longestSide * quad.longestSide) {
        // Parallel diagonals: all four nodes lie in one plane, that of any corner.
        normal = *std::max_element(quad.corner, quad.corner + QuadNodeCount,
                                   [](const Vector3& a, const Vector3& b) { return Dot(a, a) < Dot(b, b); });
    }
    const double size = Length(normal);
    if (size > 0.0) {
        quad.normal = normal / size;
    }
    for (int i = 0; i < QuadNodeCount; ++i) { quad.cornerArea[i] = Dot(quad.corner[i], quad.normal); }
    return quad;
}

bool CrossesItself(const QuadShape& quad)
{
    const double zero = NoArea * quad.longestSide * quad.longestSide;
    const auto turnsLeft = [zero](double area) { return area > zero; };
    const auto turnsRight = [zero](double area) { return area < -zero; };
    const double* const end = quad.cornerArea + QuadNodeCount;
    return std::count_if(quad.cornerArea, end, turnsLeft) == 2 && std::count_if(quad.cornerArea, end, turnsRight) == 2;
}

double LeastJacobian(const QuadShape& quad)
{
    const Vector3 e3 = Normalised(quad.corner[1]); // nodes 1, 2, 3 are corner 2
    double areas[QuadNodeCount];
    for (int i = 0; i < QuadNodeCount; ++i) { areas[i] = Dot(quad.corner[i], e3); }
    const double area = areas[0] + areas[2];
    // det J / (A/4) is 1 in the middle, 2·Ai/A at node i, and linear: at the point towards node i, a part 1/√3 of the
    // way, it is 1 + (2·Ai/A − 1)/√3.
    double leastCorner = 2.0 * areas[0] / area;
    for (int i = 1; i < QuadNodeCount; ++i) { leastCorner = std::min(leastCorner, 2.0 * areas[i] / area); }
    return 1.0 + (leastCorner - 1.0) / std::sqrt(3.0);
}

void QuadCornerAngles(const QuadShape& quad, double angles[QuadNodeCount])
{
    for (int i = 0; i < QuadNodeCount; ++i) {
        const Vector3& in = quad.side[Previous(i)];
        const Vector3& out = quad.side[i];
        const double sine = 2.0 * quad.cornerArea[i];
        const double cosine = Dot(in, quad.normal) * Dot(out, quad.normal) - Dot(in, out); // of the projections
        const double angle = DegreesPerRadian * std::atan2(sine, cosine);
        angles[i] = angle < 0.0 ? angle + 360.0 : angle;
    }
}

double WarpingAngle(const QuadShape& quad)
{
    // Corners 2 and 4 are the halves at diagonal 1–3, corners 1 and 3 those at diagonal 2–4.
    return std::max(AngleBetween(quad.corner[1], quad.corner[3]), AngleBetween(quad.corner[0], quad.corner[2]));
}

double AspectRatio(const QuadShape& quad)
{
    return quad.longestSide / quad.shortestSide;
}

double Taper(const QuadShape& quad, int& corner)
{
    // Opposite corners make up A: as much as one exceeds A/2, the other one lacks, so the smallest lacks most.
    corner = static_cast<int>(std::min_element(quad.cornerArea, quad.cornerArea + QuadNodeCount) - quad.cornerArea);
    return 1.0 - 2.0 * quad.cornerArea[corner] / quad.area;
}

} // namespace tarnvexo
