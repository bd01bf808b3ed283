#include "checks/ModelChecks.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvexo {

namespace {

template <std::size_t NodeCount> std::string NodesText(const std::array<int, NodeCount>& nodes)
{
    std::string text = "nodes";
    for (const int node : nodes) { text += (text.size() == 5 ? " " : ", ") + std::to_string(node); }
    return text;
}

// An element is looked up in a model by its nodes.
void NameNodes(const ModelStore& model, Offender& offender)
{
    const std::string_view kind = offender.kind;
    const std::string nodes = kind == "quad"   ? NodesText(model.QuadConnectivity[offender.number])
                              : kind == "tri"  ? NodesText(model.TriConnectivity[offender.number])
                              : kind == "beam" ? NodesText(model.BeamConnectivity[offender.number])
                                               : "";
    if (!nodes.empty()) {
        offender.detail = offender.detail.empty() ? nodes : offender.detail + "; " + nodes;
    }
}

} // namespace

std::vector<Finding> CheckModel(const ModelStore& model, const RuleBook& rules)
{
    std::vector<Finding> findings;
    CheckShapes(model, rules, findings);
    CheckConnections(model, rules, findings);
    CheckUse(model, rules, findings);
    std::stable_sort(findings.begin(), findings.end(),
                     [](const Finding& one, const Finding& other) { return one.rule < other.rule; });
    for (Finding& finding : findings) {
        for (Offender& offender : finding.worst) { NameNodes(model, offender); }
    }
    return findings;
}

} // namespace tarnvexo
