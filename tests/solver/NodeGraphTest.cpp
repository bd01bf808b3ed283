#include "solver/NodeGraph.h"

#include "core/Parallel.h"
#include "support/MeshBuilder.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(NodeGraph, HasEveryNeighbourOnceAndInOrder)
{
    const NodeGraph graph = BuildNodeGraph(test::StoreOf(test::OneOfEachKind()));
    EXPECT_EQ(graph.first, (std::vector<int>{0, 3, 7, 11, 14, 16}));
    EXPECT_EQ(graph.neighbours, (std::vector<int>{1, 2, 3, 0, 2, 3, 4, 0, 1, 3, 4, 0, 1, 2, 1, 2}));
}

TEST(NodeGraph, OfAnElementThatHasANodeTwiceHasNoLoop)
{
    test::ModelText text = test::OneOfEachKind();
    text.Quad({3, 3, 0, 0});
    const NodeGraph graph = BuildNodeGraph(test::StoreOf(text));
    EXPECT_EQ(graph.Degree(3), 3);
}

// A node that many beams share: its list is long, theirs are short.
TEST(NodeGraph, OfALargeStar)
{
    constexpr int beams = 20000;
    test::MeshBuilder mesh({2.1e11, 0.3, 7850.0});
    mesh.AddNode({0.0, 0.0, 0.0});
    for (int n = 1; n <= beams; ++n) {
        mesh.AddNode({1.0, double(n), 0.0});
        mesh.AddTube(n, 0, {0.0, 0.0, 1.0}, {0.1, 0.01});
    }
    const NodeGraph graph = BuildNodeGraph(mesh.Model());
    EXPECT_EQ(graph.Degree(0), beams);
    EXPECT_TRUE(std::is_sorted(graph.neighbours.begin(), graph.neighbours.begin() + beams));
    for (int n = 1; n <= beams; ++n) { ASSERT_EQ(graph.Degree(n), 1); }
}

TEST(NodeGraph, IsTheSameForAnyNumberOfThreads)
{
    test::MeshBuilder mesh({2.1e11, 0.3, 7850.0});
    test::AddGrid(mesh, 100, 90, 0.01, test::Cell::TriAlternating, [](int i, int j) {
        return Vector3{double(i), double(j), 0.0};
    });
    SetThreadCount(1);
    const NodeGraph one = BuildNodeGraph(mesh.Model());
    SetThreadCount(5);
    const NodeGraph five = BuildNodeGraph(mesh.Model());
    SetThreadCount(0);
    EXPECT_EQ(one.first, five.first);
    EXPECT_EQ(one.neighbours, five.neighbours);
}

TEST(NodeGraph, OfNodesWithoutElementsHasNoNeighbours)
{
    test::MeshBuilder mesh({2.1e11, 0.3, 7850.0});
    for (int n = 0; n < 3; ++n) { mesh.AddNode({double(n), 0.0, 0.0}); }
    const NodeGraph graph = BuildNodeGraph(mesh.Model());
    EXPECT_EQ(graph.first, (std::vector<int>{0, 0, 0, 0}));
    EXPECT_EQ(BuildNodeGraph(ModelStore()).Size(), 0);
}

} // namespace
} // namespace tarnvexo
