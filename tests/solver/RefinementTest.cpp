#include "solver/Refinement.h"

#include "core/Parallel.h"
#include "solver/NodeOrdering.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <numeric>
#include <random>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double Ulp = std::numeric_limits<double>::epsilon();

// Where the solution is known to the last bit: the Hilbert matrix of the order, times the least common multiple of 1 to
// 2·order − 1, is one of whole numbers. On two nodes; directions beyond the order have 1 on the diagonal.
BlockMatrix HilbertMatrix(int order)
{
    std::int64_t multiple = 1;
    for (std::int64_t k = 2; k < 2 * order; ++k) { multiple = std::lcm(multiple, k); }
    BlockMatrix matrix = RandomMatrix(Chain(2), NaturalOrder(2), 1);
    const auto entry = [&](int i, int j) {
        const bool isInside = i < order && j < order;
        return isInside ? static_cast<double>(multiple / (i + j + 1)) : i == j ? 1.0 : 0.0;
    };
    for (int J = 0; J < 2; ++J) {
        const int height = DofsPerNode * matrix.pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            for (int i = 0; i < height; ++i) {
                matrix.Column(J)[height * v + i] = entry(DofsPerNode * J + i, DofsPerNode * J + v);
            }
        }
    }
    return matrix;
}

// Whole numbers of up to ten bits, so that K·u needs no rounding.
std::vector<double> WholeVector(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<double> x(count);
    for (double& value : x) { value = static_cast<double>(generator() % 1000) + 1.0; }
    return x;
}

std::vector<double> RandomVector(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<double> x(count);
    for (double& value : x) { value = generator() / 2147483648.0 - 1.0; }
    return x;
}

std::vector<double> Product(const BlockMatrix& matrix, const std::vector<double>& x)
{
    std::vector<double> y(x.size()), size(x.size());
    MultiplyBlockMatrix(matrix, x.data(), y.data(), size.data());
    return y;
}

// Of translations against the largest one, or of rotations.
double Error(const double* u, const double* exact, std::size_t n)
{
    double worst = 0.0;
    for (const bool rotations : {false, true}) {
        double difference = 0.0, largest = 0.0;
        for (std::size_t i = 0; i < n; ++i) {
            if ((i % DofsPerNode >= RX) == rotations) {
                difference = std::max(difference, std::fabs(u[i] - exact[i]));
                largest = std::max(largest, std::fabs(exact[i]));
            }
        }
        worst = std::max(worst, difference / largest);
    }
    return worst;
}

// An engine whose factor is that of another matrix, or whose solutions are of no use.
class SpoiltEngine : public SparseEngine {
public:
    SpoiltEngine(SparseEngine& engine, double factor) : engine(engine), factor(factor) {}
    std::string Name() const override { return engine.Name(); }
    std::string Kernels() const override { return engine.Kernels(); }
    FactorSize Analyse(const BlockPattern& pattern) override { return engine.Analyse(pattern); }
    PivotReport Factorise(const BlockMatrix& matrix) override
    {
        equations = static_cast<std::size_t>(DofsPerNode) * matrix.pattern.Size();
        return engine.Factorise(matrix);
    }
    void Solve(double* vectors, int count) override
    {
        engine.Solve(vectors, count);
        for (std::size_t i = 0; i < equations * static_cast<std::size_t>(count); ++i) { vectors[i] *= factor; }
    }

private:
    SparseEngine& engine;
    double factor;
    std::size_t equations = 0;
};

class Refinements : public testing::TestWithParam<EngineKind> {
protected:
    static std::unique_ptr<SparseEngine> Factorised(const BlockMatrix& matrix)
    {
        std::unique_ptr<SparseEngine> engine = MakeSparseEngine(GetParam(), 1);
        engine->Analyse(matrix.pattern);
        EXPECT_TRUE(engine->Factorise(matrix).Complete());
        return engine;
    }
};

INSTANTIATE_TEST_SUITE_P(All, Refinements,
                         testing::Values(EngineKind::Multifrontal, EngineKind::Cholmod, EngineKind::Skyline),
                         [](const auto& info) -> std::string {
                             return info.param == EngineKind::Multifrontal ? "Multifrontal"
                                    : info.param == EngineKind::Cholmod    ? "Cholmod"
                                                                           : "Skyline";
                         });

// Condition 1.5e7, 1.5e10 and 1.6e13: the solution has lost up to that many digits, the refined one none.
TEST_P(Refinements, GiveAllDigitsBackToIllConditionedEquations)
{
    for (const int order : {6, 8, 10}) {
        const BlockMatrix matrix = HilbertMatrix(order);
        const std::unique_ptr<SparseEngine> engine = Factorised(matrix);
        const std::vector<double> exact = WholeVector(12, static_cast<unsigned>(order));
        const std::vector<double> f = Product(matrix, exact);
        std::vector<double> u = f;
        engine->Solve(u.data(), 1);
        const double errorBefore = Error(u.data(), exact.data(), 12);
        const RefinedSolution refined =
            RefineSolutions(*engine, matrix, Corrections::Always, f.data(), u.data(), 1).front();
        const double error = Error(u.data(), exact.data(), 12);
        EXPECT_LE(error, 1e-12) << order;
        EXPECT_LT(error, 1e-3 * errorBefore) << order;
        EXPECT_GE(refined.steps, 1) << order;
        ASSERT_TRUE(refined.errorBefore && refined.error) << order;
        EXPECT_NEAR(*refined.errorBefore, errorBefore, 0.5 * errorBefore) << order;
        EXPECT_LE(error, 10.0 * *refined.error) << order;
        EXPECT_LE(refined.residual, Ulp) << order;
    }
}

// Condition 1.7e16 and 4e17 where there is a factor at all: nothing is promised but that nothing gets worse.
TEST_P(Refinements, NeverMakeASolutionWorse)
{
    for (const int order : {11, 12}) {
        const BlockMatrix matrix = HilbertMatrix(order);
        std::unique_ptr<SparseEngine> engine = MakeSparseEngine(GetParam(), 1);
        engine->Analyse(matrix.pattern);
        if (!engine->Factorise(matrix).Complete()) {
            continue;
        }
        const std::vector<double> exact = WholeVector(12, 3);
        const std::vector<double> f = Product(matrix, exact);
        std::vector<double> u = f;
        engine->Solve(u.data(), 1);
        const double errorBefore = Error(u.data(), exact.data(), 12);
        RefineSolutions(*engine, matrix, Corrections::Always, f.data(), u.data(), 1);
        EXPECT_LE(Error(u.data(), exact.data(), 12), errorBefore) << order;
    }
}

TEST_P(Refinements, LeaveGoodSolutionsAlone)
{
    const NodeGraph graph = QuadGrid(9, 8);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 2);
    const std::unique_ptr<SparseEngine> engine = Factorised(matrix);
    const std::vector<double> f = RandomVector(432, 2);
    std::vector<double> u = f;
    engine->Solve(u.data(), 1);
    const std::vector<double> before = u;
    const RefinedSolution refined =
        RefineSolutions(*engine, matrix, Corrections::WhereNeeded, f.data(), u.data(), 1).front();
    EXPECT_EQ(u, before);
    EXPECT_EQ(refined.steps, 0);
    EXPECT_FALSE(refined.error || refined.errorBefore);
    EXPECT_EQ(refined.residual, refined.residualBefore);
    EXPECT_LT(refined.residual, 1e-15);
}

// The factor solves with an error of one per cent each time: two digits a step.
TEST_P(Refinements, ConvergeAsFastAsTheFactorIsGood)
{
    const NodeGraph graph = QuadGrid(9, 8);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 3);
    const std::unique_ptr<SparseEngine> sound = Factorised(matrix);
    SpoiltEngine engine(*sound, 0.99);
    engine.Factorise(matrix);
    const std::vector<double> exact = RandomVector(432, 3);
    const std::vector<double> f = Product(matrix, exact);
    std::vector<double> u = f;
    engine.Solve(u.data(), 1);
    const RefinedSolution refined =
        RefineSolutions(engine, matrix, Corrections::WhereNeeded, f.data(), u.data(), 1).front();
    EXPECT_EQ(refined.steps, 5);
    EXPECT_NEAR(*refined.errorBefore, 0.01, 0.001);
    EXPECT_LT(Error(u.data(), exact.data(), 432), 1.1e-12);
    EXPECT_NEAR(*refined.error, 1e-12, 2e-13);
}

// Factors so wrong that corrections lead away: too large, of the wrong sign, not numbers.
TEST_P(Refinements, MakeNoCorrectionThatLeadsAway)
{
    const NodeGraph graph = QuadGrid(4, 5);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 4);
    const std::unique_ptr<SparseEngine> sound = Factorised(matrix);
    const std::vector<double> f = RandomVector(120, 4);
    for (const double factor :
         {-1.0, 3.0, 0.1, std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
        SpoiltEngine engine(*sound, factor);
        engine.Factorise(matrix);
        std::vector<double> u = f;
        sound->Solve(u.data(), 1);
        for (double& value : u) { value *= 1.25; } // to be corrected by a fifth
        const RefinedSolution refined =
            RefineSolutions(engine, matrix, Corrections::Always, f.data(), u.data(), 1).front();
        EXPECT_TRUE(std::all_of(u.begin(), u.end(), [](double value) { return std::isfinite(value); })) << factor;
        EXPECT_LE(refined.residual, refined.residualBefore) << factor;
        EXPECT_GE(*refined.error, 0.01) << factor;
    }
}

TEST_P(Refinements, TreatSeveralRightHandSidesEachAsAlone)
{
    const BlockMatrix matrix = HilbertMatrix(9);
    const std::unique_ptr<SparseEngine> engine = Factorised(matrix);
    std::vector<double> exact, f;
    for (unsigned c = 0; c < 4; ++c) {
        std::vector<double> x = WholeVector(12, c);
        if (c == 1) {
            std::fill(x.begin(), x.end(), 0.0);
        }
        const std::vector<double> Kx = Product(matrix, x);
        exact.insert(exact.end(), x.begin(), x.end());
        f.insert(f.end(), Kx.begin(), Kx.end());
    }
    std::vector<double> u = f;
    engine->Solve(u.data(), 4);
    const std::vector<RefinedSolution> refined =
        RefineSolutions(*engine, matrix, Corrections::Always, f.data(), u.data(), 4);
    ASSERT_EQ(refined.size(), 4u);
    for (std::size_t c = 0; c < 4; ++c) {
        if (c == 1) {
            EXPECT_EQ(refined[c].steps, 0);
            EXPECT_EQ(refined[c].residual, 0.0);
            EXPECT_FALSE(refined[c].error);
            EXPECT_EQ(refined[c].strainEnergy, 0.0);
            for (std::size_t i = 12; i < 24; ++i) { EXPECT_EQ(u[i], 0.0); }
        } else {
            EXPECT_GE(refined[c].steps, 1) << c;
            EXPECT_LE(Error(&u[12 * c], &exact[12 * c], 12), 1e-12) << c;
            double work = 0.0;
            for (std::size_t i = 12 * c; i < 12 * (c + 1); ++i) { work += 0.5 * f[i] * exact[i]; }
            EXPECT_NEAR(refined[c].strainEnergy, work, 1e-14 * work) << c;
        }
    }
}

TEST_P(Refinements, LeaveSolutionsThatAreNotFiniteAsTheyAre)
{
    const BlockMatrix matrix = HilbertMatrix(6);
    const std::unique_ptr<SparseEngine> engine = Factorised(matrix);
    std::vector<double> f = WholeVector(24, 6);
    std::vector<double> u = f;
    engine->Solve(u.data(), 2);
    u[3] = std::numeric_limits<double>::quiet_NaN();
    const std::vector<double> before = u;
    const std::vector<RefinedSolution> refined =
        RefineSolutions(*engine, matrix, Corrections::Always, f.data(), u.data(), 2);
    EXPECT_EQ(std::memcmp(u.data(), before.data(), 12 * sizeof(double)), 0);
    EXPECT_TRUE(std::isnan(refined[0].residual));
    EXPECT_EQ(refined[0].steps, 0);
    EXPECT_EQ(refined[1].steps, 1);
}

TEST_P(Refinements, HaveTheSameBitsForAnyNumberOfThreads)
{
    const NodeGraph graph = QuadGrid(30, 30);
    const BlockMatrix matrix = RandomMatrix(graph, OrderNodes(graph).order, 9);
    const std::unique_ptr<SparseEngine> engine = Factorised(matrix);
    const std::vector<double> f = RandomVector(5400, 9);
    std::vector<double> first = f;
    engine->Solve(first.data(), 1);
    const int threadsBefore = ThreadCount();
    std::vector<double> one;
    for (const int threads : {1, 2, 3, 8}) {
        SetThreadCount(threads);
        std::vector<double> u = first;
        RefineSolutions(*engine, matrix, Corrections::Always, f.data(), u.data(), 1);
        if (one.empty()) {
            one = u;
            EXPECT_NE(std::memcmp(u.data(), first.data(), u.size() * sizeof(double)), 0);
        }
        EXPECT_EQ(std::memcmp(u.data(), one.data(), u.size() * sizeof(double)), 0) << threads;
    }
    SetThreadCount(threadsBefore);
}

} // namespace
} // namespace tarnvexo
