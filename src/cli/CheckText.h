// cli/CheckText.h
// Findings of the model checks as text for people: the report of `tarnvexo check`, the section of them in other
// reports, and the table of rules. UTF-8, at most 100 columns, long paths aside.
#pragma once

#include "app/CheckReport.h"
#include "cli/Quantities.h"
#include "cli/ReportPage.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tarnvexo {

// Worst offenders of a finding that the report of `tarnvexo check` names; all that are kept when it is verbose.
constexpr std::size_t OffendersShown = 3;

// Can the model be solved, what is in the way (worst first), where is it, what is to be done. Notes have a line each,
// and more when it is verbose.
std::string CheckReportText(const CheckReport& report, UnitSystem units, bool verbose);

// Section MODEL CHECKS: a line per finding, with its worst offender.
void AddModelChecks(ReportPage& page, const std::vector<Finding>& findings);

// "2 errors, 1 warning", "nothing found"
std::string FindingsSummary(const std::vector<Finding>& findings);

// All rules as they are set, one line each.
std::string RuleTableText(const RuleBook& rules);

} // namespace tarnvexo
