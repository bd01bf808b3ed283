#include "checks/CoincidentNodes.h"
#include "checks/DuplicateElements.h"
#include "checks/FindingText.h"
#include "checks/ModelChecks.h"
#include "checks/NodeTree.h"
#include "checks/PartSummary.h"
#include "checks/ShellEdges.h"
#include "checks/ShellOrientation.h"
#include "checks/TJunctions.h"
#include "core/ConnectedParts.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <string>
#include <utility>

// Each procedure below turns what one search found into the finding of its rule.

namespace tarnvexo {

namespace {

using Findings = std::vector<Finding>;

template <std::size_t Nodes> Vector3 Middle(const ModelStore& model, const std::array<int, Nodes>& nodes)
{
    Vector3 middle = {};
    for (const int node : nodes) { middle = middle + model.NodeCoordinates[node] / double(Nodes); }
    return middle;
}

template <std::size_t Nodes>
void TellDuplicates(const ModelStore& model, const char* kind, const std::vector<std::array<int, Nodes>>& connectivity,
                    const std::vector<Duplicate>& duplicates, FindingCollector& collector)
{
    for (const Duplicate& duplicate : duplicates) {
        if (collector.Adds(0.0)) {
            collector.Keep({kind, duplicate.element, 0.0, Middle(model, connectivity[duplicate.element]),
                            std::string("on the nodes of ") + kind + " " + std::to_string(duplicate.original)},
                           0.0);
        }
    }
}

void TellDuplicates(const ModelStore& model, const RuleBook& rules, const DuplicateElements& duplicates,
                    Findings& findings)
{
    FindingCollector collector(RuleId::DuplicateElement, rules);
    TellDuplicates(model, "beam", model.BeamConnectivity, duplicates.beams, collector);
    TellDuplicates(model, "quad", model.QuadConnectivity, duplicates.quads, collector);
    TellDuplicates(model, "tri", model.TriConnectivity, duplicates.tris, collector);
    collector.AppendTo(findings);
}

// "part 2", or "the same part".
std::string OtherPart(const ConnectedParts& parts, int node, int other)
{
    return parts.partOfNode[node] == parts.partOfNode[other]
               ? std::string("the same part")
               : "part " + std::to_string(parts.partOfNode[other] + 1) + ", this one of part " +
                     std::to_string(parts.partOfNode[node] + 1);
}

// "12 of them between different parts", where there are several parts.
std::string BetweenParts(const ConnectedParts& parts, int count)
{
    return parts.count > 1 ? std::to_string(count) + " of them between different parts" : std::string();
}

// Those between different parts first: merging them may be all that a loose part needs.
void TellCoincidentNodes(const ModelStore& model, const RuleBook& rules, const CoincidentNodes& coincident,
                         const ConnectedParts& parts, double size, Findings& findings)
{
    FindingCollector collector(RuleId::CoincidentNodes, rules);
    int betweenParts = 0;
    for (const int node : UnconnectedNodes(model, coincident)) {
        const int other = coincident.leader[node];
        const bool differ = parts.partOfNode[node] != parts.partOfNode[other];
        betweenParts += differ;
        if (collector.Adds(differ)) {
            const Vector3& place = model.NodeCoordinates[node];
            const double distance = Length(place - model.NodeCoordinates[other]);
            collector.Keep({"node", node, size > 0.0 ? distance / size : 0.0, place,
                            "at node " + std::to_string(other) + " of " + OtherPart(parts, node, other)},
                           differ);
        }
    }
    collector.Summarise(BetweenParts(parts, betweenParts));
    collector.AppendTo(findings);
}

// Where the node lies.
std::string JunctionText(const ModelStore& model, const TJunction& junction)
{
    return junction.IsInFace()
               ? "inside " + ShellName(model, junction.shell)
               : "on " + ShellName(model, junction.shell) + " between " + EdgeName(junction.low, junction.high);
}

// The longest edges first: there most of the structure is apart.
void TellTJunctions(const ModelStore& model, const RuleBook& rules, const std::vector<TJunction>& junctions,
                    const ConnectedParts& parts, Findings& findings)
{
    FindingCollector collector(RuleId::TJunction, rules);
    int betweenParts = 0;
    for (const TJunction& junction : junctions) {
        const int other = ShellNodes(model, junction.shell)[0];
        betweenParts += parts.partOfNode[junction.node] != parts.partOfNode[other];
        if (collector.Adds(junction.length)) {
            collector.Keep({"node", junction.node, junction.distance / junction.length,
                            model.NodeCoordinates[junction.node],
                            JunctionText(model, junction) + " of " + OtherPart(parts, junction.node, other)},
                           junction.length);
        }
    }
    collector.Summarise(BetweenParts(parts, betweenParts));
    collector.AppendTo(findings);
}

// The lines that beams run along: pairs of nodes, sorted.
std::vector<std::pair<int, int>> BeamLines(const ModelStore& model)
{
    std::vector<std::pair<int, int>> lines;
    lines.reserve(model.BeamConnectivity.size());
    for (const auto& [a, b] : model.BeamConnectivity) { lines.push_back(std::minmax(a, b)); }
    std::sort(lines.begin(), lines.end());
    return lines;
}

// The longest first.
void TellFreeEdges(const ModelStore& model, const RuleBook& rules, const ShellEdges& edges, Findings& findings)
{
    FindingCollector collector(RuleId::FreeEdge, rules);
    const std::vector<std::pair<int, int>> beamLines = BeamLines(model);
    double total = 0.0;
    std::int64_t alongBeams = 0;
    edges.ForEach([&](const ShellEdge& edge) {
        if (edge.uses.size() != 1) {
            return;
        }
        const double length = EdgeLength(model, edge);
        const bool hasBeam = std::binary_search(beamLines.begin(), beamLines.end(), std::pair(edge.low, edge.high));
        total += length;
        alongBeams += hasBeam;
        if (collector.Adds(length)) {
            const int shell = edge.uses[0].shell;
            collector.Keep({ShellKind(model, shell), ShellPosition(model, shell), 0.0, EdgeMiddle(model, edge),
                            "between " + EdgeName(edge.low, edge.high) + ", " + ShortNumber(length) + " long" +
                                (hasBeam ? ", along a beam" : "")},
                           length);
        }
    });
    collector.Summarise(ShortNumber(total) + " long in all" +
                        (alongBeams > 0 ? ", " + std::to_string(alongBeams) + " of them along beams" : ""));
    collector.AppendTo(findings);
}

// "3 shells: quad 7, quad 8, tri 2"; of many, the first.
std::string PatchText(const ModelStore& model, const ShellOrientation& orientation, int patch)
{
    constexpr int mostNamed = 6;
    const int size = orientation.patchSize[patch];
    std::string text = Counted(size, "shell") + ": ";
    for (int shell = patch, named = 0; named < std::min(size, mostNamed); ++shell) {
        if (orientation.patch[shell] == patch) {
            text += (named > 0 ? ", " : "") + ShellName(model, shell);
            ++named;
        }
    }
    return size > mostNamed ? text + ", ..." : text;
}

// At the smallest patches first: few shells among many are more surely wrong. Each is told by the shell to turn.
void TellOpposedNormals(const ModelStore& model, const RuleBook& rules, const ShellEdges& edges, Findings& findings)
{
    FindingCollector collector(RuleId::OpposedNormals, rules);
    const ShellOrientation orientation = FindOrientation(model, edges, collector.Limit());
    if (orientation.opposed.empty()) {
        return;
    }
    const auto patchSize = [&](int shell) { return orientation.patchSize[orientation.patch[shell]]; };
    int smallest = orientation.patch[orientation.opposed[0].uses[0].shell];
    for (const ShellEdge& edge : orientation.opposed) {
        for (const EdgeUse& use : edge.uses) {
            const int patch = orientation.patch[use.shell];
            if (std::pair(patchSize(patch), patch) < std::pair(patchSize(smallest), smallest)) {
                smallest = patch;
            }
        }
        const bool turnFirst = orientation.turn[edge.uses[0].shell];
        const int shell = edge.uses[turnFirst ? 0 : 1].shell, other = edge.uses[turnFirst ? 1 : 0].shell;
        const double badness = -patchSize(shell);
        if (collector.Adds(badness)) {
            collector.Keep({ShellKind(model, shell), ShellPosition(model, shell), FoldAngle(model, edge),
                            EdgeMiddle(model, edge),
                            "against " + ShellName(model, other) + " between " + EdgeName(edge.low, edge.high) +
                                ", in a patch of " + Counted(patchSize(shell), "shell")},
                           badness);
        }
    }
    std::string summary = std::to_string(orientation.opposedPatches) +
                          (orientation.opposedPatches == 1 ? " patch" : " patches") +
                          " of one orientation, the smallest of " + PatchText(model, orientation, smallest) +
                          "; to turn in all: " + Counted(orientation.shellsToTurn, "shell");
    if (orientation.twisted > 0) {
        summary +=
            "; turning does not mend " + Counted(orientation.twisted, "edge") + ": the plating has one side only";
    }
    collector.Summarise(std::move(summary));
    collector.AppendTo(findings);
}

// Ratio of larger to smaller, 1 for equal ones; infinite against 0.
double Ratio(double a, double b)
{
    return a == b ? 1.0 : std::max(a, b) / std::min(a, b);
}

// valueOf(model, shell): what must not jump, 0 or more.
template <class ValueOf>
void TellJumps(RuleId rule, const char* what, const ModelStore& model, const RuleBook& rules, const ShellEdges& edges,
               ValueOf valueOf, Findings& findings)
{
    FindingCollector collector(rule, rules);
    edges.ForEach([&](const ShellEdge& edge) {
        if (!JoinsTwoShells(edge)) {
            return;
        }
        int shell = edge.uses[0].shell, other = edge.uses[1].shell;
        const double ratio = Ratio(valueOf(model, shell), valueOf(model, other));
        if (!(ratio > collector.Limit())) {
            return;
        }
        if (collector.Adds(ratio)) {
            if (valueOf(model, shell) > valueOf(model, other)) {
                std::swap(shell, other);
            }
            collector.Keep({ShellKind(model, shell), ShellPosition(model, shell), ratio, EdgeMiddle(model, edge),
                            std::string(what) + " " + ShortNumber(valueOf(model, shell)) + " beside " +
                                ShortNumber(valueOf(model, other)) + " of " + ShellName(model, other)},
                           ratio);
        }
    });
    collector.AppendTo(findings);
}

// The parts of fewest elements first: they are the ones that were forgotten.
void TellParts(const ModelStore& model, const RuleBook& rules, const ConnectedParts& parts, Findings& findings)
{
    FindingCollector collector(RuleId::DisconnectedParts, rules);
    if (parts.count < 2) {
        return;
    }
    const std::vector<PartSummary> summaries = SummariseParts(model, parts);
    for (int p = 0; p < parts.count; ++p) {
        const PartSummary& part = summaries[p];
        const double badness = -part.Elements();
        if (collector.Adds(badness)) {
            collector.Keep({"part", p + 1, 0.0, part.centre, PartSummaryText(part)}, badness);
        }
    }
    collector.AppendTo(findings);
}

// Shells on the nodes of another one: their edges would pass for folds and junctions.
std::vector<char> DuplicateShells(const ModelStore& model, const DuplicateElements& duplicates)
{
    std::vector<char> isDuplicate(ShellCount(model), false);
    for (const Duplicate& quad : duplicates.quads) { isDuplicate[quad.element] = true; }
    for (const Duplicate& tri : duplicates.tris) { isDuplicate[model.QuadConnectivity.size() + tri.element] = true; }
    return isDuplicate;
}

} // namespace

void CheckConnections(const ModelStore& model, const RuleBook& rules, std::vector<Finding>& findings)
{
    const DuplicateElements duplicates = FindDuplicateElements(model);
    const ShellEdges edges(model, DuplicateShells(model, duplicates));
    const ConnectedParts parts = FindConnectedParts(model);

    TellDuplicates(model, rules, duplicates, findings);
    if (rules.IsOn(RuleId::CoincidentNodes) || rules.IsOn(RuleId::TJunction)) {
        const NodeTree tree(UsedNodes(model));
        const double size = tree.Size();
        const CoincidentNodes coincident =
            FindCoincidentNodes(model, tree, rules.LimitOf(RuleId::CoincidentNodes) * size);
        TellCoincidentNodes(model, rules, coincident, parts, size, findings);
        if (rules.IsOn(RuleId::TJunction)) {
            TellTJunctions(model, rules,
                           FindTJunctions(model, edges, tree, coincident, rules.LimitOf(RuleId::TJunction)), parts,
                           findings);
        }
    }
    if (rules.IsOn(RuleId::FreeEdge)) {
        TellFreeEdges(model, rules, edges, findings);
    }
    if (rules.IsOn(RuleId::OpposedNormals)) {
        TellOpposedNormals(model, rules, edges, findings);
    }
    if (rules.IsOn(RuleId::ThicknessJump)) {
        TellJumps(RuleId::ThicknessJump, "thickness", model, rules, edges, ShellThickness, findings);
    }
    if (rules.IsOn(RuleId::DensityJump)) {
        TellJumps(RuleId::DensityJump, "density", model, rules, edges, ShellDensity, findings);
    }
    if (rules.IsOn(RuleId::DisconnectedParts)) {
        TellParts(model, rules, parts, findings);
    }
}

} // namespace tarnvexo
