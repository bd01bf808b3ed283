// The solve run from model file to report, on random structures.
#include "app/SolveDriver.h"

#include "core/Parallel.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"
#include "support/SolveSteps.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <map>
#include <numeric>

namespace tarnvexo {
namespace {

using namespace test;

constexpr unsigned Models = 60;

Supports SupportsOf(unsigned seed)
{
    return seed % 5 == 4 ? Supports::None : seed % 2 == 0 ? Supports::ThreeTwoOne : Supports::More;
}

SolveOptions OptionsFor(const ModelText& text)
{
    std::ofstream("model.txt") << text.Text();
    SolveOptions options;
    options.modelFile = "model.txt";
    options.formats = {};
    return options;
}

SolveReport ReportOf(const ModelText& text, BalanceKind balance = BalanceKind::Exact)
{
    const TemporaryDirectory directory;
    SolveOptions options = OptionsFor(text);
    options.balance = balance;
    return Solve(options, {});
}

RunFailure FailureOf(const ModelText& text)
{
    try {
        ReportOf(text);
    } catch (const RunFailure& failure) {
        return failure;
    }
    ADD_FAILURE() << "nothing was refused";
    return RunFailure(ExitGood, "");
}

std::map<std::string, std::string> FilesOf(const std::string& directory)
{
    std::map<std::string, std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        std::ifstream file(entry.path(), std::ios::binary);
        files[entry.path().filename().string()] = std::string(std::istreambuf_iterator<char>(file), {});
    }
    return files;
}

double LengthOf(const Vector3& v)
{
    return Length(v);
}

TEST(Solve, GivesTheSameWithEitherEngine)
{
    for (unsigned seed = 0; seed < Models; ++seed) {
        const ModelText text = RandomModel(seed, SupportsOf(seed));
        const SolveSteps sparse = RunSolveSteps(text, SolverKind::Sparse);
        const SolveSteps skyline = RunSolveSteps(text, SolverKind::Skyline);
        EXPECT_LT(RelativeDifference(sparse.held, skyline.held), 1e-10) << "seed " << seed;
        EXPECT_LT(RelativeDifference(ShellStresses(sparse.model), ShellStresses(skyline.model)), 1e-10) << seed;
        EXPECT_NEAR(sparse.strainEnergy, skyline.strainEnergy, 1e-10 * skyline.strainEnergy) << "seed " << seed;
        EXPECT_LT(sparse.solver.relativeResidual, 1e-14) << "seed " << seed;
        EXPECT_LT(skyline.solver.relativeResidual, 1e-14) << "seed " << seed;
    }
}

TEST(Solve, WritesTheSameFilesWithOneThreadAndTwo)
{
    for (unsigned seed = 0; seed < Models; seed += 7) { // every kind three times
        const TemporaryDirectory directory;
        SolveOptions options = OptionsFor(RandomModel(seed, SupportsOf(seed)));
        options.formats = {ResultFormat::Text, ResultFormat::Vtu, ResultFormat::Gltf, ResultFormat::Csv};
        options.solver = seed % 2 == 0 ? SolverKind::Sparse : SolverKind::Skyline;
        std::map<std::string, std::string> files[2];
        for (const int threads : {1, 2}) {
            SetThreadCount(threads);
            options.outputDirectory = "threads" + std::to_string(threads);
            Solve(options, {});
            files[threads - 1] = FilesOf(options.outputDirectory);
        }
        SetThreadCount(0);
        EXPECT_EQ(files[0].size(), FilesOf(options.formats).size());
        EXPECT_TRUE(files[0] == files[1]) << "seed " << seed;
    }
}

TEST(Solve, BalancesEveryModelExactly)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        const BalanceSheet balance =
            RunSolveSteps(RandomModel(seed, Supports::ThreeTwoOne), SolverKind::Skyline).balance;
        EXPECT_LT(balance.relativeForce, 1e-13) << "seed " << seed;
        EXPECT_LT(balance.relativeMoment, 1e-13) << "seed " << seed;
    }
}

TEST(Solve, TellsWhatTheClassicBalanceWouldLeave)
{
    for (unsigned seed = 0; seed < 3; ++seed) {
        const ModelText text = RandomModel(seed, Supports::ThreeTwoOne);
        const BalanceSheet exact = ReportOf(text).balance, classic = ReportOf(text, BalanceKind::Classic).balance;
        EXPECT_GT(classic.relativeForce + classic.relativeMoment, 1e-6) << "seed " << seed;
        EXPECT_LT(LengthOf(exact.classicRemaining.force - classic.remaining.force), 1e-12 * exact.forceSize);
        EXPECT_LT(LengthOf(exact.classicRemaining.moment - classic.remaining.moment), 1e-12 * exact.momentSize);
    }
}

// Supports that only fix the position carry nothing when the balance closes, and what it leaves when it does not.
TEST(Solve, LeavesNominalSupportsWithoutReactions)
{
    for (unsigned seed = 0; seed < 6; ++seed) {
        const ModelText text = RandomModel(seed, Supports::ThreeTwoOne, Quads::Flat);
        const SolveReport exact = ReportOf(text), classic = ReportOf(text, BalanceKind::Classic);
        EXPECT_EQ(exact.reactions.size(), 6u);
        EXPECT_LT(exact.largestReaction, 1e-10 * exact.balance.forceSize) << "seed " << seed;
        EXPECT_GT(classic.largestReaction, 1e-6 * classic.balance.forceSize) << "seed " << seed;
        Vector3 sum = {};
        for (const SupportReaction& reaction : classic.reactions) { sum[reaction.at.dof] += reaction.value; }
        EXPECT_LT(LengthOf(sum + classic.balance.remaining.force), 1e-8 * classic.balance.forceSize) << "seed " << seed;
    }
}

TEST(Solve, DoesAsMuchWorkInsideAsOutside)
{
    for (unsigned seed = 0; seed < Models; ++seed) {
        const SolveSteps run = RunSolveSteps(RandomModel(seed, SupportsOf(seed)), SolverKind::Skyline);
        const double work = 0.5 * std::inner_product(run.held.begin(), run.held.end(), run.model.GLOAD.begin(), 0.0);
        EXPECT_GT(run.strainEnergy, 0.0);
        EXPECT_NEAR(run.strainEnergy, work, 1e-9 * work) << "seed " << seed;
    }
}

TEST(Solve, TellsOfEveryStageWhenItBeginsAndWhenItEnds)
{
    const TemporaryDirectory directory;
    const SolveOptions options = OptionsFor(OneOfEachKind());
    std::vector<std::string> told;
    const SolveReport report = Solve(options, [&](const Progress& progress) {
        told.push_back(std::to_string(progress.number) + "/" + std::to_string(progress.stages) + " " + progress.stage +
                       (progress.ended ? " ends" : " begins"));
        EXPECT_GE(progress.seconds, progress.stageSeconds);
        EXPECT_GE(progress.secondsLeft, 0.0);
    });
    const char* const stages[] = {"read",      "check", "order",    "analyse",      "assemble",
                                  "factorise", "solve", "stresses", "beam sections"};
    ASSERT_EQ(told.size(), 18u);
    ASSERT_EQ(report.stages.size(), 9u);
    for (int s = 0; s < 9; ++s) {
        EXPECT_EQ(told[2 * s], std::to_string(s + 1) + "/9 " + stages[s] + " begins");
        EXPECT_EQ(told[2 * s + 1], std::to_string(s + 1) + "/9 " + stages[s] + " ends");
        EXPECT_EQ(report.stages[s].name, stages[s]);
    }
}

TEST(Solve, RefusesAModelWithoutNodes)
{
    const RunFailure failure = FailureOf(ModelText());
    EXPECT_EQ(failure.exitCode, ExitBadModel);
    EXPECT_EQ(std::string(failure.what()).find("model.txt: error: the model has 0 nodes\n"), 0u) << failure.what();
}

TEST(Solve, RefusesABeamOfAnUnknownSectionType)
{
    ModelText text = OneOfEachKind();
    text.Beam({1, 2}, {0.0, 0.0, 1.0}, 0, 7, 0);
    const RunFailure failure = FailureOf(text);
    EXPECT_EQ(failure.exitCode, ExitBadModel);
    EXPECT_EQ(std::string(failure.what()).find("model.txt:30:28: error: beam 1 has section type 7 [format]\n"), 0u)
        << failure.what();
}

TEST(Solve, RefusesAModelThatNoAccelerationBalances)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 0.0); // no mass
    text.Thickness(0.01);
    for (const auto& [x, y] : {std::pair(0.0, 0.0), {1.0, 0.0}, {0.0, 1.0}}) { text.Node(x, y, 0.0); }
    text.Tri({0, 1, 2});
    text.Force(0, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    const RunFailure failure = FailureOf(text);
    EXPECT_EQ(failure.exitCode, ExitBadModel);
    EXPECT_EQ(std::string(failure.what()).find("model.txt: error: "), 0u) << failure.what();
}

TEST(Solve, TellsWhyAModelFileCannotBeRead)
{
    SolveOptions options;
    options.modelFile = "no/such/model.txt";
    options.formats = {};
    try {
        Solve(options, {});
        ADD_FAILURE() << "nothing was refused";
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.exitCode, ExitFile);
        EXPECT_EQ(std::string(failure.what())
                      .find("no/such/model.txt: error: the model file cannot be read: No such file or directory\n"),
                  0u)
            << failure.what();
    }
}

ModelText WithALoadOnALooseNode()
{
    ModelText text = OneOfEachKind();
    text.Force(text.Node(0.3, 0.3, 0.0), {0.0, 0.0, 1.0, 0.0, 0.0, 0.0});
    return text;
}

TEST(Solve, RefusesLoadsOnNodesWithoutElementsAndWritesNothing)
{
    const RunFailure failure = FailureOf(WithALoadOnALooseNode());
    EXPECT_EQ(failure.exitCode, ExitBadModel);
    EXPECT_EQ(std::string(failure.what())
                  .find("model.txt: error: loads on nodes without elements: 1 [unstiffened-load]\n"
                        "  there:    node 5 at (0.3, 0.3, 0)"),
              0u)
        << failure.what();
}

// Left out, of the balance too.
TEST(Solve, LeavesLoadsOnNodesWithoutElementsOutWhenTheirRuleIsLowered)
{
    const TemporaryDirectory directory;
    SolveOptions options = OptionsFor(WithALoadOnALooseNode());
    options.rules.SetSeverity(RuleId::UnstiffenedLoad, Severity::Warning);
    const SolveReport report = Solve(options, {});
    ASSERT_FALSE(report.findings.empty());
    EXPECT_EQ(report.findings.front().rule, RuleId::UnstiffenedLoad);
    EXPECT_EQ(report.findings.front().severity, Severity::Warning);
    EXPECT_EQ(report.balance.forceSize, ReportOf(OneOfEachKind()).balance.forceSize);
}

TEST(Solve, CountsLoadsOnNodesWithoutElementsInTheClassicBalance)
{
    const SolveReport report = ReportOf(WithALoadOnALooseNode(), BalanceKind::Classic);
    ASSERT_FALSE(report.findings.empty());
    EXPECT_EQ(report.findings.front().severity, Severity::Warning);
    EXPECT_EQ(report.balance.forceSize, ReportOf(OneOfEachKind(), BalanceKind::Classic).balance.forceSize + 1.0);
}

// A strip whose columns are 0.1 and 0.00001 thick by turns: stiff plates on hinges of foil, a condition beyond the
// digits of a double.
TEST(Solve, FailsTheCheckOfEnergiesWhenRoundOffIsMostOfTheDisplacements)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    const int thick = text.Thickness(0.1), thin = text.Thickness(4e-5);
    for (int i = 0; i <= 8; ++i) {
        text.Node(i, 0.0, 0.0);
        text.Node(i, 1.0, 0.0);
    }
    for (int i = 0; i < 8; ++i) { text.Quad({2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1}, 0, i % 2 == 0 ? thick : thin); }
    text.Force(0, {0.0, 0.0, 1.0, 0.0, 0.0, 0.0});
    const auto energyCheck = [](const SolveReport& report) {
        return *std::find_if(report.resultChecks.begin(), report.resultChecks.end(),
                             [](const ResultCheck& one) { return one.name == "energy"; });
    };
    const ResultCheck foil = energyCheck(ReportOf(text));
    EXPECT_EQ(foil.verdict, Verdict::Fail) << foil.value << ": " << foil.text;
    EXPECT_EQ(energyCheck(ReportOf(OneOfEachKind())).verdict, Verdict::Pass);
}

// Strongly warped quadrilaterals do fail: supports carry more than a tenth of the balanced loads.
TEST(Solve, FailsNoCheckOfAModelOfFlatElements)
{
    for (unsigned seed = 0; seed < 30; ++seed) {
        const SolveReport report = ReportOf(RandomModel(seed, SupportsOf(seed), Quads::Flat));
        EXPECT_EQ(report.resultChecks.size(), 9u);
        for (const ResultCheck& check : report.resultChecks) {
            EXPECT_NE(check.verdict, Verdict::Fail) << "seed " << seed << ", " << check.name << ": " << check.text;
        }
    }
}

// What info expects of the factor is what solve then has.
TEST(Info, TellsTheSizeThatSolveHas)
{
    const TemporaryDirectory directory;
    SolveOptions options = OptionsFor(RandomModel(0, Supports::ThreeTwoOne));
    const InfoReport info = Info({"model.txt", {}}, {});
    const SolveReport solved = Solve(options, {});
    EXPECT_EQ(info.solver.factorEntries, solved.solver.factorEntries);
    EXPECT_EQ(info.solver.ordering, solved.solver.ordering);
    EXPECT_EQ(info.counts.equations, solved.counts.equations);
    EXPECT_EQ(info.balance.mass.mass, solved.balance.mass.mass);
    EXPECT_GT(info.skylineEntries, 0);
}

// Two triangles without connection, pulled apart: what can be told is told, and why solve refuses them.
TEST(Info, TellsWhySolveRefusesAModel)
{
    const TemporaryDirectory directory;
    const SolveOptions options = OptionsFor(PulledApart());
    const InfoReport info = Info({"model.txt", {}}, {});
    EXPECT_EQ(info.parts.size(), 2u);
    EXPECT_GT(info.balance.mass.mass, 0.0);
    try {
        Solve(options, {});
        ADD_FAILURE() << "nothing was refused";
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.what(), info.fault);
    }
}

} // namespace
} // namespace tarnvexo
