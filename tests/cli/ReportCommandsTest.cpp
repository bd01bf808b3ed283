// solve and info from the command to what the user sees, with reports in place of real runs.
#include "cli/ReportCommands.h"

#include "cli/CheckText.h"
#include "cli/CommandFailure.h"
#include "cli/ReportJson.h"
#include "cli/ReportText.h"
#include "cli/SampleReports.h"
#include "core/Parallel.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <new>
#include <stdexcept>
#include <unistd.h>

namespace tarnvexo {
namespace {

using test::ChildResult;
using test::RunInChild;
using test::TemporaryDirectory;

void WriteFile(const std::string& name, const std::string& text)
{
    std::ofstream(name, std::ios::binary) << text;
}

std::string FileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// One stage, then the sample report of the model asked for.
SolveReport SampleRun(const SolveOptions& options, const ProgressListener& listener)
{
    Progress progress;
    progress.stage = "read";
    progress.number = 1;
    progress.stages = 1;
    progress.ended = true;
    listener(progress);
    SolveReport report = test::SampleSolveReport();
    report.modelFile = options.modelFile;
    return report;
}

SolveReport SampleFor(const std::string& modelFile)
{
    SolveReport report = test::SampleSolveReport();
    report.modelFile = modelFile;
    return report;
}

ReportPictures TwoPictures(const SolveReport&, const ProgressListener&)
{
    return {{{"deformed", "first"}, {"stresses", "second"}}, ""};
}

ChildResult RunSolve(const SolveCommand& command, const SolveProcedure& solve = SampleRun)
{
    return RunInChild(
        [&] { _exit(RunReportingFailures([&] { return RunSolveCommand(command, solve, TwoPictures); })); });
}

SolveCommand CommandFor(const std::string& model)
{
    SolveCommand command;
    command.solve.modelFile = model;
    return command;
}

TEST(SolveCommand, PrintsTheReportAndShowsProgress)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    const ChildResult run = RunSolve(CommandFor("m.txt"));
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_EQ(run.output, SolveReportText(SampleFor("m.txt"), UnitSystem::Unnamed));
    EXPECT_EQ(run.error.find("[1/1]   read "), 0u) << run.error;
}

TEST(SolveCommand, TakesTheModelFileOfADirectory)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("wing");
    WriteFile("wing/fem_solving.txt", "");
    for (const char* model : {"wing", "wing/"}) {
        const ChildResult run = RunSolve(CommandFor(model));
        EXPECT_EQ(run.output.find("tarnvexo solve wing/fem_solving.txt\n"), 0u) << run.output;
    }
}

TEST(SolveCommand, WritesJsonBesideTheText)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.jsonFile = "report.json";
    command.units = UnitSystem::SI;
    const ChildResult run = RunSolve(command);
    EXPECT_EQ(run.output, SolveReportText(SampleFor("m.txt"), UnitSystem::SI));
    EXPECT_EQ(FileText("report.json"), SolveReportJson(SampleFor("m.txt"), UnitSystem::SI));
}

TEST(SolveCommand, WritesJsonInPlaceOfTheTextToStandardOutput)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.jsonFile = "-";
    command.quiet = true;
    const ChildResult run = RunSolve(command);
    EXPECT_EQ(run.output, SolveReportJson(SampleFor("m.txt"), UnitSystem::Unnamed));
    EXPECT_EQ(run.error, "");
}

TEST(SolveCommand, SetsTheNumberOfThreads)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.threads = 3;
    const ChildResult run = RunSolve(command, [](const SolveOptions& options, const ProgressListener&) {
        return SampleFor(options.modelFile + " " + std::to_string(ThreadCount()));
    });
    EXPECT_EQ(run.output.find("tarnvexo solve m.txt 3\n"), 0u) << run.output;
}

ChildResult RunInfo(const InfoReport& report)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    InfoCommand command;
    command.info.modelFile = "m.txt";
    return RunInChild(
        [&] { _exit(RunInfoCommand(command, [&](const CheckOptions&, const ProgressListener&) { return report; })); });
}

TEST(InfoCommand, PrintsItsReport)
{
    const ChildResult run = RunInfo(test::SampleInfoReport());
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_EQ(run.output, InfoReportText(test::SampleInfoReport(), UnitSystem::Unnamed));
}

// What can be told of such a model is told.
TEST(InfoCommand, EndsWithExitCode1BehindTheReportWhenSolveRefusesTheModel)
{
    InfoReport report = test::SampleInfoReport();
    report.fault = "m.txt: error: nothing balances it";
    const ChildResult run = RunInfo(report);
    EXPECT_EQ(run.exitCode, ExitBadModel);
    EXPECT_NE(run.output.find("\nERRORS: tarnvexo solve refuses this model\n  m.txt: error: nothing balances it\n"),
              std::string::npos)
        << run.output;
    EXPECT_NE(run.output.find("  tarnvexo solve        refuses this model, see ERRORS\n"), std::string::npos);
    EXPECT_EQ(run.error, "");
}

ChildResult RunCheck(const CheckCommand& command, const CheckReport& report)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    return RunInChild(
        [&] { _exit(RunCheckCommand(command, [&](const CheckOptions&, const ProgressListener&) { return report; })); });
}

TEST(CheckCommand, PrintsItsReportAndEndsWithExitCode1ForErrors)
{
    CheckReport report = test::SampleCheckReport();
    CheckCommand command;
    command.check.modelFile = "m.txt";
    const ChildResult bad = RunCheck(command, report);
    EXPECT_EQ(bad.exitCode, ExitBadModel);
    EXPECT_EQ(bad.output, CheckReportText(report, UnitSystem::Unnamed, false));
    report.messages.clear();
    report.findings.pop_back(); // a warning and a note are left
    EXPECT_EQ(RunCheck(command, report).exitCode, ExitGood);
}

TEST(CheckCommand, WritesJsonAndTheLongReportWhenAsked)
{
    const CheckReport report = test::SampleCheckReport();
    CheckCommand command;
    command.check.modelFile = "m.txt";
    command.verbose = true;
    EXPECT_EQ(RunCheck(command, report).output, CheckReportText(report, UnitSystem::Unnamed, true));
    command.jsonFile = "-";
    EXPECT_EQ(RunCheck(command, report).output, CheckReportJson(report, UnitSystem::Unnamed));
}

TEST(CommandFailure, OfStandardInputAsModelIsOneOfUsage)
{
    const ChildResult run = RunSolve(CommandFor("-"));
    EXPECT_EQ(run.exitCode, ExitUsage);
    EXPECT_EQ(run.error.find("-: error: the model cannot come from standard input\n"), 0u) << run.error;
}

TEST(CommandFailure, OfAModelThatIsNotThereHasExitCode4)
{
    const TemporaryDirectory directory;
    const ChildResult file = RunSolve(CommandFor("wing.txt"));
    EXPECT_EQ(file.exitCode, ExitFile);
    EXPECT_EQ(file.error, "wing.txt: error: there is no such file or directory\n"
                          "  expected: a model file, or a directory with fem_solving.txt in it\n"
                          "  to do:    correct the path\n");
    std::filesystem::create_directory("wing");
    EXPECT_EQ(RunSolve(CommandFor("wing")).error,
              "wing: error: this directory holds no fem_solving.txt\n"
              "  expected: a model file, or a directory with fem_solving.txt in it\n"
              "  to do:    name the model file itself\n");
}

TEST(CommandFailure, OfAPlaceForJsonComesBeforeTheRun)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.jsonFile = "nowhere/report.json";
    const ChildResult run = RunSolve(command);
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_EQ(run.error, "nowhere/report.json: error: the directory of this file does not exist\n"
                         "  expected: a directory that may be written to\n"
                         "  to do:    make the directory, or correct the path\n");
}

TEST(CommandFailure, OfAReportInPlaceOfTheModelIsOneOfUsage)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "the model");
    SolveCommand command = CommandFor("m.txt");
    command.jsonFile = "./m.txt";
    const ChildResult run = RunSolve(command);
    EXPECT_EQ(run.exitCode, ExitUsage);
    EXPECT_EQ(run.error.find("./m.txt: error: the report would take the place of the model\n"), 0u) << run.error;
}

TEST(CommandFailure, OfAReportInPlaceOfAResultOrOfAnotherReportIsOneOfUsage)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "the model");
    SolveCommand command = CommandFor("m.txt");
    for (const auto& [json, page] : {std::pair("Node_Dis.txt", ""), {"", "./Node_Dis.txt"}, {"r.html", "./r.html"}}) {
        command.solve.outputDirectory = ".";
        command.jsonFile = json;
        command.reportFile = page;
        const ChildResult run = RunSolve(command);
        EXPECT_EQ(run.exitCode, ExitUsage);
        EXPECT_NE(run.error.find(": error: the report would take the place of another file of this run\n"),
                  std::string::npos)
            << run.error;
    }
}

TEST(ReportPage, HasThePicturesOfTheRun)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.reportFile = "r.html";
    const ChildResult run = RunSolve(command);
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    const std::string page = FileText("r.html");
    EXPECT_NE(page.find("src=\"data:image/png;base64,Zmlyc3Q=\""), std::string::npos);
    EXPECT_NE(page.find("<figcaption>stresses</figcaption>"), std::string::npos);
}

TEST(ReportPage, WithoutPicturesSaysWhyOnStandardError)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.reportFile = "r.html";
    const ChildResult run = RunInChild([&] {
        _exit(RunReportingFailures([&] {
            return RunSolveCommand(command, SampleRun, [](const SolveReport&, const ProgressListener&) {
                return ReportPictures{{}, "no browser"};
            });
        }));
    });
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_NE(run.error.find("r.html: warning: the page has no pictures:\nno browser\n"), std::string::npos)
        << run.error;
    EXPECT_EQ(FileText("r.html").find("<figure>"), std::string::npos);
}

#ifndef _WIN32 // there is no device that is always full
TEST(CommandFailure, OfAFullDiskHasExitCode4AndKeepsTheText)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveCommand command = CommandFor("m.txt");
    command.quiet = true;
    command.jsonFile = "/dev/full";
    const ChildResult run = RunSolve(command);
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_EQ(run.output, SolveReportText(SampleFor("m.txt"), UnitSystem::Unnamed));
    EXPECT_EQ(run.error, "/dev/full: error: this file was not written: No space left on device\n"
                         "  expected: room for the file\n"
                         "  to do:    make room or name another place, then run again\n");
}
#endif

TEST(CommandFailure, OfAResultCheckHasExitCode3BehindTheReport)
{
    const TemporaryDirectory directory;
    WriteFile("m.txt", "");
    SolveReport report = SampleFor("m.txt");
    report.resultChecks.push_back({"energy", Verdict::Fail, 0.5, 1e-6, 1e-2, "half of it is missing", {}});
    SolveCommand command = CommandFor("m.txt");
    command.quiet = true;
    const ChildResult run = RunSolve(command, [&](const SolveOptions&, const ProgressListener&) { return report; });
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_EQ(run.output, SolveReportText(report, UnitSystem::Unnamed));
    EXPECT_EQ(run.error.find("m.txt: error: the results do not pass their checks\n"), 0u) << run.error;
}

TEST(CommandFailure, OfAnyOtherKindGivesItsTextAndExitCode3)
{
    const ChildResult run = RunInChild(
        [] { _exit(RunReportingFailures([]() -> int { throw std::logic_error("something unforeseen"); })); });
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_EQ(run.error.find("tarnvexo: error: something unforeseen\n  expected: "), 0u) << run.error;
}

#ifndef _WIN32 // there is no device that is always full
TEST(CommandFailure, OfStandardOutputHasExitCode4)
{
    const ChildResult run = RunInChild([] {
        const TemporaryDirectory directory;
        WriteFile("m.txt", "");
        dup2(open("/dev/full", O_WRONLY), STDOUT_FILENO);
        _exit(RunReportingFailures([] { return RunSolveCommand(CommandFor("m.txt"), SampleRun, TwoPictures); }));
    });
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_NE(run.error.find("standard output: error: the text cannot be written"), std::string::npos) << run.error;
}
#endif

TEST(CommandFailure, OfARunGivesItsTextAndItsExitCode)
{
    const ChildResult run = RunInChild(
        [] { _exit(RunReportingFailures([]() -> int { throw RunFailure(ExitBadModel, "m.txt: error: no nodes"); })); });
    EXPECT_EQ(run.exitCode, ExitBadModel);
    EXPECT_EQ(run.error, "m.txt: error: no nodes\n");
    EXPECT_EQ(run.output, "");
}

TEST(CommandFailure, OfMemoryHasExitCode3)
{
    const ChildResult run = RunInChild([] { _exit(RunReportingFailures([]() -> int { throw std::bad_alloc(); })); });
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_EQ(run.error.find("tarnvexo: error: memory ran out\n"), 0u) << run.error;
}

} // namespace
} // namespace tarnvexo
