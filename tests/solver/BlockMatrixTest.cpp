#include "solver/BlockMatrix.h"

#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using namespace test;

BlockMatrix SmallMatrix(unsigned seed)
{
    return RandomMatrix(RandomGraph(9, 14, seed), RandomOrder(9, seed), seed);
}

std::vector<unsigned char> RandomFlags(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<unsigned char> flags(count);
    for (unsigned char& flag : flags) { flag = generator() % 4 == 0; }
    return flags;
}

// Chain 3 - 0 - 1 - 2 in the order 3, 1, 2, 0, that is positions 0 - 3 - 1 - 2.
TEST(BlockPattern, HasTheDiagonalFirstThenTheRowsBelowAscending)
{
    const BlockPattern pattern = LowerPattern(GraphOf(4, {{0, 1}, {1, 2}, {0, 3}}), OrderFromSequence({3, 1, 2, 0}));
    EXPECT_EQ(pattern.first, (std::vector<std::size_t>{0, 2, 5, 6, 7}));
    EXPECT_EQ(pattern.rows, (std::vector<int>{0, 3, 1, 2, 3, 2, 3}));
}

TEST(BlockPattern, OfNodesWithoutEdgesIsItsDiagonal)
{
    const BlockPattern pattern = LowerPattern(GraphOf(3, {}), NaturalOrder(3));
    EXPECT_EQ(pattern.first, (std::vector<std::size_t>{0, 1, 2, 3}));
    EXPECT_EQ(pattern.rows, (std::vector<int>{0, 1, 2}));
    EXPECT_EQ(LowerPattern(GraphOf(0, {}), NaturalOrder(0)).Size(), 0);
}

// Column 1 of a chain of three has blocks 1 and 2: twelve rows, six columns, behind the 2·36 entries of column 0.
TEST(BlockMatrix, KeepsTheSixColumnsOfANodeAsADenseArray)
{
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(Chain(3), NaturalOrder(3));
    matrix.values = LargeArray(BlockEntries * matrix.pattern.rows.size());
    std::fill(matrix.values.Data(), matrix.values.Data() + matrix.values.Size(), 0.0);
    EXPECT_EQ(matrix.Column(1) - matrix.values.Data(), 72);
    matrix.Column(1)[12 * 4 + 6 + 3] = 7.0;
    const std::vector<double> dense = DenseOf(matrix);
    EXPECT_EQ(dense[(6 * 2 + 3) * 18 + 6 * 1 + 4], 7.0);
    EXPECT_EQ(dense[(6 * 1 + 4) * 18 + 6 * 2 + 3], 7.0);
}

TEST(BlockMatrix, GivesItsDiagonal)
{
    const BlockMatrix matrix = SmallMatrix(1);
    const std::vector<double> dense = DenseOf(matrix), diagonal = DiagonalOf(matrix);
    ASSERT_EQ(diagonal.size(), 54u);
    for (std::size_t i = 0; i < 54; ++i) { EXPECT_EQ(diagonal[i], dense[i * 54 + i]); }
}

TEST(BlockMatrix, MultipliesAsTheDenseMatrixDoes)
{
    for (unsigned seed = 0; seed < 10; ++seed) {
        const BlockMatrix matrix = SmallMatrix(seed);
        const std::vector<double> dense = DenseOf(matrix);
        std::vector<double> x(54), y(54, 1e300), ySize(54, 1e300);
        for (std::size_t i = 0; i < 54; ++i) { x[i] = std::cos(1.0 + 2.3 * static_cast<double>(i)); }
        MultiplyBlockMatrix(matrix, x.data(), y.data(), ySize.data());
        for (std::size_t i = 0; i < 54; ++i) {
            double sum = 0.0, size = 0.0;
            for (std::size_t j = 0; j < 54; ++j) {
                sum += dense[i * 54 + j] * x[j];
                size += std::fabs(dense[i * 54 + j] * x[j]);
            }
            EXPECT_NEAR(y[i], sum, 1e-14 * size) << "seed " << seed << ", row " << i;
            EXPECT_NEAR(ySize[i], size, 1e-14 * size) << "seed " << seed << ", row " << i;
        }
    }
}

TEST(EliminateEquations, ClearsRowAndColumnButTheDiagonal)
{
    for (unsigned seed = 0; seed < 10; ++seed) {
        BlockMatrix matrix = SmallMatrix(seed);
        const std::vector<double> before = DenseOf(matrix);
        const std::vector<unsigned char> fixed = RandomFlags(54, seed);
        EliminateEquations(matrix, fixed);
        const std::vector<double> after = DenseOf(matrix);
        for (std::size_t i = 0; i < 54; ++i) {
            for (std::size_t j = 0; j < 54; ++j) {
                const bool isCleared = i != j && (fixed[i] != 0 || fixed[j] != 0);
                EXPECT_EQ(after[i * 54 + j], isCleared ? 0.0 : before[i * 54 + j]) << i << ", " << j;
            }
        }
    }
}

// Diagonal blocks are stored in full, so both halves must be cleared.
TEST(EliminateEquations, KeepsDiagonalBlocksSymmetric)
{
    BlockMatrix matrix = SmallMatrix(4);
    EliminateEquations(matrix, RandomFlags(54, 4));
    for (int J = 0; J < matrix.pattern.Size(); ++J) {
        const int height = DofsPerNode * matrix.pattern.BlocksOf(J);
        for (int u = 0; u < DofsPerNode; ++u) {
            for (int v = 0; v < u; ++v) {
                EXPECT_EQ(matrix.Column(J)[height * v + u], matrix.Column(J)[height * u + v]);
            }
        }
    }
}

TEST(EliminateEquations, PutsOneOnAZeroDiagonal)
{
    BlockMatrix matrix = RandomMatrix(GraphOf(2, {}), NaturalOrder(2), 0);
    std::fill(matrix.Column(1), matrix.Column(1) + BlockEntries, 0.0); // a node without elements
    std::vector<unsigned char> fixed(12, 0);
    std::fill(fixed.begin() + 6, fixed.end(), 1);
    EliminateEquations(matrix, fixed);
    const std::vector<double> diagonal = DiagonalOf(matrix);
    EXPECT_EQ(std::vector<double>(diagonal.begin() + 6, diagonal.end()), std::vector<double>(6, 1.0));
}

TEST(EliminateEquations, WithoutFixedOnesChangesNothing)
{
    BlockMatrix matrix = SmallMatrix(2);
    const std::vector<double> before = DenseOf(matrix);
    EliminateEquations(matrix, std::vector<unsigned char>(54, 0));
    EXPECT_EQ(DenseOf(matrix), before);
}

} // namespace
} // namespace tarnvexo
