#include "solver/NodeOrdering.h"

#include "core/Parallel.h"
#include "solver/CoordinateBisection.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

namespace tarnvexo {
namespace {

using namespace test;

struct Method {
    const char* name;
    EliminationOrder (*order)(const NodeGraph&);
};

class FillReducingOrder : public testing::TestWithParam<Method> {
protected:
    // Every node once, and positionOf the inverse of nodeAt.
    static void ExpectPermutation(const NodeGraph& graph)
    {
        const EliminationOrder order = GetParam().order(graph);
        EXPECT_EQ(static_cast<int>(order.nodeAt.size()), graph.Size());
        std::vector<int> sorted = order.nodeAt;
        std::sort(sorted.begin(), sorted.end());
        EXPECT_EQ(sorted, NaturalOrder(graph.Size()).nodeAt);
        EXPECT_EQ(order.positionOf, OrderFromSequence(order.nodeAt).positionOf);
    }
    static FactorCost CostOf(const NodeGraph& graph)
    {
        return CostOfFactor(BuildEliminationTree(graph, GetParam().order(graph)).tree);
    }
};

// All nodes at one place, so by their numbers.
EliminationOrder OrderByNumber(const NodeGraph& graph)
{
    return OrderByBisection(graph, std::vector<Vector3>(graph.first.size() - 1));
}

INSTANTIATE_TEST_SUITE_P(All, FillReducingOrder,
                         testing::Values(Method{"Metis", OrderByMetis}, Method{"Amd", OrderByAmd},
                                         Method{"BisectionByNumber", OrderByNumber}),
                         [](const auto& info) { return info.param.name; });

TEST_P(FillReducingOrder, IsAPermutation)
{
    ExpectPermutation(QuadGrid(20, 30));
    ExpectPermutation(Girder(12, 40));
    ExpectPermutation(RandomGraph(300, 500, 7));
}

TEST_P(FillReducingOrder, TakesSingleNodesPairsAndNothing)
{
    ExpectPermutation(GraphOf(0, {}));
    ExpectPermutation(GraphOf(1, {}));
    ExpectPermutation(Chain(2));
}

TEST_P(FillReducingOrder, TakesNodesWithoutEdges)
{
    ExpectPermutation(GraphOf(17, {}));
    ExpectPermutation(GraphOf(300, {{5, 250}, {250, 17}}));
}

TEST_P(FillReducingOrder, TakesGraphsInSeveralParts)
{
    std::vector<Edge> edges;
    for (int part = 0; part < 40; ++part) {
        for (int n = 1; n < 10; ++n) { edges.push_back({10 * part + n - 1, 10 * part + n}); }
    }
    ExpectPermutation(GraphOf(400, edges));
    EXPECT_LT(CostOf(GraphOf(400, edges)).entries, 40 * 1.5 * (9 * 57.0 + 21.0)); // chains from their ends: no fill
}

TEST_P(FillReducingOrder, KeepsTheHubOfALargeStarForTheEnd)
{
    const int spokes = 5000;
    ExpectPermutation(Star(spokes));
    EXPECT_EQ(CostOf(Star(spokes)).entries, spokes * (78.0 - 21.0) + 21.0); // columns of 12 ... 7 entries, then 6 ... 1
}

TEST_P(FillReducingOrder, IsTheSameEveryTime)
{
    const NodeGraph graph = Girder(16, 60);
    EXPECT_EQ(GetParam().order(graph).nodeAt, GetParam().order(graph).nodeAt);
}

TEST(NodeOrdering, HasLessFillByAnyMethodThanTheNumbersOfTheGrid)
{
    const NodeGraph graph = QuadGrid(30, 30);
    const double natural = CostOfFactor(BuildEliminationTree(graph, NaturalOrder(900)).tree).operations;
    for (const EliminationOrder& order :
         {OrderByMetis(graph), OrderByAmd(graph), OrderByBisection(graph, BrickPlaces(30, 30, 1))}) {
        EXPECT_LT(CostOfFactor(BuildEliminationTree(graph, order).tree).operations, 0.6 * natural);
    }
}

TEST(NodeOrdering, TakesBisectionForAPlate)
{
    const NodeGraph graph = QuadGrid(150, 150);
    const ChosenOrder chosen = OrderNodes(graph, BrickPlaces(150, 150, 1));
    EXPECT_EQ(chosen.method, "bisection");
    EXPECT_LT(1.2 * chosen.cost.operations,
              CostOfFactor(BuildEliminationTree(graph, OrderByAmd(graph)).tree).operations);
}

TEST(NodeOrdering, TakesAmdForALongGirder)
{
    const NodeGraph graph = Girder(16, 500);
    const ChosenOrder chosen = OrderNodes(graph, GirderPlaces(16, 500));
    EXPECT_EQ(chosen.method, "AMD");
    EXPECT_LT(1.2 * chosen.cost.operations,
              CostOfFactor(BuildEliminationTree(graph, OrderByMetis(graph)).tree).operations);
}

// A block with places that tell nothing: bisection finds no good separators, AMD has none.
TEST(NodeOrdering, TakesMetisForASolidBodyWithoutPlaces)
{
    const NodeGraph graph = Brick(20, 20, 20);
    std::vector<Vector3> places = BrickPlaces(20, 20, 20);
    const std::vector<int> shuffled = RandomOrder(8000, 5).nodeAt;
    for (std::size_t n = 0; n < places.size(); ++n) { places[n] = {1.0 * shuffled[n], 0.0, 0.0}; }
    const ChosenOrder chosen = OrderNodes(graph, places);
    EXPECT_EQ(chosen.method, "METIS");
    EXPECT_LT(chosen.cost.operations, CostOfFactor(BuildEliminationTree(graph, OrderByAmd(graph)).tree).operations);
}

TEST(NodeOrdering, LeavesMetisOutWhereTheFactorIsDoneSooner)
{
    EXPECT_FALSE(IsMetisWorthwhile(100000, {0.0, 1.2e11})); // plate: 0.07 s to gain, 0.6 s to pay
    EXPECT_TRUE(IsMetisWorthwhile(100000, {0.0, 4.9e12}));  // space frame: 2.7 s to gain
    EXPECT_FALSE(IsMetisWorthwhile(0, {}));
}

TEST(NodeOrdering, GivesTreeAndCostOfItsOrder)
{
    const NodeGraph graph = RandomGraph(120, 300, 3);
    const ChosenOrder chosen = OrderNodes(graph);
    const EliminationTree expected = DenseElimination(graph, chosen.order);
    EXPECT_EQ(chosen.tree.parent, expected.parent);
    EXPECT_EQ(chosen.tree.below, expected.below);
    EXPECT_EQ(chosen.cost.entries, CostOfFactor(expected).entries);
    EXPECT_EQ(chosen.cost.operations, CostOfFactor(expected).operations);
}

TEST(NodeOrdering, IsTheSameForAnyNumberOfThreads)
{
    const NodeGraph graph = Girder(16, 100);
    const std::vector<Vector3> places = GirderPlaces(16, 100);
    SetThreadCount(1);
    const ChosenOrder one = OrderNodes(graph, places);
    SetThreadCount(3);
    const ChosenOrder two = OrderNodes(graph, places);
    SetThreadCount(0);
    EXPECT_EQ(one.method, two.method);
    EXPECT_EQ(one.order.nodeAt, two.order.nodeAt);
}

} // namespace
} // namespace tarnvexo
