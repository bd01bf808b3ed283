// cli/ReportText.h
// The report of a run as text for people: UTF-8, at most 100 columns (long paths aside), six significant digits,
// sections under headings, a summary of eight lines at the end, where a terminal shows it.
//
// Long tables are cut: PartLimit parts, ReactionLimit reactions (those with the largest share of the applied loads).
// The JSON report has them all.
#pragma once

#include "app/SolveReport.h"
#include "cli/Quantities.h"

#include <cstddef>
#include <string>
#include <vector>

namespace tarnvexo {

constexpr std::size_t PartLimit = 12;
constexpr std::size_t ReactionLimit = 12;

std::string SolveReportText(const SolveReport& report, UnitSystem units);

struct ReportPicture {
    std::string caption;
    std::string png; // bytes of a PNG file
};

// The same as one HTML page, with its summary first and pictures behind it.
std::string SolveReportHtml(const SolveReport& report, UnitSystem units, const std::vector<ReportPicture>& pictures);
std::string InfoReportText(const InfoReport& report, UnitSystem units);

} // namespace tarnvexo
