// app/SolveDriver.h
// The runs behind the command line: `tarnvexo solve` and `tarnvexo info`, from a model file to a report. Calls in
// order; nothing is printed here: progress goes to a listener, the outcome into the report.
#pragma once

#include "app/CheckReport.h"
#include "app/Progress.h"
#include "app/RunFailure.h"
#include "app/SolveOptions.h"
#include "app/SolveReport.h"

namespace tarnvexo {

// Throws RunFailure, for errors of the model checks too. Result files appear under their names together, when all of
// them are complete.
SolveReport Solve(const SolveOptions& options, const ProgressListener& listener);

// Errors: RunFailure for a model that cannot be looked at: its text, elements without stiffness. What else solve would
// refuse stands in the report.
InfoReport Info(const CheckOptions& options, const ProgressListener& listener);

} // namespace tarnvexo
