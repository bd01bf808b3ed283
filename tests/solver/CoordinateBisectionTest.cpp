#include "solver/CoordinateBisection.h"

#include "core/Parallel.h"
#include "solver/NodeOrdering.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

void ExpectPermutation(const NodeGraph& graph, const std::vector<Vector3>& places)
{
    const EliminationOrder order = OrderByBisection(graph, places);
    std::vector<int> sorted = order.nodeAt;
    std::sort(sorted.begin(), sorted.end());
    EXPECT_EQ(sorted, NaturalOrder(graph.Size()).nodeAt);
    EXPECT_EQ(order.positionOf, OrderFromSequence(order.nodeAt).positionOf);
}

double Operations(const NodeGraph& graph, const EliminationOrder& order)
{
    return CostOfFactor(BuildEliminationTree(graph, order).tree).operations;
}

TEST(CoordinateBisection, IsAPermutation)
{
    ExpectPermutation(GraphOf(0, {}), {});
    ExpectPermutation(GraphOf(1, {}), {{1.0, 2.0, 3.0}});
    ExpectPermutation(Chain(2), {{1.0, 2.0, 3.0}, {2.0, 2.0, 3.0}});
    ExpectPermutation(QuadGrid(20, 30), BrickPlaces(20, 30, 1));
    ExpectPermutation(Brick(9, 10, 11), Askew(BrickPlaces(9, 10, 11)));
    ExpectPermutation(Girder(12, 60), GirderPlaces(12, 60));
    ExpectPermutation(GraphOf(500, {}), BrickPlaces(5, 10, 10));
    ExpectPermutation(RandomGraph(1000, 4000, 7), BrickPlaces(10, 10, 10)); // edges that know nothing of places
}

TEST(CoordinateBisection, TakesPlacesOfAnyKind)
{
    const NodeGraph graph = QuadGrid(30, 30);
    std::vector<Vector3> places(900);
    ExpectPermutation(graph, places); // all at one point
    places[77] = {1.0, 0.0, 0.0};
    ExpectPermutation(graph, places); // but one
    for (int n = 0; n < 900; ++n) { places[n] = {1.0 * (n % 2), 0.0, 0.0}; }
    ExpectPermutation(graph, places); // at two points
    for (int n = 0; n < 900; ++n) { places[n] = {std::ldexp(1.0, n - 450), 0.0, 0.0}; }
    ExpectPermutation(graph, places); // graded beyond the range of bins
    for (int n = 0; n < 900; ++n) { places[n] = {4e-324 * n, 1e300 * n, -1e300}; }
    ExpectPermutation(graph, places); // at the ends of numbers
}

// The tree of a plate from its root: first the separator, one column after the other, then the two halves, which have
// no edges between them.
TEST(CoordinateBisection, PartsAPlateByOneLineOfNodes)
{
    const NodeGraph graph = QuadGrid(40, 64);
    const PostorderedTree found = BuildEliminationTree(graph, OrderByBisection(graph, BrickPlaces(40, 64, 1)));
    const int n = graph.Size();
    std::vector<int> size(n, 1), children(n, 0);
    for (int k = 0; k + 1 < n; ++k) {
        ASSERT_GT(found.tree.parent[k], k);
        size[found.tree.parent[k]] += size[k];
        ++children[found.tree.parent[k]];
    }
    int column = n - 1;
    while (children[column] == 1) { --column; }
    EXPECT_EQ(n - column, 40);
    EXPECT_EQ(children[column], 2);
    EXPECT_GT(size[column - 1], 0.4 * n);
    EXPECT_LT(size[column - 1], 0.6 * n);
}

TEST(CoordinateBisection, NeedsNoMoreOperationsOnAPlateThanMetis)
{
    const NodeGraph graph = QuadGrid(100, 100);
    EXPECT_LT(Operations(graph, OrderByBisection(graph, BrickPlaces(100, 100, 1))),
              1.02 * Operations(graph, OrderByMetis(graph)));
}

// Planes along x, y, z would need more than twice as many operations.
TEST(CoordinateBisection, FollowsTheLinesOfAMeshThatLiesAskew)
{
    const NodeGraph graph = QuadGrid(100, 100);
    const std::vector<Vector3> places = BrickPlaces(100, 100, 1);
    EXPECT_LT(Operations(graph, OrderByBisection(graph, Askew(places))),
              1.02 * Operations(graph, OrderByBisection(graph, places)));
}

TEST(CoordinateBisection, CutsALongGirderAcross)
{
    const NodeGraph graph = Girder(40, 200);
    EXPECT_LT(Operations(graph, OrderByBisection(graph, Askew(GirderPlaces(40, 200)))),
              1.05 * Operations(graph, OrderByMetis(graph)));
}

// 90,000 nodes, so that several parts are halved at the same time.
TEST(CoordinateBisection, IsTheSameForAnyNumberOfThreads)
{
    const NodeGraph graph = Girder(300, 300);
    const std::vector<Vector3> places = GirderPlaces(300, 300);
    SetThreadCount(1);
    const EliminationOrder one = OrderByBisection(graph, places);
    SetThreadCount(5);
    const EliminationOrder five = OrderByBisection(graph, places);
    SetThreadCount(0);
    EXPECT_EQ(one.nodeAt, five.nodeAt);
}

} // namespace
} // namespace tarnvexo
