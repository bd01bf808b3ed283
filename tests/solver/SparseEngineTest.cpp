// Every engine behind solver/SparseEngine must pass the same tests.
#include "solver/SparseEngine.h"

#include "solver/NodeOrdering.h"
#include "support/BlockSystems.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

class SparseEngines : public testing::TestWithParam<EngineKind> {
protected:
    static std::unique_ptr<SparseEngine> Engine() { return MakeSparseEngine(GetParam(), 1); }

    // Solves for a known x and returns its largest error, |x| ≤ 1.
    static double ErrorOfKnownSolution(SparseEngine& engine, const BlockMatrix& matrix, int count = 1)
    {
        const std::size_t n = static_cast<std::size_t>(DofsPerNode) * matrix.pattern.Size();
        const std::size_t vectors = static_cast<std::size_t>(count);
        const std::vector<double> x = RandomVectors(n * vectors, 5);
        std::vector<double> f(n * vectors), size(n);
        for (std::size_t c = 0; c < vectors; ++c) { MultiplyBlockMatrix(matrix, &x[n * c], &f[n * c], size.data()); }
        std::vector<double> solution = f;
        engine.Solve(solution.data(), count);
        for (std::size_t c = 0; c < vectors; ++c) {
            EXPECT_LT(BackwardError(matrix, &solution[n * c], &f[n * c]), 1e-14) << "right-hand side " << c;
        }
        return LargestDifference(solution, x);
    }

    static double ErrorFromScratch(const BlockMatrix& matrix)
    {
        const std::unique_ptr<SparseEngine> engine = Engine();
        engine->Analyse(matrix.pattern);
        EXPECT_TRUE(engine->Factorise(matrix).Complete());
        return ErrorOfKnownSolution(*engine, matrix);
    }
};

INSTANTIATE_TEST_SUITE_P(All, SparseEngines,
                         testing::Values(EngineKind::Multifrontal, EngineKind::Cholmod, EngineKind::Skyline),
                         [](const auto& info) -> std::string {
                             return info.param == EngineKind::Multifrontal ? "Multifrontal"
                                    : info.param == EngineKind::Cholmod    ? "Cholmod"
                                                                           : "Skyline";
                         });

// RandomMatrix outweighs its rows by 1 of some 100: the condition is of the order of 100.
constexpr double SolutionError = 1e-12;

TEST_P(SparseEngines, FindAKnownSolution)
{
    for (unsigned seed = 0; seed < 20; ++seed) {
        const int nodes = 1 + 4 * static_cast<int>(seed);
        const NodeGraph graph = nodes < 2 ? GraphOf(nodes, {}) : RandomGraph(nodes, 3 * nodes / 2, seed);
        EXPECT_LT(ErrorFromScratch(RandomMatrix(graph, RandomOrder(nodes, seed), seed)), SolutionError)
            << nodes << " nodes";
    }
}

TEST_P(SparseEngines, SolveOneNodeAndTwo)
{
    EXPECT_LT(ErrorFromScratch(RandomMatrix(GraphOf(1, {}), NaturalOrder(1), 1)), SolutionError);
    EXPECT_LT(ErrorFromScratch(RandomMatrix(GraphOf(2, {}), NaturalOrder(2), 1)), SolutionError);
    EXPECT_LT(ErrorFromScratch(RandomMatrix(Chain(2), NaturalOrder(2), 1)), SolutionError);
}

TEST_P(SparseEngines, SolvePartsThatAreNotConnected)
{
    const NodeGraph graph = GraphOf(9, {{0, 4}, {4, 8}, {1, 2}, {2, 3}, {1, 3}, {5, 7}});
    EXPECT_LT(ErrorFromScratch(RandomMatrix(graph, OrderNodes(graph).order, 2)), SolutionError);
}

TEST_P(SparseEngines, SolveAnOrderedPlate)
{
    const NodeGraph graph = QuadGrid(25, 20);
    EXPECT_LT(ErrorFromScratch(RandomMatrix(graph, OrderNodes(graph).order, 3)), SolutionError);
}

// A node without elements, all its equations taken out: 1 on the diagonal, nothing beside it.
TEST_P(SparseEngines, SolveWithANodeThatIsHeld)
{
    BlockMatrix matrix = RandomMatrix(GraphOf(5, {{0, 1}, {1, 2}, {2, 4}}), NaturalOrder(5), 4);
    std::fill(matrix.Column(3), matrix.Column(3) + BlockEntries, 0.0);
    std::vector<unsigned char> fixed(30, 0);
    std::fill(fixed.begin() + 18, fixed.begin() + 24, 1);
    EliminateEquations(matrix, fixed);
    EXPECT_LT(ErrorFromScratch(matrix), SolutionError);
}

TEST_P(SparseEngines, SolveSeveralRightHandSidesAtOnce)
{
    const NodeGraph graph = QuadGrid(7, 9);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 5);
    const std::unique_ptr<SparseEngine> engine = Engine();
    engine->Analyse(matrix.pattern);
    engine->Factorise(matrix);
    EXPECT_LT(ErrorOfKnownSolution(*engine, matrix, 7), SolutionError);
}

// Entries from 1e-9 to 1e9 beside one another, as stiffnesses of translations and rotations in unlucky units.
TEST_P(SparseEngines, SolveBadlyScaledEquations)
{
    const NodeGraph graph = QuadGrid(8, 8);
    BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 6);
    std::vector<double> scale(384);
    for (std::size_t i = 0; i < scale.size(); ++i) { scale[i] = std::ldexp(1.0, static_cast<int>(i * 7 % 31) - 15); }
    std::vector<double> f(384), size(384);
    const std::vector<double> x = RandomVectors(384, 6);
    MultiplyBlockMatrix(matrix, x.data(), f.data(), size.data());
    Scale(matrix, scale);
    for (std::size_t i = 0; i < f.size(); ++i) { f[i] *= scale[i]; }
    const std::unique_ptr<SparseEngine> engine = Engine();
    engine->Analyse(matrix.pattern);
    ASSERT_TRUE(engine->Factorise(matrix).Complete());
    engine->Solve(f.data(), 1);
    for (std::size_t i = 0; i < f.size(); ++i) { f[i] *= scale[i]; }
    EXPECT_LT(LargestDifference(f, x), SolutionError);
}

TEST_P(SparseEngines, GiveThePivotsOfDenseElimination)
{
    for (unsigned seed = 0; seed < 10; ++seed) {
        const BlockMatrix matrix = RandomMatrix(RandomGraph(12, 20, seed), RandomOrder(12, seed), seed);
        const std::unique_ptr<SparseEngine> engine = Engine();
        engine->Analyse(matrix.pattern);
        const PivotReport report = engine->Factorise(matrix);
        const std::vector<double> expected = DensePivots(DenseOf(matrix));
        ASSERT_EQ(report.pivots.size(), expected.size());
        for (std::size_t i = 0; i < expected.size(); ++i) {
            EXPECT_NEAR(report.pivots[i], expected[i], 1e-13 * expected[i]) << "seed " << seed << ", equation " << i;
        }
    }
}

TEST_P(SparseEngines, TellWhichPivotIsNotPositive)
{
    const NodeGraph graph = QuadGrid(3, 4);
    for (int equation = 0; equation < 72; ++equation) {
        BlockMatrix matrix = RandomMatrix(graph, RandomOrder(12, 8), 8);
        Diagonal(matrix, equation) = equation % 2 == 0 ? -0.5 : 0.0; // every entry on the diagonal was above 1
        const std::vector<double> dense = DensePivots(DenseOf(matrix));
        ASSERT_EQ(std::find_if(dense.begin(), dense.end(), [](double d) { return !(d > 0.0); }) - dense.begin(),
                  equation);
        const std::unique_ptr<SparseEngine> engine = Engine();
        engine->Analyse(matrix.pattern);
        const PivotReport report = engine->Factorise(matrix);
        EXPECT_FALSE(report.Complete());
        EXPECT_EQ(report.failedAt, equation);
        for (int i = 0; i < equation; ++i) { EXPECT_NEAR(report.pivots[i], dense[i], 1e-13 * dense[i]) << equation; }
        if (GetParam() != EngineKind::Multifrontal) {
            for (int i = equation; i < 72; ++i) { EXPECT_EQ(report.pivots[i], 0.0) << equation << ": " << i; }
        }
    }
}

TEST_P(SparseEngines, TellWhichPivotIsNotANumber)
{
    const NodeGraph graph = QuadGrid(3, 4);
    for (int equation : {0, 5, 6, 35, 71}) {
        BlockMatrix matrix = RandomMatrix(graph, RandomOrder(12, 9), 9);
        Diagonal(matrix, equation) = NotANumber;
        const std::unique_ptr<SparseEngine> engine = Engine();
        engine->Analyse(matrix.pattern);
        EXPECT_EQ(engine->Factorise(matrix).failedAt, equation);
    }
}

TEST_P(SparseEngines, CanBeUsedAgain)
{
    const std::unique_ptr<SparseEngine> engine = Engine();
    const NodeGraph plate = QuadGrid(6, 7);
    BlockMatrix first = RandomMatrix(plate, OrderNodes(plate).order, 1);
    engine->Analyse(first.pattern);
    engine->Factorise(first);
    EXPECT_LT(ErrorOfKnownSolution(*engine, first), SolutionError);

    // Other values, the same pattern; among them values that fail.
    const BlockMatrix second = RandomMatrix(plate, OrderNodes(plate).order, 2);
    Diagonal(first, 100) = -1.0;
    EXPECT_EQ(engine->Factorise(first).failedAt, 100);
    EXPECT_TRUE(engine->Factorise(second).Complete());
    EXPECT_LT(ErrorOfKnownSolution(*engine, second), SolutionError);

    // Another pattern.
    const NodeGraph girder = Girder(5, 11);
    const BlockMatrix third = RandomMatrix(girder, OrderNodes(girder).order, 3);
    engine->Analyse(third.pattern);
    EXPECT_TRUE(engine->Factorise(third).Complete());
    EXPECT_LT(ErrorOfKnownSolution(*engine, third), SolutionError);
}

// Chain of three in its order: full lower triangles of 12, 12 and 6 columns' heights. Wider supernodes may store zeros,
// none may be missing; columns of fronts are filled up to whole cache lines.
TEST_P(SparseEngines, TellTheSizeOfTheFactorBeforehand)
{
    const BlockMatrix matrix = RandomMatrix(Chain(3), NaturalOrder(3), 1);
    const FactorSize size = Engine()->Analyse(matrix.pattern);
    EXPECT_GE(size.entries, 57 + 57 + 21);
    EXPECT_LE(size.entries, GetParam() == EngineKind::Multifrontal ? 18 * 24 : 18 * 18);
    EXPECT_GE(size.operations, 559.0 + 559.0 + 91.0);
    EXPECT_GE(size.bytes, 8.0 * static_cast<double>(size.entries));
}

// Fronts of some hundred columns, so that threads share their products.
TEST(Cholmod, GivesTheSameBitsForAnyNumberOfThreads)
{
    const NodeGraph graph = Brick(12, 12, 12);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 10);
    const std::vector<double> f = RandomVectors(10368, 10);
    std::vector<double> solutions[3];
    PivotReport reports[3];
    const int threads[] = {1, 2, 3};
    for (int k = 0; k < 3; ++k) {
        const std::unique_ptr<SparseEngine> engine = MakeSparseEngine(EngineKind::Cholmod, threads[k]);
        engine->Analyse(matrix.pattern);
        reports[k] = engine->Factorise(matrix);
        ASSERT_TRUE(reports[k].Complete());
        solutions[k] = f;
        engine->Solve(solutions[k].data(), 1);
    }
    EXPECT_LT(BackwardError(matrix, solutions[0].data(), f.data()), 1e-14);
    for (int k : {1, 2}) {
        EXPECT_TRUE(SameBits(reports[0].pivots, reports[k].pivots));
        EXPECT_TRUE(SameBits(solutions[0], solutions[k]));
    }
}

// In memory and in a scratch file, once with little enough for one thread's buffers.
TEST(MultifrontalKeepsItsFactor, InAScratchFileToTheSameBits)
{
    const NodeGraph graph = Brick(9, 9, 9);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 11);
    const std::vector<double> f = RandomVectors(2 * 4374, 11);
    std::vector<double> solutions[2];
    for (const bool isOnDisk : {false, true}) {
        const std::unique_ptr<SparseEngine> engine = MakeSparseEngine(EngineKind::Multifrontal, 2);
        const FactorSize size = engine->Analyse(matrix.pattern);
        EXPECT_LT(size.bytesWithScratchFile, size.bytes);
        if (isOnDisk) {
            EXPECT_TRUE(engine->KeepFactorIn(testing::TempDir()));
        }
        for (int turn = 0; turn < 2; ++turn) {
            ASSERT_TRUE(engine->Factorise(matrix).Complete());
            solutions[isOnDisk] = f;
            engine->Solve(solutions[isOnDisk].data(), 2);
        }
    }
    EXPECT_TRUE(SameBits(solutions[0], solutions[1]));
}

TEST(SparseEngine, HasNamesForVersionAndReport)
{
    const std::unique_ptr<SparseEngine> multifrontal = MakeSparseEngine(EngineKind::Multifrontal, 1);
    EXPECT_EQ(multifrontal->Name(), "multifrontal LLᵀ");
    EXPECT_EQ(multifrontal->Kernels().find("Highway "), 0u) << multifrontal->Kernels();
    const std::unique_ptr<SparseEngine> cholmod = MakeSparseEngine(EngineKind::Cholmod, 1);
    EXPECT_EQ(cholmod->Name().find("CHOLMOD "), 0u) << cholmod->Name();
    EXPECT_EQ(cholmod->Kernels().find("OpenBLAS "), 0u) << cholmod->Kernels();
    const std::vector<std::string> lines = DescribeEngines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0], multifrontal->Name() + ", " + multifrontal->Kernels());
    EXPECT_EQ(lines[1], cholmod->Name() + ", " + cholmod->Kernels());
    EXPECT_EQ(lines[2].find("skyline LDLᵀ, Highway "), 0u) << lines[2];
}

} // namespace
} // namespace tarnvexo
