#include "app/SupportReactions.h"

#include "app/AssemblyDriver.h"
#include "support/ElementTools.h"
#include "support/MixedStructure.h"
#include "support/SmallModels.h"

#include <gtest/gtest.h>
#include <numeric>

namespace tarnvexo {
namespace {

using namespace test;

TEST(SupportReactions, OfARigidMotionAreMinusTheLoads)
{
    ModelStore model = StoreOf(OneOfEachKind());
    LoadAtRandom(model, 1);
    std::vector<Vector3> points = model.NodeCoordinates;
    const std::vector<double> u = Displacements(points, [](const Vector3& point) { return RigidMotion(4, point); });
    std::vector<int> equations(30);
    std::iota(equations.begin(), equations.end(), 0);
    const std::vector<double> reactions = ReactionsAt(model, equations, u, model.GLOAD);
    for (int i = 0; i < 30; ++i) { EXPECT_NEAR(reactions[i], -model.GLOAD[i], 1e-5); } // of stiffnesses of 1e9
}

// By hand: a tube of length 2 along x, stretched by 1e-3 at node 1: N = E·A·ε, E·A = 2.1e11·2π·0.1·0.01.
TEST(SupportReactions, OfAStretchedBarAreItsForce)
{
    MeshBuilder mesh({2.1e11, 0.3, 7850.0});
    mesh.AddNode({0.0, 0.0, 0.0});
    mesh.AddNode({2.0, 0.0, 0.0});
    mesh.AddTube(0, 1, {0.0, 0.0, 1.0}, {0.1, 0.01});
    std::vector<double> u(12, 0.0);
    u[DofsPerNode + DX] = 1e-3;
    const std::vector<double> reactions =
        ReactionsAt(mesh.Model(), {DX, DofsPerNode + DX, DZ}, u, std::vector<double>(12, 0.0));
    const double force = 2.1e11 * 2.0 * 3.14159265358979 * 0.1 * 0.01 * 5e-4;
    EXPECT_NEAR(reactions[0], -force, 1e-9 * force);
    EXPECT_NEAR(reactions[1], force, 1e-9 * force);
    EXPECT_NEAR(reactions[2], 0.0, 1e-9 * force);
}

} // namespace
} // namespace tarnvexo
