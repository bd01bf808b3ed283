#include "checks/CoincidentNodes.h"

#include "support/MeshBuilder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using test::MeshBuilder;

constexpr Material Steel = {2.1e11, 0.3, 7850.0};

std::vector<int> Unconnected(const ModelStore& model, double distance)
{
    return UnconnectedNodes(model, FindCoincidentNodes(model, NodeTree(UsedNodes(model)), distance));
}

// Two plates side by side, each with nodes of its own, the second moved away by the gap.
ModelStore TwoPlates(double gap)
{
    MeshBuilder mesh(Steel);
    mesh.AddQuad({mesh.AddNode({0.0, 0.0, 0.0}), mesh.AddNode({1.0, 0.0, 0.0}), mesh.AddNode({1.0, 1.0, 0.0}),
                  mesh.AddNode({0.0, 1.0, 0.0})},
                 0.01);
    mesh.AddQuad({mesh.AddNode({1.0 + gap, 0.0, 0.0}), mesh.AddNode({2.0, 0.0, 0.0}), mesh.AddNode({2.0, 1.0, 0.0}),
                  mesh.AddNode({1.0, 1.0, gap})},
                 0.01);
    return mesh.Model();
}

TEST(CoincidentNodes, NodesWithinTheDistanceAreFoundAndThoseBeyondAreNot)
{
    const std::vector<int> both = {4, 7};
    EXPECT_EQ(Unconnected(TwoPlates(0.0), 1e-3), both);
    EXPECT_EQ(Unconnected(TwoPlates(0.9e-3), 1e-3), both);
    EXPECT_TRUE(Unconnected(TwoPlates(1.1e-3), 1e-3).empty());
}

TEST(CoincidentNodes, NodeWithoutElementDoesNotCount)
{
    MeshBuilder mesh(Steel);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({1.0, 0.0, 0.0}), c = mesh.AddNode({0.0, 1.0, 0.0});
    mesh.AddTri({a, b, c}, 0.01);
    mesh.AddNode({1.0, 0.0, 0.0});
    EXPECT_TRUE(Unconnected(mesh.Model(), 1e-3).empty());
}

TEST(CoincidentNodes, ElementBetweenTheNodesConnectsThem)
{
    MeshBuilder mesh(Steel);
    const int a = mesh.AddNode({0.0, 0.0, 0.0}), b = mesh.AddNode({1.0, 0.0, 0.0}), c = mesh.AddNode({1.0, 0.0, 0.0});
    const int d = mesh.AddNode({2.0, 0.0, 0.0});
    const TBeamSection section = {0.1, 0.01, 0.05, 0.01};
    mesh.AddTBeam(a, b, {0.0, 0.0, 1.0}, section);
    mesh.AddTBeam(c, d, {0.0, 0.0, 1.0}, section);
    EXPECT_EQ(Unconnected(mesh.Model(), 1e-3), std::vector<int>{c});
    mesh.AddTBeam(b, c, {0.0, 0.0, 1.0}, section);
    EXPECT_TRUE(Unconnected(mesh.Model(), 1e-3).empty());
}

TEST(CoincidentNodes, NodesThatElementsConnectThereAreOneMissingConnection)
{
    MeshBuilder mesh(Steel);
    const TBeamSection section = {0.1, 0.01, 0.05, 0.01};
    for (int i = 0; i < 3; ++i) { mesh.AddNode({1.0, 0.0, 0.0}); }
    for (int i = 0; i < 3; ++i) { mesh.AddTBeam(i, mesh.AddNode({0.0, double(i), 0.0}), {0.0, 0.0, 1.0}, section); }
    mesh.AddTBeam(1, 2, {0.0, 0.0, 1.0}, section);
    EXPECT_EQ(Unconnected(mesh.Model(), 1e-3), std::vector<int>{1});
}

// The distance is that of a large model: neighbours in its fine mesh stay apart, what is unconnected there is found.
TEST(CoincidentNodes, DistanceLargerThanTheElementsDoesNotTakeNeighboursForOneNode)
{
    MeshBuilder mesh(Steel);
    for (const double y : {0.0, 10.0}) { // two plates that meet at y = 10
        AddGrid(mesh, 10, 10, 0.01, test::Cell::Quad, [y](int i, int j) { return Vector3{double(i), y + j, 0.0}; });
    }
    EXPECT_EQ(Unconnected(mesh.Model(), 100.0).size(), 11u);
}

TEST(CoincidentNodes, ThousandsAtOnePlaceAreAllFound)
{
    MeshBuilder mesh(Steel);
    constexpr int count = 5000;
    for (int i = 0; i < count; ++i) {
        const int a = mesh.AddNode({1.0, 2.0, 3.0});
        const int b = mesh.AddNode({std::cos(i), std::sin(i), double(i)});
        const int c = mesh.AddNode({2.0 * std::cos(i), std::sin(i), double(-i)});
        mesh.AddTri({a, b, c}, 0.01);
    }
    EXPECT_EQ(Unconnected(mesh.Model(), 1e-9).size(), std::size_t(count - 1));
}

TEST(CoincidentNodes, AllNodesAtOnePlaceAreOneGroup)
{
    MeshBuilder mesh(Steel);
    for (int i = 0; i < 3000; ++i) { mesh.AddNode({1.0, 1.0, 1.0}); }
    for (int i = 0; i + 2 < 3000; i += 3) { mesh.AddTri({i, i + 1, i + 2}, 0.01); }
    EXPECT_EQ(Unconnected(mesh.Model(), 0.0).size(), 999u);
}

// Against every pair, on random nodes so dense that groups of all sizes form.
TEST(CoincidentNodes, GroupsAreThoseOfAllPairs)
{
    std::mt19937 random(7);
    const auto coordinate = [&] { return random() % 100000 / 100000.0; };
    MeshBuilder mesh(Steel);
    constexpr int count = 600;
    for (int i = 0; i < count; ++i) { mesh.AddNode({coordinate(), coordinate(), 0.3 * coordinate()}); }
    for (int i = 0; i < count; ++i) { mesh.AddTri({i, (i + 200) % count, (i + 400) % count}, 0.01); }
    const ModelStore& model = mesh.Model();
    const std::vector<NodeTree::Point> points = UsedNodes(model);
    ASSERT_EQ(points.size(), std::size_t(count));

    for (const double distance : {0.01, 0.03, 0.06}) {
        std::vector<int> leader(count);
        for (int n = 0; n < count; ++n) { leader[n] = n; }
        for (int changed = 1; changed > 0;) {
            changed = 0;
            for (int a = 0; a < count; ++a) {
                for (int b = 0; b < count; ++b) {
                    if (leader[a] < leader[b] && Length(points[a].place - points[b].place) <=
                                                     std::min({distance, points[a].reach, points[b].reach})) {
                        leader[b] = leader[a];
                        ++changed;
                    }
                }
            }
        }
        EXPECT_EQ(FindCoincidentNodes(model, NodeTree(points), distance).leader, leader) << distance;
    }
}

TEST(CoincidentNodes, CoordinatesThatAreNoNumbersStandNowhere)
{
    ModelStore model = TwoPlates(0.0);
    model.NodeCoordinates[4][1] = std::nan("");
    model.NodeCoordinates[2][0] = INFINITY;
    EXPECT_TRUE(Unconnected(model, 1e-3).empty());
}

} // namespace
} // namespace tarnvexo
