#include "refine/LatticeMesh.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr Material Steel = {2.1e11, 0.3, 7850.0};

LatticeMesh UnitMesh()
{
    return LatticeMesh(Steel, [](const LatticePoint& p) { return Vector3{double(p[0]), double(p[1]), double(p[2])}; });
}

TEST(LatticeMesh, MakesOneNodeOfAPointThatSeveralElementsName)
{
    LatticeMesh mesh = UnitMesh();
    const int thickness = mesh.AddThickness(0.01);
    mesh.AddPanel({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, 3, 2, thickness);
    mesh.AddPanel({0, 0, 0}, {1, 0, 0}, {0, 0, 1}, 3, 1, thickness);
    mesh.AddBeamLine({0, 0, 0}, {1, 0, 0}, 3, {0.0, 0.0, 1.0}, mesh.AddTSection({0.1, 0.01, 0.1, 0.01}));
    const ModelStore model = mesh.Finish();
    EXPECT_EQ(model.NPOIN, 4 * 3 + 4);
    EXPECT_EQ(model.NELEM_S_4ND, 9);
    EXPECT_EQ(model.NELEM_B, 3);
}

TEST(LatticeMesh, NumbersNodesInOrderOfTheirTriples)
{
    LatticeMesh mesh = UnitMesh();
    mesh.AddQuad({{{0, 0, 0}, {7, 0, 0}, {7, 5, 2}, {0, 5, 1}}}, mesh.AddThickness(0.01));
    const ModelStore model = mesh.Finish();
    EXPECT_EQ(model.NodeCoordinates,
              (std::vector<Vector3>{{0.0, 0.0, 0.0}, {0.0, 5.0, 1.0}, {7.0, 0.0, 0.0}, {7.0, 5.0, 2.0}}));
    EXPECT_EQ(model.QuadConnectivity[0], (std::array<int, 4>{0, 2, 3, 1}));
}

TEST(LatticeMesh, PanelsHaveTheirFirstAxisAlongUAndTheirNormalAlongUCrossV)
{
    LatticeMesh mesh = UnitMesh();
    mesh.AddPanel({0, 1, 0}, {0, 0, 1}, {1, 0, 0}, 2, 2, mesh.AddThickness(0.01));
    for (const QuadShellElement& element : mesh.Finish().QuadElements) {
        EXPECT_EQ(element.axes[0], (Vector3{0.0, 0.0, 1.0}));
        EXPECT_EQ(element.axes[2], (Vector3{0.0, 1.0, 0.0}));
    }
}

TEST(LatticeMesh, TakesLoadsFromFieldsAndLeavesOutThoseThatVanish)
{
    LatticeMesh mesh = UnitMesh();
    const ElementRange quads = mesh.AddPanel({0, 0, 0}, {1, 0, 0}, {0, 1, 0}, 3, 1, mesh.AddThickness(0.01));
    mesh.AddQuadPressure(quads, [](const Vector3& X) { return X[0] > 1.5 ? X[0] + 10.0 * X[1] : 0.0; });
    const ModelStore model = mesh.Finish();
    ASSERT_EQ(model.NDL_S_4ND, 2);
    EXPECT_EQ(model.QuadDistributedLoads[0].element, 1);
    EXPECT_EQ(model.QuadDistributedLoads[0].pressure[0], 0.0);
    EXPECT_EQ(model.QuadDistributedLoads[0].pressure[1], 2.0);
    EXPECT_EQ(model.QuadDistributedLoads[0].pressure[2], 12.0);
}

TEST(LatticeMesh, SupportsFollowTheNodesTheyWereGivenTo)
{
    LatticeMesh mesh = UnitMesh();
    const int thickness = mesh.AddThickness(0.01);
    mesh.AddQuad({{{1, 0, 0}, {2, 0, 0}, {2, 1, 0}, {1, 1, 0}}}, thickness);
    mesh.Support({1, 0, 0}, {2, 0, 0}, {1, 1, 0});
    mesh.AddQuad({{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}, thickness); // comes first in the order of nodes
    const ModelStore model = mesh.Finish();
    const Vector3 held[3] = {{1.0, 0.0, 0.0}, {2.0, 0.0, 0.0}, {1.0, 1.0, 0.0}};
    ASSERT_EQ(model.NRN, 3);
    for (std::size_t r = 0; r < 3; ++r) {
        EXPECT_EQ(model.NodeCoordinates[std::size_t(model.Restraints[r].node)], held[r]);
    }
}

} // namespace
} // namespace tarnvexo
