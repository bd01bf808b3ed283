#include "checks/Finding.h"

#include <algorithm>
#include <utility>

namespace tarnvexo {

FindingCollector::FindingCollector(RuleId rule, const RuleBook& rules)
    : finding{rule, rules.SeverityOf(rule), rules.LimitOf(rule), 0, {}}
{
}

bool FindingCollector::Adds(double badness)
{
    ++finding.count;
    return kept.size() < WorstKept || badness > kept.back().badness;
}

void FindingCollector::Keep(Offender offender, double badness)
{
    const auto behind = std::upper_bound(kept.begin(), kept.end(), badness,
                                         [](double value, const Kept& other) { return value > other.badness; });
    kept.insert(behind, {std::move(offender), badness});
    if (kept.size() > WorstKept) {
        kept.pop_back();
    }
}

void FindingCollector::Merge(FindingCollector&& later)
{
    const std::int64_t count = finding.count + later.finding.count;
    for (Kept& one : later.kept) {
        if (Adds(one.badness)) {
            Keep(std::move(one.offender), one.badness);
        }
    }
    finding.count = count;
}

void FindingCollector::Summarise(std::string summary)
{
    finding.summary = std::move(summary);
}

void FindingCollector::AppendTo(std::vector<Finding>& findings)
{
    if (!IsOn() || finding.count == 0) {
        return;
    }
    for (Kept& one : kept) { finding.worst.push_back(std::move(one.offender)); }
    kept.clear();
    findings.push_back(std::move(finding));
}

} // namespace tarnvexo
