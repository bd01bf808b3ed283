#include "app/PartGaps.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

// Beams of two nodes each at random; part p has the nodes 2p and 2p + 1.
ModelStore Beams(int count, unsigned seed)
{
    std::mt19937 generator(seed);
    const auto coordinate = [&] { return static_cast<double>(generator() % 1000) / 1000.0; };
    ModelStore model;
    model.NPOIN = 2 * count;
    for (int b = 0; b < count; ++b) {
        const Vector3 first = {coordinate(), coordinate(), coordinate()};
        model.NodeCoordinates.push_back(first);
        model.NodeCoordinates.push_back(first + Vector3{0.1 * coordinate(), 0.0, 0.01});
        model.BeamConnectivity.push_back({2 * b, 2 * b + 1});
    }
    return model;
}

TEST(PartGaps, AreTheSmallestDistancesOfAll)
{
    constexpr double tolerance = 0.1;
    const ModelStore model = Beams(60, 3);
    const ConnectedParts parts = FindConnectedParts(model);
    std::vector<int> all(static_cast<std::size_t>(parts.count));
    for (int p = 0; p < parts.count; ++p) { all[p] = p; }
    const std::vector<PartGap> gaps = FindPartGaps(model, parts, all, tolerance);
    int meeting = 0;
    for (int p = 0; p < parts.count; ++p) {
        double smallest = 1e9;
        int meetingNodes = 0;
        for (int a = 2 * p; a < 2 * p + 2; ++a) {
            double nearest = 1e9;
            for (int b = 0; b < model.NPOIN; ++b) {
                if (parts.partOfNode[b] != p) {
                    nearest = std::min(nearest, Length(model.NodeCoordinates[a] - model.NodeCoordinates[b]));
                }
            }
            smallest = std::min(smallest, nearest);
            meetingNodes += nearest <= tolerance ? 1 : 0;
        }
        EXPECT_EQ(gaps[p].distance, smallest);
        EXPECT_EQ(gaps[p].meetingNodes, meetingNodes);
        EXPECT_EQ(Length(model.NodeCoordinates[gaps[p].node] - model.NodeCoordinates[gaps[p].otherNode]), smallest);
        EXPECT_EQ(parts.partOfNode[gaps[p].node], p);
        EXPECT_NE(parts.partOfNode[gaps[p].otherNode], p);
        meeting += meetingNodes;
    }
    EXPECT_GT(meeting, 0);
}

TEST(PartGaps, OfTheOnlyPartAreInfinite)
{
    const ModelStore model = Beams(1, 1);
    const PartGap gap = FindPartGaps(model, FindConnectedParts(model), {0}, 1.0)[0];
    EXPECT_EQ(gap.otherNode, -1);
    EXPECT_TRUE(std::isinf(gap.distance));
    EXPECT_EQ(gap.meetingNodes, 0);
}

TEST(PartGaps, OfNodesAtOnePlaceAreZero)
{
    ModelStore model = Beams(20, 1);
    for (Vector3& node : model.NodeCoordinates) { node = {1.0, 2.0, 3.0}; }
    const PartGap gap = FindPartGaps(model, FindConnectedParts(model), {4}, 0.0)[0];
    EXPECT_EQ(gap.distance, 0.0);
    EXPECT_EQ(gap.meetingNodes, 2);
    EXPECT_EQ(gap.node, 8);
}

} // namespace
} // namespace tarnvexo
