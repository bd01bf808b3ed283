#include "cli/ReportCommands.h"

#include "app/ResultChecks.h"
#include "cli/CheckText.h"
#include "cli/CommandFiles.h"
#include "cli/ProgressDisplay.h"
#include "cli/ReportJson.h"
#include "cli/ReportText.h"
#include "core/Parallel.h"

#include <filesystem>
#include <functional>
#include <system_error>

namespace tarnvexo {

namespace {

constexpr const char* StandardOutput = "-";

void RequirePlaceOfJson(const std::string& jsonFile, const std::string& modelFile)
{
    if (jsonFile.empty() || jsonFile == StandardOutput) {
        return;
    }
    RequireDirectoryOf(jsonFile);
    std::error_code notThere;
    if (std::filesystem::equivalent(jsonFile, modelFile, notThere)) {
        throw RunFailure(ExitUsage, jsonFile + ": error: the report would take the place of the model\n"
                                               "  expected: another file name behind --json\n"
                                               "  to do:    choose one");
    }
}

// What cannot be written does not keep the rest from being written: all is tried, then all faults are told together.
void WriteReport(const std::string& text, const std::string& json, const std::string& jsonFile, std::string faults)
{
    const auto tryTo = [&](const std::function<void()>& write) {
        try {
            write();
        } catch (const RunFailure& failure) {
            faults += (faults.empty() ? "" : "\n") + std::string(failure.what());
        }
    };
    tryTo([&] { WriteOutput(jsonFile == StandardOutput ? json : text); });
    if (!jsonFile.empty() && jsonFile != StandardOutput) {
        tryTo([&] { WriteTextFile(jsonFile, json); });
    }
    if (!faults.empty()) {
        throw RunFailure(ExitFile, faults);
    }
}

} // namespace

int RunSolveCommand(const SolveCommand& command, const SolveProcedure& solve)
{
    SolveOptions options = command.solve;
    options.modelFile = ModelFileOf(command.solve.modelFile);
    options.jsonText = [&](const SolveReport& report) { return SolveReportJson(report, command.units); };
    RequirePlaceOfJson(command.jsonFile, options.modelFile);
    if (command.threads > 0) {
        SetThreadCount(command.threads);
    }
    SolveReport report;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        report = solve(options, [&](const Progress& progress) { display.Show(progress); });
    }
    WriteReport(SolveReportText(report, command.units), SolveReportJson(report, command.units), command.jsonFile,
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
    RequirePlaceOfJson(command.jsonFile, options.modelFile);
    InfoReport report;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        report = info(options, [&](const Progress& progress) { display.Show(progress); });
    }
    WriteReport(InfoReportText(report, command.units), InfoReportJson(report, command.units), command.jsonFile, "");
    return report.fault.empty() ? ExitGood : ExitBadModel;
}

int RunCheckCommand(const CheckCommand& command, const CheckProcedure& check)
{
    CheckOptions options = command.check;
    options.modelFile = ModelFileOf(command.check.modelFile);
    RequirePlaceOfJson(command.jsonFile, options.modelFile);
    CheckReport report;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        report = check(options, [&](const Progress& progress) { display.Show(progress); });
    }
    WriteReport(CheckReportText(report, command.units, command.verbose), CheckReportJson(report, command.units),
                command.jsonFile, "");
    return CountOf(report, Severity::Error) == 0 ? ExitGood : ExitBadModel;
}

} // namespace tarnvexo
