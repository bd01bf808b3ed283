#include "app/Mechanisms.h"

#include "elements/BeamStiffness.h"
#include "elements/ShellStiffness.h"
#include "inertia/MotionNames.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <span>

namespace tarnvexo {

namespace {

constexpr std::size_t MotionsTold = 10;
constexpr std::size_t ElementsTold = 8;

// Nodes that move by less than this share of the largest do not take part; elements deform by more than it.
constexpr double Noticeable = 1e-3;

// One element of any kind.
struct ElementView {
    const char* kind;   // in messages: "four-node shell"
    std::size_t number; // in its table
    std::span<const int> nodes;
    const double* K; // [6·nodes][6·nodes]
    double E;
    double thickness;                    // of shells; 0 for beams
    const BeamSectionConstants* section; // of beams; nullptr for shells
};

template <class Visit> void VisitElements(const ModelStore& model, Visit visit)
{
    for (std::size_t e = 0; e < model.QuadElements.size(); ++e) {
        double K[QuadDofCount][QuadDofCount];
        QuadShellStiffness(model.QuadElements[e], K);
        visit(ElementView{"four-node shell", e, model.QuadConnectivity[e], &K[0][0], model.QuadElements[e].E,
                          model.QuadElements[e].thickness, nullptr});
    }
    for (std::size_t e = 0; e < model.TriElements.size(); ++e) {
        double K[TriDofCount][TriDofCount];
        TriShellStiffness(model.TriElements[e], K);
        visit(ElementView{"three-node shell", e, model.TriConnectivity[e], &K[0][0], model.TriElements[e].E,
                          model.TriElements[e].thickness, nullptr});
    }
    for (std::size_t e = 0; e < model.BeamElements.size(); ++e) {
        double K[BeamDofCount][BeamDofCount];
        BeamStiffness(model.BeamElements[e], K);
        visit(ElementView{"beam", e, model.BeamConnectivity[e], &K[0][0], model.BeamElements[e].E, 0.0,
                          &model.BeamElements[e].section});
    }
}

// What is known about one motion.
struct Trace {
    int node = -1;        // that takes the largest part
    double largest = 0.0; // its part, Σ stiffness·u² of its directions
    bool turns = false;   // rather than moves
    Vector3 direction = {};
    int nodes = 0; // that take part, in the box from low to high
    Vector3 low = {}, high = {};

    std::vector<std::string> attached;             // elements at the node
    std::vector<std::string> giving;               // elements that the motion deforms
    std::string reason;                            // of the first of them
    double largestE = 0.0, largestThickness = 0.0; // of all elements around

    double lowestEnergy = 0.0; // of an element
    std::string lowestElement;
};

Vector3 Part(const double* u, Dof first)
{
    return {u[first], u[first + 1], u[first + 2]};
}

double NodeShare(const double* u, const double* stiffness)
{
    double share = 0.0;
    for (int k = 0; k < DofsPerNode; ++k) { share += stiffness[k] * u[k] * u[k]; }
    return share;
}

// A direction without the components that do not matter, to be named.
Vector3 Named(Vector3 d)
{
    d = Normalised(d);
    for (double& component : d) { component = std::fabs(component) < Noticeable ? 0.0 : component; }
    d = Normalised(d);
    const auto largest = std::max_element(
        d.begin(), d.end(), [](double a, double b) { return std::fabs(a) < (1.0 - Noticeable) * std::fabs(b); });
    return *largest < 0.0 ? -d : d;
}

void TraceNodes(const ModelStore& model, const std::vector<double>& u, const std::vector<double>& stiffness,
                Trace& trace)
{
    for (int n = 0; n < model.NPOIN; ++n) {
        const std::size_t at = static_cast<std::size_t>(DofsPerNode) * n;
        const double share = NodeShare(&u[at], &stiffness[at]);
        if (share > trace.largest * (1.0 + 1e-9)) {
            trace.largest = share;
            trace.node = n;
        }
    }
    const std::size_t at = static_cast<std::size_t>(DofsPerNode) * trace.node;
    double turning = 0.0;
    for (int k = RX; k <= RZ; ++k) { turning += stiffness[at + k] * u[at + k] * u[at + k]; }
    trace.turns = turning > 0.5 * trace.largest;
    trace.direction = Named(Part(&u[at], trace.turns ? RX : DX));
    for (int n = 0; n < model.NPOIN; ++n) {
        const std::size_t i = static_cast<std::size_t>(DofsPerNode) * n;
        if (NodeShare(&u[i], &stiffness[i]) < Noticeable * Noticeable * trace.largest) {
            continue;
        }
        const Vector3 place = model.NodeCoordinates[n] + model.StructureCentroid;
        for (int d = 0; d < 3; ++d) {
            trace.low[d] = trace.nodes == 0 ? place[d] : std::min(trace.low[d], place[d]);
            trace.high[d] = trace.nodes == 0 ? place[d] : std::max(trace.high[d], place[d]);
        }
        ++trace.nodes;
    }
}

// How far the motion of an element's nodes is from that of a rigid body, of the size of the motion.
double Deformation(const ModelStore& model, const ElementView& element, const std::vector<double>& u)
{
    const int first = element.nodes[0];
    const double* uFirst = &u[static_cast<std::size_t>(DofsPerNode) * first];
    double size = 0.0; // largest distance from the first node
    for (const int n : element.nodes) {
        size = std::max(size, Length(model.NodeCoordinates[n] - model.NodeCoordinates[first]));
    }
    double deformation = 0.0, motion = 0.0;
    for (const int n : element.nodes) {
        const double* un = &u[static_cast<std::size_t>(DofsPerNode) * n];
        const Vector3 arm = model.NodeCoordinates[n] - model.NodeCoordinates[first];
        const Vector3 bent = Part(un, RX) - Part(uFirst, RX);
        const Vector3 stretched = Part(un, DX) - Part(uFirst, DX) - Cross(Part(uFirst, RX), arm);
        deformation = std::max({deformation, Length(stretched), size * Length(bent)});
        motion = std::max({motion, Length(Part(un, DX)), size * Length(Part(un, RX))});
    }
    return motion > 0.0 ? deformation / motion : 0.0;
}

double EnergyOf(const ElementView& element, const std::vector<double>& u)
{
    const std::size_t size = DofsPerNode * element.nodes.size();
    double energy = 0.0;
    for (std::size_t i = 0; i < size; ++i) {
        const std::size_t row =
            static_cast<std::size_t>(DofsPerNode) * element.nodes[i / DofsPerNode] + i % DofsPerNode;
        for (std::size_t j = 0; j < size; ++j) {
            const std::size_t column =
                static_cast<std::size_t>(DofsPerNode) * element.nodes[j / DofsPerNode] + j % DofsPerNode;
            energy += u[row] * element.K[i * size + j] * u[column];
        }
    }
    return energy;
}

std::string NameOf(const ElementView& element)
{
    return std::string(element.kind) + " " + std::to_string(element.number);
}

template <class... Values> std::string Formatted(const char* format, Values... values)
{
    char text[240];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

// Why an element gives way, as far as it shows beside those around it.
std::string ReasonOf(const ElementView& element, const Trace& trace)
{
    constexpr double nothing = 1e-6;
    if (element.E < nothing * trace.largestE) {
        return Formatted("its E=%g is next to nothing beside %g there", element.E, trace.largestE);
    }
    if (element.section != nullptr) {
        const BeamSectionConstants& s = *element.section;
        const std::pair<const char*, double> constants[] = {{"I1", s.I1}, {"I2", s.I2}, {"J", s.J}};
        const auto least = std::min_element(std::begin(constants), std::end(constants),
                                            [](const auto& a, const auto& b) { return a.second < b.second; });
        return Formatted("its section has A=%g, I1=%g, I2=%g, J=%g: %s holds nothing", s.A, s.I1, s.I2, s.J,
                         least->first);
    }
    if (element.thickness < Noticeable * trace.largestThickness) {
        return Formatted("its thickness %g is next to nothing beside %g there", element.thickness,
                         trace.largestThickness);
    }
    return "its shape leaves it next to no stiffness: look for a needle or a sliver";
}

void TraceElements(const ModelStore& model, const std::vector<double>& u, const std::vector<double>& stiffness,
                   Trace& trace)
{
    const auto takesPart = [&](int n) {
        const std::size_t i = static_cast<std::size_t>(DofsPerNode) * n;
        return NodeShare(&u[i], &stiffness[i]) >= Noticeable * Noticeable * trace.largest;
    };
    const auto isAround = [&](const ElementView& element) {
        return std::any_of(element.nodes.begin(), element.nodes.end(), takesPart);
    };
    VisitElements(model, [&](const ElementView& element) {
        if (isAround(element)) {
            trace.largestE = std::max(trace.largestE, element.E);
            trace.largestThickness = std::max(trace.largestThickness, element.thickness);
        }
    });
    VisitElements(model, [&](const ElementView& element) {
        if (!isAround(element)) {
            return;
        }
        if (std::find(element.nodes.begin(), element.nodes.end(), trace.node) != element.nodes.end()) {
            trace.attached.push_back(NameOf(element));
        }
        if (Deformation(model, element, u) > Noticeable) {
            if (trace.giving.empty()) {
                trace.reason = ReasonOf(element, trace);
            }
            trace.giving.push_back(NameOf(element));
        }
        const double energy = EnergyOf(element, u);
        if (energy < trace.lowestEnergy) {
            trace.lowestEnergy = energy;
            trace.lowestElement = NameOf(element);
        }
    });
}

std::string ListOf(const std::vector<std::string>& names)
{
    std::string text;
    for (std::size_t i = 0; i < std::min(names.size(), ElementsTold); ++i) { text += (i == 0 ? "" : ", ") + names[i]; }
    return names.size() > ElementsTold ? text + " and " + std::to_string(names.size() - ElementsTold) + " more" : text;
}

std::string MotionLines(const ModelStore& model, std::size_t number, const SoftMotion& motion, const Trace& trace)
{
    std::string label = "motion " + std::to_string(number) + ":";
    label.resize(std::max<std::size_t>(label.size() + 1, 10), ' ');
    const Vector3 place = model.NodeCoordinates[trace.node] + model.StructureCentroid;
    std::string text = "\n  " + label + "node " + std::to_string(trace.node) + " at " + PointText(place) +
                       (trace.turns ? " turns about " : " moves along ") + DirectionText(trace.direction);
    if (trace.nodes > 1) {
        text += ", with " + std::to_string(trace.nodes - 1) + " other nodes from " + PointText(trace.low) + " to " +
                PointText(trace.high);
    }
    if (!EndsTheRun(motion)) {
        text += Formatted("; it meets %.2g of the stiffness there", motion.lambda);
    }
    text += "\n            attached: " + ListOf(trace.attached);
    if (motion.lambda < -NoStiffness) {
        text += "\n            cause:    " + trace.lowestElement +
                " gives energy away: its nodes are out of order, it is folded, or its modulus is negative";
    } else if (!trace.giving.empty()) {
        text += "\n            cause:    " + ListOf(trace.giving) + (trace.giving.size() == 1 ? " gives" : " give") +
                " way: " + (trace.giving.size() == 1 ? "" : "of the first, ") + trace.reason;
    }
    return text;
}

} // namespace

std::vector<double> StiffnessOfDirections(const ModelStore& model)
{
    std::vector<double> stiffness(static_cast<std::size_t>(DofsPerNode) * model.NPOIN, 0.0);
    VisitElements(model, [&](const ElementView& element) {
        const std::size_t size = DofsPerNode * element.nodes.size();
        for (std::size_t i = 0; i < size; ++i) {
            stiffness[static_cast<std::size_t>(DofsPerNode) * element.nodes[i / DofsPerNode] + i % DofsPerNode] +=
                std::fabs(element.K[i * size + i]);
        }
    });
    return stiffness;
}

bool EndsTheRun(const SoftMotion& motion)
{
    return motion.lambda <= NoStiffness;
}

std::string MechanismText(const ModelStore& model, const SoftMotions& found, const std::vector<double>& stiffness,
                          bool hasFailed, const std::string& modelFile)
{
    const std::size_t count = found.motions.size();
    const bool endsTheRun = hasFailed || std::any_of(found.motions.begin(), found.motions.end(), EndsTheRun);
    std::string text = modelFile +
                       (endsTheRun ? ": error: the stiffness is not positive definite: "
                                   : ": warning: the stiffness is nearly singular: ") +
                       (found.mayBeMore ? "at least " : "") + std::to_string(count) +
                       (count == 1 ? " motion meets" : " motions meet") + (endsTheRun ? " no" : " next to no") +
                       " resistance";
    for (std::size_t i = 0; i < std::min(count, MotionsTold); ++i) {
        Trace trace;
        TraceNodes(model, found.motions[i].motion, stiffness, trace);
        TraceElements(model, found.motions[i].motion, stiffness, trace);
        text += MotionLines(model, i + 1, found.motions[i], trace);
    }
    if (count > MotionsTold) {
        text += "\n            and " + std::to_string(count - MotionsTold) + " more";
    }
    return text + "\n  expected: every node held by elements of sound shape, material and size\n"
                  "  to do:    give these elements the stiffness that they have, or take them out and connect the rest";
}

} // namespace tarnvexo
