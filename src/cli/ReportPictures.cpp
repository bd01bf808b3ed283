#include "cli/ReportPictures.h"

#include "app/RunFailure.h"
#include "cli/PictureDrawing.h"
#include "cli/ResultLoading.h"
#include "output/ContourFile.h"

#include <algorithm>
#include <iterator>

namespace tarnvexo {

namespace {

constexpr int Width = 1400, Height = 850;

struct WantedPicture {
    const char* caption;
    const char* state;
};

constexpr WantedPicture Wanted[] = {
    {"Size of the displacements; the deformed structure, its largest displacement drawn as 5 % of its size, beside the "
     "outline of the undeformed one",
     "field=U&deformed=5%25&undeformedOutline=1&view=iso"},
    {"Equivalent stress, averaged at the nodes, the larger of both faces; undeformed",
     "field=SE&face=larger&deformed=off&view=iso"},
};

} // namespace

ReportPictures PicturesOfRun(const SolveReport& report, const std::string& page, const ProgressListener& listener)
{
    if (page.empty()) {
        return {{}, "this program was built without its viewer"};
    }
    const auto isContourFile = [](const ResultFile& file) { return file.path.ends_with(ContourFileName); };
    const auto contour = std::find_if(report.files.begin(), report.files.end(), isContourFile);
    if (contour == report.files.end()) {
        return {{}, "the text files, which they are drawn from, were not written"};
    }
    try {
        const std::string browser = FindPictureBrowser();
        std::vector<const char*> stages(std::begin(LoadingStages), std::end(LoadingStages));
        stages.push_back("draw");
        StageClock clock(stages, listener);
        const ShownResult shown = LoadShownResult({contour->path, report.modelFile}, "", clock);
        clock.Next(); // draw
        std::vector<PictureRequest> requests;
        for (const WantedPicture& wanted : Wanted) { requests.push_back({wanted.state, Width, Height}); }
        const std::vector<std::string> drawn = DrawPictures(requests, page, shown.packet, browser);
        clock.End();
        ReportPictures result;
        for (std::size_t i = 0; i < drawn.size(); ++i) { result.pictures.push_back({Wanted[i].caption, drawn[i]}); }
        return result;
    } catch (const RunFailure& failure) {
        return {{}, failure.what()};
    }
}

} // namespace tarnvexo
