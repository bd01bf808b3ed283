// cli/SampleReports.h
// Reports filled by hand, with figures that a small run could give.
#pragma once

#include "app/CheckReport.h"
#include "app/SolveReport.h"

namespace tarnvexo::test {

SolveReport SampleSolveReport();
InfoReport SampleInfoReport();
CheckReport SampleCheckReport(); // two errors, a warning, a note

} // namespace tarnvexo::test
