// cli/ReportJson.h
// The report of a run as JSON for programs: indented, UTF-8, keys in a fixed order. The keys are described in
// docs/formats/report-json.md and stay; new ones may come. Numbers that are not finite are null.
#pragma once

#include "app/CheckReport.h"
#include "app/SolveReport.h"
#include "cli/Quantities.h"

#include <string>

namespace tarnvexo {

// Raised when a key is renamed, removed or changes its meaning.
constexpr int ReportJsonVersion = 1;

// With a line end behind it.
std::string SolveReportJson(const SolveReport& report, UnitSystem units);
std::string InfoReportJson(const InfoReport& report, UnitSystem units);
std::string CheckReportJson(const CheckReport& report, UnitSystem units);

} // namespace tarnvexo
