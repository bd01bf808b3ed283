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

// Shares of the loads that are round-off of a part's own loads, and of the balance of the whole model.
constexpr double RoundOffOfBalance = 1e-13;

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

std::vector<double> LoadSizesOfParts(const ModelStore& model, const FreeParts& free)
{
    std::vector<double> sizes(static_cast<std::size_t>(free.parts.count), 0.0);
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        for (int k = free.parts.firstOfPart[part]; k < free.parts.firstOfPart[part + 1]; ++k) {
            const int node = free.parts.nodes[k];
            const double* load = &model.GLOAD[static_cast<std::size_t>(DofsPerNode) * node];
            const double force = Length({load[DX], load[DY], load[DZ]});
            const double arm = Length(model.NodeCoordinates[node] - motions.reference);
            sizes[part] += force + (arm * force + Length({load[RX], load[RY], load[RZ]})) / motions.size;
        }
    }
    return sizes;
}

PartLoadCheck CheckPartLoads(const ModelStore& model, const FreeParts& free, const std::vector<double>& appliedByPart,
                             double appliedForces, BalanceKind kind, const std::string& modelFile)
{
    PartLoadCheck check;
    const std::vector<double> balancedByPart = LoadSizesOfParts(model, free);
    for (int part = 0; part < free.parts.count && check.fault.empty(); ++part) {
        const PartMotions& motions = free.motions[part];
        const double size = appliedByPart[part] + balancedByPart[part];
        double push = 0.0;
        for (const MotionVector& q : motions.free) {
            push = std::max(push, std::fabs(WorkInMotion(model, free.parts, part, motions, q)));
        }
        if (push <= BalanceTolerance * size + RoundOffOfBalance * appliedForces) {
            continue;
        }
        char text[900];
        const bool isAlone = free.parts.count == 1;
        const bool isFault = !isAlone || kind == BalanceKind::Exact;
        std::snprintf(text, sizeof text,
                      "%s: %s: part %d of %d (%d nodes, the lowest is node %d) is free to move, and its loads push it\n"
                      "  push:     %.6g against loads of %.6g on it, along its %zu free rigid motions\n"
                      "  expected: loads that inertia relief balances: one connected structure%s\n"
                      "  to do:    %s",
                      modelFile.c_str(), isFault ? "error" : "warning", part + 1, free.parts.count,
                      free.parts.NodeCount(part), free.parts.LowestNode(part), push, size, motions.free.size(),
                      isAlone ? "" : ", or parts that are balanced each by itself",
                      !isFault  ? "use --balance exact; the holds carry this rest now"
                      : isAlone ? "hold it against this motion by supports, or give it mass beside one line"
                                : "connect the part with the others, support it, or analyse it alone");
        if (isFault) {
            check.fault = text;
        } else {
            check.warnings.push_back(text);
        }
    }
    return check;
}

std::vector<std::string> SupportWarnings(const FreeParts& free, const LoadSizes& applied, const std::string& modelFile)
{
    std::vector<std::string> warnings;
    if (applied.forces == 0.0 && applied.moments == 0.0) {
        return warnings;
    }
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        const int held = RigidMotionCount - static_cast<int>(motions.free.size());
        if (motions.restrainedDofs <= held) {
            continue;
        }
        char text[600];
        std::snprintf(text, sizeof text,
                      "%s: warning: %d directions of part %d of %d are restrained where %d hold it, but the loads are\n"
                      "  balanced by inertia, not by supports\n"
                      "  expected: a structure that floats, flies or hangs free, held in position by six directions\n"
                      "  to do:    do not use these results for a structure that stands on its supports",
                      modelFile.c_str(), motions.restrainedDofs, part + 1, free.parts.count, held);
        warnings.push_back(text);
    }
    return warnings;
}

} // namespace tarnvexo
