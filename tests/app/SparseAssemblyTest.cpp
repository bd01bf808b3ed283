#include "app/SparseAssembly.h"

#include "app/AssemblyDriver.h"
#include "core/Parallel.h"
#include "elements/BeamStiffness.h"
#include "elements/ShellStiffness.h"
#include "refine/GeneratedModels.h"
#include "solver/NodeOrdering.h"
#include "solver/SkylineProfile.h"
#include "support/ElementTools.h"
#include "support/NodeGraphs.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <cstring>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

BlockMatrix Assembled(const ModelStore& model, const EliminationOrder& order)
{
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(BuildNodeGraph(model), order);
    AssembleBlockMatrix(model, order, matrix);
    return matrix;
}

// The whole matrix with the equations of the model.
std::vector<double> InModelOrder(const BlockMatrix& matrix, const EliminationOrder& order)
{
    const std::vector<double> inOrder = DenseOf(matrix);
    const std::size_t n = DofsPerNode * order.nodeAt.size();
    std::vector<double> dense(n * n);
    const auto place = [&](std::size_t i) {
        return static_cast<std::size_t>(DofsPerNode * order.positionOf[i / DofsPerNode]) + i % DofsPerNode;
    };
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) { dense[i * n + j] = inOrder[place(i) * n + place(j)]; }
    }
    return dense;
}

// The same from the skyline of the console run.
std::vector<double> DenseSkyline(ModelStore model)
{
    const std::size_t n = static_cast<std::size_t>(DofsPerNode) * model.NPOIN;
    model.EquationCount = static_cast<int>(n);
    BuildSkylineProfile(model);
    model.DiagonalAddress = DiagonalAddresses(model.ColumnHeight);
    model.GlobalStiffness.assign(static_cast<std::size_t>(SkylineEntries(model.ColumnHeight)), 0.0);
    AssembleStiffness(model);
    std::vector<double> dense(n * n, 0.0);
    for (std::size_t j = 0; j < n; ++j) {
        for (int k = 0; k < model.ColumnHeight[j]; ++k) {
            const std::size_t i = j - static_cast<std::size_t>(k);
            dense[i * n + j] = dense[j * n + i] = model.GlobalStiffness[model.DiagonalAddress[j] + k];
        }
    }
    return dense;
}

// And from element matrices added up entry by entry.
template <int Nodes, class Elements, class Stiffness>
void AddElements(const Elements& elements, const std::vector<std::array<int, Nodes>>& connectivity, Stiffness stiffness,
                 std::vector<double>& dense, std::size_t n)
{
    constexpr int order = Nodes * DofsPerNode;
    for (std::size_t e = 0; e < connectivity.size(); ++e) {
        double K[order][order];
        int map[order];
        stiffness(elements[e], K);
        ElementDofMap<Nodes>(connectivity[e].data(), map);
        for (int i = 0; i < order; ++i) {
            for (int j = 0; j < order; ++j) {
                dense[static_cast<std::size_t>(map[i]) * n + static_cast<std::size_t>(map[j])] += K[i][j];
            }
        }
    }
}

std::vector<double> DenseSum(const ModelStore& model)
{
    const std::size_t n = static_cast<std::size_t>(DofsPerNode) * model.NPOIN;
    std::vector<double> dense(n * n, 0.0);
    AddElements<QuadNodeCount>(model.QuadElements, model.QuadConnectivity, QuadShellStiffness, dense, n);
    AddElements<TriNodeCount>(model.TriElements, model.TriConnectivity, TriShellStiffness, dense, n);
    AddElements<BeamNodeCount>(model.BeamElements, model.BeamConnectivity, BeamStiffness, dense, n);
    return dense;
}

TEST(SparseAssembly, EqualsTheSkylineAssembly)
{
    for (unsigned seed = 0; seed < 12; ++seed) {
        const ModelStore model = StoreOf(RandomModel(seed, Supports::None));
        const EliminationOrder order = RandomOrder(model.NPOIN, seed);
        EXPECT_EQ(InModelOrder(Assembled(model, order), order), DenseSkyline(model)) << "seed " << seed;
    }
}

// Pairs of degrees of freedom of a node that an element has twice count twice. The console run adds them once: a
// difference on the diagonal of that node alone.
TEST(SparseAssembly, AddsBothPartsOfANodeThatAnElementHasTwice)
{
    ModelText text = OneOfEachKind();
    text.Quad({3, 1, 4, 4}); // a triangle by mistake
    const ModelStore model = StoreOf(text);
    const EliminationOrder order = RandomOrder(model.NPOIN, 1);
    const std::vector<double> sparse = InModelOrder(Assembled(model, order), order);
    const std::vector<double> sum = DenseSum(model), skyline = DenseSkyline(model);
    EXPECT_LT(LargestDifference(sum.data(), sparse.data(), static_cast<int>(sum.size())), 1e-15);
    const std::size_t n = 30;
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j < n; ++j) {
            if (i != j || i / DofsPerNode != 4) {
                EXPECT_NEAR(sparse[i * n + j], skyline[i * n + j], 1e-15 * skyline[j * n + j]) << i << ", " << j;
            }
        }
    }
}

// A fuselage barrel with quadrilaterals, triangles, L and T beams, large enough for other chunks with every number.
TEST(SparseAssembly, GivesTheSameBitsForAnyNumberOfThreadsAndChunks)
{
    const ModelStore model = BarrelModel(36000);
    ASSERT_GT(model.NELEM_S_4ND, 0);
    ASSERT_GT(model.NELEM_S_3ND, 0);
    ASSERT_GT(model.NELEM_B, 0);
    const EliminationOrder order = OrderByAmd(BuildNodeGraph(model));
    SetThreadCount(1);
    const BlockMatrix one = Assembled(model, order);
    for (const int threads : {2, 5}) {
        SetThreadCount(threads);
        const BlockMatrix more = Assembled(model, order);
        EXPECT_EQ(std::memcmp(one.values.Data(), more.values.Data(), sizeof(double) * one.values.Size()), 0) << threads;
    }
    SetThreadCount(0);
}

TEST(SparseAssembly, OfNodesWithoutElementsIsZero)
{
    ModelText text = OneOfEachKind();
    const int loose = text.Node(5.0, 5.0, 5.0);
    const ModelStore model = StoreOf(text);
    const EliminationOrder order = RandomOrder(model.NPOIN, 2);
    const BlockMatrix matrix = Assembled(model, order);
    const double* column = matrix.Column(order.positionOf[loose]);
    EXPECT_EQ(std::vector<double>(column, column + BlockEntries), std::vector<double>(BlockEntries, 0.0));
}

} // namespace
} // namespace tarnvexo
