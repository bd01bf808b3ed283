// cli/ReportCommands.h
// `tarnvexo solve`, `tarnvexo info` and `tarnvexo check`: progress on standard error, report on standard output and
// into files, as JSON and as an HTML page.
#pragma once

#include "cli/CommandParser.h"
#include "cli/ReportPictures.h"

#include <functional>

namespace tarnvexo {

// Solve and Info of app/SolveDriver, PicturesOfRun, Check of app/CheckDriver, or what tests put in their place.
using SolveProcedure = std::function<SolveReport(const SolveOptions&, const ProgressListener&)>;
using InfoProcedure = std::function<InfoReport(const CheckOptions&, const ProgressListener&)>;
using PictureProcedure = std::function<ReportPictures(const SolveReport&, const ProgressListener&)>;
using CheckProcedure = std::function<CheckReport(const CheckOptions&, const ProgressListener&)>;

// Return ExitGood, or ExitBadModel for a report that says that the model cannot be solved; throw RunFailure.
int RunSolveCommand(const SolveCommand& command, const SolveProcedure& solve, const PictureProcedure& draw);
int RunInfoCommand(const InfoCommand& command, const InfoProcedure& info);
int RunCheckCommand(const CheckCommand& command, const CheckProcedure& check);

} // namespace tarnvexo
