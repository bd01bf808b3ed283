#include "solver/EliminationTree.h"

#include "support/NodeGraphs.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>

namespace tarnvexo {
namespace {

using namespace test;

// A grid of 3 x 3 nodes of which neighbours along the sides are connected; its middle column 1, 4, 7 separates the
// outer ones. The example of docs/theory/sparse-solver.md.
NodeGraph SmallGrid()
{
    return GraphOf(9, {{0, 1}, {1, 2}, {3, 4}, {4, 5}, {6, 7}, {7, 8}, {0, 3}, {3, 6}, {1, 4}, {4, 7}, {2, 5}, {5, 8}});
}

TEST(EliminationTree, OfAChainFromItsEndIsAPath)
{
    const PostorderedTree found = BuildEliminationTree(Chain(4), NaturalOrder(4));
    EXPECT_EQ(found.order.nodeAt, (std::vector<int>{0, 1, 2, 3}));
    EXPECT_EQ(found.tree.parent, (std::vector<int>{1, 2, 3, -1}));
    EXPECT_EQ(found.tree.below, (std::vector<int>{1, 1, 1, 0}));
}

TEST(EliminationTree, OfAStarIsFullWhenTheHubGoesFirst)
{
    const PostorderedTree found = BuildEliminationTree(Star(4), NaturalOrder(5));
    EXPECT_EQ(found.tree.parent, (std::vector<int>{1, 2, 3, 4, -1}));
    EXPECT_EQ(found.tree.below, (std::vector<int>{4, 3, 2, 1, 0}));
}

TEST(EliminationTree, OfAStarHasNoFillWhenTheHubGoesLast)
{
    const PostorderedTree found = BuildEliminationTree(Star(4), OrderFromSequence({1, 2, 3, 4, 0}));
    EXPECT_EQ(found.tree.parent, (std::vector<int>{4, 4, 4, 4, -1}));
    EXPECT_EQ(found.tree.below, (std::vector<int>{1, 1, 1, 1, 0}));
}

TEST(EliminationTree, OfASmallGridByNestedDissection)
{
    const PostorderedTree found = BuildEliminationTree(SmallGrid(), OrderFromSequence({0, 6, 3, 2, 8, 5, 1, 7, 4}));
    EXPECT_EQ(found.order.nodeAt, (std::vector<int>{0, 6, 3, 2, 8, 5, 1, 7, 4}));
    EXPECT_EQ(found.tree.parent, (std::vector<int>{2, 2, 6, 5, 5, 6, 7, 8, -1}));
    EXPECT_EQ(found.tree.below, (std::vector<int>{2, 2, 3, 2, 2, 3, 2, 1, 0}));
}

// The two halves by turns: postorder puts each together before the separator.
TEST(EliminationTree, PutsTheColumnsOfASubtreeTogether)
{
    const PostorderedTree found = BuildEliminationTree(SmallGrid(), OrderFromSequence({0, 2, 6, 8, 3, 5, 1, 7, 4}));
    EXPECT_EQ(found.order.nodeAt, (std::vector<int>{0, 6, 3, 2, 8, 5, 1, 7, 4}));
}

TEST(EliminationTree, HasEverySubtreeRightBeforeItsRoot)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        const int n = 10 + 3 * static_cast<int>(seed);
        const PostorderedTree found = BuildEliminationTree(RandomGraph(n, 3 * n / 2, seed), RandomOrder(n, seed));
        std::vector<int> size(static_cast<std::size_t>(n), 1), lowest(static_cast<std::size_t>(n));
        std::iota(lowest.begin(), lowest.end(), 0);
        for (int k = 0; k < n; ++k) {
            EXPECT_EQ(lowest[k], k - size[k] + 1) << "seed " << seed << ", column " << k;
            const int parent = found.tree.parent[k];
            if (parent >= 0) {
                ASSERT_GT(parent, k);
                size[parent] += size[k];
                lowest[parent] = std::min(lowest[parent], lowest[k]);
            }
        }
    }
}

TEST(EliminationTree, AgreesWithEliminationInATableOfAllPairs)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        const int n = 10 + 3 * static_cast<int>(seed);
        const NodeGraph graph = RandomGraph(n, (1 + static_cast<int>(seed) % 4) * n / 2, seed);
        const PostorderedTree found = BuildEliminationTree(graph, RandomOrder(n, seed));
        const EliminationTree expected = DenseElimination(graph, found.order);
        EXPECT_EQ(found.tree.parent, expected.parent) << "seed " << seed;
        EXPECT_EQ(found.tree.below, expected.below) << "seed " << seed;
    }
}

TEST(EliminationTree, PostorderLeavesTheFillAsItIs)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        const NodeGraph graph = RandomGraph(50, 90, seed);
        const EliminationOrder order = RandomOrder(50, seed);
        std::vector<int> before = DenseElimination(graph, order).below;
        std::vector<int> after = BuildEliminationTree(graph, order).tree.below;
        std::sort(before.begin(), before.end());
        std::sort(after.begin(), after.end());
        EXPECT_EQ(before, after) << "seed " << seed;
    }
}

TEST(EliminationTree, OfAGraphInPartsIsAForest)
{
    const NodeGraph graph = GraphOf(6, {{0, 2}, {2, 4}, {1, 3}, {3, 5}});
    const PostorderedTree found = BuildEliminationTree(graph, NaturalOrder(6));
    EXPECT_EQ(found.order.nodeAt, (std::vector<int>{0, 2, 4, 1, 3, 5}));
    EXPECT_EQ(found.tree.parent, (std::vector<int>{1, 2, -1, 4, 5, -1}));
    EXPECT_EQ(found.tree.below, (std::vector<int>{1, 1, 0, 1, 1, 0}));
}

TEST(EliminationTree, OfNodesWithoutEdgesHasOnlyRoots)
{
    const PostorderedTree found = BuildEliminationTree(GraphOf(3, {}), OrderFromSequence({2, 0, 1}));
    EXPECT_EQ(found.order.nodeAt, (std::vector<int>{2, 0, 1}));
    EXPECT_EQ(found.tree.parent, (std::vector<int>{-1, -1, -1}));
    EXPECT_EQ(found.tree.below, (std::vector<int>{0, 0, 0}));
}

TEST(EliminationTree, OfNothingIsEmpty)
{
    const PostorderedTree found = BuildEliminationTree(GraphOf(0, {}), NaturalOrder(0));
    EXPECT_TRUE(found.tree.parent.empty());
    EXPECT_EQ(CostOfFactor(found.tree).entries, 0.0);
}

TEST(OrderFromSequence, NumbersEveryNodeByItsPlace)
{
    EXPECT_EQ(OrderFromSequence({2, 0, 3, 1}).positionOf, (std::vector<int>{1, 3, 0, 2}));
}

// Full lower triangles of 6 and 12 equations: n(n + 1)/2 entries, 1² + ... + n² operations.
TEST(FactorCost, OfFullMatricesIsThatOfDenseCholesky)
{
    const FactorCost one = CostOfFactor(BuildEliminationTree(Chain(1), NaturalOrder(1)).tree);
    EXPECT_EQ(one.entries, 21.0);
    EXPECT_EQ(one.operations, 91.0);
    const FactorCost two = CostOfFactor(BuildEliminationTree(Chain(2), NaturalOrder(2)).tree);
    EXPECT_EQ(two.entries, 78.0);
    EXPECT_EQ(two.operations, 650.0);
}

} // namespace
} // namespace tarnvexo
