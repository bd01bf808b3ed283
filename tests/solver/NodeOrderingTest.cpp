#include "solver/NodeOrdering.h"

#include "core/Parallel.h"
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

INSTANTIATE_TEST_SUITE_P(Both, FillReducingOrder,
                         testing::Values(Method{"Metis", OrderByMetis}, Method{"Amd", OrderByAmd}),
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

TEST_P(FillReducingOrder, HasLessFillThanTheNumbersOfTheGrid)
{
    const NodeGraph graph = QuadGrid(30, 30);
    EXPECT_LT(CostOf(graph).operations,
              0.6 * CostOfFactor(BuildEliminationTree(graph, NaturalOrder(900)).tree).operations);
}

TEST(NodeOrdering, TakesMetisForAPlate)
{
    const NodeGraph graph = QuadGrid(150, 150);
    const ChosenOrder chosen = OrderNodes(graph);
    EXPECT_EQ(chosen.method, "METIS");
    EXPECT_LT(1.2 * chosen.cost.operations,
              CostOfFactor(BuildEliminationTree(graph, OrderByAmd(graph)).tree).operations);
}

TEST(NodeOrdering, TakesAmdForALongGirder)
{
    const NodeGraph graph = Girder(16, 500);
    const ChosenOrder chosen = OrderNodes(graph);
    EXPECT_EQ(chosen.method, "AMD");
    EXPECT_LT(1.2 * chosen.cost.operations,
              CostOfFactor(BuildEliminationTree(graph, OrderByMetis(graph)).tree).operations);
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
    SetThreadCount(1);
    const ChosenOrder one = OrderNodes(graph);
    SetThreadCount(2);
    const ChosenOrder two = OrderNodes(graph);
    SetThreadCount(0);
    EXPECT_EQ(one.method, two.method);
    EXPECT_EQ(one.order.nodeAt, two.order.nodeAt);
}

} // namespace
} // namespace tarnvexo
