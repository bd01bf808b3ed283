#include "app/ResultChecks.h"

#include "core/Parallel.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"
#include "support/SmallModels.h"
#include "support/SolveSteps.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

BalanceSheet ClosedBalance()
{
    BalanceSheet balance;
    balance.forceSize = 100.0;
    balance.momentSize = 50.0;
    return balance;
}

SolveReport EqualEnergies()
{
    SolveReport report;
    report.modelFile = "m.txt";
    report.strainEnergy = report.externalWork = 3.0;
    return report;
}

TEST(ResultChecks, ResidualIsJudgedByItsLimits)
{
    SolverReport solver;
    for (const auto& [value, verdict] : {std::pair(0.0, Verdict::Pass),
                                         {1e-12, Verdict::Pass},
                                         {2e-12, Verdict::Warn},
                                         {1e-8, Verdict::Warn},
                                         {2e-8, Verdict::Fail},
                                         {Nan, Verdict::Fail}}) {
        solver.relativeResidual = value;
        EXPECT_EQ(JudgeResidual(solver).verdict, verdict) << value;
    }
}

TEST(ResultChecks, ExactBalanceFailsWithARestThatTheClassicOneMayLeave)
{
    BalanceSheet balance = ClosedBalance();
    EXPECT_EQ(JudgeBalance(balance, ScalesOfLoads(balance, 1.0)).verdict, Verdict::Pass);
    balance.remaining.moment = {0.0, 5.0, 0.0};
    EXPECT_EQ(JudgeBalance(balance, ScalesOfLoads(balance, 1.0)).verdict, Verdict::Fail);
    EXPECT_EQ(JudgeBalance(balance, ScalesOfLoads(balance, 1.0)).value, 0.1);
    balance.kind = BalanceKind::Classic;
    EXPECT_EQ(JudgeBalance(balance, ScalesOfLoads(balance, 1.0)).verdict, Verdict::Warn);
    balance.remaining.moment[0] = Nan;
    EXPECT_EQ(JudgeBalance(balance, ScalesOfLoads(balance, 1.0)).verdict, Verdict::Fail);
}

TEST(ResultChecks, MomentsAloneGiveForcesAScaleToo)
{
    BalanceSheet balance;
    balance.momentSize = 200.0;
    const LoadScales scales = ScalesOfLoads(balance, 2.0);
    EXPECT_EQ(scales.force, 0.1);
    balance.remaining.force = {1e-14, 0.0, 0.0};
    EXPECT_EQ(JudgeBalance(balance, scales).verdict, Verdict::Pass);
}

TEST(ResultChecks, ReactionsFailUnlessTheBalanceOrRedundantSupportsExplainThem)
{
    BalanceSheet balance = ClosedBalance();
    const LoadScales scales = ScalesOfLoads(balance, 1.0);
    const std::vector<SupportReaction> small = {{{3, DX}, 1e-9, false}}, large = {{{3, DX}, -20.0, false}};
    EXPECT_EQ(JudgeReactions({}, balance, scales, 0).verdict, Verdict::Pass);
    EXPECT_EQ(JudgeReactions(small, balance, scales, 0).verdict, Verdict::Pass);
    const ResultCheck failed = JudgeReactions(large, balance, scales, 0);
    EXPECT_EQ(failed.verdict, Verdict::Fail);
    EXPECT_EQ(failed.value, 0.2);
    EXPECT_NE(failed.text.find("support of node 3"), std::string::npos) << failed.text;
    EXPECT_EQ(JudgeReactions(large, balance, scales, 2).verdict, Verdict::Warn);
    EXPECT_EQ(JudgeReactions({{{3, RY}, 10.0, true}}, balance, scales, 0).value, 0.2); // of the moments
    balance.kind = BalanceKind::Classic;
    balance.remaining.force = {20.0, 0.0, 0.0};
    EXPECT_EQ(JudgeReactions(large, balance, scales, 0).verdict, Verdict::Warn);
}

TEST(ResultChecks, EnergiesOfMatrixElementsAndLoadsMustAgree)
{
    const LoadScales scales = {100.0, 50.0};
    const LoadSizes balanced = {120.0, 60.0};
    SolveReport report = EqualEnergies();
    EXPECT_EQ(JudgeEnergy(report, 3.0, scales, balanced).verdict, Verdict::Pass);
    EXPECT_EQ(JudgeEnergy(report, 3.0003, scales, balanced).verdict, Verdict::Warn);
    EXPECT_EQ(JudgeEnergy(report, 3.3, scales, balanced).verdict, Verdict::Fail);
    report.strainEnergy = Nan;
    EXPECT_EQ(JudgeEnergy(report, 3.0, scales, balanced).verdict, Verdict::Fail);
}

// Loads that inertia takes up node by node leave round-off of both energies, without any relation.
TEST(ResultChecks, EnergiesThatAreRoundOffAreNotCompared)
{
    SolveReport report = EqualEnergies();
    report.strainEnergy = 1e-30;
    report.externalWork = -7e-31;
    EXPECT_EQ(JudgeEnergy(report, 0.0, {100.0, 50.0}, {1e-13, 1e-13}).verdict, Verdict::Pass);
}

TEST(ResultChecks, WithoutLoadsNothingFailsAndTheTextSaysSo)
{
    const BalanceSheet balance;
    const LoadScales scales = ScalesOfLoads(balance, 0.0);
    const SolveReport report;
    for (const ResultCheck& check :
         {JudgeBalance(balance, scales), JudgeReactions({{{0, DX}, 0.0, false}}, balance, scales, 0),
          JudgeEnergy(report, 0.0, scales, {})}) {
        EXPECT_EQ(check.verdict, Verdict::Pass) << check.name;
        EXPECT_EQ(check.value, 0.0) << check.name;
        EXPECT_NE(check.text.find("no loads"), std::string::npos) << check.name;
    }
}

TEST(ResultChecks, DisplacementsAndRotationsWarnWhereLinearTheoryEnds)
{
    ExtremeValue largest;
    for (const auto& [value, verdict] :
         {std::pair(0.1, Verdict::Pass), {0.11, Verdict::Warn}, {101.0, Verdict::Fail}, {Nan, Verdict::Fail}}) {
        largest.value = value;
        EXPECT_EQ(JudgeRotation(largest).verdict, verdict) << value;
        largest.value = 7.0 * value;
        EXPECT_EQ(JudgeDisplacement(largest, 7.0).verdict, verdict) << value;
    }
    largest.value = 0.0;
    EXPECT_EQ(JudgeDisplacement(largest, 0.0).verdict, Verdict::Pass); // a single node
}

TEST(ResultChecks, NumbersThatAreNoneNameTheirPlaceAndFiles)
{
    ModelStore model = RunSolveSteps(OneOfEachKind(), SolverKind::Skyline).model;
    EXPECT_EQ(JudgeFiniteNumbers(CountNonFiniteResults(model), {ResultFormat::Text}).verdict, Verdict::Pass);
    model.TriElements[0].averagedNegativeFace[2][TXY] = Nan;
    const ResultCheck check = JudgeFiniteNumbers(CountNonFiniteResults(model), {ResultFormat::Text});
    EXPECT_EQ(check.verdict, Verdict::Fail);
    EXPECT_EQ(check.value, 1.0);
    EXPECT_NE(check.text.find("1 of 1 three-node shells (first 0)"), std::string::npos) << check.text;
    EXPECT_EQ(check.files.size(), 3u);
}

TEST(ResultChecks, MessageOfFailedChecksNamesTheFilesNotToBeTrusted)
{
    SolveReport report = EqualEnergies();
    report.resultChecks = {{"energy", Verdict::Pass, 0.0, 1.0, 1.0, "good", {}}};
    EXPECT_EQ(FailedChecksMessage(report), "");
    report.resultChecks.push_back({"finite numbers", Verdict::Fail, 1.0, 0.0, 0.0, "one is not", {"a.txt", "b.txt"}});
    EXPECT_EQ(FailedChecksMessage(report), "m.txt: error: the results do not pass their checks\n"
                                           "  found:    finite numbers: one is not\n"
                                           "  not to be trusted: a.txt, b.txt\n"
                                           "  to do:    correct the model, and solve it again");
    EXPECT_EQ(CheckSummary(report.resultChecks), "1 passed; 1 failed: finite numbers");
}

// ---- energies of the elements

// Solved, with a solution doctored by the test.
struct Energies {
    SolveSteps run = RunSolveSteps(OneOfEachKind(), SolverKind::Skyline);
    ElementEnergies Measure() const { return MeasureElementEnergies(run.model, run.free.parts, run.held); }
};

TEST(ElementEnergy, SumOverTheElementsIsTheStrainEnergy)
{
    const Energies sound;
    EXPECT_NEAR(sound.Measure().strainEnergy, sound.run.strainEnergy, 1e-11 * sound.run.strainEnergy);
}

TEST(ElementEnergy, PerturbedDisplacementOrDroppedElementChangesTheSum)
{
    Energies perturbed;
    perturbed.run.held[DofsPerNode * 4 + DZ] *= 1.5;
    Energies dropped;
    dropped.run.model.TriElements.clear();
    for (const Energies& energies : {perturbed, dropped}) {
        SolveReport report;
        report.strainEnergy = report.externalWork = energies.run.strainEnergy;
        const ResultCheck check = JudgeEnergy(report, energies.Measure().strainEnergy, {1.0, 1.0}, {1.0, 1.0});
        EXPECT_EQ(check.verdict, Verdict::Fail) << check.value;
    }
}

TEST(ElementEnergy, SoundElementsResistNoRigidMotion)
{
    const ElementEnergies energies = Energies().Measure();
    EXPECT_EQ(JudgeRigidTranslations(energies).verdict, Verdict::Pass);
    EXPECT_EQ(JudgeRigidRotations(energies).verdict, Verdict::Pass);
    EXPECT_LT(energies.worst.share, 1e-14);
}

// Without orthogonal axes the rotation of the local matrix is none.
TEST(ElementEnergy, ElementWithWrongAxesIsNamed)
{
    Energies doctored;
    doctored.run.model.TriElements[0].axes[0] = {0.7, 0.0, 0.7};
    const ElementEnergies energies = doctored.Measure();
    const ResultCheck check = JudgeRigidRotations(energies);
    EXPECT_EQ(check.verdict, Verdict::Fail) << energies.worst.share;
    EXPECT_NE(check.text.find("tri 0 "), std::string::npos) << check.text;
}

// One square, corners up and down by h by turns.
ElementEnergies OfWarpedSquare(double h)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.01);
    for (const auto& [x, y, z] : {Vector3{0, 0, h}, {1, 0, -h}, {1, 1, h}, {0, 1, -h}}) { text.Node(x, y, z); }
    text.Quad({0, 1, 2, 3});
    const SolveSteps run = RunSolveSteps(text, SolverKind::Skyline);
    return MeasureElementEnergies(run.model, run.free.parts, run.held);
}

TEST(ElementEnergy, WarpedQuadrilateralResistsTurningByTheSquareOfItsWarping)
{
    const double small = OfWarpedSquare(0.001).worst.share, larger = OfWarpedSquare(0.01).worst.share;
    EXPECT_NEAR(larger / small, 100.0, 5.0);
    EXPECT_GT(small, 1e-8);
    EXPECT_LT(OfWarpedSquare(0.0).worst.share, 1e-14);
    EXPECT_EQ(JudgeRigidRotations(OfWarpedSquare(0.01)).verdict, Verdict::Pass);
    EXPECT_EQ(JudgeRigidRotations(OfWarpedSquare(0.1)).verdict, Verdict::Warn);
    EXPECT_EQ(JudgeRigidTranslations(OfWarpedSquare(0.1)).verdict, Verdict::Pass);
}

TEST(ElementEnergy, IsTheSameForAnyNumberOfThreads)
{
    MeshBuilder mesh({2.1e11, 0.3, 7850.0});
    AddGrid(mesh, 30, 20, 0.01, Cell::Quad, [](int i, int j) {
        return Vector3{0.1 * i, 0.1 * j, 0.01 * std::sin(i * j)};
    });
    std::vector<double> u(mesh.Model().NodeCoordinates.size() * DofsPerNode);
    for (std::size_t i = 0; i < u.size(); ++i) { u[i] = std::cos(static_cast<double>(i)); }
    const ConnectedParts parts = FindConnectedParts(mesh.Model());
    ElementEnergies energies[3];
    for (const int threads : {1, 2, 3}) {
        SetThreadCount(threads);
        energies[threads - 1] = MeasureElementEnergies(mesh.Model(), parts, u);
    }
    SetThreadCount(0);
    for (const ElementEnergies& other : energies) {
        EXPECT_EQ(other.strainEnergy, energies[0].strainEnergy);
        EXPECT_EQ(other.worst.element, energies[0].worst.element);
        EXPECT_EQ(other.worst.share, energies[0].worst.share);
        EXPECT_EQ(other.ofParts[0][3].energy, energies[0].ofParts[0][3].energy);
    }
}

} // namespace
} // namespace tarnvexo
