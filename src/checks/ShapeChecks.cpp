#include "checks/ModelChecks.h"
#include "checks/ModelExtent.h"
#include "checks/QuadShape.h"
#include "checks/TriShape.h"
#include "core/Parallel.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <utility>

// One finding for one cause, whatever rules are on. The first that holds of
//     collapsed, crossing itself, without area, folded at an integration point, with a corner that points inwards
// is told of a shell, and such a shell is not measured further: its angles, sides and taper follow from that fault. A
// shell that is none of these is held to every limit of warping, aspect ratio, angle and taper, which are independent
// of each other, but for triangles: one with a sharp corner is not told to be long as well.

namespace tarnvexo {

namespace {

constexpr std::size_t ElementsPerRange = 8192;

// Shortest over longest side: below it two corners stand at one place.
constexpr double SamePlace = 1e-9;

// One collector per rule of shape.
class ShapeFindings {
public:
    explicit ShapeFindings(const RuleBook& rules)
    {
        collectors.reserve(Last - First + 1);
        for (int rule = First; rule <= Last; ++rule) { collectors.emplace_back(static_cast<RuleId>(rule), rules); }
    }

    FindingCollector& Of(RuleId rule) { return collectors[static_cast<int>(rule) - First]; }

    void Merge(ShapeFindings&& later)
    {
        for (std::size_t i = 0; i < collectors.size(); ++i) { collectors[i].Merge(std::move(later.collectors[i])); }
    }

    void AppendTo(std::vector<Finding>& findings)
    {
        for (FindingCollector& collector : collectors) { collector.AppendTo(findings); }
    }

private:
    static constexpr int First = static_cast<int>(RuleId::CollapsedElement);
    static constexpr int Last = static_cast<int>(RuleId::ZeroLengthBeam);
    std::vector<FindingCollector> collectors;
};

// An element under judgement: tells its faults to the collectors.
template <int NodeCount> class Suspect {
public:
    Suspect(const ModelStore& model, const char* kind, const std::array<int, NodeCount>& nodeNumbers,
            std::size_t number, ShapeFindings& findings)
        : kind(kind), number(static_cast<int>(number)), nodeNumbers(nodeNumbers), findings(findings)
    {
        for (int i = 0; i < NodeCount; ++i) { nodes[i] = model.NodeCoordinates[nodeNumbers[i]]; }
    }

    const Vector3* Nodes() const { return nodes; }
    bool IsOn(RuleId rule) const { return findings.Of(rule).IsOn(); }
    double Limit(RuleId rule) const { return findings.Of(rule).Limit(); }

    // detail(): its text, made for the worst only.
    template <class Detail> void Tell(RuleId rule, double value, double badness, Detail detail)
    {
        FindingCollector& collector = findings.Of(rule);
        if (collector.Adds(badness)) {
            Vector3 middle = {};
            for (const Vector3& node : nodes) { middle = middle + node / NodeCount; }
            collector.Keep({kind, number, value, middle, detail()}, badness);
        }
    }

    void Tell(RuleId rule, double value, double badness)
    {
        Tell(rule, value, badness, [] { return std::string(); });
    }

    void TellCorner(RuleId rule, double value, double badness, int corner)
    {
        Tell(rule, value, badness, [&] { return "corner at node " + std::to_string(nodeNumbers[corner]); });
    }

    // The faults that a quadrilateral and a triangle share.
    bool IsCollapsed(int shortestSideStart, double shortestSide, double longestSide)
    {
        for (int i = 0; i < NodeCount; ++i) {
            for (int j = i + 1; j < NodeCount; ++j) {
                if (nodeNumbers[i] == nodeNumbers[j]) {
                    Tell(RuleId::CollapsedElement, 0.0, 1.0,
                         [&] { return "node " + std::to_string(nodeNumbers[i]) + " twice"; });
                    return true;
                }
            }
        }
        if (shortestSide <= SamePlace * longestSide) {
            Tell(RuleId::CollapsedElement, 0.0, 0.0, [&] {
                return "nodes " + std::to_string(nodeNumbers[shortestSideStart]) + " and " +
                       std::to_string(nodeNumbers[(shortestSideStart + 1) % NodeCount]) + " at one place";
            });
            return true;
        }
        return false;
    }

    bool HasNoArea(double area, double longestSide)
    {
        const double ratio = area / (longestSide * longestSide);
        if (ratio > Limit(RuleId::ZeroArea)) {
            return false;
        }
        Tell(RuleId::ZeroArea, ratio, -ratio);
        return true;
    }

    void JudgeThickness(double thickness, double longestSide)
    {
        const double ratio = thickness / longestSide;
        if (ratio > Limit(RuleId::ThickShell)) {
            Tell(RuleId::ThickShell, ratio, ratio);
        }
    }

private:
    const char* kind;
    int number;
    const std::array<int, NodeCount>& nodeNumbers;
    ShapeFindings& findings;
    Vector3 nodes[NodeCount];
};

void JudgeQuad(const ModelStore& model, std::size_t e, ShapeFindings& findings)
{
    Suspect<QuadNodeCount> element(model, "quad", model.QuadConnectivity[e], e, findings);
    const QuadShape quad = MeasureQuad(element.Nodes());
    if (element.IsCollapsed(quad.shortestSideStart, quad.shortestSide, quad.longestSide)) {
        return;
    }
    if (CrossesItself(quad)) {
        element.Tell(RuleId::SelfCrossing, 0.0, 0.0);
        return;
    }
    if (element.HasNoArea(quad.area, quad.longestSide)) {
        return;
    }
    const double jacobian = LeastJacobian(quad);
    if (jacobian <= 0.0) {
        element.Tell(RuleId::InvertedQuad, 0.0, -jacobian, [jacobian] {
            char text[60];
            std::snprintf(text, sizeof text, "det J is %.3g of its mean", jacobian);
            return std::string(text);
        });
        return;
    }
    double angles[QuadNodeCount];
    QuadCornerAngles(quad, angles);
    const int widest = static_cast<int>(std::max_element(angles, angles + QuadNodeCount) - angles);
    if (angles[widest] >= element.Limit(RuleId::ConcaveQuad)) {
        element.TellCorner(RuleId::ConcaveQuad, angles[widest], angles[widest], widest);
        return;
    }

    element.JudgeThickness(model.QuadElements[e].thickness, quad.longestSide);
    const double warping = WarpingAngle(quad);
    if (warping > element.Limit(RuleId::Warping)) {
        element.Tell(RuleId::Warping, warping, warping);
    }
    const double aspect = AspectRatio(quad);
    if (aspect > element.Limit(RuleId::AspectRatio)) {
        element.Tell(RuleId::AspectRatio, aspect, aspect);
    }
    double deviations[QuadNodeCount];
    std::transform(angles, angles + QuadNodeCount, deviations, [](double angle) { return std::fabs(angle - 90.0); });
    const int skewest = static_cast<int>(std::max_element(deviations, deviations + QuadNodeCount) - deviations);
    if (deviations[skewest] > element.Limit(RuleId::QuadAngle)) {
        element.TellCorner(RuleId::QuadAngle, deviations[skewest], deviations[skewest], skewest);
    }
    int corner = 0;
    const double taper = Taper(quad, corner);
    if (taper > element.Limit(RuleId::Taper)) {
        element.TellCorner(RuleId::Taper, taper, taper, corner);
    }
}

void JudgeTri(const ModelStore& model, std::size_t e, ShapeFindings& findings)
{
    Suspect<TriNodeCount> element(model, "tri", model.TriConnectivity[e], e, findings);
    const TriShape tri = MeasureTri(element.Nodes());
    if (element.IsCollapsed(tri.shortestSideStart, tri.shortestSide, tri.longestSide) ||
        element.HasNoArea(tri.area, tri.longestSide)) {
        return;
    }
    element.JudgeThickness(model.TriElements[e].thickness, tri.longestSide);
    const double aspect = AspectRatio(tri);
    if (element.IsOn(RuleId::TriAngle) && tri.smallestAngle < element.Limit(RuleId::TriAngle)) {
        element.TellCorner(RuleId::TriAngle, tri.smallestAngle, -tri.smallestAngle, tri.smallestAngleCorner);
    } else if (aspect > element.Limit(RuleId::AspectRatio)) {
        element.Tell(RuleId::AspectRatio, aspect, aspect);
    }
}

void JudgeBeam(const ModelStore& model, std::size_t e, double extent, ShapeFindings& findings)
{
    Suspect<BeamNodeCount> element(model, "beam", model.BeamConnectivity[e], e, findings);
    const double length = Length(element.Nodes()[1] - element.Nodes()[0]);
    if (length <= element.Limit(RuleId::ZeroLengthBeam) * extent) {
        const double ratio = extent > 0.0 ? length / extent : 0.0;
        element.Tell(RuleId::ZeroLengthBeam, ratio, -ratio);
    }
}

// judge(e, findings) for every element, shared between threads; the findings are those of one thread.
template <class Judge>
void JudgeAll(std::size_t count, const RuleBook& rules, ShapeFindings& findings, const Judge& judge)
{
    std::vector<ShapeFindings> ranges((count + ElementsPerRange - 1) / ElementsPerRange, ShapeFindings(rules));
    ParallelFor(count, ElementsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) { judge(e, ranges[begin / ElementsPerRange]); }
    });
    for (ShapeFindings& range : ranges) { findings.Merge(std::move(range)); }
}

} // namespace

void CheckShapes(const ModelStore& model, const RuleBook& rules, std::vector<Finding>& findings)
{
    ShapeFindings shapes(rules);
    JudgeAll(model.QuadConnectivity.size(), rules, shapes,
             [&](std::size_t e, ShapeFindings& range) { JudgeQuad(model, e, range); });
    JudgeAll(model.TriConnectivity.size(), rules, shapes,
             [&](std::size_t e, ShapeFindings& range) { JudgeTri(model, e, range); });
    const double extent = ModelExtent(model);
    JudgeAll(model.BeamConnectivity.size(), rules, shapes,
             [&](std::size_t e, ShapeFindings& range) { JudgeBeam(model, e, extent, range); });
    shapes.AppendTo(findings);
}

} // namespace tarnvexo
