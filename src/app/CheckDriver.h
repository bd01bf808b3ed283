// app/CheckDriver.h
// `tarnvexo check`: from a model file to all that is known to be wrong or odd about it. Nothing is solved or written,
// and no fault of the model ends it early that still lets the rest be looked at.
#pragma once

#include "app/CheckReport.h"
#include "app/Progress.h"
#include "app/RunFailure.h"

namespace tarnvexo {

// Throws RunFailure for a file that cannot be read at all; a fault in its text goes into the report.
CheckReport Check(const CheckOptions& options, const ProgressListener& listener);

} // namespace tarnvexo
