#include "checks/ModelChecks.h"
#include "core/Parallel.h"
#include "support/CheckedModels.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace tarnvexo {

// For messages of failed tests.
void PrintTo(RuleId rule, std::ostream* stream)
{
    *stream << RuleOf(rule).name;
}

namespace {

using namespace test;

constexpr double Degree = std::numbers::pi / 180.0;
using Corners = std::array<Vector3, QuadNodeCount>;

std::vector<Finding> ShapesOf(const ModelStore& model, const RuleBook& rules = RuleBook())
{
    std::vector<Finding> findings;
    CheckShapes(model, rules, findings);
    return findings;
}

std::vector<RuleId> RulesOfQuad(const Corners& corners)
{
    return RulesOf(ShapesOf(QuadModel(corners)));
}

std::vector<RuleId> RulesOfTri(const std::array<Vector3, TriNodeCount>& corners)
{
    return RulesOf(ShapesOf(TriModel(corners)));
}

const std::vector<RuleId> None;
std::vector<RuleId> Only(RuleId rule)
{
    return {rule};
}

Corners Rectangle(double length, double width)
{
    return {{{0, 0, 0}, {length, 0, 0}, {length, width, 0}, {0, width, 0}}};
}

Corners Rhombus(double deviation)
{
    const double s = std::sin(deviation * Degree), c = std::cos(deviation * Degree);
    return {{{0, 0, 0}, {1, 0, 0}, {1 + s, c, 0}, {s, c, 0}}};
}

// Halves that meet at the angle along both diagonals.
Corners WarpedSquare(double angle)
{
    const double h = 0.5 * std::sqrt(0.5) * std::tan(0.5 * angle * Degree);
    return {{{0, 0, h}, {1, 0, -h}, {1, 1, h}, {0, 1, -h}}};
}

Corners Trapezoid(double taper)
{
    const double half = (1.0 - taper) / (1.0 + taper);
    return {{{-1, 0, 0}, {1, 0, 0}, {half, 1.5, 0}, {-half, 1.5, 0}}};
}

TEST(ShapeChecks, GoodElementsGiveNoFinding)
{
    ModelStore model = QuadModel(Rectangle(2, 1));
    AddNode(model, {3, 0.5, 0});
    AddTri(model, {1, 4, 2});
    AddBeam(model, {0, 4});
    EXPECT_EQ(RulesOf(ShapesOf(model)), None);
}

TEST(ShapeChecks, AspectRatioIsToldBeyondItsLimitOnly)
{
    EXPECT_EQ(RulesOfQuad(Rectangle(9.99, 1)), None);
    EXPECT_EQ(RulesOfQuad(Rectangle(10.01, 1)), Only(RuleId::AspectRatio));
}

TEST(ShapeChecks, SkewCornerIsToldBeyondItsLimitOnly)
{
    EXPECT_EQ(RulesOfQuad(Rhombus(49.9)), None);
    EXPECT_EQ(RulesOfQuad(Rhombus(50.1)), Only(RuleId::QuadAngle));
}

TEST(ShapeChecks, WarpingIsToldBeyondItsLimitOnly)
{
    EXPECT_EQ(RulesOfQuad(WarpedSquare(9.9)), None);
    EXPECT_EQ(RulesOfQuad(WarpedSquare(10.1)), Only(RuleId::Warping));
}

TEST(ShapeChecks, TaperIsToldBeyondItsLimitOnly)
{
    EXPECT_EQ(RulesOfQuad(Trapezoid(0.49)), None);
    EXPECT_EQ(RulesOfQuad(Trapezoid(0.51)), Only(RuleId::Taper));
}

TEST(ShapeChecks, SharpTriangleIsToldBeyondItsLimitOnly)
{
    const auto tri = [](double angle) {
        return std::array<Vector3, TriNodeCount>{{{0, 0, 0}, {1, 0, 0}, {1, std::tan(angle * Degree), 0}}};
    };
    EXPECT_EQ(RulesOfTri(tri(15.1)), None);
    EXPECT_EQ(RulesOfTri(tri(14.9)), Only(RuleId::TriAngle));
}

TEST(ShapeChecks, SharpTriangleIsNotToldToBeLongAsWell)
{
    const std::array<Vector3, TriNodeCount> needle = {{{0, 0, 0}, {20, 0, 0}, {20, 1, 0}}};
    EXPECT_EQ(RulesOfTri(needle), Only(RuleId::TriAngle));
    RuleBook rules;
    rules.SetSeverity(RuleId::TriAngle, Severity::Off);
    EXPECT_EQ(RulesOf(ShapesOf(TriModel(needle), rules)), Only(RuleId::AspectRatio));
}

TEST(ShapeChecks, CornerIsConcaveFromNearlyStraightOn)
{
    // Node 2 in the side 1–3, off it by a little.
    const auto quad = [](double angle) {
        return Corners{{{0, 0, 0}, {1, -1.0 / std::tan(0.5 * angle * Degree), 0}, {2, 0, 0}, {1, 1, 0}}};
    };
    EXPECT_EQ(FindingOf(ShapesOf(QuadModel(quad(178.9))), RuleId::ConcaveQuad), nullptr);
    EXPECT_EQ(RulesOfQuad(quad(179.1)), Only(RuleId::ConcaveQuad));
    EXPECT_EQ(RulesOfQuad(quad(180.0)), Only(RuleId::ConcaveQuad));
    EXPECT_EQ(RulesOfQuad(quad(200.0)), Only(RuleId::ConcaveQuad));
}

TEST(ShapeChecks, FoldedQuadrilateralIsToldAsInvertedAlone)
{
    const auto dart = [](double c) { return Corners{{{0, 0, 0}, {2, 0, 0}, {c, c, 0}, {0, 2, 0}}}; };
    EXPECT_EQ(RulesOfQuad(dart(0.74)), Only(RuleId::ConcaveQuad));
    EXPECT_EQ(RulesOfQuad(dart(0.72)), Only(RuleId::InvertedQuad)); // its det J vanishes at c = 2/(1 + √3) = 0.732
}

TEST(ShapeChecks, FoldIsSeenWhicheverNodeItIsAt)
{
    const Corners dart = {{{0, 0, 0}, {2, 0, 0}, {0.5, 0.5, 0}, {0, 2, 0}}};
    for (int first = 0; first < QuadNodeCount; ++first) {
        Corners turned;
        for (int i = 0; i < QuadNodeCount; ++i) { turned[i] = dart[(first + i) % QuadNodeCount]; }
        EXPECT_EQ(RulesOfQuad(turned), Only(RuleId::InvertedQuad)) << first;
    }
}

TEST(ShapeChecks, BowTieIsToldAsSelfCrossingAlone)
{
    EXPECT_EQ(RulesOfQuad({{{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {1, 1, 0}}}), Only(RuleId::SelfCrossing));
    EXPECT_EQ(RulesOfQuad({{{0, 0, 0}, {3, 0, 0}, {0, 1, 0}, {1, 1, 0.1}}}), Only(RuleId::SelfCrossing));
}

TEST(ShapeChecks, ShellOnALineIsToldAsWithoutAreaAlone)
{
    EXPECT_EQ(RulesOfQuad({{{0, 0, 0}, {1, 1, 0}, {3, 3, 0}, {2, 2, 0}}}), Only(RuleId::ZeroArea));
    EXPECT_EQ(RulesOfTri({{{0, 0, 0}, {1, 1, 1}, {3, 3, 3}}}), Only(RuleId::ZeroArea));
}

TEST(ShapeChecks, ShellWithANodeTwiceIsToldAsCollapsedAlone)
{
    ModelStore model = QuadModel(Rectangle(2, 1));
    model.QuadConnectivity[0] = {0, 1, 2, 2};
    AddTri(model, {0, 1, 0});
    const std::vector<Finding> findings = ShapesOf(model);
    EXPECT_EQ(RulesOf(findings), Only(RuleId::CollapsedElement));
    EXPECT_EQ(findings[0].count, 2);
    EXPECT_EQ(findings[0].worst[0].detail, "node 2 twice");
}

TEST(ShapeChecks, ShellWithTwoNodesAtOnePlaceIsToldAsCollapsedAlone)
{
    const std::vector<Finding> findings = ShapesOf(QuadModel({{{0, 0, 0}, {2, 0, 0}, {2, 1, 0}, {2, 1, 0}}}));
    EXPECT_EQ(RulesOf(findings), Only(RuleId::CollapsedElement));
    EXPECT_EQ(findings[0].worst[0].detail, "nodes 2 and 3 at one place");
    EXPECT_EQ(RulesOfQuad({{{1, 1, 1}, {1, 1, 1}, {1, 1, 1}, {1, 1, 1}}}), Only(RuleId::CollapsedElement));
}

TEST(ShapeChecks, RuleThatIsOffDoesNotMakeOthersTellItsElements)
{
    RuleBook rules;
    rules.SetSeverity(RuleId::SelfCrossing, Severity::Off);
    EXPECT_EQ(RulesOf(ShapesOf(QuadModel({{{0, 0, 0}, {3, 0, 0}, {0, 1, 0}, {1, 1, 0}}}), rules)), None);
}

TEST(ShapeChecks, BeamWithoutLengthIsToldRelativeToTheModel)
{
    for (const double scale : {1e-3, 1.0, 1e6}) {
        ModelStore model = EmptyModel();
        AddNode(model, {0, 0, 0});
        AddNode(model, {scale, 0, 0});
        AddNode(model, {scale, 2e-9 * scale, 0});
        AddNode(model, {0.5e-9 * scale, 0, 0});
        AddBeam(model, {0, 1});
        AddBeam(model, {1, 2});
        AddBeam(model, {0, 3});
        AddBeam(model, {1, 1});
        const std::vector<Finding> findings = ShapesOf(model);
        EXPECT_EQ(RulesOf(findings), Only(RuleId::ZeroLengthBeam));
        ASSERT_EQ(findings[0].count, 2);
        EXPECT_EQ(findings[0].worst[0].number, 3);
        EXPECT_EQ(findings[0].worst[1].number, 2);
    }
}

TEST(ShapeChecks, FindingTellsValueCornerAndMiddleOfTheElement)
{
    const std::vector<Finding> findings = ShapesOf(QuadModel(Rhombus(60.0)));
    ASSERT_EQ(findings.size(), 1u);
    const Offender& worst = findings[0].worst[0];
    EXPECT_STREQ(worst.kind, "quad");
    EXPECT_EQ(worst.number, 0);
    EXPECT_NEAR(worst.value, 60.0, 1e-12);
    EXPECT_EQ(worst.detail.substr(0, 15), "corner at node ");
    EXPECT_NEAR(worst.place[0], 0.5 * (1.0 + std::sin(60.0 * Degree)), 1e-15);
    EXPECT_NEAR(worst.place[1], 0.25, 1e-15);
}

// A strip of 40,000 rectangles, several ranges of elements; every third is too long, every one of these a little more
// than that before it, but for the last ten thousand, which are equal.
TEST(ShapeChecks, FindingsDoNotDependOnTheNumberOfThreads)
{
    constexpr int count = 40000;
    ModelStore model = EmptyModel();
    double x = 0.0;
    for (int e = 0; e <= count; ++e) {
        AddNode(model, {x, 0, 0});
        AddNode(model, {x, 1, 0});
        x += e % 3 != 0 ? 1.0 : 11.0 + std::min(e, count - 10000);
    }
    for (int e = 0; e < count; ++e) { AddQuad(model, {2 * e, 2 * e + 2, 2 * e + 3, 2 * e + 1}); }

    const int threads = ThreadCount();
    SetThreadCount(1);
    const std::vector<Finding> one = ShapesOf(model);
    SetThreadCount(4);
    const std::vector<Finding> four = ShapesOf(model);
    SetThreadCount(threads);

    ASSERT_EQ(RulesOf(one), Only(RuleId::AspectRatio));
    ASSERT_EQ(RulesOf(four), Only(RuleId::AspectRatio));
    EXPECT_EQ(one[0].count, (count + 2) / 3);
    EXPECT_EQ(four[0].count, one[0].count);
    for (std::size_t k = 0; k < WorstKept; ++k) {
        EXPECT_EQ(four[0].worst[k].number, one[0].worst[k].number) << k;
        EXPECT_EQ(four[0].worst[k].value, one[0].worst[k].value) << k;
    }
}

} // namespace
} // namespace tarnvexo
