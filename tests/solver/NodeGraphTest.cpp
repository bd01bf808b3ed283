#include "solver/NodeGraph.h"

#include "support/SameModel.h"
#include "support/SmallModels.h"

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

} // namespace
} // namespace tarnvexo
