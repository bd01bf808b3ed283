#include "cli/PictureCommand.h"

#include "cli/CommandFiles.h"
#include "cli/ProgressDisplay.h"
#include "cli/Quantities.h"
#include "cli/ResultLoading.h"
#include "cli/ViewCommand.h"
#include "core/Failure.h"
#include "platform/Platform.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <vector>

namespace tarnvexo {

namespace {

// What is not known of the model is worth a word only where the picture would show it.
bool ShowsTheModel(const std::string& state)
{
    constexpr std::string_view words[] = {"field=thickness",   "field=section",  "field=material",
                                          "showLoads",         "showInertia",    "showSupports",
                                          "hiddenThicknesses", "hiddenSections", "average=element"};
    return std::any_of(std::begin(words), std::end(words),
                       [&](std::string_view word) { return state.find(word) != std::string::npos; });
}

} // namespace

int RunPictureCommand(const PictureCommand& command, const std::string& page, const PicturePatience& patience)
{
    RequireViewer(page, "tarnvexo picture");
    RequirePlaceOf(command.outputFile);
    const std::string browser = FindPictureBrowser();
    platform::ExitOnInterrupt();
    std::string png;
    std::vector<std::string> notes;
    {
        ProgressDisplay display(StyleOfStandardError(command.quiet));
        std::vector<const char*> stages(std::begin(LoadingStages), std::end(LoadingStages));
        stages.push_back("draw");
        StageClock clock(stages, [&](const Progress& progress) { display.Show(progress); });
        const ShownResult shown = LoadShownResult({command.result, command.modelFile}, "", clock);
        notes = shown.notes;
        clock.Next(); // draw
        const PictureRequest request = {command.state, command.width, command.height};
        png = DrawPictures({request}, page, shown.packet, browser, patience).front();
        clock.End();
    }
    if (ShowsTheModel(command.state)) {
        for (const std::string& note : notes) { Warn(note); }
    }
    WriteBytes(command.outputFile, png);
    WriteOutput(command.outputFile + "  " + std::to_string(command.width) + " x " + std::to_string(command.height) +
                ", " + FileSizeText(png.size()) + "\n");
    return ExitGood;
}

} // namespace tarnvexo
