#include "checks/DuplicateElements.h"

#include "checks/NodeTable.h"
#include "elements/BeamSection.h"

#include <algorithm>
#include <array>
#include <compare>
#include <span>

namespace tarnvexo {

namespace {

// An element at its lowest node.
template <std::size_t Nodes> struct SortedElement {
    std::array<int, Nodes - 1> others; // its other nodes, ascending
    int element;

    auto operator<=>(const SortedElement&) const = default;
};

// visit(span of at least two elements on the same nodes), ascending in each.
template <std::size_t Nodes, class Visit>
void ForEachOnSameNodes(int nodeCount, const std::vector<std::array<int, Nodes>>& connectivity, Visit visit)
{
    const NodeTable<SortedElement<Nodes>> table(nodeCount, [&](auto add) {
        for (std::size_t e = 0; e < connectivity.size(); ++e) {
            std::array<int, Nodes> nodes = connectivity[e];
            std::sort(nodes.begin(), nodes.end());
            SortedElement<Nodes> entry{{}, static_cast<int>(e)};
            std::copy(nodes.begin() + 1, nodes.end(), entry.others.begin());
            add(nodes[0], entry);
        }
    });
    for (int n = 0; n < nodeCount; ++n) {
        const auto entries = table.At(n);
        for (std::size_t begin = 0, end; begin < entries.size(); begin = end) {
            end = begin + 1;
            while (end < entries.size() && entries[end].others == entries[begin].others) { ++end; }
            if (end - begin > 1) {
                visit(entries.subspan(begin, end - begin));
            }
        }
    }
}

void SortByElement(std::vector<Duplicate>& duplicates)
{
    std::sort(duplicates.begin(), duplicates.end(),
              [](const Duplicate& a, const Duplicate& b) { return a.element < b.element; });
}

template <std::size_t Nodes>
std::vector<Duplicate> DuplicateShells(int nodeCount, const std::vector<std::array<int, Nodes>>& connectivity)
{
    std::vector<Duplicate> duplicates;
    ForEachOnSameNodes(nodeCount, connectivity, [&](auto same) {
        for (const auto& copy : same.subspan(1)) { duplicates.push_back({copy.element, same[0].element}); }
    });
    SortByElement(duplicates);
    return duplicates;
}

// Beams between the same nodes: the same sizes, the centroid on the same side, and for T and L the web in the same
// direction. The direction of the nodes turns y', which the centroid of an L shows.
bool SameBeam(const BeamElement& a, int typeA, const BeamElement& b, int typeB)
{
    const BeamSectionConstants &s = a.section, &r = b.section;
    if (typeA != typeB || s.A != r.A || s.I1 != r.I1 || s.I2 != r.I2 || s.J != r.J) {
        return false;
    }
    Vector3 frameA[3], frameB[3];
    BeamFrame(a, frameA);
    BeamFrame(b, frameB);
    const Vector3 offsetA = BeamCentroidOffset(a, frameA), offsetB = BeamCentroidOffset(b, frameB);
    constexpr double roundOff = 1e-6; // of six-digit orientations
    const double size = Length(offsetA) + std::sqrt(s.A);
    return Length(offsetA - offsetB) <= roundOff * size &&
           (typeA == CSection || Length(frameA[2] - frameB[2]) <= roundOff);
}

std::vector<Duplicate> DuplicateBeams(const ModelStore& model)
{
    // More kinds of beams than this between two nodes are not told apart: the cost stays linear.
    constexpr std::size_t mostKinds = 16;
    std::vector<Duplicate> duplicates;
    std::vector<int> kinds; // the first beam of each
    ForEachOnSameNodes(model.NPOIN, model.BeamConnectivity, [&](auto beams) {
        kinds.clear();
        for (const auto& beam : beams) {
            const auto same = [&](int other) {
                return SameBeam(model.BeamElements[other], model.BeamSectionRefs[other].BeamSecType,
                                model.BeamElements[beam.element], model.BeamSectionRefs[beam.element].BeamSecType);
            };
            const auto kind = std::find_if(kinds.begin(), kinds.end(), same);
            if (kind != kinds.end()) {
                duplicates.push_back({beam.element, *kind});
            } else if (kinds.size() < mostKinds) {
                kinds.push_back(beam.element);
            }
        }
    });
    SortByElement(duplicates);
    return duplicates;
}

} // namespace

DuplicateElements FindDuplicateElements(const ModelStore& model)
{
    return {DuplicateShells(model.NPOIN, model.QuadConnectivity), DuplicateShells(model.NPOIN, model.TriConnectivity),
            DuplicateBeams(model)};
}

} // namespace tarnvexo
