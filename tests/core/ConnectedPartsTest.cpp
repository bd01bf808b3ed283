#include "core/ConnectedParts.h"

#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using Numbers = std::vector<int>;

// Nodes 0 ... 11: a quad and a triangle share node 5, a beam hangs on the triangle; another beam is alone; 0, 6, 11
// have no element.
ModelStore TwoParts()
{
    ModelStore model;
    model.NPOIN = 12;
    model.QuadConnectivity = {{10, 9, 5, 7}};
    model.TriConnectivity = {{5, 8, 3}};
    model.BeamConnectivity = {{1, 4}, {2, 8}};
    return model;
}

TEST(ConnectedParts, AreConnectedThroughElementsOfEveryKind)
{
    const ConnectedParts parts = FindConnectedParts(TwoParts());
    EXPECT_EQ(parts.count, 2);
    EXPECT_EQ(parts.partOfNode, (Numbers{-1, 0, 1, 1, 0, 1, -1, 1, 1, 1, 1, -1}));
}

TEST(ConnectedParts, ListTheirNodesAndCountTheirElements)
{
    const ConnectedParts parts = FindConnectedParts(TwoParts());
    EXPECT_EQ(parts.firstOfPart, (Numbers{0, 2, 9}));
    EXPECT_EQ(parts.nodes, (Numbers{1, 4, 2, 3, 5, 7, 8, 9, 10}));
    EXPECT_EQ(parts.NodeCount(1), 7);
    EXPECT_EQ(parts.LowestNode(1), 2);
    EXPECT_EQ(parts.elementCount, (Numbers{1, 3}));
}

TEST(ConnectedParts, AreNumberedByTheirLowestNodesWhateverTheOrderOfElements)
{
    ModelStore model;
    model.NPOIN = 6;
    model.BeamConnectivity = {{5, 4}, {3, 2}, {1, 0}};
    EXPECT_EQ(FindConnectedParts(model).partOfNode, (Numbers{0, 0, 1, 1, 2, 2}));
}

TEST(ConnectedParts, OfAChainInAnyOrderAreOne)
{
    constexpr int n = 1000;
    ModelStore model;
    model.NPOIN = n;
    for (int i = 0; i < n; ++i) { model.BeamConnectivity.push_back({(i * 7) % n, ((i + 1) * 7) % n}); }
    const ConnectedParts parts = FindConnectedParts(model);
    EXPECT_EQ(parts.count, 1);
    EXPECT_EQ(parts.nodes.size(), static_cast<std::size_t>(n));
    EXPECT_EQ(parts.elementCount, Numbers{n});
}

TEST(ConnectedParts, OfAModelWithoutElementsAreNone)
{
    ModelStore model;
    model.NPOIN = 3;
    const ConnectedParts parts = FindConnectedParts(model);
    EXPECT_EQ(parts.count, 0);
    EXPECT_EQ(parts.partOfNode, (Numbers{-1, -1, -1}));
    EXPECT_TRUE(parts.nodes.empty());
    EXPECT_EQ(FindConnectedParts(ModelStore()).count, 0);
}

} // namespace
} // namespace tarnvexo
