#include "solver/LeafOrdering.h"

#include "support/NodeGraphs.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <set>

namespace tarnvexo {
namespace {

using namespace test;

// The last nodes of a graph as halo of the others.
LeafGraph LeafOf(const NodeGraph& graph, int nodes)
{
    LeafGraph leaf;
    leaf.nodes = nodes;
    leaf.halo = graph.Size() - nodes;
    leaf.first.assign(graph.first.begin(), graph.first.begin() + nodes + 1);
    leaf.neighbours.assign(graph.neighbours.begin(), graph.neighbours.begin() + leaf.first.back());
    return leaf;
}

// By sets of neighbours.
std::vector<int> MinimumDegree(const NodeGraph& graph, int nodes)
{
    std::vector<std::set<int>> neighbours;
    for (int n = 0; n < graph.Size(); ++n) {
        neighbours.emplace_back(graph.neighbours.begin() + graph.first[n],
                                graph.neighbours.begin() + graph.first[n + 1]);
    }
    std::set<int> left;
    for (int n = 0; n < nodes; ++n) { left.insert(n); }
    std::vector<int> order;
    while (!left.empty()) {
        const int taken = *std::min_element(left.begin(), left.end(), [&](int a, int b) {
            return std::pair(neighbours[a].size(), a) < std::pair(neighbours[b].size(), b);
        });
        order.push_back(taken);
        left.erase(taken);
        for (const int a : neighbours[taken]) {
            neighbours[a].erase(taken);
            for (const int b : neighbours[taken]) {
                if (a != b) {
                    neighbours[a].insert(b);
                }
            }
        }
    }
    return order;
}

TEST(LeafOrdering, TakesTheNodeOfFewestNeighboursLeft)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        const int n = 20 + 7 * static_cast<int>(seed), nodes = n - static_cast<int>(seed) * 3;
        const NodeGraph graph = RandomGraph(n, 2 * n, seed);
        EXPECT_EQ(OrderLeaf(LeafOf(graph, nodes)), MinimumDegree(graph, nodes)) << "seed " << seed;
    }
}

// A chain whose one end is joined to four nodes around it starts at the other end.
TEST(LeafOrdering, CountsTheHaloInTheDegrees)
{
    const NodeGraph graph = GraphOf(8, {{0, 1}, {1, 2}, {2, 3}, {0, 4}, {0, 5}, {0, 6}, {0, 7}});
    EXPECT_EQ(OrderLeaf(LeafOf(graph, 4)), (std::vector<int>{3, 2, 1, 0}));
}

TEST(LeafOrdering, OfNothingIsEmpty)
{
    EXPECT_TRUE(OrderLeaf({0, 0, {0}, {}}).empty());
}

} // namespace
} // namespace tarnvexo
