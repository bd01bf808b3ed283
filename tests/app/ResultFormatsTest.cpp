#include "app/ResultFormats.h"

#include "app/SolveDriver.h"
#include "support/SmallModels.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <set>

namespace tarnvexo {
namespace {

using namespace test;

SolveReport SolveInto(const std::string& directory, const ResultFormats& formats)
{
    std::ofstream("model.txt") << OneOfEachKind().Text();
    SolveOptions options;
    options.modelFile = "model.txt";
    options.outputDirectory = directory;
    options.formats = formats;
    options.jsonText = [](const SolveReport& report) {
        return std::to_string(report.files.size()) + " files, " + std::to_string(report.resultChecks.size()) +
               " checks\n";
    };
    return Solve(options, {});
}

std::set<std::string> FilesIn(const std::string& directory)
{
    std::set<std::string> files;
    for (const auto& entry : std::filesystem::directory_iterator(directory)) {
        files.insert(entry.path().filename().string());
    }
    return files;
}

TEST(ResultFormats, AreWrittenAsChosenAndListed)
{
    const TemporaryDirectory directory;
    const ResultFormats choices[] = {{ResultFormat::Vtu},
                                     {ResultFormat::Gltf, ResultFormat::Json},
                                     {ResultFormat::Csv},
                                     {ResultFormat::Text, ResultFormat::Vtu, ResultFormat::Csv, ResultFormat::Json}};
    for (const ResultFormats& formats : choices) {
        const std::string run = "run" + std::to_string(&formats - choices);
        const SolveReport report = SolveInto(run, formats);
        const std::vector<std::string> names = FilesOf(formats);
        EXPECT_EQ(FilesIn(run), std::set<std::string>(names.begin(), names.end()));
        std::set<std::string> listed;
        for (const ResultFile& file : report.files) {
            EXPECT_EQ(std::filesystem::file_size(file.path), file.bytes) << file.path;
            listed.insert(std::filesystem::path(file.path).filename().string());
        }
        EXPECT_EQ(listed, FilesIn(run));
        EXPECT_TRUE(report.warnings.empty());
    }
}

TEST(ResultFormats, HaveNoNameTwice)
{
    std::set<std::string> names;
    for (const auto& set : FilesOfAllFormats()) {
        for (const std::string& name : set) { EXPECT_TRUE(names.insert(name).second) << name; }
    }
}

// The report in the directory has all the checks and every other file.
TEST(ResultFormats, PutTheWholeReportBesideTheResults)
{
    const TemporaryDirectory directory;
    const SolveReport report = SolveInto("run", {ResultFormat::Vtu, ResultFormat::Json});
    std::ifstream file("run/results.json");
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>(file), {}),
              "4 files, " + std::to_string(report.resultChecks.size()) + " checks\n");
}

TEST(ResultFormats, ThatAreNotWrittenStayAndAreWarnedOf)
{
    const TemporaryDirectory directory;
    SolveInto("run", {ResultFormat::Text, ResultFormat::Csv});
    const auto before = std::filesystem::last_write_time("run/Node_Dis.txt");
    const SolveReport report = SolveInto("run", {ResultFormat::Vtu});
    ASSERT_EQ(report.warnings.size(), 1u);
    EXPECT_EQ(report.warnings[0],
              (std::filesystem::path("run") / "structure.dxf").string() +
                  ": warning: this file and 11 others beside it (text,csv) are of an earlier run, not of "
                  "this one\n"
                  "  expected: only files of one run in a directory; this one writes vtu\n"
                  "  to do:    remove what is not needed, or write it too with --format text,vtu,csv");
    EXPECT_EQ(std::filesystem::last_write_time("run/Node_Dis.txt"), before);
    EXPECT_TRUE(SolveInto("run", {ResultFormat::Text, ResultFormat::Vtu, ResultFormat::Csv}).warnings.empty());
}

// A run that writes nothing says nothing of results.
TEST(ResultFormats, OfARunWithoutFilesAreNotLookedFor)
{
    const TemporaryDirectory directory;
    SolveInto(".", {ResultFormat::Gltf});
    EXPECT_TRUE(SolveInto(".", {}).warnings.empty());
}

} // namespace
} // namespace tarnvexo
