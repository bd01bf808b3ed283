#include "app/LoadBalance.h"

#include "app/AssemblyDriver.h"
#include "app/PartFindings.h"
#include "inertia/BalanceCheck.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

// The first node whose load is not a number; -1: none.
int NodeOfBadLoad(const std::vector<double>& loads)
{
    const auto bad = std::find_if(loads.begin(), loads.end(), [](double load) { return !std::isfinite(load); });
    return bad == loads.end() ? -1 : static_cast<int>((bad - loads.begin()) / DofsPerNode);
}

// The loads of nodes without elements, which do not reach the structure.
void RemoveLooseLoads(ModelStore& model, const ConnectedParts& parts)
{
    for (int node = 0; node < model.NPOIN; ++node) {
        if (parts.partOfNode[node] < 0) {
            std::fill_n(&model.GLOAD[static_cast<std::size_t>(DofsPerNode) * node], DofsPerNode, 0.0);
        }
    }
}

} // namespace

BalancedLoads BalanceModelLoads(ModelStore& model, const std::string& modelFile, BalanceKind kind,
                                const RuleBook& rules)
{
    BalancedLoads result;
    result.free = FindFreeParts(model);
    AssembleLoads(model);
    const int badNode = NodeOfBadLoad(model.GLOAD);
    if (badNode >= 0) {
        result.fault = modelFile + ": error: the load of node " + std::to_string(badNode) +
                       " is not a number\n"
                       "  expected: finite forces, moments and pressures\n"
                       "  to do:    look at the forces of this node and the pressures of the elements around it";
        return result;
    }
    if (kind == BalanceKind::Exact) {
        RemoveLooseLoads(model, result.free.parts);
    }

    const LoadSizes applied = SizesOfLoads(model);
    const std::vector<double> appliedByPart = LoadSizesOfParts(model, result.free);
    result.shellInertia = ShellInertia(model);
    result.sheet = BalanceLoads(model, result.shellInertia, kind);
    if (!result.sheet.shortage.empty()) {
        result.fault = modelFile + ": error: " + result.sheet.shortage;
        return result;
    }
    if (NodeOfBadLoad(model.GLOAD) >= 0) {
        result.fault = modelFile + ": error: the inertial loads that balance the applied ones are not numbers\n"
                                   "  expected: loads, masses and coordinates whose products a double can hold\n"
                                   "  to do:    look for densities, thicknesses, sections, coordinates and loads "
                                   "beyond all measure";
        return result;
    }
    FindFloatingParts(model, result.free, rules, result.findings);
    FindUnbalancedParts(model, result.free, appliedByPart, applied.forces, kind, rules, result.findings);
    FindSupportsInBalance(result.free, applied, rules, result.findings);
    return result;
}

} // namespace tarnvexo
