#include "app/PartFindings.h"

#include "app/PartGaps.h"
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

// Distance below which nodes count as being at one place.
double MeetingDistance(const ModelStore& model, const RuleBook& rules)
{
    Vector3 low = model.NodeCoordinates.front(), high = low;
    for (const Vector3& node : model.NodeCoordinates) {
        for (int k = 0; k < 3; ++k) {
            low[k] = std::min(low[k], node[k]);
            high[k] = std::max(high[k], node[k]);
        }
    }
    return rules.LimitOf(RuleId::CoincidentNodes) * Length(high - low);
}

} // namespace

void FindFloatingParts(const ModelStore& model, const FreeParts& free, BalanceKind kind, const RuleBook& rules,
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
            floating.Keep({"part", part, 0.0, PlaceOf(free, part), ""}, nodes);
        }
    }
    const std::size_t before = findings.size();
    floating.AppendTo(findings);
    if (findings.size() == before) {
        return;
    }
    Finding& finding = findings.back();
    for (const Offender& offender : finding.worst) { named.push_back(offender.number); }
    const std::vector<PartGap> gaps = FindPartGaps(model, free.parts, named, MeetingDistance(model, rules));
    for (std::size_t i = 0; i < named.size(); ++i) {
        finding.worst[i].detail = PartText(free, named[i]) + GapText(gaps[i], free.parts);
    }
    if (kind == BalanceKind::Classic) {
        finding.severity = std::min(finding.severity, Severity::Warning);
    }
}

void FindUnbalancedParts(const ModelStore& model, const FreeParts& free, const std::vector<double>& appliedByPart,
                         double appliedForces, BalanceKind kind, const RuleBook& rules, std::vector<Finding>& findings)
{
    FindingCollector unbalanced(RuleId::UnbalancedPart, rules);
    if (!unbalanced.IsOn()) {
        return;
    }
    const bool floatingIsTold = kind == BalanceKind::Exact && rules.SeverityOf(RuleId::FloatingPart) == Severity::Error;
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
            unbalanced.Keep({"part", part, 0.0, PlaceOf(free, part), PartText(free, part) + text}, push);
        }
    }
    const std::size_t before = findings.size();
    unbalanced.AppendTo(findings);
    if (findings.size() > before && kind == BalanceKind::Classic && free.parts.count == 1) {
        findings.back().severity = std::min(findings.back().severity, Severity::Warning);
    }
}

std::string PartFindingText(const Finding& finding, int partCount, const std::string& modelFile)
{
    const bool isFloating = finding.rule == RuleId::FloatingPart;
    const bool isOne = finding.count == 1;
    const std::string count = std::to_string(finding.count) + " of " + std::to_string(partCount) + " parts";
    std::string text = modelFile + ": " + SeverityName(finding.severity) + ": [" + RuleOf(finding.rule).name + "] ";
    if (isFloating) {
        text += count + (isOne ? " is" : " are") + " free to move while another one is supported";
    } else {
        text += partCount == 1 ? "the structure is free to move, and its loads push it"
                               : count + (isOne ? " is" : " are") + " free to move, and its loads push it";
        if (!isOne) {
            text.replace(text.rfind("its loads push it"), std::string::npos, "their loads push them");
        }
    }
    for (const Offender& offender : finding.worst) {
        std::string label = "part " + std::to_string(offender.number + 1) + ":";
        label.resize(std::max<std::size_t>(label.size() + 1, 10), ' ');
        text += "\n  " + label + offender.detail + "; around " + PointText(offender.place);
    }
    const auto others = finding.count - static_cast<std::int64_t>(finding.worst.size());
    if (others > 0) {
        text += "\n            and " + std::to_string(others) + " more";
    }
    if (isFloating) {
        return text + "\n  expected: parts that are all held by their supports, or a structure without supports\n"
                      "  to do:    merge nodes that stand at one place, connect the part, support it, or take it out";
    }
    const bool isAlone = partCount == 1;
    text += std::string("\n  expected: loads that inertia relief balances: one connected structure") +
            (isAlone ? "" : ", or parts that are balanced each by itself");
    return text + "\n  to do:    " +
           (finding.severity != Severity::Error ? "use --balance exact; the holds carry this rest now"
            : isAlone ? "hold it against this motion by supports, or give it mass beside one line"
                      : "connect the part with the others, support it, or analyse it alone");
}

} // namespace tarnvexo
