#include "elements/ShellPressureLoad.h"

#include "elements/ShellTransform.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

using QuadNodes = std::array<Vector3, QuadNodeCount>;
using TriNodes = std::array<Vector3, TriNodeCount>;

const Vector3 Origin = {0.7, -0.4, 0.9};

template <std::size_t Nodes> std::array<Vector3, Nodes> Placed(std::array<Vector3, Nodes> nodes)
{
    for (Vector3& node : nodes) { node = Origin + FromFrame(SkewFrame(), node); }
    return nodes;
}

const QuadNodes QuadPlane = {{{0.0, 0.0, 0.0}, {2.1, 0.2, 0.0}, {1.7, 1.4, 0.0}, {-0.3, 1.1, 0.0}}};
const TriNodes TriPlane = {{{0.2, 0.1, 0.0}, {2.3, 0.6, 0.0}, {0.9, 1.8, 0.0}}};

// Forces and moments at the nodes along the axes of the element.
std::vector<double> LocalLoads(const QuadNodes& nodes, double q1, double q2, double q3)
{
    const auto element = MakeQuad(nodes, 1.0, 0.3, 0.1);
    std::vector<double> f(QuadDofCount, -777.0), local(QuadDofCount);
    QuadShellPressureLoad(element, {0, {q1, q2, q3}}, f.data());
    VectorToLocal<QuadNodeCount>(element.axes, f.data(), local.data());
    return local;
}

std::vector<double> LocalLoads(const TriNodes& nodes, double q1, double q2, double q3)
{
    const auto element = MakeTri(nodes, 1.0, 0.3, 0.1);
    std::vector<double> f(TriDofCount, -777.0), local(TriDofCount);
    TriShellPressureLoad(element, {0, {q1, q2, q3}}, f.data());
    VectorToLocal<TriNodeCount>(element.axes, f.data(), local.data());
    return local;
}

// Everything but the force along e3, which must vanish beside it.
double LargestOther(const std::vector<double>& local)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < local.size(); ++i) {
        if (i % 6 != DZ) {
            largest = std::max(largest, std::fabs(local[i]));
        }
    }
    return largest;
}

TEST(QuadShellPressureLoad, UniformPressureGivesAQuarterOfTheForceAtEachNodeOfARectangle)
{
    const auto f = LocalLoads(Placed(QuadNodes{{{0, 0, 0}, {3, 0, 0}, {3, 2, 0}, {0, 2, 0}}}), 5.0, 5.0, 5.0);
    for (int n = 0; n < QuadNodeCount; ++n) { EXPECT_NEAR(f[6 * n + DZ], 5.0 * 6.0 / 4.0, 1e-13); }
}

TEST(QuadShellPressureLoad, UniformPressureAddsUpToPressureTimesArea)
{
    const auto f = LocalLoads(Placed(QuadPlane), 5.0, 5.0, 5.0);
    const double area = 0.5 * (1.7 * 0.9 + 2.4 * 1.4); // half the cross product of the diagonals
    EXPECT_NEAR(f[DZ] + f[6 + DZ] + f[12 + DZ] + f[18 + DZ], 5.0 * area, 1e-13);
}

TEST(QuadShellPressureLoad, ActsAlongTheNormalWithoutMoments)
{
    EXPECT_LT(LargestOther(LocalLoads(Placed(QuadPlane), 5.0, -2.0, 3.0)), 1e-14 * 5.0);
}

TEST(QuadShellPressureLoad, ChangesItsDirectionWithTheNodeOrder)
{
    const QuadNodes upwards = {{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}};
    const QuadNodes downwards = {{{0, 1, 0}, {1, 1, 0}, {1, 0, 0}, {0, 0, 0}}};
    double f[QuadDofCount];
    QuadShellPressureLoad(MakeQuad(upwards, 1.0, 0.3, 0.1), {0, {4.0, 4.0, 4.0}}, f);
    EXPECT_NEAR(f[DZ], 1.0, 1e-15);
    QuadShellPressureLoad(MakeQuad(downwards, 1.0, 0.3, 0.1), {0, {4.0, 4.0, 4.0}}, f);
    EXPECT_NEAR(f[DZ], -1.0, 1e-15);
}

// On a parallelogram q4 = q1 − q2 + q3 and m = A/36·(4 2 1 2 / ...).
TEST(QuadShellPressureLoad, FourthNodeOfAParallelogramHasTheFirstMinusTheSecondPlusTheThirdPressure)
{
    const QuadNodes nodes = {{{0, 0, 0}, {2, 0.5, 0}, {2.6, 1.9, 0}, {0.6, 1.4, 0}}};
    const double area = 2.0 * 1.4 - 0.5 * 0.6, q[4] = {5.0, -2.0, 3.0, 10.0};
    const auto f = LocalLoads(Placed(nodes), q[0], q[1], q[2]);
    for (int n = 0; n < QuadNodeCount; ++n) {
        const double expected = area / 36.0 * (4 * q[n] + 2 * q[(n + 1) % 4] + q[(n + 2) % 4] + 2 * q[(n + 3) % 4]);
        EXPECT_NEAR(f[6 * n + DZ], expected, 1e-13) << n;
    }
}

// ∫q dA, ∫x·q dA, ∫y·q dA over the two triangles of the element, with q = 1.5 + 2x − 3y, against Σ f, Σ x·f, Σ y·f.
TEST(QuadShellPressureLoad, LinearPressureOnADistortedElementHasItsForceAndMoments)
{
    const auto pressure = [](const Vector3& p) { return 1.5 + 2.0 * p[0] - 3.0 * p[1]; };
    double exact[3] = {};
    for (const auto& corner : {std::array{0, 1, 2}, {0, 2, 3}}) {
        const Vector3 a = QuadPlane[corner[0]], b = QuadPlane[corner[1]], c = QuadPlane[corner[2]];
        const double area = 0.5 * Length(Cross(b - a, c - a));
        for (const Vector3& p : {0.5 * (a + b), 0.5 * (b + c), 0.5 * (c + a)}) { // exact for quadratic functions
            exact[0] += area / 3.0 * pressure(p);
            exact[1] += area / 3.0 * pressure(p) * p[0];
            exact[2] += area / 3.0 * pressure(p) * p[1];
        }
    }
    const auto element = MakeQuad(Placed(QuadPlane), 1.0, 0.3, 0.1);
    std::vector<double> f(QuadDofCount);
    QuadShellPressureLoad(element, {0, {pressure(QuadPlane[0]), pressure(QuadPlane[1]), pressure(QuadPlane[2])}},
                          f.data());
    double sum[3] = {};
    for (int n = 0; n < QuadNodeCount; ++n) {
        const double w = Dot(SkewFrame()[2], {f[6 * n], f[6 * n + 1], f[6 * n + 2]});
        sum[0] += w;
        sum[1] += w * QuadPlane[n][0];
        sum[2] += w * QuadPlane[n][1];
    }
    for (int k = 0; k < 3; ++k) { EXPECT_NEAR(sum[k], exact[k], 1e-13) << k; }
}

TEST(QuadShellPressureLoad, WarpedElementIsLoadedAsItsProjection)
{
    QuadNodes warped = Placed(QuadPlane);
    warped[3] = warped[3] + 0.5 * SkewFrame()[2];
    const auto flat = LocalLoads(Placed(QuadPlane), 5.0, -2.0, 3.0), f = LocalLoads(warped, 5.0, -2.0, 3.0);
    for (int i = 0; i < QuadDofCount; ++i) { EXPECT_NEAR(f[i], flat[i], 1e-14 * 5.0) << i; }
}

// Axes stored for the other direction make the local nodes clockwise: det J < 0, the area stays positive.
TEST(QuadShellPressureLoad, ClockwiseLocalNodesAreLoadedAlongTheNormalToo)
{
    auto turned = MakeQuad(Placed(QuadPlane), 1.0, 0.3, 0.1);
    const auto plain = turned;
    turned.axes[1] = -turned.axes[1];
    double f[QuadDofCount], expected[QuadDofCount];
    QuadShellPressureLoad(turned, {0, {5.0, -2.0, 3.0}}, f);
    QuadShellPressureLoad(plain, {0, {5.0, -2.0, 3.0}}, expected);
    for (int i = 0; i < QuadDofCount; ++i) { EXPECT_NEAR(f[i], expected[i], 1e-14 * 5.0) << i; }
}

TEST(QuadShellPressureLoad, CollinearFirstNodesGiveNonFiniteLoads)
{
    const QuadNodes nodes = {{{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {0, 1, 0}}};
    EXPECT_FALSE(std::isfinite(LocalLoads(nodes, 1.0, 2.0, 3.0)[DZ]));
}

TEST(TriShellPressureLoad, UniformPressureGivesAThirdOfTheForceAtEachNode)
{
    const auto f = LocalLoads(Placed(TriPlane), 5.0, 5.0, 5.0);
    const double area = 0.5 * (2.1 * 1.7 - 0.7 * 0.5);
    for (int n = 0; n < TriNodeCount; ++n) { EXPECT_NEAR(f[6 * n + DZ], 5.0 * area / 3.0, 1e-14 * 5.0); }
}

TEST(TriShellPressureLoad, LinearPressureIsSharedConsistently)
{
    const double q[3] = {5.0, -2.0, 3.0}, area = 0.5 * (2.1 * 1.7 - 0.7 * 0.5);
    const auto f = LocalLoads(Placed(TriPlane), q[0], q[1], q[2]);
    for (int n = 0; n < TriNodeCount; ++n) {
        EXPECT_NEAR(f[6 * n + DZ], area / 12.0 * (q[n] + q[0] + q[1] + q[2]), 1e-14 * 5.0) << n;
    }
}

TEST(TriShellPressureLoad, ActsAlongTheNormalWithoutMoments)
{
    EXPECT_LT(LargestOther(LocalLoads(Placed(TriPlane), 5.0, -2.0, 3.0)), 1e-14 * 5.0);
}

} // namespace
} // namespace tarnvexo
