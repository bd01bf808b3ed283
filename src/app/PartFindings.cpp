#include "app/PartFindings.h"

#include "app/PartGaps.h"
#include "checks/ModelExtent.h"
#include "inertia/MotionNames.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace tarnvexo {

namespace {

// Share of the loads of the whole model that is round-off of its balance.
constexpr double RoundOffOfBalance = 1e-13;

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

bool Floats(const FreeParts& free, int part, int supportedParts)
{
    const bool othersAreSupported = supportedParts > (free.motions[part].restrainedDofs > 0 ? 1 : 0);
    return othersAreSupported && !free.motions[part].free.empty();
}

int SupportedParts(const FreeParts& free)
{
    return static_cast<int>(std::count_if(free.motions.begin(), free.motions.end(),
                                          [](const PartMotions& part) { return part.restrainedDofs > 0; }));
}

std::string CountText(int count, const char* noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// "118 nodes, 100 elements, from node 0 on; free to move along x; ..."
std::string PartText(const FreeParts& free, int part)
{
    std::string text = CountText(free.parts.NodeCount(part), "node") + ", " +
                       CountText(free.parts.elementCount[part], "element") + ", from node " +
                       std::to_string(free.parts.LowestNode(part)) + " on";
    for (const std::string& motion : FreeMotionTexts(free.motions[part], free.origin)) { text += "; " + motion; }
    return text;
}

std::string GapText(const PartGap& gap, const ConnectedParts& parts)
{
    if (gap.otherNode < 0) {
        return "";
    }
    char distance[32];
    std::snprintf(distance, sizeof distance, "%.6g", gap.distance);
    const std::string other =
        "node " + std::to_string(gap.otherNode) + " of part " + std::to_string(parts.partOfNode[gap.otherNode] + 1);
    return gap.meetingNodes > 0
               ? "; " + CountText(gap.meetingNodes, "node") +
                     " at the place of nodes of other parts, not merged, the closest node " + std::to_string(gap.node) +
                     " with " + other
               : "; nearest to another part is node " + std::to_string(gap.node) + ", " + distance + " from " + other;
}

Vector3 PlaceOf(const FreeParts& free, int part)
{
    return free.motions[part].reference + free.origin;
}

} // namespace

void FindFloatingParts(const ModelStore& model, const FreeParts& free, const RuleBook& rules,
                       std::vector<Finding>& findings)
{
    FindingCollector floating(RuleId::FloatingPart, rules);
    if (!floating.IsOn()) {
        return;
    }
    const int supported = SupportedParts(free);
    std::vector<Offender> offenders;
    std::vector<int> named; // parts whose gaps are wanted
    for (int part = 0; part < free.parts.count; ++part) {
        const int nodes = free.parts.NodeCount(part);
        if (Floats(free, part, supported) && floating.Adds(nodes)) {
            floating.Keep({"part", part + 1, 0.0, PlaceOf(free, part), ""}, nodes);
        }
    }
    floating.Summarise("of " + CountText(free.parts.count, "part"));
    const std::size_t before = findings.size();
    floating.AppendTo(findings);
    if (findings.size() == before) {
        return;
    }
    Finding& finding = findings.back();
    for (const Offender& offender : finding.worst) { named.push_back(offender.number - 1); }
    const double meeting = rules.LimitOf(RuleId::CoincidentNodes) * ModelExtent(model);
    const std::vector<PartGap> gaps = FindPartGaps(model, free.parts, named, meeting);
    for (std::size_t i = 0; i < named.size(); ++i) {
        finding.worst[i].detail = PartText(free, named[i]) + GapText(gaps[i], free.parts);
    }
}

void FindUnbalancedParts(const ModelStore& model, const FreeParts& free, const std::vector<double>& appliedByPart,
                         double appliedForces, BalanceKind kind, const RuleBook& rules, std::vector<Finding>& findings)
{
    FindingCollector unbalanced(RuleId::UnbalancedPart, rules);
    if (!unbalanced.IsOn()) {
        return;
    }
    const bool floatingIsTold = rules.SeverityOf(RuleId::FloatingPart) == Severity::Error;
    const int supported = SupportedParts(free);
    const std::vector<double> balancedByPart = LoadSizesOfParts(model, free);
    for (int part = 0; part < free.parts.count; ++part) {
        if (floatingIsTold && Floats(free, part, supported)) {
            continue;
        }
        const PartMotions& motions = free.motions[part];
        const double size = appliedByPart[part] + balancedByPart[part];
        double push = 0.0;
        for (const MotionVector& q : motions.free) {
            push = std::max(push, std::fabs(WorkInMotion(model, free.parts, part, motions, q)));
        }
        if (push > BalanceTolerance * size + RoundOffOfBalance * appliedForces && unbalanced.Adds(push)) {
            char text[120];
            std::snprintf(text, sizeof text, "; a push of %.6g against loads of %.6g on it", push, size);
            unbalanced.Keep({"part", part + 1, 0.0, PlaceOf(free, part), PartText(free, part) + text}, push);
        }
    }
    const bool isAlone = free.parts.count == 1;
    const bool isCarried = isAlone && kind == BalanceKind::Classic;
    if (isCarried) {
        unbalanced.Summarise("its holds carry this rest; --balance exact leaves none");
    } else if (isAlone) {
        unbalanced.Summarise("hold it against this motion by supports, or give it mass beside one line");
    } else {
        unbalanced.Summarise("of " + CountText(free.parts.count, "part"));
    }
    const std::size_t before = findings.size();
    unbalanced.AppendTo(findings);
    if (findings.size() > before && isCarried) {
        findings.back().severity = std::min(findings.back().severity, Severity::Warning);
    }
}

void FindSupportsInBalance(const FreeParts& free, const LoadSizes& applied, const RuleBook& rules,
                           std::vector<Finding>& findings)
{
    FindingCollector supports(RuleId::SupportsInBalance, rules);
    if (!supports.IsOn() || (applied.forces == 0.0 && applied.moments == 0.0)) {
        return;
    }
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        const int more = motions.RedundantSupports();
        if (more > 0 && supports.Adds(more)) {
            supports.Keep({"part", part + 1, 0.0, PlaceOf(free, part),
                           CountText(motions.restrainedDofs, "direction") + " restrained where " +
                               std::to_string(motions.restrainedDofs - more) + " hold it"},
                          more);
        }
    }
    supports.Summarise("the loads are balanced by inertia, as of a structure that floats, flies or hangs free: the "
                       "supports only hold it in position");
    supports.AppendTo(findings);
}

} // namespace tarnvexo
