#include "cli/CommandLine.h"

#include "app/CheckDriver.h"
#include "app/RunDriver.h"
#include "app/SolveDriver.h"
#include "cli/CommandFailure.h"
#include "cli/CommandFiles.h"
#include "cli/CommandParser.h"
#include "cli/DroppedModel.h"
#include "cli/PictureCommand.h"
#include "cli/Quantities.h"
#include "cli/RefineCommand.h"
#include "cli/RenumberCommand.h"
#include "cli/ReportCommands.h"
#include "cli/VersionText.h"
#include "cli/ViewCommand.h"
#include "core/Failure.h"
#include "platform/Platform.h"
#include "solver/SparseEngine.h"
#include "view/ResultPage.h"

#include <algorithm>
#include <new>
#include <string>
#include <variant>
#include <vector>

namespace tarnvexo {

namespace {

// Elements are worked on eight at a time, with their matrices on the stack: 140 kB where vectors are longest.
constexpr std::size_t StackBytes = std::size_t(1) << 20;

// Empty where there is as much.
std::string StackFault()
{
    const std::size_t bytes = platform::ProvideStack(StackBytes);
    return bytes >= StackBytes
               ? ""
               : "tarnvexo: error: its stack may have only " + FileSizeText(bytes) +
                     "\n  expected: " + FileSizeText(StackBytes) +
                     ", or no limit\n  to do:    raise the limit, in a shell by ulimit -s 8192, and run again";
}

int RunConsoleWithinMemory()
{
    try {
        if (const std::string fault = StackFault(); !fault.empty()) {
            FailWithDiagnostic(fault.c_str());
        }
        return RunConsole();
    } catch (const std::bad_alloc&) {
        FailWithDiagnostic("fem_solving.txt: error: memory ran out\n"
                           "  expected: enough memory for the model and its results\n"
                           "  to do:    close other programs, or analyse a smaller model");
    }
}

// One procedure per command.
int Run(const SolveCommand& command)
{
    return RunSolveCommand(command, Solve, [](const SolveReport& report, const ProgressListener& listener) {
        return PicturesOfRun(report, ViewerPageText(), listener);
    });
}

int Run(const InfoCommand& command)
{
    return RunInfoCommand(command, Info);
}

int Run(const CheckCommand& command)
{
    return RunCheckCommand(command, Check);
}

int Run(const RefineCommand& command)
{
    return RunRefineCommand(command);
}

int Run(const RenumberCommand& command)
{
    return RunRenumberCommand(command);
}

int Run(const ViewCommand& command)
{
    return RunViewCommand(command, ViewerPageText());
}

int Run(const PictureCommand& command)
{
    return RunPictureCommand(command, ViewerPageText());
}

int Run(const MessageCommand& message)
{
    WriteOutput(message.output);
    platform::WriteErrorOutput(message.error);
    return message.exitCode;
}

int RunWords(const std::vector<std::string>& words)
{
    return RunReportingFailures([&] {
        if (const std::string fault = StackFault(); !fault.empty()) {
            throw RunFailure(ExitNumerical, fault);
        }
        const Command command = ParseCommandLine(words, [] { return VersionText(DescribeEngines()); });
        return std::visit([](const auto& one) { return Run(one); }, command);
    });
}

bool AreFiles(const std::vector<std::string>& paths)
{
    return std::all_of(paths.begin(), paths.end(),
                       [](const std::string& path) { return platform::FileExists(path.c_str()); });
}

// One model after the other is solved and shown. Returns the worst exit code.
int RunDroppedModels(const std::vector<std::string>& models)
{
    int worst = ExitGood;
    for (const std::string& model : models) {
        const std::string results = ResultsOfDroppedModel(model);
        int exitCode = RunWords({"solve", model, "-o", results});
        if (exitCode == ExitGood && !ViewerPageText().empty()) {
            ViewCommand view;
            view.result = results;
            view.modelFile = ModelFileOf(model);
            view.alwaysFile = true; // the next model waits
            exitCode = RunReportingFailures([&] { return Run(view); });
        }
        worst = std::max(worst, exitCode);
    }
    return worst;
}

} // namespace

int RunCommandLine(int argc, char** argv)
{
    const std::vector<std::string> words = platform::CommandLineWords(argc, argv);
    if (words.empty()) {
        return RunConsoleWithinMemory();
    }
    platform::MakeStreamFaultsErrors();
    return platform::HasOwnConsole() && AreFiles(words) ? RunDroppedModels(words) : RunWords(words);
}

} // namespace tarnvexo
