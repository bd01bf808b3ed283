#include "app/FreeParts.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace tarnvexo {

namespace {

// Work of the loads on a part in a rigid motion of it, a force.
double WorkInMotion(const ModelStore& model, const ConnectedParts& parts, int part, const PartMotions& motions,
                    const MotionVector& q)
{
    double work = 0.0;
    for (int k = parts.firstOfPart[part]; k < parts.firstOfPart[part + 1]; ++k) {
        const int node = parts.nodes[k];
        const MotionVector moved = MotionAt(motions, q, model.NodeCoordinates[node]);
        const double* load = &model.GLOAD[static_cast<std::size_t>(DofsPerNode) * node];
        for (int dof = 0; dof < DofsPerNode; ++dof) {
            work += load[dof] * (dof < RX ? moved[dof] : moved[dof] / motions.size);
        }
    }
    return work;
}

std::string LooseLoadWarning(const ModelStore& model, const FreeParts& free, const std::string& modelFile)
{
    int count = 0, first = 0;
    for (int node = 0; node < model.NPOIN; ++node) {
        const double* load = &model.GLOAD[static_cast<std::size_t>(DofsPerNode) * node];
        if (free.parts.partOfNode[node] < 0 &&
            std::any_of(load, load + DofsPerNode, [](double value) { return value != 0.0; })) {
            first = count++ == 0 ? node : first;
        }
    }
    if (count == 0) {
        return "";
    }
    return modelFile + ": warning: " + std::to_string(count) + " nodes without elements carry loads (first " +
           std::to_string(first) +
           ")\n"
           "  expected: loads on nodes of the structure; these have no effect on it but count in the balance\n"
           "  to do:    connect these nodes, or take their loads away";
}

} // namespace

FreeParts FindFreeParts(const ModelStore& model, const std::vector<int>& holdNodes)
{
    FreeParts free;
    free.parts = FindConnectedParts(model);
    free.restrained = RestrainedEquations(model);
    free.motions = FindPartMotions(model, free.parts, free.restrained, holdNodes);
    free.isHeld = free.restrained;
    for (const PartMotions& part : free.motions) {
        for (int equation : part.holds) { free.isHeld[equation] = 1; }
    }
    for (int node = 0; node < model.NPOIN; ++node) {
        if (free.parts.partOfNode[node] < 0) {
            std::fill_n(&free.isHeld[static_cast<std::size_t>(DofsPerNode) * node], DofsPerNode, 1);
        }
    }
    return free;
}

std::vector<PartReport> ReportParts(const FreeParts& free, DisplacementKind displacements)
{
    std::vector<PartReport> reports;
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        PartReport report;
        report.nodes = free.parts.NodeCount(part);
        report.elements = free.parts.elementCount[part];
        report.firstNode = free.parts.LowestNode(part);
        report.restrainedDofs = motions.restrainedDofs;
        report.freeMotions = static_cast<int>(motions.free.size());
        for (int equation : motions.holds) {
            report.holds.push_back({equation / DofsPerNode, static_cast<Dof>(equation % DofsPerNode)});
        }
        report.massOrthogonal = report.freeMotions > 0 && displacements == DisplacementKind::MassOrthogonal;
        reports.push_back(report);
    }
    return reports;
}

std::string CheckPartLoads(const ModelStore& model, const FreeParts& free, const LoadSizes& applied,
                           const SolveOptions& options)
{
    std::string warnings = LooseLoadWarning(model, free, options.modelFile);
    const double forceSize = applied.forces + SizesOfLoads(model).forces;
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        double largest = 0.0;
        for (const MotionVector& q : motions.free) {
            largest = std::max(largest, std::fabs(WorkInMotion(model, free.parts, part, motions, q)));
        }
        // Moments count with the part's size as their arm, so their size is among the forces'.
        if (largest <= BalanceTolerance * (forceSize + applied.moments / motions.size)) {
            continue;
        }
        char text[900];
        const bool isAlone = free.parts.count == 1;
        std::snprintf(text, sizeof text,
                      "%s: %s: part %d of %d (%d nodes, the lowest is node %d) is free to move, and its loads push it\n"
                      "  push:     %.6g of a load size of %.6g, along its %zu free rigid motions\n"
                      "  expected: loads that inertia relief balances: one connected structure%s\n"
                      "  to do:    %s",
                      options.modelFile.c_str(), isAlone ? "warning" : "error", part + 1, free.parts.count,
                      free.parts.NodeCount(part), free.parts.LowestNode(part), largest, forceSize, motions.free.size(),
                      isAlone ? ", balanced exactly" : ", or parts that are balanced each by itself",
                      isAlone ? "use --balance exact; the holds carry this rest now"
                              : "connect the part with the others, support it, or analyse it as a model of its own");
        if (!isAlone) {
            throw RunFailure(ExitBadModel, text);
        }
        warnings += (warnings.empty() ? "" : "\n") + std::string(text);
    }
    return warnings;
}

} // namespace tarnvexo
