// cli/ReportCommands.h
// `tarnvexo solve` and `tarnvexo info`: progress on standard error, report on standard output and into a JSON file.
#pragma once

#include "cli/CommandParser.h"

#include <functional>

namespace tarnvexo {

// Solve and Info of app/SolveDriver, or what tests put in their place.
using SolveProcedure = std::function<SolveReport(const SolveOptions&, const ProgressListener&)>;
using InfoProcedure = std::function<InfoReport(const std::string& modelFile, const ProgressListener&)>;

// Return ExitGood; throw RunFailure.
int RunSolveCommand(const SolveCommand& command, const SolveProcedure& solve);
int RunInfoCommand(const InfoCommand& command, const InfoProcedure& info);

} // namespace tarnvexo
