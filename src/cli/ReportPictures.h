// cli/ReportPictures.h
// The pictures of a run's report: the deformed structure and its equivalent stresses, drawn from the contour file that
// the run has written.
#pragma once

#include "app/Progress.h"
#include "app/SolveReport.h"
#include "cli/ReportText.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct ReportPictures {
    std::vector<ReportPicture> pictures;
    std::string reason; // why there are none; empty: there are
};

// page: the viewer's. A browser that is missing or fails is a reason, no failure of the run.
ReportPictures PicturesOfRun(const SolveReport& report, const std::string& page, const ProgressListener& listener);

} // namespace tarnvexo
