#include "export/ResultPoints.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <limits>

namespace tarnvexo {
namespace {

// Two quadrilaterals on the edge of nodes 1 and 2, each with the stress `first` or `second` everywhere.
ModelStore TwoQuads(double first, double second)
{
    ModelStore model;
    model.NPOIN = 7; // node 6 belongs to nothing
    model.NodeCoordinates.resize(7);
    model.QuadConnectivity = {{0, 1, 2, 3}, {1, 4, 5, 2}};
    model.QuadElements.resize(2);
    for (int e = 0; e < 2; ++e) {
        for (auto& stress : model.QuadElements[e].averagedPositiveFace) { stress[SX] = e == 0 ? first : second; }
        for (auto& stress : model.QuadElements[e].averagedNegativeFace) { stress[TYZ] = 1.0; }
    }
    return model;
}

TEST(ShellPoints, AreSharedWhereElementsAgree)
{
    const ShellPoints found = FindShellPoints(TwoQuads(5.0, 5.0 * (1 + 1e-15)));
    ASSERT_EQ(found.points.size(), 6u);
    EXPECT_EQ(found.quads[0], (std::array<int, 4>{0, 1, 2, 3}));
    EXPECT_EQ(found.quads[1], (std::array<int, 4>{1, 4, 5, 2}));
    for (int p = 0; p < 6; ++p) { EXPECT_EQ(found.points[p].node, p); }
}

TEST(ShellPoints, AreOfOneElementWhereElementsDiffer)
{
    const ModelStore model = TwoQuads(5.0, 5.001);
    const ShellPoints found = FindShellPoints(model);
    ASSERT_EQ(found.points.size(), 8u);
    for (int e = 0; e < 2; ++e) {
        for (int i = 0; i < 4; ++i) {
            const ShellPoint& point = found.points[found.quads[e][i]];
            EXPECT_EQ(point.node, model.QuadConnectivity[e][i]);
            EXPECT_EQ(point.averaged.positive, model.QuadElements[e].averagedPositiveFace[i]);
            EXPECT_EQ(point.averaged.negative, model.QuadElements[e].averagedNegativeFace[i]);
        }
    }
}

TEST(ShellPoints, AreNotSharedWhereStressesAreNotNumbers)
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(FindShellPoints(TwoQuads(nan, nan)).points.size(), 8u);
}

// Every triangle around node 0 has a stress of its own: the points grow with the elements, the work as well.
TEST(ShellPoints, OfManyDifferentElementsAroundANodeAreAllThere)
{
    constexpr int count = 1000;
    ModelStore model;
    model.NodeCoordinates.resize(count + 1);
    model.TriElements.resize(count);
    for (int e = 0; e < count; ++e) {
        model.TriConnectivity.push_back({0, 1 + e, 1 + (e + 1) % count});
        for (auto& stress : model.TriElements[e].averagedPositiveFace) { stress[SY] = e % 100; }
    }
    const ShellPoints found = FindShellPoints(model);
    for (int e = 0; e < count; ++e) {
        for (int i = 0; i < 3; ++i) {
            const ShellPoint& point = found.points[found.triangles[e][i]];
            EXPECT_EQ(point.node, model.TriConnectivity[e][i]);
            EXPECT_EQ(point.averaged.positive[SY], e % 100);
        }
    }
}

TEST(SectionPoints, LeaveOutTheBeamEnds)
{
    ModelStore model;
    for (int b = 0; b < 2; ++b) {
        BeamSectionModel section;
        section.nodes.resize(6); // end, two rings of two, end
        section.patches.resize(1);
        const int nodes[4] = {1, 3, 4, 2};
        std::copy(nodes, nodes + 4, section.patches[0].nodes);
        model.BeamStressRecords.push_back(section);
    }
    const SectionPoints found = FindSectionPoints(model);
    ASSERT_EQ(found.points.size(), 8u);
    ASSERT_EQ(found.walls.size(), 2u);
    EXPECT_EQ(found.walls[1].beam, 1);
    for (int i = 0; i < 4; ++i) {
        const SectionPoint& point = found.points[found.walls[1].points[i]];
        EXPECT_EQ(point.beam, 1);
        EXPECT_EQ(point.node, model.BeamStressRecords[1].patches[0].nodes[i]);
    }
}

} // namespace
} // namespace tarnvexo
