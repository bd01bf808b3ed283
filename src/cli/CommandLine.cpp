#include "cli/CommandLine.h"

#include "app/CheckDriver.h"
#include "app/RunDriver.h"
#include "app/SolveDriver.h"
#include "cli/CommandFailure.h"
#include "cli/CommandFiles.h"
#include "cli/CommandParser.h"
#include "cli/DroppedModel.h"
#include "cli/PictureCommand.h"
#include "cli/RefineCommand.h"
#include "cli/RenumberCommand.h"
#include "cli/ReportCommands.h"
#include "cli/VersionText.h"
#include "cli/ViewCommand.h"
#include "core/Failure.h"
#include "platform/Platform.h"
#include "solver/SparseEngine.h"
#include "view/ResultPage.h"

#include <new>
#include <string>
#include <variant>
#include <vector>

namespace tarnvexo {

namespace {

int RunConsoleWithinMemory()
{
    try {
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

} // namespace

int RunCommandLine(int argc, char** argv)
{
    std::vector<std::string> words = platform::CommandLineWords(argc, argv);
    if (words.empty()) {
        return RunConsoleWithinMemory();
    }
    if (words.size() == 1 && platform::HasOwnConsole() && platform::FileExists(words.front().c_str())) {
        words = CommandForDroppedModel(words.front());
    }
    platform::MakeStreamFaultsErrors();
    return RunReportingFailures([&] {
        const Command command = ParseCommandLine(words, [] { return VersionText(DescribeEngines()); });
        return std::visit([](const auto& one) { return Run(one); }, command);
    });
}

} // namespace tarnvexo
