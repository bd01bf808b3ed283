#include "app/LoadBalance.h"

#include "app/AssemblyDriver.h"
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

// Nodes without elements that carry loads; the loads are taken away when `remove` is set.
std::string LooseLoads(ModelStore& model, const ConnectedParts& parts, bool remove, const std::string& modelFile)
{
    int count = 0, first = 0;
    for (int node = 0; node < model.NPOIN; ++node) {
        double* load = &model.GLOAD[static_cast<std::size_t>(DofsPerNode) * node];
        if (parts.partOfNode[node] < 0 &&
            std::any_of(load, load + DofsPerNode, [](double value) { return value != 0.0; })) {
            first = count++ == 0 ? node : first;
            if (remove) {
                std::fill(load, load + DofsPerNode, 0.0);
            }
        }
    }
    if (count == 0) {
        return "";
    }
    return modelFile + ": warning: " + std::to_string(count) + " nodes without elements carry loads (first " +
           std::to_string(first) + ")\n" +
           (remove ? "  done:     these loads are left out, of the balance too\n"
                   : "  done:     they count in the balance, as in the console run, but do not reach the structure\n") +
           "  to do:    connect these nodes, or take their loads away";
}

void AddText(const std::string& text, std::vector<std::string>& texts)
{
    if (!text.empty()) {
        texts.push_back(text);
    }
}

} // namespace

BalancedLoads BalanceModelLoads(ModelStore& model, const std::string& modelFile, BalanceKind kind)
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
    AddText(LooseLoads(model, result.free.parts, kind == BalanceKind::Exact, modelFile), result.warnings);

    const LoadSizes applied = SizesOfLoads(model);
    const std::vector<double> appliedByPart = LoadSizesOfParts(model, result.free);
    result.shellInertia = ShellInertia(model);
    result.sheet = BalanceLoads(model, result.shellInertia, kind);
    if (!result.sheet.shortage.empty()) {
        result.fault = modelFile + ": error: " + result.sheet.shortage;
        return result;
    }
    if (NodeOfBadLoad(model.GLOAD) >= 0) {
        result.fault = BalanceWarning(model, applied, modelFile.c_str());
        return result;
    }
    const auto loneNodes = std::count(result.free.parts.partOfNode.begin(), result.free.parts.partOfNode.end(), -1);
    if (loneNodes > 0) {
        result.warnings.push_back(modelFile + ": warning: " + std::to_string(loneNodes) +
                                  " nodes belong to no element\n"
                                  "  done:     they are left where they are\n"
                                  "  to do:    take them out, or connect them");
    }
    for (const std::string& warning : SupportWarnings(result.free, applied, modelFile)) {
        result.warnings.push_back(warning);
    }
    const PartLoadCheck check = CheckPartLoads(model, result.free, appliedByPart, applied.forces, kind, modelFile);
    result.warnings.insert(result.warnings.end(), check.warnings.begin(), check.warnings.end());
    result.fault = check.fault;
    return result;
}

} // namespace tarnvexo
