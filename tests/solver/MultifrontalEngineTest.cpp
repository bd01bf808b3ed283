// What the multifrontal engine promises beyond what every engine does (SparseEngineTest.cpp).
#include "solver/MultifrontalEngine.h"

#include "solver/NodeOrdering.h"
#include "support/BlockSystems.h"
#include "support/ChildProcess.h"
#include "support/Eigenvalues.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <pthread.h>
#include <random>
#include <string>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

struct Solved {
    PivotReport report;
    std::vector<double> x; // right-hand sides behind one another
};

Solved SolveWith(SparseEngine& engine, const BlockMatrix& matrix, const std::vector<double>& f)
{
    Solved solved;
    engine.Analyse(matrix.pattern);
    solved.report = engine.Factorise(matrix);
    solved.x = f;
    engine.Solve(solved.x.data(), static_cast<int>(f.size() / solved.report.pivots.size()));
    return solved;
}

Solved SolveMultifrontal(const BlockMatrix& matrix, const std::vector<double>& f, int threads = 1)
{
    MultifrontalEngine engine(threads);
    return SolveWith(engine, matrix, f);
}

std::size_t Equations(const BlockMatrix& matrix)
{
    return static_cast<std::size_t>(DofsPerNode) * matrix.pattern.Size();
}

// A plate beside a chain, a star and nodes without neighbours.
NodeGraph Forest()
{
    std::vector<Edge> edges;
    const NodeGraph plate = QuadGrid(12, 12);
    for (int n = 0; n < plate.Size(); ++n) {
        for (int e = plate.first[n]; e < plate.first[n + 1]; ++e) { edges.push_back({n, plate.neighbours[e]}); }
    }
    for (int n = 151; n < 190; ++n) { edges.push_back({n - 1, n}); }
    for (int n = 191; n < 230; ++n) { edges.push_back({190, n}); }
    return GraphOf(240, edges);
}

// Very many leaves that all hang on the same few nodes: what they leave is gathered by fronts without columns.
NodeGraph LeavesOnHubs()
{
    constexpr int Hubs = 12, Leaves = 400;
    std::vector<Edge> edges;
    for (int leaf = 0; leaf < Leaves; ++leaf) {
        for (int hub = 0; hub < Hubs; ++hub) { edges.push_back({hub, Hubs + leaf}); }
    }
    return GraphOf(Hubs + Leaves, edges);
}

struct NamedGraph {
    std::string name;
    NodeGraph graph;
};

std::vector<NamedGraph> Structures()
{
    return {{"plate", QuadGrid(18, 18)}, {"brick", Brick(7, 7, 7)}, {"girder", Girder(7, 30)},
            {"forest", Forest()},        {"star", Star(150)},       {"leaves on hubs", LeavesOnHubs()},
            {"one node", GraphOf(1, {})}};
}

// Positive definite, and the same with a third of the diagonal negative.
std::vector<BlockMatrix> MatricesOf(const NodeGraph& graph)
{
    std::vector<BlockMatrix> matrices;
    for (const bool isIndefinite : {false, true}) {
        matrices.push_back(RandomMatrix(graph, OrderNodes(graph).order, 1));
        for (int i = 0; isIndefinite && i < DofsPerNode * graph.Size(); i += 3) {
            Diagonal(matrices.back(), i) *= -1.0;
        }
    }
    return matrices;
}

TEST(MultifrontalEngine, GivesTheSameBitsForAnyNumberOfThreads)
{
    for (const auto& [name, graph] : Structures()) {
        for (const BlockMatrix& matrix : MatricesOf(graph)) {
            const std::vector<double> f = RandomVectors(3 * Equations(matrix), 2);
            const Solved alone = SolveMultifrontal(matrix, f, 1);
            EXPECT_LT(BackwardError(matrix, alone.x.data(), f.data()), 1e-14) << name;
            for (const int threads : {2, 3, 8}) {
                const Solved shared = SolveMultifrontal(matrix, f, threads);
                EXPECT_TRUE(SameBits(shared.report.pivots, alone.report.pivots)) << name << ", " << threads;
                EXPECT_EQ(shared.report.failedAt, alone.report.failedAt) << name << ", " << threads;
                EXPECT_TRUE(SameBits(shared.x, alone.x)) << name << ", " << threads;
            }
        }
    }
}

TEST(MultifrontalEngine, AgreesWithTheOtherEngines)
{
    for (const auto& [name, graph] : Structures()) {
        const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 3);
        const std::vector<double> f = RandomVectors(Equations(matrix), 3);
        const Solved own = SolveMultifrontal(matrix, f, 2);
        for (const EngineKind kind : {EngineKind::Cholmod, EngineKind::Skyline}) {
            const Solved other = SolveWith(*MakeSparseEngine(kind, 1), matrix, f);
            EXPECT_LT(LargestDifference(own.x, other.x), 1e-13) << name;
            ASSERT_EQ(own.report.pivots.size(), other.report.pivots.size());
            for (std::size_t i = 0; i < f.size(); ++i) {
                ASSERT_NEAR(own.report.pivots[i], other.report.pivots[i], 1e-13 * other.report.pivots[i])
                    << name << ", equation " << i;
            }
        }
    }
}

// Stiffnesses of every kind: edges whose stiffnesses differ by 10^6 (moduli) times 10^4 (thicknesses) to the third
// power, equations in units from 1e-8 to 1e8, supports 1e10 times as stiff as what they hold.
enum class Scaling { None, Stiffnesses, Units, Supports, All };

BlockMatrix RandomStructure(unsigned seed, Scaling scaling)
{
    std::mt19937 generator(seed);
    const auto uniform = [&] { return generator() / 4294967296.0; };
    const int nodes = 2 + static_cast<int>(generator() % 30);
    const NodeGraph graph = RandomGraph(nodes, nodes + static_cast<int>(generator() % 60), seed);
    const EliminationOrder order = RandomOrder(nodes, seed);
    std::vector<double> stiffness(LowerPattern(graph, order).rows.size(), 1.0);
    if (scaling == Scaling::Stiffnesses || scaling == Scaling::All) {
        for (double& value : stiffness) { value = std::pow(10.0, 6.0 * uniform() + 12.0 * uniform()); }
    }
    BlockMatrix matrix = RandomStiffness(graph, order, seed, stiffness);
    if (scaling == Scaling::Supports || scaling == Scaling::All) {
        for (int i = 0; i < DofsPerNode * nodes; ++i) {
            if (generator() % 8 == 0) {
                Diagonal(matrix, i) *= 1e10;
            }
        }
    }
    if (scaling == Scaling::Units || scaling == Scaling::All) {
        std::vector<double> units(static_cast<std::size_t>(DofsPerNode) * nodes);
        for (double& unit : units) { unit = std::pow(10.0, 16.0 * uniform() - 8.0); }
        Scale(matrix, units);
    }
    return matrix;
}

class MultifrontalResidual : public testing::TestWithParam<Scaling> {};

TEST_P(MultifrontalResidual, IsRoundOff)
{
    for (unsigned seed = 0; seed < 100; ++seed) {
        const BlockMatrix matrix = RandomStructure(seed, GetParam());
        std::vector<double> f = RandomVectors(Equations(matrix), seed);
        const std::vector<double> diagonal = DiagonalOf(matrix);
        for (std::size_t i = 0; i < f.size(); ++i) { f[i] *= std::sqrt(diagonal[i]); } // in the same units
        const Solved solved = SolveMultifrontal(matrix, f);
        ASSERT_TRUE(solved.report.Complete()) << "seed " << seed;
        EXPECT_LT(ScaledBackwardError(matrix, solved.x.data(), f.data()), 1e-14) << "seed " << seed;
    }
}

std::string ScalingName(const testing::TestParamInfo<Scaling>& info)
{
    constexpr const char* names[] = {"PlainStructures", "UnequalStiffnesses", "UnequalUnits", "StiffSupports",
                                     "AllTogether"};
    return names[static_cast<int>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(Of, MultifrontalResidual,
                         testing::Values(Scaling::None, Scaling::Stiffnesses, Scaling::Units, Scaling::Supports,
                                         Scaling::All),
                         ScalingName);

// Sylvester's law of inertia; some multiple of the unit matrix is taken off.
TEST(MultifrontalEngine, HasAsManyNegativePivotsAsNegativeEigenvalues)
{
    std::int64_t mostNegative = 0;
    for (unsigned seed = 0; seed < 30; ++seed) {
        const int nodes = 3 + static_cast<int>(seed % 6), equations = DofsPerNode * nodes;
        const NodeGraph graph = RandomGraph(nodes, 2 * nodes, seed);
        const EliminationOrder order = RandomOrder(nodes, seed);
        BlockMatrix matrix =
            RandomStiffness(graph, order, seed, std::vector<double>(LowerPattern(graph, order).rows.size(), 1.0));
        const std::vector<double> before = SymmetricEigenvalues(DenseOf(matrix).data(), equations);
        // Between two neighbours among the eigenvalues, so that none of the new ones vanishes.
        const std::size_t k = seed * 7 % (before.size() - 1);
        for (int i = 0; i < equations; ++i) { Diagonal(matrix, i) -= 0.5 * (before[k] + before[k + 1]); }
        MultifrontalEngine engine(1);
        engine.Analyse(matrix.pattern);
        const Inertia inertia = InertiaOf(engine.Factorise(matrix));
        EXPECT_EQ(inertia.negative, static_cast<std::int64_t>(k) + 1) << "seed " << seed;
        EXPECT_EQ(inertia.positive, equations - inertia.negative) << "seed " << seed;
        EXPECT_EQ(inertia.leftOut, 0) << "seed " << seed;
        mostNegative = std::max(mostNegative, inertia.negative);
    }
    EXPECT_GT(mostNegative, 20);
}

// The diagonal outweighs the rows, whatever its signs: eigenvalues have them (Gershgorin), and pivots do not grow.
TEST(MultifrontalEngine, SolvesIndefiniteMatrices)
{
    for (unsigned seed = 0; seed < 40; ++seed) {
        const int nodes = 5 + static_cast<int>(seed);
        BlockMatrix matrix = RandomMatrix(RandomGraph(nodes, 2 * nodes, seed), RandomOrder(nodes, seed), seed);
        std::ptrdiff_t flipped = 0;
        for (int i = 0; i < DofsPerNode * nodes; ++i) {
            if (i * 11 % 17 < static_cast<int>(seed % 17)) {
                Diagonal(matrix, i) *= -1.0;
                ++flipped;
            }
        }
        const std::vector<double> f = RandomVectors(Equations(matrix), seed);
        const Solved solved = SolveMultifrontal(matrix, f, 2);
        EXPECT_EQ(std::count_if(solved.report.pivots.begin(), solved.report.pivots.end(),
                                [](double pivot) { return pivot < 0.0; }),
                  flipped);
        EXPECT_EQ(solved.report.Complete(), flipped == 0);
        EXPECT_LT(BackwardError(matrix, solved.x.data(), f.data()), 1e-14) << "seed " << seed;
    }
}

// Equations of the first DOF of nodes that nothing is eliminated into: their pivot is their diagonal entry itself.
std::vector<int> EquationsThatComeFirst(const BlockPattern& pattern)
{
    std::vector<char> hasBefore(static_cast<std::size_t>(pattern.Size()), 0);
    for (int J = 0; J < pattern.Size(); ++J) {
        for (std::size_t b = pattern.first[J] + 1; b < pattern.first[J + 1]; ++b) { hasBefore[pattern.rows[b]] = 1; }
    }
    std::vector<int> equations;
    for (int J = 0; J < pattern.Size(); ++J) {
        if (hasBefore[J] == 0) {
            equations.push_back(DofsPerNode * J);
        }
    }
    return equations;
}

// All of them lose their pivots: the engine tells each, gives their unknowns the value 0 and solves the rest, as if
// rows and columns were not there.
void ExpectLeftOut(double badPivot, int threads)
{
    for (const auto& [name, graph] : Structures()) {
        SCOPED_TRACE(name);
        BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 6);
        const std::vector<int> left = EquationsThatComeFirst(matrix.pattern);
        std::vector<unsigned char> isLeftOut(Equations(matrix), 0);
        for (const int equation : left) {
            isLeftOut[equation] = 1;
            Diagonal(matrix, equation) = badPivot;
        }
        std::vector<double> f = RandomVectors(Equations(matrix), 6);
        const Solved solved = SolveMultifrontal(matrix, f, threads);
        EXPECT_EQ(solved.report.failedAt, left.front());
        for (std::size_t i = 0; i < f.size(); ++i) {
            if (isLeftOut[i] != 0) {
                EXPECT_EQ(solved.x[i], 0.0) << "equation " << i;
                EXPECT_TRUE(solved.report.pivots[i] == badPivot ||
                            (std::isnan(badPivot) && std::isnan(solved.report.pivots[i])))
                    << "equation " << i << ": " << solved.report.pivots[i];
                f[i] = 0.0;
                Diagonal(matrix, static_cast<int>(i)) = 1.0;
            } else {
                EXPECT_GT(solved.report.pivots[i], 0.0) << "equation " << i;
            }
        }
        EliminateEquations(matrix, isLeftOut);
        EXPECT_LT(BackwardError(matrix, solved.x.data(), f.data()), 1e-14);
    }
}

TEST(MultifrontalEngine, LeavesOutEveryEquationWithoutPivot)
{
    for (const int threads : {1, 3}) {
        ExpectLeftOut(0.0, threads);
        ExpectLeftOut(Infinity, threads);
        ExpectLeftOut(NotANumber, threads);
    }
}

// A chain of springs 1 that nothing holds: the last node of every chain is left without stiffness, exactly.
TEST(MultifrontalEngine, TellsTheRigidMotionsOfFreeChains)
{
    constexpr int Chains = 5, Nodes = 7;
    std::vector<Edge> edges;
    for (int n = 0; n < Chains * Nodes; ++n) {
        if ((n + 1) % Nodes != 0) {
            edges.push_back({n, n + 1});
        }
    }
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(GraphOf(Chains * Nodes, edges), NaturalOrder(Chains * Nodes));
    matrix.values = LargeArray(BlockEntries * matrix.pattern.rows.size());
    std::fill_n(matrix.values.Data(), matrix.values.Size(), 0.0);
    for (const auto& [a, b] : edges) {
        for (int u = 0; u < DofsPerNode; ++u) {
            DiagonalBlockEntry(matrix, a, u, u) += 1.0;
            DiagonalBlockEntry(matrix, b, u, u) += 1.0;
            matrix.Column(a)[2 * DofsPerNode * u + DofsPerNode + u] = -1.0;
        }
    }
    // A pull at the first node: the last one stands still, every spring stretches by 1.
    std::vector<double> f(Equations(matrix), 0.0);
    for (int chain = 0; chain < Chains; ++chain) { f[DofsPerNode * Nodes * chain] = 1.0; }
    const Solved solved = SolveMultifrontal(matrix, f);
    for (int n = 0; n < Chains * Nodes; ++n) {
        const int toTheEnd = Nodes - 1 - n % Nodes;
        for (int u = 0; u < DofsPerNode; ++u) {
            EXPECT_EQ(solved.report.pivots[DofsPerNode * n + u], toTheEnd == 0 ? 0.0 : 1.0) << "node " << n;
            EXPECT_EQ(solved.x[DofsPerNode * n + u], u == 0 ? toTheEnd : 0) << "node " << n;
        }
    }
    EXPECT_EQ(solved.report.failedAt, DofsPerNode * (Nodes - 1));
}

TEST(MultifrontalEngine, SolvesSeveralRightHandSidesAsOneByOneToTheLastBit)
{
    for (const auto& [name, graph] : Structures()) {
        const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 4);
        const std::size_t n = Equations(matrix);
        const std::vector<double> f = RandomVectors(20 * n, 4);
        std::vector<double> oneByOne = f;
        for (const int threads : {1, 3}) {
            MultifrontalEngine engine(threads);
            engine.Analyse(matrix.pattern);
            engine.Factorise(matrix);
            for (std::size_t k = 0; threads == 1 && k < 20; ++k) { engine.Solve(&oneByOne[n * k], 1); }
            for (const std::size_t count : {1u, 6u, 8u, 9u, 20u}) {
                const auto end = static_cast<std::ptrdiff_t>(n * count);
                std::vector<double> together(f.begin(), f.begin() + end);
                engine.Solve(together.data(), static_cast<int>(count));
                EXPECT_TRUE(SameBits(together, {oneByOne.begin(), oneByOne.begin() + end}))
                    << name << ", " << count << " right-hand sides, " << threads << " threads";
            }
        }
    }
}

TEST(MultifrontalEngine, ForgetsWhatItFactorisedBefore)
{
    const NodeGraph plate = QuadGrid(14, 15), girder = Girder(6, 30);
    BlockMatrix first = RandomMatrix(plate, OrderNodes(plate).order, 7);
    const BlockMatrix second = RandomMatrix(plate, OrderNodes(plate).order, 8);
    const BlockMatrix third = RandomMatrix(girder, OrderNodes(girder).order, 9);
    const std::vector<double> f = RandomVectors(std::max(Equations(first), Equations(third)), 7);
    const auto fOf = [&](const BlockMatrix& matrix) {
        return std::vector<double>(f.begin(), f.begin() + static_cast<std::ptrdiff_t>(Equations(matrix)));
    };
    MultifrontalEngine engine(2);
    Diagonal(first, 0) = NotANumber; // what is left of it must not reach the next
    Diagonal(first, 700) = -1.0;
    SolveWith(engine, first, fOf(first));
    const PivotReport again = engine.Factorise(second);
    std::vector<double> x = fOf(second);
    engine.Solve(x.data(), 1);
    const Solved fresh = SolveMultifrontal(second, fOf(second));
    EXPECT_TRUE(again.Complete());
    EXPECT_TRUE(SameBits(again.pivots, fresh.report.pivots));
    EXPECT_TRUE(SameBits(x, fresh.x));
    for (const BlockMatrix* other : {&third, &second}) {
        const Solved reused = SolveWith(engine, *other, fOf(*other));
        const Solved expected = SolveMultifrontal(*other, fOf(*other));
        EXPECT_TRUE(SameBits(reused.report.pivots, expected.report.pivots));
        EXPECT_TRUE(SameBits(reused.x, expected.x));
    }
}

// What the analysis tells is what the elimination tree says, or more where fronts were joined; the same for any threads
// but for the workspace.
TEST(MultifrontalEngine, TellsEntriesAndOperationsOfTheFactor)
{
    for (const auto& [name, graph] : Structures()) {
        const ChosenOrder chosen = OrderNodes(graph);
        const BlockPattern pattern = LowerPattern(graph, chosen.order);
        const FactorSize alone = MultifrontalEngine(1).Analyse(pattern);
        const FactorSize shared = MultifrontalEngine(8).Analyse(pattern);
        EXPECT_GE(static_cast<double>(alone.entries), chosen.cost.entries) << name;
        EXPECT_GE(alone.operations, chosen.cost.operations * (1.0 - 1e-12)) << name;
        EXPECT_EQ(alone.entries, shared.entries) << name;
        EXPECT_EQ(alone.operations, shared.operations) << name;
        EXPECT_GE(alone.bytes, 8.0 * static_cast<double>(alone.entries)) << name;
        EXPECT_GE(shared.bytes, 8.0 * static_cast<double>(shared.entries)) << name;
    }
}

TEST(MultifrontalEngine, SolvesNothing)
{
    for (const int threads : {1, 3}) {
        BlockMatrix matrix;
        matrix.pattern = LowerPattern(GraphOf(0, {}), NaturalOrder(0));
        MultifrontalEngine engine(threads);
        EXPECT_EQ(engine.Analyse(matrix.pattern).entries, 0);
        const PivotReport report = engine.Factorise(matrix);
        EXPECT_TRUE(report.Complete());
        EXPECT_TRUE(report.pivots.empty());
        engine.Solve(nullptr, 1);
    }
}

TEST(MultifrontalEngine, SolvesForNoRightHandSide)
{
    const BlockMatrix matrix = RandomMatrix(Chain(4), NaturalOrder(4), 1);
    MultifrontalEngine engine(2);
    engine.Analyse(matrix.pattern);
    engine.Factorise(matrix);
    std::vector<double> untouched = {1.0, 2.0};
    engine.Solve(untouched.data(), 0);
    EXPECT_EQ(untouched, (std::vector<double>{1.0, 2.0}));
}

#ifdef __GLIBC__
// No address space holds the stacks that more threads ask for: the schedule for eight is gone through by one.
TEST(MultifrontalEngine, GivesTheSameBitsWhereTheSystemGivesNoThreads)
{
    const NodeGraph graph = QuadGrid(20, 20);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 5);
    const std::vector<double> f = RandomVectors(Equations(matrix), 5);
    const Solved expected = SolveMultifrontal(matrix, f, 1);
    const ChildResult run = RunInChild([&] {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, std::size_t(1) << 50);
        pthread_setattr_default_np(&attributes);
        const Solved solved = SolveMultifrontal(matrix, f, 8);
        _exit(SameBits(solved.x, expected.x) && SameBits(solved.report.pivots, expected.report.pivots) ? 0 : 1);
    });
    EXPECT_EQ(run.exitCode, 0) << run.error;
}
#endif

} // namespace
} // namespace tarnvexo
