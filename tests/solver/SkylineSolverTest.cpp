#include "solver/SkylineSolver.h"

#include "app/AssemblyDriver.h"
#include "input/ModelFileReader.h"
#include "solver/SkylineProfile.h"
#include "support/ChildProcess.h"
#include "support/LiteralSkyline.h"
#include "support/VectorUnits.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double Epsilon = std::numeric_limits<double>::epsilon();

// A skyline matrix with its right-hand side, and what the solution makes of them.
struct System {
    explicit System(const std::vector<int>& heights)
        : height(heights), address(DiagonalAddresses(heights)), values(SkylineEntries(heights), 0.0),
          R(heights.size(), 0.0), u(heights.size(), 0.0)
    {
    }

    int Count() const { return static_cast<int>(height.size()); }
    int FirstRow(int column) const { return column - height[column] + 1; }
    double& Entry(int row, int column) { return values[address[column] + (column - row)]; }
    SkylineView View() { return {Count(), height.data(), address.data(), values.data()}; }

    // K(i, j) of the symmetric matrix, 0 outside the profile.
    double Symmetric(int i, int j)
    {
        return std::min(i, j) < FirstRow(std::max(i, j)) ? 0.0 : Entry(std::min(i, j), std::max(i, j));
    }

    std::vector<int> height;
    std::vector<int> address;
    std::vector<double> values;
    std::vector<double> R;
    std::vector<double> u;
};

void Solve(System& system)
{
    FactoriseSkyline(system.View());
    ForwardReduce(system.View(), system.R.data());
    BackSubstitute(system.View(), system.R.data(), system.u.data());
}

void SolveLiterally(System& system)
{
    literal::FactoriseSkyline(system.View());
    literal::ForwardReduce(system.View(), system.R.data());
    literal::BackSubstitute(system.View(), system.R.data(), system.u.data());
}

// Number of the first entry whose bits differ, -1 when none does.
std::ptrdiff_t FirstDifference(const std::vector<double>& a, const std::vector<double>& b)
{
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::memcmp(&a[i], &b[i], sizeof(double)) != 0) {
            return static_cast<std::ptrdiff_t>(i);
        }
    }
    return -1;
}

void ExpectSameBits(const char* what, const std::vector<double>& value, const std::vector<double>& expected)
{
    ASSERT_EQ(value.size(), expected.size());
    const std::ptrdiff_t i = FirstDifference(value, expected);
    EXPECT_EQ(i, -1) << what << " " << i << ": " << value[i] << ", expected " << expected[i];
}

void ExpectLiteralResult(const System& system)
{
    System fast = system;
    System expected = system;
    Solve(fast);
    SolveLiterally(expected);
    ExpectSameBits("factor", fast.values, expected.values);
    ExpectSameBits("reduced load", fast.R, expected.R);
    ExpectSameBits("solution", fast.u, expected.u);
}

void ExpectLiteralResultOnEveryUnit(const System& system)
{
    test::OnEveryVectorUnit([&] { ExpectLiteralResult(system); });
}

using Generator = std::mt19937_64;

int Pick(Generator& generator, int from, int to)
{
    return std::uniform_int_distribution<int>(from, to)(generator);
}

enum class ProfileKind { Diagonal, FullTriangle, Band, Wild, Blocks, Nodes, SpreadNodes };

// Heights of n columns.
std::vector<int> RandomProfile(ProfileKind kind, int n, Generator& generator)
{
    std::vector<int> height(n, 1);
    const int band = Pick(generator, 1, std::max(1, n));
    const int block = Pick(generator, 1, 70);
    int nodeFirstRow = 0;
    for (int j = 0; j < n; ++j) {
        switch (kind) {
        case ProfileKind::Diagonal:
            break;
        case ProfileKind::FullTriangle:
            height[j] = j + 1;
            break;
        case ProfileKind::Band:
            height[j] = std::min(j + 1, band);
            break;
        case ProfileKind::Wild:
            height[j] = Pick(generator, 0, 3) == 0 ? Pick(generator, 1, j + 1) : Pick(generator, 1, std::min(j + 1, 5));
            break;
        case ProfileKind::Blocks: // disconnected, of unequal columns
            height[j] = Pick(generator, 1, j % block + 1);
            break;
        case ProfileKind::Nodes: // the columns of a node start at one row, near the row of the node before
        case ProfileKind::SpreadNodes: {
            if (j % DofsPerNode == 0) {
                const int node = j / DofsPerNode;
                const int reach = kind == ProfileKind::Nodes ? Pick(generator, 8, 12) : Pick(generator, 0, node);
                nodeFirstRow = DofsPerNode * std::max(0, node - reach);
            }
            height[j] = j - nodeFirstRow + 1;
            break;
        }
        }
    }
    return height;
}

enum class ValueKind { Definite, Indefinite, Penalties, ExactZeros, ZeroPivots };

double RandomValue(Generator& generator)
{
    return std::uniform_real_distribution<double>(-1.0, 1.0)(generator);
}

// Small whole numbers, zeros of both signs among them: differences cancel exactly.
double RandomWhole(Generator& generator)
{
    const int value = Pick(generator, -2, 2);
    return value == 0 && Pick(generator, 0, 1) == 0 ? -0.0 : value;
}

void FillRandomly(System& system, ValueKind kind, Generator& generator)
{
    const bool whole = kind == ValueKind::ExactZeros || kind == ValueKind::ZeroPivots;
    for (double& value : system.values) { value = whole ? RandomWhole(generator) : RandomValue(generator); }
    for (double& value : system.R) { value = whole ? RandomWhole(generator) : RandomValue(generator); }
    for (int j = 0; j < system.Count(); ++j) {
        double& diagonal = system.Entry(j, j);
        switch (kind) {
        case ValueKind::Definite:
            diagonal = 4.0 + system.Count();
            break;
        case ValueKind::Indefinite:
            break;
        case ValueKind::Penalties:
            diagonal = 4.0 + system.Count();
            if (Pick(generator, 0, 9) == 0) {
                diagonal = Pick(generator, 0, 1) == 0 ? 1e20 : 1e40;
            }
            break;
        case ValueKind::ExactZeros:
            diagonal = Pick(generator, 0, 1) == 0 ? 1.0 : -4.0;
            break;
        case ValueKind::ZeroPivots:
            if (Pick(generator, 0, 9) != 0) {
                diagonal = 8.0;
            }
            break;
        }
    }
}

class SkylineFactor : public testing::TestWithParam<ProfileKind> {};

TEST_P(SkylineFactor, EqualsTheTextbookLoopToTheLastBitOnEveryVectorUnit)
{
    Generator generator(17 + static_cast<unsigned>(GetParam()));
    std::vector<int> sizes = {0, 1, 2, 3, 5, 6, 7, 8, 9, 11, 47, 48, 49, 54, 95, 96, 97};
    for (int i = 0; i < 12; ++i) { sizes.push_back(Pick(generator, 1, 330)); }
    for (const int n : sizes) {
        for (const ValueKind kind : {ValueKind::Definite, ValueKind::Indefinite, ValueKind::Penalties,
                                     ValueKind::ExactZeros, ValueKind::ZeroPivots}) {
            SCOPED_TRACE("n " + std::to_string(n) + ", values " + std::to_string(static_cast<int>(kind)));
            System system(RandomProfile(GetParam(), n, generator));
            FillRandomly(system, kind, generator);
            ExpectLiteralResultOnEveryUnit(system);
            if (testing::Test::HasFailure()) {
                return;
            }
        }
    }
}

std::string ProfileName(const testing::TestParamInfo<ProfileKind>& info)
{
    constexpr const char* names[] = {"Diagonal", "FullTriangle", "Band", "Wild", "Blocks", "Nodes", "SpreadNodes"};
    return names[static_cast<int>(info.param)];
}

INSTANTIATE_TEST_SUITE_P(EveryProfile, SkylineFactor,
                         testing::Values(ProfileKind::Diagonal, ProfileKind::FullTriangle, ProfileKind::Band,
                                         ProfileKind::Wild, ProfileKind::Blocks, ProfileKind::Nodes,
                                         ProfileKind::SpreadNodes),
                         ProfileName);

// The whole-run cases and the examples, assembled as a run does it.
TEST(SkylineSolver, EqualsTheTextbookLoopsToTheLastBitOnAssembledStructures)
{
    int count = 0;
    for (const char* folder : {"/tests/cases", "/examples"}) {
        for (const auto& entry : std::filesystem::directory_iterator(std::string(TARNVEXO_SOURCE_DIR) + folder)) {
            const std::filesystem::path file = entry.path() / "fem_solving.txt";
            if (!std::filesystem::exists(file)) {
                continue;
            }
            SCOPED_TRACE(file);
            ++count;
            ModelStore model;
            ReadModelFile(model, file.string().c_str());
            LayOutSkyline(model);
            AssembleStiffness(model);
            AssembleLoads(model);
            ApplyRestraints(model);
            System system(model.ColumnHeight);
            system.values = model.GlobalStiffness;
            system.R = model.GLOAD;
            ExpectLiteralResult(system);
        }
    }
    EXPECT_GE(count, 12);
}

// Columns 0 and 1 give 0/0; columns of the same vector that begin below them must not see it.
TEST(SkylineSolver, NotANumberStaysInTheColumnsThatReachIt)
{
    const int n = 60;
    std::vector<int> height(n, 2);
    height[0] = 1;
    height[30] = 1;  // columns 30 ... are not connected with the ones before,
    height[33] = 34; // but for column 33
    System system(height);
    for (int j = 0; j < n; ++j) { system.Entry(j, j) = 4.0; }
    system.Entry(0, 0) = 0.0;
    Solve(system);
    for (int j = 0; j < n; ++j) {
        const bool reached = (j > 0 && j < 30) || j >= 33;
        EXPECT_EQ(std::isnan(system.Entry(j, j)), reached) << "pivot " << j;
    }
}

TEST(SkylineSolver, FactorMultipliesBackToTheMatrix)
{
    Generator generator(5);
    System system(RandomProfile(ProfileKind::Wild, 40, generator));
    FillRandomly(system, ValueKind::Definite, generator);
    System factor = system;
    FactoriseSkyline(factor.View());
    for (int i = 0; i < system.Count(); ++i) {
        for (int j = i; j < system.Count(); ++j) {
            double sum = 0.0;
            double terms = 0.0;
            for (int k = 0; k <= i; ++k) {
                const double Uki = k == i ? 1.0 : factor.Symmetric(k, i);
                const double Ukj = k == j ? 1.0 : factor.Symmetric(k, j);
                sum += Uki * factor.Entry(k, k) * Ukj;
                terms += std::fabs(Uki * factor.Entry(k, k) * Ukj);
            }
            EXPECT_NEAR(sum, system.Symmetric(i, j), 50.0 * Epsilon * terms) << i << ", " << j;
        }
    }
}

// Residual R - K·u against the size of its terms: round-off only.
TEST(SkylineSolver, KnownSolutionComesBackWithARoundOffResidual)
{
    Generator generator(6);
    for (const int n : {1, 2, 7, 48, 151, 300}) {
        System system(RandomProfile(ProfileKind::SpreadNodes, n, generator));
        FillRandomly(system, ValueKind::Definite, generator);
        std::vector<double> x(n);
        for (double& value : x) { value = RandomValue(generator); }
        for (int i = 0; i < n; ++i) {
            system.R[i] = 0.0;
            for (int j = 0; j < n; ++j) { system.R[i] += system.Symmetric(i, j) * x[j]; }
        }
        System solved = system;
        Solve(solved);
        for (int i = 0; i < n; ++i) {
            double residual = system.R[i];
            double terms = std::fabs(system.R[i]);
            for (int j = 0; j < n; ++j) {
                residual -= system.Symmetric(i, j) * solved.u[j];
                terms += std::fabs(system.Symmetric(i, j) * solved.u[j]);
            }
            EXPECT_NEAR(residual, 0.0, 50.0 * Epsilon * terms) << "n " << n << ", equation " << i;
            EXPECT_NEAR(solved.u[i], x[i], 50.0 * Epsilon * n) << "n " << n << ", equation " << i;
        }
    }
}

TEST(SkylineSolver, SingleEquationIsOneDivision)
{
    System system({1});
    system.values = {3.0};
    system.R = {1.0};
    Solve(system);
    EXPECT_EQ(system.u[0], 1.0 / 3.0);
    EXPECT_EQ(system.values[0], 3.0);
}

TEST(SkylineSolver, DiagonalMatrixIsDividedOnly)
{
    const int n = 100;
    System system(std::vector<int>(n, 1));
    for (int j = 0; j < n; ++j) {
        system.values[j] = 3.0 + j;
        system.R[j] = 1.0 - 0.7 * j;
    }
    const System before = system;
    Solve(system);
    EXPECT_EQ(system.values, before.values);
    EXPECT_EQ(system.R, before.R);
    for (int j = 0; j < n; ++j) { EXPECT_EQ(system.u[j], before.R[j] / before.values[j]) << j; }
}

// A row of springs of stiffness 1 between the equations 0 ... n-1, the first one held by the penalty, 1 at the last.
TEST(SkylineSolver, PenaltyWithoutLoadGivesNoDisplacement)
{
    const int n = 12;
    std::vector<int> height(n, 2);
    height[0] = 1;
    System system(height);
    for (int j = 0; j < n; ++j) {
        system.Entry(j, j) = j == n - 1 ? 1.0 : 2.0;
        if (j > 0) {
            system.Entry(j - 1, j) = -1.0;
        }
    }
    system.Entry(0, 0) = RestraintPenalty;
    system.R[n - 1] = 1.0;
    Solve(system);
    EXPECT_NEAR(system.u[0], 0.0, 2.0 / RestraintPenalty);
    for (int j = 1; j < n; ++j) { EXPECT_NEAR(system.u[j], j, 20.0 * Epsilon * n) << j; }
}

TEST(SkylineSolver, NegativePivotIsAccepted)
{
    System system({1, 2});
    system.values = {-2.0, 3.0, 4.0}; // K = [-2 4; 4 3], u = (1, 2)
    system.R = {6.0, 10.0};
    Solve(system);
    EXPECT_EQ(system.u, (std::vector<double>{1.0, 2.0}));
    EXPECT_EQ(system.values, (std::vector<double>{-2.0, 11.0, -2.0}));
}

TEST(SkylineSolver, ZeroPivotGivesNonFiniteNumbers)
{
    System system({1, 2});
    system.values = {0.0, 1.0, 1.0};
    system.R = {1.0, 1.0};
    Solve(system);
    EXPECT_EQ(system.Entry(0, 1), Infinity);
    EXPECT_FALSE(std::isfinite(system.u[0]));
    EXPECT_FALSE(std::isfinite(system.u[1]));
}

// The multiplier 1/-inf is -0, its term -0·1 = -0, and -0 - (-0) would be +0.
TEST(SkylineSolver, ZeroMultiplierSkipsTheUpdateOfTheDiagonal)
{
    System system({1, 2});
    system.values = {-Infinity, -0.0, 1.0};
    FactoriseSkyline(system.View());
    EXPECT_EQ(system.Entry(0, 1), 0.0);
    EXPECT_TRUE(std::signbit(system.Entry(1, 1)));
}

TEST(SkylineSolver, ZeroMultiplierGivesTheResultOfTheFullUpdate)
{
    System system({1, 2, 3});
    system.values = {2.0, 3.0, 0.0, 4.0, 1.0, 0.0}; // columns (2), (3, 0), (4, 1, 0)
    FactoriseSkyline(system.View());
    EXPECT_EQ(system.values, (std::vector<double>{2.0, 3.0, 0.0, 4.0 - 1.0 / 3.0, 1.0 / 3.0, 0.0}));
}

TEST(SkylineSolver, EveryColumnIsReportedOnceAndInOrder)
{
    const int n = 131;
    System system(std::vector<int>(n, 1));
    std::vector<int> reported;
    FactoriseSkyline(system.View(), [&reported](int column) { reported.push_back(column); });
    ASSERT_EQ(reported.size(), static_cast<std::size_t>(n));
    for (int j = 0; j < n; ++j) { EXPECT_EQ(reported[j], j); }
}

// Unit matrix, ones as loads.
ModelStore UnitModel(int n)
{
    ModelStore model;
    model.EquationCount = n;
    model.ColumnHeight.assign(n, 1);
    model.DiagonalAddress = DiagonalAddresses(model.ColumnHeight);
    model.GlobalStiffness.assign(n, 1.0);
    model.GLOAD.assign(n, 1.0);
    return model;
}

std::string ConsoleOfSolution(int n)
{
    return test::RunInChild([n] {
               ModelStore model = UnitModel(n);
               SolveSkyline(model);
           })
        .output;
}

const std::string BackOverText(13, '\b');

TEST(SolveSkyline, WritesEveryDisplacement)
{
    ModelStore model = UnitModel(100);
    SolveSkyline(model);
    EXPECT_EQ(model.GlobalDisplacement, std::vector<double>(100, 1.0));
}

TEST(SolveSkyline, DoesNothingWithoutEquations)
{
    const test::ChildResult run = test::RunInChild([] {
        ModelStore model;
        SolveSkyline(model);
        if (!model.GlobalDisplacement.empty()) {
            std::exit(3);
        }
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
}

TEST(SolveSkyline, SingleEquationCountsInTheFirstForm)
{
    EXPECT_EQ(ConsoleOfSolution(1), "100%Completed." + BackOverText);
}

TEST(SolveSkyline, CounterOf200EquationsStartsAt0AndEndsBehind100)
{
    std::string expected = " 0%Completed." + BackOverText;
    for (int j = 1; j < 199; ++j) {
        const int percentage = (j + 1) * 100 / 200;
        expected += (percentage < 10 ? " " : "") + std::to_string(percentage) + "\b\b";
    }
    expected += "100%Completed.";
    EXPECT_EQ(ConsoleOfSolution(200), expected);
}

TEST(SolveSkyline, CounterOfTwoEquationsHasNoMiddle)
{
    EXPECT_EQ(ConsoleOfSolution(2), "50%Completed." + BackOverText + "100%Completed.");
}

TEST(SolutionProgress, PercentageOfManyEquationsDoesNotOverflow)
{
    EXPECT_EQ(SolutionProgress(29999998, 60000000), "49\b\b");
}

} // namespace
} // namespace tarnvexo
