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

std::string NameOf(const ElementView& element)
{
    return std::string(element.kind) + " " + std::to_string(element.number);
}

// What makes an element weak, and by how much: a share of what its neighbours have, or of what its sizes let expect.
struct Weakness {
    double share = 0.1; // more does not stand out
    std::string text = "nothing about it stands out beside its neighbours";

    void Consider(double otherShare, const std::string& otherText)
    {
        if (otherShare < share) {
            share = otherShare;
            text = otherText;
        }
    }
};

struct LargestValues {
    double E = 0.0;
    double thickness = 0.0;

    void Take(const ElementView& element)
    {
        E = std::max(E, element.E);
        thickness = std::max(thickness, element.thickness);
    }
};

// Elements, of which the first are named.
struct ElementList {
    std::size_t count = 0;
    std::vector<std::string> names;

    void Add(const ElementView& element)
    {
        if (count++ < ElementsTold) {
            names.push_back(NameOf(element));
        }
    }
};

// What is known about one motion.
struct Trace {
    int node = -1;        // that takes the largest part
    double largest = 0.0; // its part, Σ stiffness·u² of its directions
    bool turns = false;   // rather than moves
    Vector3 direction = {};
    int nodes = 0; // that take part, in the box from low to high
    Vector3 low = {}, high = {};

    ElementList attached; // elements at the node
    ElementList giving;   // elements that the motion deforms
    Weakness weakest;     // of them, and whose it is
    std::string weakestElement;
    LargestValues around; // of all elements at the nodes that take part

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
    trace.direction = CleanDirection(Normalised(Part(&u[at], trace.turns ? RX : DX)), Noticeable);
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

template <class... Values> std::string Formatted(const char* format, Values... values)
{
    char text[240];
    std::snprintf(text, sizeof text, format, values...);
    return text;
}

// Of an element: beside those around it, or else beside those of the whole model.
Weakness WeaknessOf(const ModelStore& model, const ElementView& element, const LargestValues& around,
                    const LargestValues& anywhere)
{
    Weakness weakness;
    const auto compare = [&](const char* name, double value, double nearby, double elsewhere) {
        const bool isNearby = value < weakness.share * nearby;
        const double other = isNearby ? nearby : elsewhere;
        weakness.Consider(value / other, Formatted("its %s%g is next to nothing beside %g %s", name, value, other,
                                                   isNearby ? "there" : "elsewhere"));
    };
    compare("E=", element.E, around.E, anywhere.E);
    double shortest = 0.0, longest = 0.0;
    for (std::size_t i = 0; i < element.nodes.size(); ++i) {
        const int next = element.nodes[(i + 1) % element.nodes.size()];
        const double side = Length(model.NodeCoordinates[next] - model.NodeCoordinates[element.nodes[i]]);
        shortest = i == 0 ? side : std::min(shortest, side);
        longest = std::max(longest, side);
    }
    if (element.section != nullptr) {
        const BeamSectionConstants& s = *element.section;
        const std::string constants = Formatted("A=%g, I1=%g, I2=%g, J=%g", s.A, s.I1, s.I2, s.J);
        weakness.Consider(std::min({s.I1, s.I2, s.J}) / (s.A * longest * longest), "its section has " + constants);
    } else {
        compare("thickness ", element.thickness, around.thickness, anywhere.thickness);
        weakness.Consider(shortest / longest, Formatted("it is a needle, with sides from %g to %g", shortest, longest));
    }
    return weakness;
}

// All motions in one pass over the elements, behind one for the largest values around them.
void TraceElements(const ModelStore& model, const SoftMotions& found, const std::vector<double>& stiffness,
                   std::vector<Trace>& traces)
{
    const auto isAround = [&](const ElementView& element, std::size_t m) {
        return std::any_of(element.nodes.begin(), element.nodes.end(), [&](int n) {
            const std::size_t i = static_cast<std::size_t>(DofsPerNode) * n;
            return NodeShare(&found.motions[m].motion[i], &stiffness[i]) >= Noticeable * Noticeable * traces[m].largest;
        });
    };
    LargestValues anywhere;
    VisitElements(model, [&](const ElementView& element) {
        anywhere.Take(element);
        for (std::size_t m = 0; m < traces.size(); ++m) {
            if (isAround(element, m)) {
                traces[m].around.Take(element);
            }
        }
    });
    VisitElements(model, [&](const ElementView& element) {
        for (std::size_t m = 0; m < traces.size(); ++m) {
            if (!isAround(element, m)) {
                continue;
            }
            Trace& trace = traces[m];
            const std::vector<double>& u = found.motions[m].motion;
            if (std::find(element.nodes.begin(), element.nodes.end(), trace.node) != element.nodes.end()) {
                trace.attached.Add(element);
            }
            if (Deformation(model, element, u) > Noticeable) {
                const Weakness weakness = WeaknessOf(model, element, trace.around, anywhere);
                if (trace.giving.count == 0 || weakness.share < trace.weakest.share) {
                    trace.weakest = weakness;
                    trace.weakestElement = NameOf(element);
                }
                trace.giving.Add(element);
            }
            const double energy = EnergyOf(element, u);
            if (energy < trace.lowestEnergy) {
                trace.lowestEnergy = energy;
                trace.lowestElement = NameOf(element);
            }
        }
    });
}

std::string ListText(const ElementList& list)
{
    std::string text;
    for (const std::string& name : list.names) { text += (text.empty() ? "" : ", ") + name; }
    const std::size_t more = list.count - list.names.size();
    return more > 0 ? text + " and " + std::to_string(more) + " more" : text;
}

// Why there is a motion; empty where no element shows it.
std::string CauseOf(const SoftMotion& motion, const Trace& trace)
{
    if (motion.lambda < -NoStiffness) {
        return trace.lowestElement +
               " gives energy away: its nodes are out of order, it is folded, or its modulus is negative";
    }
    if (trace.giving.count == 0) {
        return "";
    }
    return ListText(trace.giving) +
           (trace.giving.count == 1 ? " gives way: " : " give way; " + trace.weakestElement + ": ") +
           trace.weakest.text;
}

// A motion, and how many more have the same cause.
std::string MotionLines(const ModelStore& model, std::size_t number, const SoftMotion& motion, const Trace& trace,
                        int alike)
{
    std::string label = "motion " + std::to_string(number) + ":";
    label.resize(std::max<std::size_t>(label.size() + 1, 12), ' ');
    const Vector3 place = model.NodeCoordinates[trace.node] + model.StructureCentroid;
    std::string text = "\n  " + label + "node " + std::to_string(trace.node) + " at " + PointText(place) +
                       (trace.turns ? " turns about " : " moves along ") + DirectionText(trace.direction);
    if (trace.nodes > 1) {
        text += ", with it " + std::to_string(trace.nodes - 1) + (trace.nodes == 2 ? " node" : " nodes") + " from " +
                PointText(trace.low) + " to " + PointText(trace.high);
    }
    if (!EndsTheRun(motion)) {
        text += Formatted("; %.2g of the stiffness there resists", motion.lambda);
    }
    text += "\n    attached: " + ListText(trace.attached);
    const std::string cause = CauseOf(motion, trace);
    if (!cause.empty()) {
        text += "\n    cause:    " + cause;
    }
    if (alike > 0) {
        text += "\n              " + std::to_string(alike) + (alike == 1 ? " more motion has" : " more motions have") +
                " this cause";
    }
    return text;
}

// How many motions meet none, and how many next to none.
std::string Headline(const SoftMotions& found, bool hasFailed)
{
    const std::size_t count = found.motions.size();
    const auto free = static_cast<std::size_t>(std::count_if(found.motions.begin(), found.motions.end(), EndsTheRun));
    const std::size_t first = free > 0 ? free : count;
    std::string text = hasFailed || free > 0 ? ": error: the stiffness is not positive definite: "
                                             : ": warning: the stiffness is nearly singular: ";
    text += (found.mayBeMore ? "at least " : "") + std::to_string(first) +
            (first == 1 ? " motion meets" : " motions meet") + (free > 0 ? " no" : " next to no") + " resistance";
    return free > 0 && free < count ? text + ", " + std::to_string(count - free) + " next to none" : text;
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
    std::string text = modelFile + Headline(found, hasFailed);
    std::vector<Trace> traces(count);
    for (std::size_t m = 0; m < count; ++m) { TraceNodes(model, found.motions[m].motion, stiffness, traces[m]); }
    TraceElements(model, found, stiffness, traces);

    // One motion for every cause.
    std::vector<std::string> causes;
    for (std::size_t m = 0; m < count; ++m) { causes.push_back(CauseOf(found.motions[m], traces[m])); }
    std::size_t told = 0, left = 0;
    for (std::size_t m = 0; m < count; ++m) {
        const auto before = causes.begin() + static_cast<std::ptrdiff_t>(m);
        if (!causes[m].empty() && std::find(causes.begin(), before, causes[m]) != before) {
            continue;
        }
        if (told == MotionsTold) {
            ++left;
            continue;
        }
        const auto alike = causes[m].empty() ? 0 : std::count(before + 1, causes.end(), causes[m]);
        text += MotionLines(model, ++told, found.motions[m], traces[m], static_cast<int>(alike));
    }
    if (left > 0) {
        text += "\n  and " + std::to_string(left) + " more of other causes";
    }
    return text + "\n  expected: every node held by elements of sound shape, material and size\n"
                  "  to do:    give these elements the stiffness that they have, or take them out and connect the rest";
}

} // namespace tarnvexo
