#include "app/CheckDriver.h"

#include "app/SolveDriver.h"
#include "support/SmallModels.h"

#include <fstream>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

CheckReport ReportOf(const std::string& text, const RuleBook& rules = {})
{
    const TemporaryDirectory directory;
    std::ofstream("model.txt", std::ios::binary) << text;
    return Check({"model.txt", rules}, {});
}

bool Solves(const std::string& text)
{
    const TemporaryDirectory directory;
    std::ofstream("model.txt", std::ios::binary) << text;
    SolveOptions options;
    options.modelFile = "model.txt";
    options.formats = {};
    try {
        Solve(options, {});
        return true;
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.exitCode, ExitBadModel) << failure.what();
        return false;
    }
}

TEST(Check, OfASoundModelHasPartsMassAndBalance)
{
    const CheckReport report = ReportOf(OneOfEachKind().Text());
    EXPECT_EQ(CountOf(report, Severity::Error), 0);
    EXPECT_TRUE(report.isRead);
    EXPECT_EQ(report.counts.nodes, 5);
    EXPECT_EQ(report.counts.boxMax[0], 2.75);
    EXPECT_EQ(report.parts.size(), 1u);
    ASSERT_TRUE(report.balance);
    EXPECT_GT(report.balance->mass.mass, 0.0);
    EXPECT_LT(report.balance->relativeForce, 1e-12);
}

// The verdict is that of solve.
TEST(Check, FindsErrorsWhereSolveRefusesTheModel)
{
    ModelText unbalanced = PulledApart(), massless;
    massless.Material(2.1e11, 0.3, 0.0);
    massless.Thickness(0.01);
    for (const auto& [x, y] : {std::pair(0.0, 0.0), {1.0, 0.0}, {0.0, 1.0}}) { massless.Node(x, y, 0.0); }
    massless.Tri({0, 1, 2});
    massless.Force(0, {1.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    for (const std::string& text :
         {OneOfEachKind().Text(), unbalanced.Text(), massless.Text(), ModelText().Text(), std::string("no model")}) {
        EXPECT_EQ(CountOf(ReportOf(text), Severity::Error) == 0, Solves(text)) << text;
    }
}

TEST(Check, TellsPartsThatNothingBalances)
{
    const CheckReport report = ReportOf(PulledApart().Text());
    EXPECT_EQ(report.parts.size(), 2u);
    EXPECT_FALSE(report.balance);
    EXPECT_GE(CountOf(report, Severity::Error), 1);
}

TEST(Check, GoesOnWithTheReportWhereTheTextIsNoModel)
{
    const CheckReport report = ReportOf("no model");
    EXPECT_FALSE(report.isRead);
    ASSERT_EQ(report.reading.diagnostics.size(), 1u);
    EXPECT_EQ(report.reading.diagnostics.front().rule, RuleId::Format);
    EXPECT_EQ(CountOf(report, Severity::Error), 1);
    ASSERT_EQ(report.stages.size(), 1u);
    EXPECT_EQ(report.stages.front().name, "read");
}

TEST(Check, OfAFileThatIsNotThereIsAFailureOfFiles)
{
    try {
        Check({"no/such/model.txt", {}}, {});
        ADD_FAILURE() << "nothing was refused";
    } catch (const RunFailure& failure) {
        EXPECT_EQ(failure.exitCode, ExitFile);
    }
}

TEST(Check, TellsOfItsStages)
{
    const TemporaryDirectory directory;
    std::ofstream("model.txt") << OneOfEachKind().Text();
    std::string told;
    const CheckReport report = Check({"model.txt", {}}, [&](const Progress& progress) {
        told += progress.ended ? std::to_string(progress.number) + progress.stage + " " : "";
    });
    EXPECT_EQ(told, "1read 2check 3balance ");
    EXPECT_EQ(report.stages.size(), 3u);
}

} // namespace
} // namespace tarnvexo
