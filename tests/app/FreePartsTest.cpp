// Structures that their supports leave free: where they are held while solving must not matter.
#include "app/FreeParts.h"

#include "inertia/MassOrthogonal.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"
#include "support/SolveSteps.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using namespace test;

// Plates that lie apart, 1 x 1, one element each; plate p has the nodes 4p ... 4p + 3.
ModelText Plates(int count)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.01);
    for (int p = 0; p < count; ++p) {
        const double x = 3.0 * p;
        for (const auto& [dx, y] : {std::pair(0.0, 0.0), {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}}) {
            text.Node(x + dx, y, 0.1 * p);
        }
        text.Quad({4 * p, 4 * p + 1, 4 * p + 2, 4 * p + 3});
    }
    return text;
}

// Corners of plate p pulled apart along x: no resultant.
void PullApart(ModelText& text, int p, double force)
{
    text.Force(4 * p, {-force, 0.0, 0.0, 0.0, 0.0, 0.0});
    text.Force(4 * p + 1, {force, 0.0, 0.0, 0.0, 0.0, 0.0});
}

std::string FailureOf(const ModelText& text)
{
    const TemporaryDirectory directory;
    std::ofstream("model.txt") << text.Text();
    SolveOptions options;
    options.modelFile = "model.txt";
    options.formats = {};
    try {
        Solve(options, {});
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.exitCode, ExitBadModel);
        return failure.what();
    }
    return "";
}

// Deviation of a displacement field from a rigid motion, beside its largest value: the field minus the motion that node
// 0 shows.
double DeviationFromRigidMotion(const ModelStore& model, const std::vector<double>& u)
{
    const Vector3 origin = model.NodeCoordinates[0], moved = {u[DX], u[DY], u[DZ]}, turned = {u[RX], u[RY], u[RZ]};
    double deviation = 0.0, largest = 0.0;
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* d = &u[static_cast<std::size_t>(DofsPerNode) * n];
        const Vector3 rigid = moved + Cross(turned, model.NodeCoordinates[n] - origin);
        for (int k = 0; k < 3; ++k) {
            deviation = std::max({deviation, std::fabs(d[k] - rigid[k]), std::fabs(d[k + RX] - turned[k])});
            largest = std::max({largest, std::fabs(d[k]), std::fabs(d[k + RX])});
        }
    }
    return deviation / largest;
}

// Nodes in a random order: the first that serve become holds.
std::vector<int> RandomNodes(int nodes, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<int> list(static_cast<std::size_t>(nodes));
    for (int n = 0; n < nodes; ++n) { list[n] = n; }
    for (std::size_t k = list.size(); k > 1; --k) { std::swap(list[k - 1], list[generator() % k]); }
    return {list.begin(), list.begin() + 6};
}

// A hold near another one turns the structure about a short lever: its round-off is that much larger.
constexpr double HoldRoundOff = 1e-9;

TEST(FreeParts, HaveTheSameStressesAndDisplacementsWhereverTheyAreHeld)
{
    for (unsigned seed = 0; seed < 6; ++seed) {
        const ModelText text = RandomModel(seed, Supports::None, Quads::Flat);
        const SolveSteps best = RunSolveSteps(text, SolverKind::Sparse);
        ASSERT_EQ(best.free.motions[0].free.size(), 6u);
        std::vector<std::vector<int>> different = {best.free.motions[0].holds};
        for (unsigned holding = 0; holding < 10; ++holding) {
            const SolveSteps other =
                RunSolveSteps(text, SolverKind::Sparse, RandomNodes(best.model.NPOIN, 100 * seed + holding));
            different.push_back(other.free.motions[0].holds);
            EXPECT_LT(RelativeDifference(ShellStresses(best.model), ShellStresses(other.model)), HoldRoundOff)
                << "seed " << seed << ", holding " << holding;
            EXPECT_LT(RelativeDifference(best.model.GlobalDisplacement, other.model.GlobalDisplacement), HoldRoundOff)
                << "seed " << seed << ", holding " << holding;
        }
        std::sort(different.begin(), different.end());
        EXPECT_GT(std::unique(different.begin(), different.end()) - different.begin(), 8) << "seed " << seed;
    }
}

TEST(FreeParts, DifferByARigidMotionFromHowTheyWereHeld)
{
    for (unsigned seed = 0; seed < 6; ++seed) {
        const SolveSteps run = RunSolveSteps(RandomModel(seed, Supports::None, Quads::Flat), SolverKind::Sparse);
        std::vector<double> difference = run.held;
        for (std::size_t i = 0; i < difference.size(); ++i) { difference[i] -= run.model.GlobalDisplacement[i]; }
        EXPECT_LT(DeviationFromRigidMotion(run.model, difference), 1e-12) << "seed " << seed;
        EXPECT_GT(DeviationFromRigidMotion(run.model, run.held), 1e-3) << "seed " << seed; // the measure can see
    }
}

TEST(FreeParts, HaveNoMomentum)
{
    for (unsigned seed = 0; seed < 6; ++seed) {
        const SolveSteps run = RunSolveSteps(RandomModel(seed, Supports::None, Quads::Flat), SolverKind::Sparse);
        const auto products = [&](const std::vector<double>& u) {
            return MassProducts(run.model, run.inertia, run.free.parts, run.free.motions, u)[0];
        };
        const MotionVector before = products(run.held), after = products(run.model.GlobalDisplacement);
        double scale = 0.0;
        for (const double momentum : before) { scale = std::max(scale, std::fabs(momentum)); }
        for (const double momentum : after) { EXPECT_NEAR(momentum, 0.0, 1e-11 * scale) << "seed " << seed; }
    }
}

// k = 0 ... 6 directions of a 3-2-1 support: 6 − k motions stay free, and the stresses are those of the free structure.
TEST(FreeParts, OnTooFewSupportsAreStressedAsWithoutThem)
{
    const std::pair<int, Dof> supports[] = {{0, DX}, {0, DY}, {0, DZ}, {1, DY}, {1, DZ}, {4, DZ}};
    std::vector<double> stressesWithout;
    for (int k = 0; k <= 6; ++k) {
        ModelText text;
        text.Material(2.1e11, 0.3, 7850.0);
        text.Thickness(0.01);
        for (const Vector3& p : {Vector3{0, 0, 0}, {2, 0, 0}, {2.1, 1, 0}, {0, 1.2, 0}, {1, 2, 0.3}}) {
            text.Node(p[0], p[1], p[2]);
        }
        text.Quad({0, 1, 2, 3});
        text.Tri({3, 2, 4});
        text.Force(2, {10.0, -20.0, 300.0, 1.0, 2.0, 3.0});
        std::array<int, 6> flags[5] = {};
        for (int s = 0; s < k; ++s) { flags[supports[s].first][supports[s].second] = 1; }
        for (int n = 0; n < 5; ++n) { text.Restrain(n, flags[n]); }
        const SolveSteps run = RunSolveSteps(text, SolverKind::Skyline);
        EXPECT_EQ(run.free.motions[0].free.size(), static_cast<std::size_t>(6 - k));
        EXPECT_EQ(run.free.motions[0].holds.size(), static_cast<std::size_t>(6 - k));
        if (k == 0) {
            stressesWithout = ShellStresses(run.model);
        }
        EXPECT_LT(RelativeDifference(stressesWithout, ShellStresses(run.model)), HoldRoundOff) << k << " supports";
        for (int s = 0; s < k; ++s) { EXPECT_EQ(run.held[DofsPerNode * supports[s].first + supports[s].second], 0.0); }
    }
}

TEST(FreeParts, ThatAreBalancedEachByItselfAreSolved)
{
    ModelText text = Plates(2);
    PullApart(text, 0, 1000.0);
    PullApart(text, 1, 2000.0);
    const SolveSteps run = RunSolveSteps(text, SolverKind::Skyline);
    ASSERT_EQ(run.free.parts.count, 2);
    const std::vector<double>& u = run.model.GlobalDisplacement;
    const double first = u[DofsPerNode * 1 + DX] - u[DofsPerNode * 0 + DX];
    const double second = u[DofsPerNode * 5 + DX] - u[DofsPerNode * 4 + DX];
    EXPECT_GT(first, 0.0);
    EXPECT_NEAR(second, 2.0 * first, 1e-12 * second);
    EXPECT_EQ(FailureOf(text), "");
}

TEST(FreeParts, BesideASupportedOneAreAllRefusedByName)
{
    ModelText text = Plates(3);
    PullApart(text, 0, 1000.0);
    text.Restrain(0, {1, 1, 1, 1, 1, 1});
    const std::string failure = FailureOf(text);
    EXPECT_EQ(
        failure,
        "model.txt: error: parts that are free while another one is supported: 2 [floating-part]\n"
        "  there:    part 2 at (3.5, 0.5, 0.1), 4 nodes, 1 element, from node 4 on; free to move and rotate in every "
        "way; nearest to another part is node 4, 2.0025 from node 1 of part 1\n"
        "            part 3 at (6.5, 0.5, 0.2), 4 nodes, 1 element, from node 8 on; free to move and rotate in every "
        "way; nearest to another part is node 8, 2.0025 from node 5 of part 2\n"
        "  in all:   of 3 parts\n"
        "  expected: none\n"
        "  to do:    merge nodes that stand at one place, connect the part, support it, or take it out");
}

// The forces cancel in the whole model: no inertia relief, but plate 1 is pushed one way and plate 2 the other.
TEST(FreeParts, OfWhichOnlyTheTotalIsInBalanceAreAllRefused)
{
    ModelText text = Plates(2);
    for (int n = 0; n < 4; ++n) { text.Force(n, {100.0, 0.0, 0.0, 0.0, 0.0, 0.0}); }
    for (int n = 4; n < 8; ++n) { text.Force(n, {-100.0, 0.0, 0.0, 0.0, 0.0, 0.0}); }
    const std::string failure = FailureOf(text);
    EXPECT_EQ(failure.find("model.txt: error: parts whose loads the inertia of the whole structure does not balance: 2 "
                           "[unbalanced-part]\n  there:    part 1 at "),
              0u)
        << failure;
    EXPECT_NE(failure.find("\n            part 2 at "), std::string::npos) << failure;
    EXPECT_NE(failure.find("; a push of "), std::string::npos) << failure;
    EXPECT_NE(failure.find("\n  to do:    connect the part with the others"), std::string::npos) << failure;
}

// A node without elements is in no part: it is held, stays where it is, and is told of when it carries a load.
TEST(FreeParts, LeaveNodesWithoutElementsAlone)
{
    ModelText text = Plates(1);
    const int loose = text.Node(5.0, 5.0, 5.0);
    PullApart(text, 0, 1000.0);
    for (const SolverKind kind : {SolverKind::Sparse, SolverKind::Skyline}) {
        const SolveSteps run = RunSolveSteps(text, kind);
        EXPECT_EQ(run.free.parts.count, 1);
        for (int k = 0; k < DofsPerNode; ++k) { EXPECT_EQ(run.model.GlobalDisplacement[DofsPerNode * loose + k], 0.0); }
    }
}

} // namespace
} // namespace tarnvexo
