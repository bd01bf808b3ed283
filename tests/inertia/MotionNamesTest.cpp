#include "inertia/MotionNames.h"

#include "support/ElementTools.h"
#include "support/MeshBuilder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};

struct Support {
    int node;
    std::vector<Dof> dofs;
};

// A plate of 4 x 2 in the plane z = 1, nodes 3·i + j at (x, y) = (i, j), scaled.
ModelStore Plate(const std::vector<Support>& supports, double scale = 1.0)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 4, 2, 0.02 * scale, Cell::Quad, [&](int i, int j) { return scale * Vector3{1.0 * i, 1.0 * j, 1.0}; });
    for (const Support& support : supports) { mesh.Restrain(support.node, support.dofs); }
    return mesh.Model();
}

PartMotions MotionsOf(const ModelStore& model)
{
    return FindPartMotions(model, FindConnectedParts(model), RestrainedEquations(model))[0];
}

std::string NamesOf(const std::vector<Support>& supports, double scale = 1.0)
{
    std::string names;
    for (const std::string& text : FreeMotionTexts(MotionsOf(Plate(supports, scale)), {})) {
        names += (names.empty() ? "" : "; ") + text;
    }
    return names;
}

// A motion of the part, as its reference point moves and turns.
MotionVector VectorOf(const PartMotions& part, const Vector3& u, const Vector3& theta)
{
    MotionVector q = {};
    double square = 0.0;
    for (int k = 0; k < 3; ++k) {
        q[k] = u[k];
        q[RX + k] = theta[k] * part.size;
    }
    for (const double value : q) { square += value * value; }
    for (double& value : q) { value /= std::sqrt(square); }
    return q;
}

// The motions that a name speaks of.
std::vector<MotionVector> MotionsIn(const PartMotions& part, const FreeMotion& motion)
{
    std::vector<Vector3> directions;
    if (motion.dimension == 1) {
        directions = {motion.direction};
    } else {
        for (int k = 0; k < 3; ++k) {
            Vector3 axis = {};
            axis[k] = 1.0;
            if (motion.dimension == 2) {
                axis = axis - motion.direction[k] * motion.direction;
            }
            if (Length(axis) > 0.1) {
                directions.push_back(Normalised(axis));
            }
        }
    }
    std::vector<MotionVector> motions;
    for (const Vector3& d : directions) {
        motions.push_back(motion.kind == FreeMotion::Kind::Translation
                              ? VectorOf(part, d, {})
                              : VectorOf(part, Cross(motion.point - part.reference, d) + motion.pitch * d, d));
    }
    return motions;
}

// Largest part of the named motions outside the free ones: zero when every name is true.
double Untruth(const PartMotions& part, const std::vector<FreeMotion>& names)
{
    double largest = 0.0;
    for (const FreeMotion& name : names) {
        for (MotionVector q : MotionsIn(part, name)) {
            for (const MotionVector& free : part.free) {
                double share = 0.0;
                for (int k = 0; k < RigidMotionCount; ++k) { share += free[k] * q[k]; }
                for (int k = 0; k < RigidMotionCount; ++k) { q[k] -= share * free[k]; }
            }
            for (const double value : q) { largest = std::max(largest, std::fabs(value)); }
        }
    }
    return largest;
}

// Dimension of what the names span together.
int RankOf(const PartMotions& part, const std::vector<FreeMotion>& names)
{
    std::vector<MotionVector> basis;
    for (const FreeMotion& name : names) {
        for (MotionVector q : MotionsIn(part, name)) {
            double square = 0.0;
            for (const MotionVector& b : basis) {
                double share = 0.0;
                for (int k = 0; k < RigidMotionCount; ++k) { share += b[k] * q[k]; }
                for (int k = 0; k < RigidMotionCount; ++k) { q[k] -= share * b[k]; }
            }
            for (const double value : q) { square += value * value; }
            if (square > 1e-10) {
                for (double& value : q) { value /= std::sqrt(square); }
                basis.push_back(q);
            }
        }
    }
    return static_cast<int>(basis.size());
}

TEST(FreeMotionTexts, OfAHeldPartAreNone)
{
    EXPECT_EQ(NamesOf({{0, {DX, DY, DZ}}, {12, {DY, DZ}}, {2, {DZ}}}), "");
}

TEST(FreeMotionTexts, OfAFreePartAreOne)
{
    EXPECT_EQ(NamesOf({}), "free to move and rotate in every way");
}

TEST(FreeMotionTexts, OfAPartOnOnePointAreRotationsAboutIt)
{
    EXPECT_EQ(NamesOf({{12, {DX, DY, DZ}}}), "free to rotate in every way about (4, 0, 1)");
}

TEST(FreeMotionTexts, OfAPartOnTwoPointsAreTheRotationAboutTheirLine)
{
    EXPECT_EQ(NamesOf({{0, {DX, DY, DZ}}, {12, {DX, DY, DZ}}}),
              "free to rotate about the axis through (2, 0, 1) along x");
}

TEST(FreeMotionTexts, OfAPartOnARollerLineAreAlongAndAboutIt)
{
    EXPECT_EQ(NamesOf({{0, {DY, DZ}}, {12, {DY, DZ}}}),
              "free to move along x; free to rotate about the axis through (2, 0, 1) along x");
}

TEST(FreeMotionTexts, OfAPartThatLiesOnItsPlaneAreThoseInThePlane)
{
    EXPECT_EQ(NamesOf({{0, {DZ}}, {12, {DZ}}, {2, {DZ}}}), "free to move in every direction normal to z; "
                                                           "free to rotate about the axis through (2, 1, 1) along z");
}

TEST(FreeMotionTexts, OfAPartWithoutRotationsAreTranslations)
{
    EXPECT_EQ(NamesOf({{5, {RX, RY, RZ}}}), "free to move in every direction");
    EXPECT_EQ(NamesOf({{5, {DZ, RX, RY, RZ}}}), "free to move in every direction normal to z");
    EXPECT_EQ(NamesOf({{5, {DX, DZ, RX, RY, RZ}}}), "free to move along y");
}

TEST(FreeMotionTexts, OfTranslationsInEveryDirectionHaveNoAxisPoint)
{
    EXPECT_EQ(NamesOf({{5, {RX, RY}}}), "free to move in every direction; free to rotate about every axis along z");
    EXPECT_EQ(NamesOf({{5, {RZ}}}), "free to move in every direction; free to rotate about every axis normal to z");
}

// Held across x, the point may slide along it; the others turn about it.
TEST(FreeMotionTexts, OfAPartOnAPointThatSlidesAreRotationsAboutItAndTheSlide)
{
    EXPECT_EQ(NamesOf({{12, {DY, DZ}}}), "free to move along x; free to rotate in every way about (4, 0, 1)");
}

TEST(FreeMotionTexts, OfAPointAndADirectionAreRotationsAboutThePointInAPlane)
{
    EXPECT_EQ(NamesOf({{0, {DX, DY, DZ}}, {12, {DY}}}),
              "free to rotate about every axis through (0, 0, 1) normal to z");
}

// Held along y and z at (0, 0), along x and z at (4, 2): lines that meet all four of these are the one through both
// points, and the one in which the planes of both pairs cross.
TEST(FreeMotionTexts, OfFourSkewDirectionsAreTheTwoAxesThatMeetThemAll)
{
    const PartMotions part = MotionsOf(Plate({{0, {DY, DZ}}, {14, {DX, DZ}}}));
    const std::vector<FreeMotion> names = NameFreeMotions(part);
    ASSERT_EQ(names.size(), 2u);
    for (const FreeMotion& name : names) { EXPECT_EQ(name.pitch, 0.0); }
    EXPECT_LT(Untruth(part, names), 1e-12);
    EXPECT_EQ(RankOf(part, names), 2);
}

TEST(FreeMotionTexts, OfOneTurnHaveItsAxisWhereTheSupportsPutIt)
{
    EXPECT_EQ(NamesOf({{0, {DX, RY, RZ}}, {12, {DY}}, {2, {DZ}}}),
              "free to rotate about the axis through (2, 2, 1) along x");
}

// Five directions at five nodes that no axis meets all: a screw.
TEST(FreeMotionTexts, OfDirectionsWithoutCommonAxisHaveAPitch)
{
    MeshBuilder mesh(Steel);
    AddGrid(mesh, 4, 2, 0.02, Cell::Quad, [](int i, int j) { return Vector3{1.0 * i, 1.0 * j, 0.3 * i * j}; });
    mesh.Restrain(0, {DX});
    mesh.Restrain(12, {DY});
    mesh.Restrain(2, {DZ});
    mesh.Restrain(14, {DY});
    mesh.Restrain(8, {DX});
    const PartMotions part = MotionsOf(mesh.Model());
    const std::vector<FreeMotion> names = NameFreeMotions(part);
    ASSERT_EQ(names.size(), 1u);
    EXPECT_GT(std::fabs(names[0].pitch), 1e-3);
    EXPECT_LT(Untruth(part, names), 1e-12);
    EXPECT_NE(MotionText(names[0], {}).find(", moving along it by "), std::string::npos) << MotionText(names[0], {});
}

TEST(FreeMotionTexts, DoNotDependOnTheUnitOfLength)
{
    EXPECT_EQ(NamesOf({{0, {DX, DY, DZ}}, {14, {DX, DY, DZ}}}, 1e-3),
              "free to rotate about the axis through (0.002, 0.001, 0.001) along (0.8944, 0.4472, 0)");
    EXPECT_EQ(NamesOf({{0, {DX, DY, DZ}}, {14, {DX, DY, DZ}}}, 1e6),
              "free to rotate about the axis through (2e+06, 1e+06, 1e+06) along (0.8944, 0.4472, 0)");
}

TEST(FreeMotionTexts, DoNotDependOnTheBasisOfTheFreeMotions)
{
    PartMotions part = MotionsOf(Plate({{12, {DX, DY, DZ}}}));
    const std::vector<std::string> before = FreeMotionTexts(part, {});
    const double c = std::cos(0.7), s = std::sin(0.7);
    for (int k = 0; k < RigidMotionCount; ++k) { // two plane rotations of the basis
        for (const auto& [a, b] : {std::pair(0, 1), {1, 2}}) {
            const double qa = part.free[a][k], qb = part.free[b][k];
            part.free[a][k] = c * qa - s * qb;
            part.free[b][k] = s * qa + c * qb;
        }
    }
    EXPECT_EQ(FreeMotionTexts(part, {}), before);
}

TEST(FreeMotionTexts, AreInTheCoordinatesOfTheModelFile)
{
    ModelStore model = Plate({{12, {DX, DY, DZ}}});
    const Vector3 origin = {2.0 / 3.0, 0.1, 1.0};
    for (Vector3& node : model.NodeCoordinates) { node = node - origin; }
    EXPECT_EQ(FreeMotionTexts(MotionsOf(model), origin),
              std::vector<std::string>{"free to rotate in every way about (4, 0, 1)"});
}

// Whatever the supports: each name is a free motion, and together they are all of them.
TEST(FreeMotionNames, AreTrueAndComplete)
{
    std::mt19937 generator(7);
    const std::vector<Dof> dofs = {DX, DY, DZ, RX, RY, RZ};
    int named[RigidMotionCount + 1] = {};
    for (int trial = 0; trial < 400; ++trial) {
        MeshBuilder mesh(Steel);
        const bool isSkew = trial % 2 == 1;
        AddGrid(mesh, 4, 2, 0.02, Cell::Quad, [&](int i, int j) {
            const Vector3 p = {10.0 + i, 0.5 * j, 0.2 * i * j};
            return isSkew ? FromFrame(SkewFrame(), p) : p;
        });
        const int count = static_cast<int>(generator() % 6);
        for (int k = 0; k < count; ++k) { mesh.Restrain(static_cast<int>(generator() % 15), {dofs[generator() % 6]}); }
        const PartMotions part = MotionsOf(mesh.Model());
        const std::vector<FreeMotion> names = NameFreeMotions(part);
        EXPECT_LT(Untruth(part, names), 1e-9) << "trial " << trial;
        EXPECT_EQ(RankOf(part, names), static_cast<int>(part.free.size())) << "trial " << trial;
        ++named[part.free.size()];
    }
    for (int k = 1; k <= RigidMotionCount; ++k) { EXPECT_GT(named[k], 10) << k; }
}

TEST(DirectionText, NamesGlobalAxes)
{
    EXPECT_EQ(DirectionText({0.0, 1.0, 0.0}), "y");
    EXPECT_EQ(DirectionText({0.6, -0.8, 0.0}), "(0.6, -0.8, 0)");
}

TEST(PointText, HasNoNegativeZero)
{
    EXPECT_EQ(PointText({-0.0, 12.1, 1e-7}), "(0, 12.1, 1e-07)");
}

} // namespace
} // namespace tarnvexo
