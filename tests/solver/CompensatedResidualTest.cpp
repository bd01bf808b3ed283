#include "solver/CompensatedResidual.h"

#include "core/Parallel.h"
#include "solver/NodeOrdering.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace tarnvexo {
namespace {

using namespace test;

struct Residual {
    std::vector<double> residual, size;
};

Residual ResidualOf(const BlockMatrix& matrix, const std::vector<double>& f, const std::vector<double>& u,
                    int count = 1)
{
    Residual result = {std::vector<double>(f.size()), std::vector<double>(f.size())};
    FormCompensatedResidual(matrix, BlocksLeftOfDiagonal(matrix.pattern), f.data(), u.data(), count,
                            result.residual.data(), result.size.data());
    return result;
}

// Whole numbers of up to 28 bits and a sign.
double WholeNumber(std::mt19937& generator)
{
    return static_cast<double>(static_cast<std::int64_t>(generator() >> 3) - (1 << 28));
}

// Whole numbers everywhere, symmetric diagonal blocks.
BlockMatrix WholeMatrix(const NodeGraph& graph, const EliminationOrder& order, unsigned seed)
{
    BlockMatrix matrix = RandomMatrix(graph, order, seed);
    std::mt19937 generator(seed);
    for (std::size_t i = 0; i < matrix.values.Size(); ++i) { matrix.values.Data()[i] = WholeNumber(generator); }
    for (int J = 0; J < matrix.pattern.Size(); ++J) {
        const int height = DofsPerNode * matrix.pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            for (int u = 0; u < v; ++u) { matrix.Column(J)[height * v + u] = matrix.Column(J)[height * u + v]; }
        }
    }
    return matrix;
}

std::vector<double> RandomVector(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<double> x(count);
    for (double& value : x) { value = generator() / 2147483648.0 - 1.0; }
    return x;
}

// Chain 0 - 1 - 2 and 0 - 2 (blocks 0: 00, 1: 10, 2: 20, 3: 11, 4: 21, 5: 22).
TEST(LeftBlocks, AreTheBlocksOfARowByAscendingColumn)
{
    const LeftBlocks left = BlocksLeftOfDiagonal(LowerPattern(GraphOf(3, {{0, 1}, {1, 2}, {0, 2}}), NaturalOrder(3)));
    EXPECT_EQ(left.first, (std::vector<std::size_t>{0, 0, 1, 3}));
    EXPECT_EQ(left.block, (std::vector<std::size_t>{1, 2, 4}));
    EXPECT_EQ(left.column, (std::vector<int>{0, 0, 1}));
}

// Loads that are K·u but for the rounding to 53 bits: of 60 bits only the last seven remain, all of them right. Plain
// double precision has no digit of them.
TEST(CompensatedResidual, IsExactWhereAllButTheLastBitsCancel)
{
    double largestPlainError = 0.0;
    for (unsigned seed = 0; seed < 8; ++seed) {
        const int nodes = 1 + 5 * static_cast<int>(seed);
        const NodeGraph graph = nodes < 2 ? GraphOf(1, {}) : RandomGraph(nodes, 2 * nodes, seed);
        const BlockMatrix matrix = WholeMatrix(graph, RandomOrder(nodes, seed), seed);
        const std::vector<double> dense = DenseOf(matrix);
        const std::size_t n = static_cast<std::size_t>(DofsPerNode) * nodes;
        std::mt19937 generator(seed + 100);
        std::vector<double> u(n), f(n), expected(n);
        for (double& value : u) { value = WholeNumber(generator); }
        for (std::size_t i = 0; i < n; ++i) {
            std::int64_t product = 0;
            for (std::size_t j = 0; j < n; ++j) {
                product += static_cast<std::int64_t>(dense[i * n + j]) * static_cast<std::int64_t>(u[j]);
            }
            f[i] = static_cast<double>(product);
            expected[i] = static_cast<double>(static_cast<std::int64_t>(f[i]) - product);
        }
        const Residual found = ResidualOf(matrix, f, u);
        EXPECT_EQ(found.residual, expected) << "seed " << seed;

        std::vector<double> Ku(n), size(n);
        MultiplyBlockMatrix(matrix, u.data(), Ku.data(), size.data());
        for (std::size_t i = 0; i < n; ++i) {
            largestPlainError = std::max(largestPlainError, std::fabs(f[i] - Ku[i] - expected[i]));
            EXPECT_NEAR(found.size[i], size[i] + std::fabs(f[i]), 1e-14 * size[i]);
        }
    }
    EXPECT_GT(largestPlainError, 16.0);
}

TEST(CompensatedResidual, AgreesWithThePlainOneWhereNothingCancels)
{
    const NodeGraph graph = Brick(4, 5, 3);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 1);
    const std::vector<double> u = RandomVector(360, 1), f = RandomVector(360, 2);
    const Residual found = ResidualOf(matrix, f, u);
    std::vector<double> Ku(360), size(360);
    MultiplyBlockMatrix(matrix, u.data(), Ku.data(), size.data());
    for (std::size_t i = 0; i < f.size(); ++i) {
        EXPECT_NEAR(found.residual[i], f[i] - Ku[i], 1e-15 * (size[i] + std::fabs(f[i]))) << i;
    }
}

TEST(CompensatedResidual, HasTheSameBitsForAnyNumberOfThreads)
{
    const NodeGraph graph = QuadGrid(40, 50); // eight ranges
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 3);
    const std::vector<double> u = RandomVector(12000, 3), f = RandomVector(12000, 4);
    const int threadsBefore = ThreadCount();
    SetThreadCount(1);
    const Residual one = ResidualOf(matrix, f, u);
    for (const int threads : {2, 3, 8}) {
        SetThreadCount(threads);
        const Residual found = ResidualOf(matrix, f, u);
        EXPECT_EQ(std::memcmp(one.residual.data(), found.residual.data(), sizeof(double) * f.size()), 0) << threads;
        EXPECT_EQ(std::memcmp(one.size.data(), found.size.data(), sizeof(double) * f.size()), 0) << threads;
    }
    SetThreadCount(threadsBefore);
}

TEST(CompensatedResidual, OfSeveralVectorsIsThatOfEach)
{
    const NodeGraph graph = QuadGrid(30, 20);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 5);
    const std::size_t n = 3600;
    const std::vector<double> u = RandomVector(3 * n, 5), f = RandomVector(3 * n, 6);
    const Residual together = ResidualOf(matrix, f, u, 3);
    for (std::size_t c = 0; c < 3; ++c) {
        const Residual alone = ResidualOf(matrix, {f.begin() + c * n, f.begin() + (c + 1) * n},
                                          {u.begin() + c * n, u.begin() + (c + 1) * n});
        EXPECT_EQ(std::memcmp(&together.residual[c * n], alone.residual.data(), sizeof(double) * n), 0) << c;
        EXPECT_EQ(std::memcmp(&together.size[c * n], alone.size.data(), sizeof(double) * n), 0) << c;
    }
}

// A value that is not finite spoils the rows that it belongs to, and no others.
TEST(CompensatedResidual, ShowsWhereValuesAreNotFinite)
{
    const BlockMatrix matrix = RandomMatrix(Chain(4), NaturalOrder(4), 7);
    for (const double bad : {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()}) {
        std::vector<double> u = RandomVector(24, 7);
        const std::vector<double> f = RandomVector(24, 8);
        u[8] = bad; // node 1: rows of nodes 0, 1 and 2
        const Residual found = ResidualOf(matrix, f, u);
        for (std::size_t i = 0; i < 24; ++i) { EXPECT_EQ(std::isfinite(found.residual[i]), i >= 18) << i; }
    }
}

TEST(CompensatedResidual, OfNoEquationsIsNothing)
{
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(GraphOf(0, {}), NaturalOrder(0));
    EXPECT_TRUE(ResidualOf(matrix, {}, {}).residual.empty());
}

} // namespace
} // namespace tarnvexo
