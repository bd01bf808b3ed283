#include "cli/ContourProgram.h"

#include "cli/CommandFailure.h"
#include "cli/CommandParser.h"
#include "cli/ViewCommand.h"
#include "output/ContourFile.h"
#include "platform/Browser.h"
#include "platform/Platform.h"
#include "view/ResultPage.h"

#include <string>
#include <variant>
#include <vector>

namespace tarnvexo {

namespace {

// Where the results are when nobody says so.
std::string UsualDirectory()
{
    const std::string own = platform::ProgramDirectory();
    const bool isHere = platform::FileExists(ContourFileName);
    const bool isThere = !own.empty() && platform::FileExists((own + "/" + ContourFileName).c_str());
    return !isHere && isThere ? own : ".";
}

} // namespace

int RunContourProgram(int argc, char** argv)
{
    platform::MakeStreamFaultsErrors();
    const std::vector<std::string> given = platform::CommandLineWords(argc, argv);
    return RunReportingFailures([&] {
        std::vector<std::string> words = {"view", "--quiet"};
        words.insert(words.end(), given.begin(), given.end());
        Command command = ParseCommandLine(words, [] { return std::string(); });
        if (const auto* message = std::get_if<MessageCommand>(&command)) {
            platform::WriteErrorOutput(message->output + message->error);
            return message->exitCode;
        }
        auto& view = std::get<ViewCommand>(command);
        view.alwaysFile = true; // nobody would be there to serve it
        view.tell = false;
        if (given.empty()) {
            view.result = UsualDirectory();
        }
        return RunViewCommand(view, ViewerPageText());
    });
}

} // namespace tarnvexo
