#include "refine/GeneratedModels.h"

#include "inertia/BalanceCheck.h"
#include "output/ResultCheck.h"
#include "solver/NodeGraph.h"
#include "refine/NodeRenumbering.h"
#include "support/MeshBuilder.h"
#include "support/SameModel.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

struct Kind {
    const char* name;
    ModelStore (*make)(int equations);
};

class GeneratedModel : public testing::TestWithParam<Kind> {
protected:
    static ModelStore Make(int equations) { return GetParam().make(equations); }
};

INSTANTIATE_TEST_SUITE_P(Every, GeneratedModel,
                         testing::Values(Kind{"Plate", StiffenedPlateModel}, Kind{"Box", BoxGirderModel},
                                         Kind{"Ship", ShipHoldModel}, Kind{"Barrel", BarrelModel},
                                         Kind{"Lattice", BeamLatticeModel}),
                         [](const auto& info) { return info.param.name; });

// Nodes that can be reached from node 0 over elements.
int NodesConnectedToTheFirst(const ModelStore& model)
{
    const NodeGraph graph = BuildNodeGraph(model);
    std::vector<bool> reached(std::size_t(model.NPOIN), false);
    std::vector<int> nodes = {0};
    reached[0] = true;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        for (auto k = graph.first[std::size_t(nodes[i])]; k < graph.first[std::size_t(nodes[i]) + 1]; ++k) {
            const int neighbour = graph.neighbours[std::size_t(k)];
            if (!reached[std::size_t(neighbour)]) {
                reached[std::size_t(neighbour)] = true;
                nodes.push_back(neighbour);
            }
        }
    }
    return int(nodes.size());
}

template <int Nodes> void ExpectGoodShape(const ShellElement<Nodes>& element, double leastSine)
{
    double shortest = 1e300, longest = 0.0;
    for (int i = 0; i < Nodes; ++i) {
        const Vector3 &X = element.coordinates[i], &next = element.coordinates[(i + 1) % Nodes],
                      &last = element.coordinates[(i + Nodes - 1) % Nodes];
        const Vector3 ahead = next - X, back = last - X;
        shortest = std::min(shortest, Length(ahead));
        longest = std::max(longest, Length(ahead));
        EXPECT_GT(Dot(Cross(ahead, back), element.axes[2]), leastSine * Length(ahead) * Length(back));
        EXPECT_NEAR(Dot(ahead, element.axes[2]), 0.0, 1e-13 * 40.0); // flat; coordinates go up to 40 m
    }
    EXPECT_LT(longest, 2.0 * shortest);
}

TEST_P(GeneratedModel, HasAboutTheNumberOfEquationsAskedFor)
{
    for (const auto& [equations, share] : {std::pair(3000, 0.25), {20000, 0.15}, {150000, 0.1}}) {
        EXPECT_NEAR(DofsPerNode * Make(equations).NPOIN, equations, share * equations) << equations;
    }
}

TEST_P(GeneratedModel, IsInOnePiece)
{
    for (const int equations : {1, 3000, 5000, 20000}) {
        const ModelStore model = Make(equations);
        EXPECT_EQ(NodesConnectedToTheFirst(model), model.NPOIN) << equations;
    }
}

TEST_P(GeneratedModel, HasWellShapedElements)
{
    for (const int equations : {1, 3000, 11000}) {
        const ModelStore model = Make(equations);
        for (const QuadShellElement& element : model.QuadElements) { ExpectGoodShape(element, 0.99); }
        for (const TriShellElement& element : model.TriElements) { ExpectGoodShape(element, 0.6); } // 37° to 143°
        for (const BeamElement& beam : model.BeamElements) {
            const Vector3 axis = beam.node2 - beam.node1, up = beam.reference - beam.node1;
            EXPECT_GT(Length(Cross(axis, up)), 0.5 * Length(axis) * Length(up)); // orientation well across the beam
        }
    }
}

TEST_P(GeneratedModel, HasNoTwoNodesInOnePlace)
{
    ModelStore model = Make(6000);
    std::sort(model.NodeCoordinates.begin(), model.NodeCoordinates.end());
    for (std::size_t n = 1; n < model.NodeCoordinates.size(); ++n) {
        EXPECT_GT(Length(model.NodeCoordinates[n] - model.NodeCoordinates[n - 1]), 0.01);
    }
}

TEST_P(GeneratedModel, IsHeldInSixDirections)
{
    int held = 0;
    const ModelStore model = Make(3000);
    for (const Restraint& restraint : model.Restraints) {
        held += int(std::count(restraint.flags, restraint.flags + 6, 1));
    }
    EXPECT_EQ(held, 6);
}

// Well below their size of 10 m and more: neither a mechanism nor a load of another world.
TEST_P(GeneratedModel, DeformsALittleUnderItsLoads)
{
    ModelStore model = Make(1500);
    test::SolveFree(model);
    EXPECT_EQ(ResultWarning(model), "");
    double largest = 0.0;
    for (int n = 0; n < model.NPOIN; ++n) {
        for (const Dof dof : {DX, DY, DZ}) {
            largest = std::max(largest, std::fabs(test::Displacement(model, n, dof)));
        }
    }
    EXPECT_GT(largest, 1e-4);
    EXPECT_LT(largest, 0.3);
}

TEST_P(GeneratedModel, IsTheSameEveryTime)
{
    EXPECT_EQ(test::DifferentTable(Make(4000), Make(4000)), "");
}

// Station by station: renumbering gains less than half.
TEST_P(GeneratedModel, IsNumberedForAShortSkyline)
{
    ModelStore model = Make(12000);
    const Renumbering renumbering = RenumberNodes(model);
    EXPECT_LT(double(renumbering.skylineEntriesBefore), 2.0 * double(renumbering.skylineEntriesAfter));
}

TEST(GeneratedBarrel, JoinsItsFloorToTheSkinByTriangles)
{
    const ModelStore barrel = BarrelModel(3000);
    EXPECT_EQ(barrel.NELEM_S_3ND % 6, 0);
    EXPECT_GT(barrel.NELEM_S_3ND, 0);
    for (const TriShellElement& element : barrel.TriElements) { EXPECT_NEAR(element.axes[2][2], 1.0, 1e-14); }
}

TEST(GeneratedLattice, HasBeamsOfEveryKind)
{
    const ModelStore lattice = BeamLatticeModel(3000);
    for (const int type : {TSection, LSection, CSection}) {
        EXPECT_TRUE(std::any_of(lattice.BeamSectionRefs.begin(), lattice.BeamSectionRefs.end(),
                                [type](const BeamSectionRef& section) { return section.BeamSecType == type; }));
    }
}

} // namespace
} // namespace tarnvexo
