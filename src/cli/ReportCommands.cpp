#include "cli/ReportCommands.h"

#include "app/ResultChecks.h"
#include "app/ResultFormats.h"
#include "cli/CheckText.h"
#include "cli/CommandFiles.h"
#include "cli/ProgressDisplay.h"
#include "cli/ReportJson.h"
#include "cli/ReportText.h"
#include "core/Failure.h"
#include "core/Parallel.h"
#include "platform/FilePath.h"

#include <algorithm>
#include <filesystem>
#include <functional>
#include <string>
#include <system_error>
#include <vector>

namespace tarnvexo {

namespace {

constexpr const char* StandardOutput = "-";

bool IsFile(const std::string& name)
{
    return !name.empty() && name != StandardOutput;
}

bool IsSameFile(const std::string& one, const std::string& other)
{
    namespace fs = std::filesystem;
    std::error_code unknown;
    const auto placeOf = [&](const std::string& name) {
        return fs::weakly_canonical(fs::absolute(platform::PathOf(name)), unknown);
    };
    const fs::path place = placeOf(one);
    return place == placeOf(other) && !unknown;
}

// Fails early when a report cannot be written, or would take the place of the model or of a file of this run.
void RequirePlaceOfReport(const std::string& file, const char* option, const std::string& modelFile,
                          const std::vector<std::string>& others)
{
    if (!IsFile(file)) {
        return;
    }
    RequirePlaceOf(file);
    const bool isResult =
        std::any_of(others.begin(), others.end(), [&](const std::string& other) { return IsSameFile(file, other); });
    if (isResult || IsSameFile(file, modelFile)) {
        throw RunFailure(ExitUsage, file + ": error: the report would take the place of " +
                                        (isResult ? "another file of this run" : "the model") +
                                        "\n  expected: another file name behind " + option +
                                        "\n  to do:    choose one");
    }
}

// A report in a file.
struct ReportFile {
    std::string name; // empty: none is wanted; "-": on standard output in place of the text
    std::string text;
};

// What cannot be written does not keep the rest from being written: all is tried, then all faults are told together.
void WriteReports(const std::string& text, const std::vector<ReportFile>& files, std::string faults)
{
    const auto tryTo = [&](const std::function<void()>& write) {
        try {
            write();
        } catch (const RunFailure& failure) {
            faults += (faults.empty() ? "" : "\n") + std::string(failure.what());
        }
    };
    const auto onOutput =
        std::find_if(files.begin(), files.end(), [](const ReportFile& file) { return file.name == StandardOutput; });
    tryTo([&] { WriteOutput(onOutput == files.end() ? text : onOutput->text); });
    for (const ReportFile& file : files) {
        if (IsFile(file.name)) {
            tryTo([&] { WriteTextFile(file.name, file.text); });
        }
    }
    if (!faults.empty()) {
        throw RunFailure(ExitFile, faults);
    }
}

std::string HtmlOf(const SolveReport& report, const SolveCommand& command, const PictureProcedure& draw,
                   const ProgressListener& listener)
{
    if (command.reportFile.empty()) {
        return "";
    }
    const ReportPictures drawn = draw(report, listener);
    SolveReport shown = report;
    if (!drawn.reason.empty()) {
        shown.warnings.push_back(command.reportFile + ": warning: the page has no pictures:\n" + drawn.reason);
        Warn(shown.warnings.back());
    }
    return SolveReportHtml(shown, command.units, drawn.pictures);
}

} // namespace

int RunSolveCommand(const SolveCommand& command, const SolveProcedure& solve, const PictureProcedure& draw)
{
    SolveOptions options = command.solve;
    options.modelFile = ModelFileOf(command.solve.modelFile);
    options.jsonText = [&](const SolveReport& report) { return SolveReportJson(report, command.units); };
    std::vector<std::string> others;
    for (const std::string& name : FilesOf(options.formats)) {
        others.push_back((platform::PathOf(options.outputDirectory) / platform::PathOf(name)).string());
    }
    RequirePlaceOfReport(command.jsonFile, "--json", options.modelFile, others);
    if (IsFile(command.jsonFile)) {
        others.push_back(command.jsonFile);
    }
    RequirePlaceOfReport(command.reportFile, "--report", options.modelFile, others);
    if (command.threads > 0) {
        SetThreadCount(command.threads);
    }
    SolveReport report;
    std::string html;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        const auto listener = [&](const Progress& progress) { display.Show(progress); };
        report = solve(options, listener);
        html = HtmlOf(report, command, draw, listener);
    }
    WriteReports(SolveReportText(report, command.units),
                 {{command.jsonFile, SolveReportJson(report, command.units)}, {command.reportFile, html}},
                 report.fileFault);
    const std::string failed = FailedChecksMessage(report);
    if (!failed.empty()) {
        throw RunFailure(ExitNumerical, failed);
    }
    return ExitGood;
}

int RunInfoCommand(const InfoCommand& command, const InfoProcedure& info)
{
    CheckOptions options = command.info;
    options.modelFile = ModelFileOf(command.info.modelFile);
    RequirePlaceOfReport(command.jsonFile, "--json", options.modelFile, {});
    InfoReport report;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        report = info(options, [&](const Progress& progress) { display.Show(progress); });
    }
    WriteReports(InfoReportText(report, command.units), {{command.jsonFile, InfoReportJson(report, command.units)}},
                 "");
    return report.fault.empty() ? ExitGood : ExitBadModel;
}

int RunCheckCommand(const CheckCommand& command, const CheckProcedure& check)
{
    CheckOptions options = command.check;
    options.modelFile = ModelFileOf(command.check.modelFile);
    RequirePlaceOfReport(command.jsonFile, "--json", options.modelFile, {});
    CheckReport report;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        report = check(options, [&](const Progress& progress) { display.Show(progress); });
    }
    WriteReports(CheckReportText(report, command.units, command.verbose),
                 {{command.jsonFile, CheckReportJson(report, command.units)}}, "");
    return CountOf(report, Severity::Error) == 0 ? ExitGood : ExitBadModel;
}

} // namespace tarnvexo
