#include "solver/SkylineProfile.h"

#include <algorithm>
#include <array>
#include <gtest/gtest.h>
#include <numeric>
#include <random>
#include <vector>

namespace tarnvexo {
namespace {

ModelStore ModelWithNodes(int count)
{
    ModelStore model;
    model.NPOIN = count;
    model.EquationCount = DofsPerNode * count;
    return model;
}

void AddQuad(ModelStore& model, const std::array<int, QuadNodeCount>& nodes)
{
    model.QuadConnectivity.push_back(nodes);
    model.NELEM_S_4ND = static_cast<int>(model.QuadConnectivity.size());
}

void AddTri(ModelStore& model, const std::array<int, TriNodeCount>& nodes)
{
    model.TriConnectivity.push_back(nodes);
    model.NELEM_S_3ND = static_cast<int>(model.TriConnectivity.size());
}

void AddBeam(ModelStore& model, const std::array<int, BeamNodeCount>& nodes)
{
    model.BeamConnectivity.push_back(nodes);
    model.NELEM_B = static_cast<int>(model.BeamConnectivity.size());
}

// Heights of the six columns of a node.
std::vector<int> NodeHeights(const ModelStore& model, int node)
{
    const auto first = model.ColumnHeight.begin() + DofsPerNode * node;
    return std::vector<int>(first, first + DofsPerNode);
}

TEST(SkylineProfile, WithoutEquationsNothingIsAllocated)
{
    ModelStore model;
    BuildSkylineProfile(model);
    EXPECT_TRUE(model.ColumnHeight.empty());
    EXPECT_EQ(SkylineEntries(model.ColumnHeight), 0);
    EXPECT_TRUE(DiagonalAddresses(model.ColumnHeight).empty());
}

TEST(SkylineProfile, NodeWithoutElementsKeepsItsDiagonalOnly)
{
    ModelStore model = ModelWithNodes(3);
    AddBeam(model, {0, 2});
    BuildSkylineProfile(model);
    EXPECT_EQ(NodeHeights(model, 1), std::vector<int>(DofsPerNode, 1));
}

TEST(SkylineProfile, BeamBetweenNodes0And5GivesNode5Heights31To36)
{
    ModelStore model = ModelWithNodes(6);
    AddBeam(model, {5, 0});
    BuildSkylineProfile(model);
    EXPECT_EQ(NodeHeights(model, 5), (std::vector<int>{31, 32, 33, 34, 35, 36}));
    EXPECT_EQ(NodeHeights(model, 0), (std::vector<int>{1, 2, 3, 4, 5, 6}));
}

TEST(SkylineProfile, LargerHeightOfTwoElementsHoldsInEitherOrder)
{
    ModelStore longFirst = ModelWithNodes(8);
    AddBeam(longFirst, {1, 7});
    AddBeam(longFirst, {6, 7});
    BuildSkylineProfile(longFirst);
    ModelStore shortFirst = ModelWithNodes(8);
    AddBeam(shortFirst, {6, 7});
    AddBeam(shortFirst, {1, 7});
    BuildSkylineProfile(shortFirst);
    EXPECT_EQ(NodeHeights(longFirst, 7), (std::vector<int>{37, 38, 39, 40, 41, 42}));
    EXPECT_EQ(longFirst.ColumnHeight, shortFirst.ColumnHeight);
}

TEST(SkylineProfile, EveryKindOfElementReachesItsLowestNode)
{
    ModelStore model = ModelWithNodes(9);
    AddQuad(model, {4, 1, 3, 2});
    AddTri(model, {6, 5, 3});
    AddBeam(model, {8, 7});
    BuildSkylineProfile(model);
    const std::vector<int> lowestNode = {0, 1, 1, 1, 1, 3, 3, 7, 7};
    for (int node = 0; node < model.NPOIN; ++node) {
        for (int k = 0; k < DofsPerNode; ++k) {
            const int expected = node == 0 ? 1 : DofsPerNode * (node - lowestNode[node]) + k + 1;
            EXPECT_EQ(model.ColumnHeight[DofsPerNode * node + k], expected) << "node " << node << ", DOF " << k;
        }
    }
}

TEST(SkylineProfile, WithoutBeamsOnlyShellsShapeTheProfile)
{
    ModelStore model = ModelWithNodes(4);
    AddQuad(model, {0, 1, 2, 3});
    BuildSkylineProfile(model);
    for (int j = 0; j < model.EquationCount; ++j) { EXPECT_EQ(model.ColumnHeight[j], j + 1); }
}

TEST(SkylineProfile, DiagonalsFollowTheColumnsBeforeThem)
{
    const std::vector<int> heights = {1, 2, 3, 1, 4};
    EXPECT_EQ(DiagonalAddresses(heights), (std::vector<int>{0, 1, 3, 6, 7}));
    EXPECT_EQ(SkylineEntries(heights), 11);
}

TEST(SkylineProfile, EntriesAreCountedBeyond32Bits)
{
    const std::vector<int> heights(3, 1500000000);
    EXPECT_EQ(SkylineEntries(heights), 4500000000);
}

// Skyline of one small model with room for the elements below.
struct Assembly {
    explicit Assembly(int nodes, const std::vector<std::array<int, BeamNodeCount>>& beams)
        : model(ModelWithNodes(nodes))
    {
        for (const auto& beam : beams) { AddBeam(model, beam); }
        BuildSkylineProfile(model);
        address = DiagonalAddresses(model.ColumnHeight);
        stiffness.assign(SkylineEntries(model.ColumnHeight), 0.0);
    }

    void Add(const std::array<int, BeamNodeCount>& nodes, const std::vector<double>& Ke)
    {
        int map[BeamDofCount];
        ElementDofMap<BeamNodeCount>(nodes.data(), map);
        AddElementMatrix(Ke.data(), map, BeamDofCount, address, stiffness);
    }

    double Entry(int row, int column) const { return stiffness[address[column] + (column - row)]; }

    ModelStore model;
    std::vector<int> address;
    std::vector<double> stiffness;
};

// Symmetric, whole numbers: sums are exact.
std::vector<double> SymmetricMatrix(unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<double> Ke(BeamDofCount * BeamDofCount);
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = i; j < BeamDofCount; ++j) {
            Ke[i * BeamDofCount + j] = Ke[j * BeamDofCount + i] = 1.0 + static_cast<double>(generator() % 1000);
        }
    }
    return Ke;
}

TEST(AddElementMatrix, ElementOrderDoesNotChangeTheMatrix)
{
    const std::vector<std::array<int, BeamNodeCount>> beams = {{0, 1}, {1, 2}, {2, 0}};
    Assembly forward(3, beams);
    Assembly backward(3, beams);
    for (int e = 0; e < 3; ++e) { forward.Add(beams[e], SymmetricMatrix(e)); }
    for (int e = 2; e >= 0; --e) { backward.Add(beams[e], SymmetricMatrix(e)); }
    EXPECT_EQ(forward.stiffness, backward.stiffness);
}

TEST(AddElementMatrix, SharedNodeGetsTheSumOfBothElements)
{
    Assembly assembly(3, {{0, 1}, {1, 2}});
    const std::vector<double> first = SymmetricMatrix(1);
    const std::vector<double> second = SymmetricMatrix(2);
    assembly.Add({0, 1}, first);
    assembly.Add({1, 2}, second);
    for (int i = 0; i < DofsPerNode; ++i) {
        for (int j = i; j < DofsPerNode; ++j) {
            const double expected =
                first[(DofsPerNode + i) * BeamDofCount + DofsPerNode + j] + second[i * BeamDofCount + j];
            EXPECT_EQ(assembly.Entry(DofsPerNode + i, DofsPerNode + j), expected) << i << ", " << j;
        }
    }
}

// Node 2 comes first in the element: its rows of Ke are columns of the skyline.
TEST(AddElementMatrix, EveryPairIsAddedOnceForAnyNodeOrder)
{
    const std::vector<double> Ke = SymmetricMatrix(3);
    Assembly assembly(3, {{0, 2}});
    assembly.Add({2, 0}, Ke);
    const int equation[BeamDofCount] = {12, 13, 14, 15, 16, 17, 0, 1, 2, 3, 4, 5};
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) {
            const int row = std::min(equation[i], equation[j]);
            const int column = std::max(equation[i], equation[j]);
            EXPECT_EQ(assembly.Entry(row, column), Ke[i * BeamDofCount + j]) << i << ", " << j;
        }
    }
    const double upperTriangle = [&Ke] {
        double sum = 0.0;
        for (int i = 0; i < BeamDofCount; ++i) {
            for (int j = i; j < BeamDofCount; ++j) { sum += Ke[i * BeamDofCount + j]; }
        }
        return sum;
    }();
    EXPECT_EQ(std::accumulate(assembly.stiffness.begin(), assembly.stiffness.end(), 0.0), upperTriangle);
}

TEST(AddElementMatrix, LowerTriangleIsNeverRead)
{
    std::vector<double> Ke = SymmetricMatrix(4);
    Assembly whole(2, {{0, 1}});
    whole.Add({0, 1}, Ke);
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < i; ++j) { Ke[i * BeamDofCount + j] = -7777.0; }
    }
    Assembly upperOnly(2, {{0, 1}});
    upperOnly.Add({0, 1}, Ke);
    EXPECT_EQ(upperOnly.stiffness, whole.stiffness);
}

} // namespace
} // namespace tarnvexo
