// Models with elements of next to no stiffness, through the program's own solver: what the run says about them.
#include "app/Mechanisms.h"

#include "app/FreeParts.h"
#include "app/RunFailure.h"
#include "app/StiffnessSystem.h"
#include "core/Parallel.h"
#include "support/ModelText.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

// Folded strip of quadrilaterals along x, clamped at x = 0; element e stands between x = e and e + 1 and has the
// material 1 and the thickness 1 where it is soft, else 0 and 0.
ModelText Strip(int elements, const std::vector<int>& soft, double softE, double softThickness = 0.2)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Material(softE, 0.3, 7850.0);
    text.Thickness(0.2);
    text.Thickness(softThickness);
    for (int i = 0; i <= elements; ++i) {
        text.Node(i, 0.0, 0.1 * (i % 2));
        text.Node(i, 1.0, 0.1 * (i % 2));
    }
    for (int e = 0; e < elements; ++e) {
        const int property = std::find(soft.begin(), soft.end(), e) != soft.end() ? 1 : 0;
        text.Quad({2 * e, 2 * e + 2, 2 * e + 3, 2 * e + 1}, property, property);
    }
    text.Restrain(0);
    text.Restrain(1);
    return text;
}

struct Outcome {
    int exitCode = ExitGood;
    std::string text; // of the failure, or the warning

    bool Has(const std::string& part) const { return text.find(part) != std::string::npos; }
};

class Mechanisms : public testing::TestWithParam<SolverKind> {
protected:
    static Outcome Factorise(const ModelText& text)
    {
        ModelStore model = StoreOf(text);
        model.EquationCount = DofsPerNode * model.NPOIN;
        StiffnessSystem system(model, GetParam());
        system.Order();
        system.Analyse("model.txt");
        system.Assemble();
        try {
            system.Factorise(FindFreeParts(model).isHeld, "model.txt");
        } catch (const RunFailure& failure) {
            return {failure.exitCode, failure.what()};
        }
        return {ExitGood, system.Warning()};
    }
};

INSTANTIATE_TEST_SUITE_P(All, Mechanisms, testing::Values(SolverKind::Sparse, SolverKind::Cholmod, SolverKind::Skyline),
                         [](const auto& info) -> std::string {
                             return info.param == SolverKind::Sparse    ? "Sparse"
                                    : info.param == SolverKind::Cholmod ? "Cholmod"
                                                                        : "Skyline";
                         });

TEST_P(Mechanisms, AreNoneInASoundModel)
{
    const Outcome outcome = Factorise(Strip(6, {}, 1.0));
    EXPECT_EQ(outcome.exitCode, ExitGood);
    EXPECT_EQ(outcome.text, "");
}

TEST_P(Mechanisms, AreTracedToTheElementThatGivesWay)
{
    const Outcome outcome = Factorise(Strip(4, {1}, 1e-15));
    EXPECT_EQ(outcome.exitCode, ExitNumerical);
    EXPECT_EQ(outcome.text.find("model.txt: error: the stiffness is not positive definite: 6 motions meet no "
                                "resistance\n  motion 1: "),
              0u)
        << outcome.text;
    EXPECT_TRUE(outcome.Has("\n    cause:    four-node shell 1 gives way: its E=1e-15 is next to nothing beside "
                            "2.1e+11 there\n              5 more motions have this cause\n"))
        << outcome.text;
    EXPECT_FALSE(outcome.Has("\n  motion 2:")) << outcome.text;
}

// Two strips in one model, each broken at its own place.
TEST_P(Mechanisms, OfSeparatePlacesAreToldApartInOneRun)
{
    ModelText text = Strip(3, {1}, 1e-15);
    for (int i = 0; i <= 3; ++i) {
        text.Node(10.0, i, 0.1 * (i % 2));
        text.Node(11.0, i, 0.1 * (i % 2));
    }
    for (int e = 0; e < 3; ++e) { text.Quad({8 + 2 * e, 10 + 2 * e, 11 + 2 * e, 9 + 2 * e}, e == 1 ? 1 : 0); }
    text.Restrain(8);
    text.Restrain(9);
    const Outcome outcome = Factorise(text);
    EXPECT_TRUE(outcome.Has(": 12 motions meet no resistance\n")) << outcome.text;
    EXPECT_TRUE(outcome.Has("\n    cause:    four-node shell 1 gives way: ")) << outcome.text;
    EXPECT_TRUE(outcome.Has("\n    cause:    four-node shell 4 gives way: ")) << outcome.text;
    EXPECT_FALSE(outcome.Has("\n  motion 3:")) << outcome.text; // that would mix them
}

// Plates that hang on a beam of next to no stiffness each: the pivots that show it are fewer than the motions.
TEST_P(Mechanisms, OfManyLooseParts)
{
    ModelText text = Strip(12, {}, 1e-6, 0.01);
    text.CSection(0.02, 0.002);
    constexpr int side = 5; // nodes
    for (int k = 0; k < 3; ++k) {
        int node[side][side];
        for (int i = 0; i < side; ++i) {
            for (int j = 0; j < side; ++j) { node[i][j] = text.Node(4.0 * k + 0.1 * i, 0.1 * j, 3.0); }
        }
        for (int i = 0; i + 1 < side; ++i) {
            for (int j = 0; j + 1 < side; ++j) {
                text.Quad({node[i][j], node[i + 1][j], node[i + 1][j + 1], node[i][j + 1]}, 0, 1);
            }
        }
        text.Beam({8 * k + 2, node[2][2]}, {1.0, 0.0, 0.0}, 1, 2, 0);
    }
    EXPECT_TRUE(Factorise(text).Has(": 18 motions meet no resistance\n")) << Factorise(text).text;
}

TEST_P(Mechanisms, OfThinShellsAmongTheirLikeNameTheThickness)
{
    ModelText text = Strip(8, {4, 5, 6, 7}, 2.1e11, 1e-12);
    const Outcome outcome = Factorise(text);
    EXPECT_FALSE(outcome.Has("needle")) << outcome.text;
    EXPECT_TRUE(outcome.Has(" its thickness 1e-12 is next to nothing beside 0.2 ")) << outcome.text;
}

// Only the sparse engine goes on behind the first pivot that is not positive.
TEST_P(Mechanisms, OfASingularStiffnessEndWithTheSignsOfThePivots)
{
    const Outcome outcome = Factorise(Strip(4, {1}, 1e-15));
    EXPECT_EQ(outcome.Has("\n  pivots:   "), GetParam() == SolverKind::Sparse) << outcome.text;
    EXPECT_EQ(outcome.Has(" zero or no number, of 60"), GetParam() == SolverKind::Sparse) << outcome.text;
}

TEST_P(Mechanisms, OfABeamWithoutSectionNameItsConstants)
{
    ModelText text = Strip(4, {}, 1.0);
    text.CSection(1e-8, 1e-9);
    const int a = text.Node(6.0, 0.0, 0.0), b = text.Node(7.0, 0.0, 0.0);
    text.Quad({a, b, text.Node(7.0, 1.0, 0.0), text.Node(6.0, 1.0, 0.0)});
    text.Beam({8, a}, {0.0, 0.0, 1.0}, 0, 2, 0);
    const Outcome outcome = Factorise(text);
    EXPECT_EQ(outcome.exitCode, ExitNumerical);
    EXPECT_TRUE(outcome.Has("cause:    beam 0 gives way: its section has A=")) << outcome.text;
    EXPECT_FALSE(outcome.Has("cause:    four-node shell")) << outcome.text;
}

TEST_P(Mechanisms, OfANeedleNameItsShape)
{
    ModelText text = Strip(4, {}, 1.0);
    const int a = text.Node(5.0, 0.5, 0.0);
    text.Tri({8, 9, a});
    const int b = text.Node(5.0 + 1e-6, 0.5, 0.0);
    text.Tri({8, a, b});
    const Outcome outcome = Factorise(text);
    EXPECT_EQ(outcome.exitCode, ExitNumerical);
    EXPECT_TRUE(outcome.Has("; three-node shell 1: it is a needle, with sides from 1e-06 to 1.")) << outcome.text;
}

// Stiffness 10⁻¹⁰ of the neighbours' is there, and digits are lost: a warning, and the run goes on.
TEST_P(Mechanisms, ThatAreOnlySoftAreWarnings)
{
    const Outcome outcome = Factorise(Strip(4, {1}, 30.0));
    EXPECT_EQ(outcome.exitCode, ExitGood);
    EXPECT_EQ(outcome.text.find("model.txt: warning: the stiffness is nearly singular: "), 0u) << outcome.text;
    EXPECT_TRUE(outcome.Has(" of the stiffness there resists\n")) << outcome.text;
    EXPECT_TRUE(outcome.Has("four-node shell 1 gives way: its E=30 is next to nothing beside 2.1e+11 there"))
        << outcome.text;
}

// A foil's bending stiffness is none, though its membrane's is only soft.
TEST_P(Mechanisms, HideBehindNoSoftMotions)
{
    const Outcome outcome = Factorise(Strip(4, {1}, 2.1e11, 1e-12));
    EXPECT_EQ(outcome.exitCode, ExitNumerical);
    EXPECT_TRUE(outcome.Has("four-node shell 1 gives way: its thickness 1e-12 is next to nothing beside 0.2 there"))
        << outcome.text;
}

// After a warning the factor is that of the stiffness again.
TEST_P(Mechanisms, ThatAreOnlySoftLeaveTheSolutionAsItIs)
{
    ModelStore model = StoreOf(Strip(4, {1}, 30.0));
    model.EquationCount = DofsPerNode * model.NPOIN;
    std::vector<double> load(static_cast<std::size_t>(model.EquationCount), 0.0);
    load[DofsPerNode * 2 + DY] = 1000.0; // on the sound side
    StiffnessSystem system(model, GetParam());
    system.Order();
    system.Analyse("model.txt");
    system.Assemble();
    system.Factorise(FindFreeParts(model).isHeld, "model.txt");
    system.Solve(load);
    EXPECT_NE(system.Warning(), "");
    EXPECT_LT(system.Report().relativeResidual, 1e-14);
}

// Twelve strips of their own, each with a needle at its end.
TEST_P(Mechanisms, OfMoreThanTenCausesAreCounted)
{
    ModelText text = Strip(1, {}, 1.0);
    for (int strip = 0; strip < 12; ++strip) {
        const double y = 3.0 * (strip + 1);
        const int first = text.Node(0.0, y, 0.0);
        for (const Vector3& place : {Vector3{1.0, y, 0.0},
                                     {1.0, y + 1.0, 0.0},
                                     {0.0, y + 1.0, 0.0},
                                     {2.0, y + 0.5, 0.0},
                                     {2.0 + 1e-6, y + 0.5, 0.0}}) {
            text.Node(place[0], place[1], place[2]);
        }
        text.Quad({first, first + 1, first + 2, first + 3});
        text.Tri({first + 1, first + 4, first + 2});
        text.Tri({first + 1, first + 5, first + 4});
        text.Restrain(first);
    }
    const Outcome outcome = Factorise(text);
    EXPECT_TRUE(outcome.Has(": 12 motions meet no resistance\n")) << outcome.text;
    EXPECT_TRUE(outcome.Has("\n  motion 10: ")) << outcome.text;
    EXPECT_FALSE(outcome.Has("\n  motion 11: ")) << outcome.text;
    EXPECT_TRUE(outcome.Has("\n  and 2 more of other causes\n  expected: ")) << outcome.text;
}

// The first words of the message about motions of these λ, all of one node in one direction.
std::string HeadlineOf(const std::vector<double>& lambdas, bool hasFailed, bool mayBeMore = false)
{
    const ModelStore model = StoreOf(Strip(1, {}, 1.0));
    const std::vector<double> stiffness = StiffnessOfDirections(model);
    SoftMotions found;
    found.mayBeMore = mayBeMore;
    for (const double lambda : lambdas) {
        SoftMotion motion = {lambda, std::vector<double>(stiffness.size(), 0.0)};
        motion.motion[DofsPerNode * 2 + DZ] = 1.0;
        found.motions.push_back(motion);
    }
    const std::string text = MechanismText(model, found, stiffness, hasFailed, "m");
    return text.substr(0, text.find('\n'));
}

TEST(MechanismText, SaysHowManyMotionsMeetNoResistanceAndHowManyNextToNone)
{
    const std::string error = "m: error: the stiffness is not positive definite: ";
    const std::string warning = "m: warning: the stiffness is nearly singular: ";
    EXPECT_EQ(HeadlineOf({1e-16}, true), error + "1 motion meets no resistance");
    EXPECT_EQ(HeadlineOf({1e-16, -1e-3}, false), error + "2 motions meet no resistance");
    EXPECT_EQ(HeadlineOf({1e-16, 1e-12, 1e-12}, false), error + "1 motion meets no resistance, 2 next to none");
    EXPECT_EQ(HeadlineOf({1e-12}, true), error + "1 motion meets next to no resistance");
    EXPECT_EQ(HeadlineOf({1e-12, 1e-11}, false), warning + "2 motions meet next to no resistance");
    EXPECT_EQ(HeadlineOf({0.0, 0.0}, true, true), error + "at least 2 motions meet no resistance");
}

// Round-off hides the pivot of a hinge the better the larger the plates are that it joins.
TEST_P(Mechanisms, BetweenLargePlatesAreFound)
{
    constexpr int n = 40;
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.1);
    text.Thickness(1e-12);
    for (int i = 0; i <= n; ++i) {
        for (int j = 0; j <= n; ++j) { text.Node(i, j, 0.2 * (i % 2)); }
    }
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) {
            const int a = (n + 1) * i + j, b = a + n + 1;
            text.Quad({a, b, b + 1, a + 1}, 0, i == n / 2 ? 1 : 0);
        }
    }
    const Outcome outcome = Factorise(text);
    EXPECT_EQ(outcome.exitCode, ExitNumerical);
    EXPECT_TRUE(outcome.Has(" and 32 more give way; ")) << outcome.text;
    EXPECT_TRUE(outcome.Has(": its thickness 1e-12 is next to nothing beside 0.1 there")) << outcome.text;
}

TEST_P(Mechanisms, DoNotDependOnTheNumberOfThreads)
{
    const int before = ThreadCount();
    SetThreadCount(1);
    const std::string one = Factorise(Strip(8, {2, 5}, 1e-15)).text;
    SetThreadCount(3);
    const std::string three = Factorise(Strip(8, {2, 5}, 1e-15)).text;
    SetThreadCount(before);
    EXPECT_NE(one, "");
    EXPECT_EQ(one, three);
}

} // namespace
} // namespace tarnvexo
