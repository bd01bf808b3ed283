#include "checks/ModelChecks.h"

#include <algorithm>

namespace tarnvexo {

std::vector<Finding> CheckModel(const ModelStore& model, const RuleBook& rules)
{
    std::vector<Finding> findings;
    CheckShapes(model, rules, findings);
    CheckConnections(model, rules, findings);
    CheckUse(model, rules, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& one, const Finding& other) { return one.rule < other.rule; });
    return findings;
}

} // namespace tarnvexo
