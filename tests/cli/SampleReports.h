// cli/SampleReports.h
// Reports filled by hand, with figures that a small run could give.
#pragma once

#include "app/SolveReport.h"

namespace tarnvexo::test {

SolveReport SampleSolveReport();
InfoReport SampleInfoReport();

} // namespace tarnvexo::test
