// cli/PictureCommand.h
// `tarnvexo picture`: a picture of a result as a PNG file (cli/PictureDrawing).
#pragma once

#include "cli/CommandParser.h"
#include "cli/PictureDrawing.h"

#include <string>

namespace tarnvexo {

// page: as for RunViewCommand. Returns ExitGood; throws RunFailure: file error for a result or a browser that is not
// there, numerical failure for a page that could not draw it. Whatever happens, the browser and what it kept are gone.
int RunPictureCommand(const PictureCommand& command, const std::string& page, const PicturePatience& patience = {});

} // namespace tarnvexo
