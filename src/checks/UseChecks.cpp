#include "checks/ModelChecks.h"
#include "checks/UnitChecks.h"

#include <algorithm>
#include <cmath>

// What nodes, loads and supports are used for. Of a node without elements one thing is told: that it is loaded, else
// that it is supported, else that nothing uses it.

namespace tarnvexo {

namespace {

// What uses a node.
struct NodeUse {
    unsigned char elements = 0; // counted up to 2
    bool isLoaded = false;      // by a force or moment that is not zero
    bool isSupported = false;
};

template <int NodeCount>
void CountUses(const std::vector<std::array<int, NodeCount>>& elements, std::vector<NodeUse>& uses)
{
    for (const std::array<int, NodeCount>& nodes : elements) {
        for (int i = 0; i < NodeCount; ++i) {
            // A node that stands twice in an element is used once.
            if (std::find(nodes.begin(), nodes.begin() + i, nodes[i]) == nodes.begin() + i) {
                NodeUse& use = uses[nodes[i]];
                use.elements = static_cast<unsigned char>(std::min(2, use.elements + 1));
            }
        }
    }
}

std::vector<NodeUse> UsesOfNodes(const ModelStore& model)
{
    std::vector<NodeUse> uses(model.NodeCoordinates.size());
    CountUses<QuadNodeCount>(model.QuadConnectivity, uses);
    CountUses<TriNodeCount>(model.TriConnectivity, uses);
    CountUses<BeamNodeCount>(model.BeamConnectivity, uses);
    for (const NodalForce& force : model.NodalForces) {
        uses[force.node].isLoaded |=
            std::any_of(force.components, force.components + DofsPerNode, [](double f) { return f != 0.0; });
    }
    for (const Restraint& restraint : model.Restraints) {
        uses[restraint.node].isSupported |=
            std::any_of(restraint.flags, restraint.flags + DofsPerNode, [](int flag) { return flag == 1; });
    }
    return uses;
}

void Tell(FindingCollector& collector, const ModelStore& model, std::size_t node)
{
    if (collector.Adds(0.0)) {
        collector.Keep({"node", static_cast<int>(node), 0.0, model.NodeCoordinates[node], ""}, 0.0);
    }
}

// Size of a load on a node: forces and moments have no common unit, so the largest number says which load to look at
// first.
double LargestComponent(const NodalForce& force)
{
    double largest = 0.0;
    for (const double component : force.components) { largest = std::max(largest, std::fabs(component)); }
    return largest;
}

void CheckNodes(const ModelStore& model, const std::vector<NodeUse>& uses, const RuleBook& rules,
                std::vector<Finding>& findings)
{
    FindingCollector unused(RuleId::UnusedNode, rules);
    FindingCollector supported(RuleId::UnstiffenedSupport, rules);
    for (std::size_t n = 0; n < uses.size(); ++n) {
        if (uses[n].elements == 0 && !uses[n].isLoaded) {
            Tell(uses[n].isSupported ? supported : unused, model, n);
        }
    }
    FindingCollector loaded(RuleId::UnstiffenedLoad, rules);
    for (const NodalForce& force : model.NodalForces) {
        const double size = LargestComponent(force);
        if (uses[force.node].elements == 0 && size > 0.0 && loaded.Adds(size)) {
            loaded.Keep({"node", force.node, 0.0, model.NodeCoordinates[force.node], ""}, size);
        }
    }
    unused.AppendTo(findings);
    supported.AppendTo(findings);
    loaded.AppendTo(findings);
}

void CheckBeamEnds(const ModelStore& model, const std::vector<NodeUse>& uses, const RuleBook& rules,
                   std::vector<Finding>& findings)
{
    FindingCollector loose(RuleId::LooseBeamEnd, rules);
    for (std::size_t b = 0; b < model.BeamConnectivity.size(); ++b) {
        const std::array<int, BeamNodeCount>& nodes = model.BeamConnectivity[b];
        if (nodes[0] == nodes[1]) {
            continue; // a beam without ends, told by its shape
        }
        for (const int node : nodes) {
            const NodeUse& use = uses[node];
            if (use.elements == 1 && !use.isLoaded && !use.isSupported && loose.Adds(0.0)) {
                loose.Keep({"beam", static_cast<int>(b), 0.0, model.NodeCoordinates[node],
                            "end at node " + std::to_string(node)},
                           0.0);
            }
        }
    }
    loose.AppendTo(findings);
}

template <class Loads, class IsZero> bool AllAreZero(const Loads& loads, IsZero isZero)
{
    return std::all_of(loads.begin(), loads.end(), isZero);
}

bool HasNoLoad(const ModelStore& model)
{
    const auto noPressure = [](const ShellDistributedLoad& load) {
        return load.pressure[0] == 0.0 && load.pressure[1] == 0.0 && load.pressure[2] == 0.0;
    };
    return AllAreZero(model.NodalForces, [](const NodalForce& force) { return LargestComponent(force) == 0.0; }) &&
           AllAreZero(model.QuadDistributedLoads, noPressure) && AllAreZero(model.TriDistributedLoads, noPressure) &&
           AllAreZero(model.BeamDistributedLoads,
                      [](const BeamDistributedLoad& load) { return load.q1 == 0.0 && load.q2 == 0.0; });
}

} // namespace

void CheckUse(const ModelStore& model, const RuleBook& rules, std::vector<Finding>& findings)
{
    const std::vector<NodeUse> uses = UsesOfNodes(model);
    CheckNodes(model, uses, rules, findings);
    CheckBeamEnds(model, uses, rules, findings);

    if (rules.IsOn(RuleId::NoLoad) && HasNoLoad(model)) {
        findings.push_back({RuleId::NoLoad, rules.SeverityOf(RuleId::NoLoad), rules.LimitOf(RuleId::NoLoad), 1, {}});
    }

    FindingCollector mixed(RuleId::MixedUnits, rules);
    if (mixed.IsOn()) {
        CheckUnits(model, rules.DeclaredUnits(), mixed);
    }
    mixed.AppendTo(findings);
}

} // namespace tarnvexo
