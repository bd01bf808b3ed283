#include "cli/ReportJson.h"

#include "cli/SampleReports.h"

#include <cmath>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <nlohmann/json.hpp>
#include <set>

namespace tarnvexo {
namespace {

using Json = nlohmann::json;

std::string FileText(const std::string& name)
{
    std::ifstream file(std::string(TARNVEXO_SOURCE_DIR) + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

void CollectKeys(const Json& json, std::set<std::string>& keys)
{
    for (const auto& [key, value] : json.items()) {
        if (json.is_object()) {
            keys.insert(key);
        }
        if (value.is_structured()) {
            CollectKeys(value, keys);
        }
    }
}

TEST(ReportJson, ReadsBackAsTheReport)
{
    const SolveReport report = test::SampleSolveReport();
    const Json json = Json::parse(SolveReportJson(report, UnitSystem::SI));
    EXPECT_EQ(json["command"], "solve");
    EXPECT_EQ(json["model_file"], report.modelFile);
    EXPECT_EQ(json["units"], "SI");
    EXPECT_EQ(json["model"]["nodes"], report.counts.nodes);
    EXPECT_EQ(json["model"]["equations"], report.counts.equations);
    EXPECT_EQ(json["model"]["box_max"], report.counts.boxMax);
    EXPECT_EQ(json["parts"][1]["holds"][3], Json({{"node", 118}, {"dof", "rx"}}));
    EXPECT_EQ(json["parts"][1]["mass_orthogonal"], true);
    EXPECT_EQ(json["mass"]["inertia"], report.balance.mass.inertia);
    EXPECT_EQ(json["mass"]["principal_axes"][2], report.balance.mass.principalAxes[2]);
    EXPECT_EQ(json["balance"]["kind"], "exact");
    EXPECT_EQ(json["balance"]["closed"], true);
    EXPECT_EQ(json["balance"]["acceleration"]["a"], report.balance.applied.a);
    EXPECT_EQ(json["balance"]["acceleration"]["a_in_g"][2], -10.1102 / 9.80665);
    EXPECT_EQ(json["balance"]["classic"]["remaining"]["moment"], report.balance.classicRemaining.moment);
    EXPECT_EQ(json["reactions"]["list"].size(), report.reactions.size());
    EXPECT_EQ(json["reactions"]["list"][5], Json({{"node", 3}, {"dof", "rx"}, {"value", 8e-12}, {"hold", false}}));
    EXPECT_EQ(json["energy"]["strain_energy"], report.strainEnergy);
    EXPECT_EQ(json["solver"]["engine"], report.solver.engine);
    EXPECT_EQ(json["solver"]["factor_entries"], report.solver.factorEntries);
    EXPECT_DOUBLE_EQ(json["solver"]["factorise_operations_per_second"], 6.5e6 / 0.0325);
    EXPECT_EQ(json["solver"]["refinement"]["steps"], 1);
    EXPECT_EQ(json["solver"]["refinement"]["displacement_error_before"], 2.6e-9);
    EXPECT_EQ(json["extremes"]["shell_stress"]["value"], report.largestShellStress.value);
    EXPECT_EQ(json["extremes"]["shell_stress"]["element"], 31);
    EXPECT_EQ(json["extremes"]["displacement"]["element"], Json());
    EXPECT_EQ(json["files"][1]["bytes"], 1234567);
    EXPECT_EQ(json["stages"][2]["name"], "write");
    EXPECT_EQ(json["warnings"][0], report.warnings[0]);
}

TEST(ReportJson, WritesNumbersThatAreNotFiniteAsNull)
{
    SolveReport report = test::SampleSolveReport();
    report.strainEnergy = std::numeric_limits<double>::quiet_NaN();
    report.solver.conditionEstimate = std::numeric_limits<double>::infinity();
    report.balance.applied.alpha = {1, -std::numeric_limits<double>::infinity(), 2};
    const Json json = Json::parse(SolveReportJson(report, UnitSystem::Unnamed));
    EXPECT_TRUE(json["energy"]["strain_energy"].is_null());
    EXPECT_TRUE(json["solver"]["condition_at_least"].is_null());
    EXPECT_EQ(json["balance"]["acceleration"]["alpha"], Json({1.0, nullptr, 2.0}));
    EXPECT_TRUE(json["units"].is_null());
    EXPECT_FALSE(json["balance"]["acceleration"].contains("a_in_g"));
}

TEST(ReportJson, HasNullForWhatTheModelDoesNotHave)
{
    SolveReport report = test::SampleSolveReport();
    report.largestBeamStress = {};
    report.solver.displacementError.reset();
    const Json json = Json::parse(SolveReportJson(report, UnitSystem::SI));
    EXPECT_TRUE(json["extremes"]["beam_stress"].is_null());
    EXPECT_TRUE(json["solver"]["refinement"]["displacement_error"].is_null());
}

TEST(ReportJson, SurvivesQuotesAndBytesThatAreNoUtf8)
{
    SolveReport report = test::SampleSolveReport();
    report.modelFile = "a\"b\\\n\xff.txt";
    EXPECT_EQ(Json::parse(SolveReportJson(report, UnitSystem::SI))["model_file"], "a\"b\\\n\xEF\xBF\xBD.txt");
}

TEST(ReportJson, OfInfoHasExpectedCostAndSkyline)
{
    const InfoReport report = test::SampleInfoReport();
    const Json json = Json::parse(InfoReportJson(report, UnitSystem::SI));
    EXPECT_EQ(json["command"], "info");
    EXPECT_EQ(json["skyline"]["entries"], report.skylineEntries);
    EXPECT_EQ(json["expected"]["seconds"], report.expectedSeconds);
    EXPECT_EQ(json["expected"]["available_memory_gigabytes"], report.availableMemoryGigabytes);
    EXPECT_EQ(json["solver"]["factor_operations"], report.solver.factorOperations);
    EXPECT_FALSE(json["solver"].contains("relative_residual"));
}

TEST(ReportJson, OfCheckHasVerdictFindingsAndMessages)
{
    const CheckReport report = test::SampleCheckReport();
    const Json json = Json::parse(CheckReportJson(report, UnitSystem::SI));
    EXPECT_EQ(json["command"], "check");
    EXPECT_EQ(json["verdict"], Json({{"ready", false}, {"errors", 2}, {"warnings", 1}, {"notes", 1}}));
    EXPECT_EQ(json["model_checks"][0]["rule"], "warping");
    EXPECT_EQ(json["model_checks"][0]["limit"], 10.0);
    EXPECT_EQ(json["model_checks"][0]["worst"].size(), 4u);
    EXPECT_EQ(json["model_checks"][0]["worst"][0]["place"], report.findings[0].worst[0].place);
    EXPECT_TRUE(json["model_checks"][1]["limit"].is_null());
    EXPECT_EQ(json["messages"][0], Json({{"severity", "error"}, {"text", report.messages[0].text}}));
    EXPECT_TRUE(json["balance"].is_null());
    const Json solved = Json::parse(SolveReportJson(test::SampleSolveReport(), UnitSystem::SI));
    EXPECT_EQ(solved["model_checks"], Json::array({json["model_checks"][0]}));
}

TEST(ReportJson, OfInfoSaysWhySolveRefusesTheModel)
{
    InfoReport report = test::SampleInfoReport();
    EXPECT_TRUE(Json::parse(InfoReportJson(report, UnitSystem::SI))["fault"].is_null());
    report.fault = "m.txt: error: nothing balances it";
    EXPECT_EQ(Json::parse(InfoReportJson(report, UnitSystem::SI))["fault"], report.fault);
}

TEST(ReportJson, EveryKeyIsDocumented)
{
    std::set<std::string> keys;
    CollectKeys(Json::parse(SolveReportJson(test::SampleSolveReport(), UnitSystem::SI)), keys);
    CollectKeys(Json::parse(InfoReportJson(test::SampleInfoReport(), UnitSystem::SI)), keys);
    CollectKeys(Json::parse(CheckReportJson(test::SampleCheckReport(), UnitSystem::SI)), keys);
    const std::string page = FileText("docs/formats/report-json.md");
    for (const std::string& key : keys) { EXPECT_NE(page.find("`" + key + "`"), std::string::npos) << key; }
}

TEST(ReportJson, ExamplesOfThePageAreWhatTheWriterWrites)
{
    const std::string page = FileText("docs/formats/report-json.md");
    const std::string solve = SolveReportJson(test::SampleSolveReport(), UnitSystem::SI);
    const std::string info = InfoReportJson(test::SampleInfoReport(), UnitSystem::SI);
    EXPECT_NE(page.find("<!-- sample: solve json -->\n```\n" + solve + "```\n"), std::string::npos) << solve;
    const std::string check = CheckReportJson(test::SampleCheckReport(), UnitSystem::SI);
    EXPECT_NE(page.find("<!-- sample: check json -->\n```\n" + check + "```\n"), std::string::npos) << check;
    EXPECT_NE(page.find("<!-- sample: info json -->\n```\n" + info + "```\n"), std::string::npos) << info;
}

} // namespace
} // namespace tarnvexo
