// cli/PictureCommand.h
// `tarnvexo picture`: a picture of a result as a PNG file, drawn by the viewer in a browser without a window. The page
// is served to that browser alone (view/PageServer); it draws what its address says and posts the picture.
#pragma once

#include "cli/CommandParser.h"

#include <chrono>
#include <string>

namespace tarnvexo {

constexpr std::chrono::seconds PictureTimeLimit(120);

// page: as for RunViewCommand. Returns ExitGood; throws RunFailure: file error for a result or a browser that is not
// there, numerical failure for a page that could not draw it. Whatever happens, the browser and what it kept are gone.
int RunPictureCommand(const PictureCommand& command, const std::string& page,
                      std::chrono::milliseconds timeLimit = PictureTimeLimit);

} // namespace tarnvexo
