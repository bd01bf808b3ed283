#include "output/ShellStressRecovery.h"

#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;

constexpr double E = 2.1e11, Mu = 0.3, T = 0.02;

// Small motion of a point: translation u and rotation about the axes.
struct Motion {
    Vector3 u;
    Vector3 rotation;
};

// Distorted quads and triangles over 2 x 1 about an inner node, in the plane spanned by `a` and `b` (orthonormal).
ModelStore Patch(const Vector3& a, const Vector3& b)
{
    ModelText model;
    model.Material(E, Mu, 7850.0);
    model.Thickness(T);
    const double x[] = {0.0, 2.0, 2.0, 0.0, 0.9, 1.1}, y[] = {0.0, 0.0, 1.0, 1.0, 0.4, 1.0};
    for (int n = 0; n < 6; ++n) {
        const Vector3 p = x[n] * a + y[n] * b;
        model.Node(p[0], p[1], p[2]);
    }
    model.Quad({0, 4, 5, 3});
    model.Quad({1, 2, 5, 4});
    model.Tri({0, 1, 4});
    return StoreOf(model);
}

template <class MotionOfPoint> void Move(ModelStore& model, MotionOfPoint motion)
{
    model.GlobalDisplacement.clear();
    for (const Vector3& point : model.NodeCoordinates) {
        const Motion m = motion(point);
        model.GlobalDisplacement.insert(model.GlobalDisplacement.end(), m.u.begin(), m.u.end());
        model.GlobalDisplacement.insert(model.GlobalDisplacement.end(), m.rotation.begin(), m.rotation.end());
    }
}

// check(positive face, negative face) for every node of every element.
template <class Check> void ForEveryNode(const ModelStore& model, Check check)
{
    for (const auto& quad : model.QuadElements) {
        for (int i = 0; i < QuadNodeCount; ++i) { check(quad.positiveFace[i], quad.negativeFace[i]); }
    }
    for (const auto& tri : model.TriElements) {
        for (int i = 0; i < TriNodeCount; ++i) { check(tri.positiveFace[i], tri.negativeFace[i]); }
    }
}

const Vector3 X = {1.0, 0.0, 0.0}, Y = {0.0, 1.0, 0.0};

// u = ε·x, v = -Mu·ε·y: σX = E·ε alone.
TEST(ShellStressRecovery, OfPureInPlaneLoadGivesBothFacesTheSamePlaneStress)
{
    ModelStore model = Patch(X, Y);
    const double strain = 1e-3, shear = 4e-4, G = E / 2.0 / (1.0 + Mu);
    Move(model, [&](const Vector3& p) {
        return Motion{{strain * p[0] + shear * p[1], -Mu * strain * p[1], 0.0}, {0.0, 0.0, -shear / 2}};
    });
    RecoverShellStresses(model);
    const double expected[StressCount] = {E * strain, 0.0, 0.0, G * shear, 0.0, 0.0};
    const double roundOff = 1e-13 * E * strain;
    ForEveryNode(model, [&](const double* positive, const double* negative) {
        for (int k = 0; k < StressCount; ++k) {
            EXPECT_NEAR(positive[k], expected[k], roundOff) << "component " << k;
            EXPECT_EQ(positive[k], negative[k]) << "component " << k;
        }
        for (int k : {SZ, TZX, TYZ}) { EXPECT_EQ(positive[k], 0.0) << "component " << k; }
    });
}

// w = -κ·(x² - Mu·y²)/2: κx = κ, κy = -Mu·κ, so Mx = E·t³/12·κ alone and σX = ±E·κ·t/2.
TEST(ShellStressRecovery, OfPureBendingGivesEqualAndOppositeFaces)
{
    ModelStore model = Patch(X, Y);
    const double kappa = 1e-2;
    Move(model, [&](const Vector3& p) {
        const double dwdx = -kappa * p[0], dwdy = Mu * kappa * p[1];
        return Motion{{0.0, 0.0, -kappa / 2 * (p[0] * p[0] - Mu * p[1] * p[1])}, {dwdy, -dwdx, 0.0}};
    });
    RecoverShellStresses(model);
    const double face = E * kappa * T / 2;
    ForEveryNode(model, [&](const double* positive, const double* negative) {
        EXPECT_NEAR(positive[SX], face, 1e-12 * face);
        for (int k = 1; k < StressCount; ++k) { EXPECT_NEAR(positive[k], 0.0, 1e-12 * face) << "component " << k; }
        for (int k = 0; k < StressCount; ++k) { EXPECT_EQ(positive[k], -negative[k]) << "component " << k; }
    });
}

// Uniaxial stress along a direction n of the plane: σ = E·ε·n·nᵀ in global axes.
TEST(ShellStressRecovery, OfATiltedElementShowsStressesInAllGlobalComponents)
{
    const Vector3 a = Normalised({2.0, 1.0, 3.0}), b = Normalised(Cross(a, {0.0, 1.0, 1.0}));
    ModelStore model = Patch(a, b);
    const double strain = 1e-3;
    Move(model, [&](const Vector3& p) { return Motion{strain * Dot(a, p) * a - Mu * strain * Dot(b, p) * b, {}}; });
    RecoverShellStresses(model);
    const double s = E * strain;
    const double expected[StressCount] = {s * a[0] * a[0], s * a[1] * a[1], s * a[2] * a[2],
                                          s * a[0] * a[1], s * a[2] * a[0], s * a[1] * a[2]};
    ForEveryNode(model, [&](const double* positive, const double* negative) {
        for (int k = 0; k < StressCount; ++k) {
            EXPECT_NEAR(positive[k], expected[k], 1e-12 * s) << "component " << k;
            EXPECT_NEAR(negative[k], expected[k], 1e-12 * s) << "component " << k;
        }
    });
}

// Motion u = t + ω × p, rotation ω. The stresses that cancel are of the size E·|u|/length and, in bending,
// E·(t/2)·|ω|/length.
TEST(ShellStressRecovery, OfARigidMotionIsZero)
{
    const Vector3 a = Normalised({2.0, 1.0, 3.0}), b = Normalised(Cross(a, {0.0, 1.0, 1.0}));
    ModelStore model = Patch(a, b);
    const Vector3 translation = {0.3, -0.2, 0.7}, omega = {0.5, 0.9, -0.4};
    const auto largest = [&] {
        RecoverShellStresses(model);
        double value = 0.0;
        ForEveryNode(model, [&](const double* positive, const double* negative) {
            for (int k = 0; k < StressCount; ++k) {
                value = std::max({value, std::fabs(positive[k]), std::fabs(negative[k])});
            }
        });
        return value;
    };
    Move(model, [&](const Vector3& p) { return Motion{translation + Cross(omega, p), omega}; });
    EXPECT_LT(largest(), 1e-14 * E);
    Move(model, [&](const Vector3& p) { return Motion{translation + Cross(omega, p), -omega}; });
    EXPECT_GT(largest(), 1e-3 * E); // a wrong sign of the rotations bends the shell
}

// The node's own place, not the element's middle: u = 1e-3·x·y stretches the edge y = 1 only.
TEST(ShellStressRecovery, EvaluatesAQuadAtItsOwnCorners)
{
    ModelText text;
    text.Material(E, 0.0, 1.0);
    text.Thickness(T);
    text.Node(0.0, 0.0, 0.0);
    text.Node(2.0, 0.0, 0.0);
    text.Node(2.0, 1.0, 0.0);
    text.Node(0.0, 1.0, 0.0);
    text.Quad({0, 1, 2, 3});
    ModelStore model = StoreOf(text);
    Move(model, [&](const Vector3& p) { return Motion{{1e-3 * p[0] * p[1], 0.0, 0.0}, {}}; }); // εx = 1e-3·y
    RecoverShellStresses(model);
    const auto& faces = model.QuadElements[0].positiveFace;
    for (int i = 0; i < QuadNodeCount; ++i) {
        const double y = model.NodeCoordinates[std::size_t(i)][1], x = model.NodeCoordinates[std::size_t(i)][0];
        EXPECT_NEAR(faces[i][SX], E * 1e-3 * y, 1e-13 * E * 1e-3) << "node " << i;
        EXPECT_NEAR(faces[i][TXY], E / 2 * 1e-3 * x, 1e-13 * E * 1e-3) << "node " << i;
    }
}

TEST(ShellStressRecovery, GathersDisplacementsInConnectivityOrder)
{
    std::vector<double> displacements(6 * 5);
    for (std::size_t i = 0; i < displacements.size(); ++i) { displacements[i] = double(i); }
    const int nodes[3] = {4, 0, 2};
    double d[18];
    GatherDisplacements<3>(nodes, displacements, d);
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 6; ++k) { EXPECT_EQ(d[6 * i + k], 6 * nodes[i] + k); }
    }
}

} // namespace
} // namespace tarnvexo
