#include "output/NodalAveraging.h"

#include "core/Parallel.h"

#include <cstddef>
#include <vector>

namespace tarnvexo {

FaceMatch MatchFaces(const Vector3& normal, double thickness, const Vector3& otherNormal, double otherThickness)
{
    const bool opposed = Dot(normal, otherNormal) <= 0.0;
    const Vector3 aligned = opposed ? -otherNormal : otherNormal;
    const Vector3 distance = (otherThickness / 2) * aligned - (thickness / 2) * normal;
    if (Length(distance) > thickness / 10) {
        return FaceMatch::Apart;
    }
    return opposed ? FaceMatch::Exchanged : FaceMatch::Same;
}

void FaceStressMean::Add(const double* positive, const double* negative)
{
    for (int k = 0; k < StressCount; ++k) {
        positiveFace[k] += positive[k];
        negativeFace[k] += negative[k];
    }
    ++count;
}

void FaceStressMean::Add(const double* positive, const double* negative, FaceMatch match)
{
    if (match == FaceMatch::Same) {
        Add(positive, negative);
    } else if (match == FaceMatch::Exchanged) {
        Add(negative, positive);
    }
}

void FaceStressMean::Store(double* positive, double* negative) const
{
    const double share = 1.0 / count;
    for (int k = 0; k < StressCount; ++k) {
        positive[k] = positiveFace[k] * share;
        negative[k] = negativeFace[k] * share;
    }
}

namespace {

// For every node the elements of one type around it, in element order, each once, with the node's first position there.
struct NodeElements {
    struct Corner {
        int element;
        int position;
    };
    std::vector<std::size_t> first; // corners of node n: first[n] ... first[n + 1] - 1
    std::vector<Corner> corners;
};

template <std::size_t Nodes> bool IsFirstPosition(const std::array<int, Nodes>& nodes, std::size_t position)
{
    for (std::size_t i = 0; i < position; ++i) {
        if (nodes[i] == nodes[position]) {
            return false;
        }
    }
    return true;
}

template <std::size_t Nodes>
NodeElements FindNodeElements(const std::vector<std::array<int, Nodes>>& connectivity, int nodeCount)
{
    NodeElements map;
    map.first.assign(std::size_t(nodeCount) + 1, 0);
    for (const auto& nodes : connectivity) {
        for (std::size_t i = 0; i < Nodes; ++i) {
            if (IsFirstPosition(nodes, i)) {
                ++map.first[nodes[i] + 1];
            }
        }
    }
    for (std::size_t n = 1; n < map.first.size(); ++n) { map.first[n] += map.first[n - 1]; }
    map.corners.resize(map.first.back());
    std::vector<std::size_t> next(map.first.begin(), map.first.end() - 1);
    for (std::size_t e = 0; e < connectivity.size(); ++e) {
        for (std::size_t i = 0; i < Nodes; ++i) {
            if (IsFirstPosition(connectivity[e], i)) {
                map.corners[next[connectivity[e][i]]++] = {static_cast<int>(e), static_cast<int>(i)};
            }
        }
    }
    return map;
}

constexpr int NoElement = -1;
constexpr std::size_t ElementsPerRange = 512;

// Adds the matching elements of one type around the node, in element order, leaving out element `skip`.
template <class Element, class Other>
void AddNeighbours(const Element& element, const std::vector<Other>& others, const NodeElements& map, int node,
                   int skip, FaceStressMean& mean)
{
    for (std::size_t c = map.first[node]; c < map.first[node + 1]; ++c) {
        const NodeElements::Corner& corner = map.corners[c];
        if (corner.element == skip) {
            continue;
        }
        const Other& other = others[corner.element];
        mean.Add(other.positiveFace[corner.position], other.negativeFace[corner.position],
                 MatchFaces(element.axes[2], element.thickness, other.axes[2], other.thickness));
    }
}

// Order of summation: the element itself, its own type in element order, then the other type.
template <class Element, class Other, std::size_t Nodes>
void AverageElements(std::vector<Element>& elements, const std::vector<std::array<int, Nodes>>& connectivity,
                     const NodeElements& ownMap, const std::vector<Other>& others, const NodeElements& otherMap)
{
    ParallelFor(elements.size(), ElementsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            Element& element = elements[e];
            for (std::size_t i = 0; i < Nodes; ++i) {
                if (!IsFirstPosition(connectivity[e], i)) {
                    continue; // a node that stands twice in an element is averaged at its first position
                }
                const int node = connectivity[e][i];
                FaceStressMean mean;
                mean.Add(element.positiveFace[i], element.negativeFace[i]);
                AddNeighbours(element, elements, ownMap, node, static_cast<int>(e), mean);
                AddNeighbours(element, others, otherMap, node, NoElement, mean);
                mean.Store(element.averagedPositiveFace[i], element.averagedNegativeFace[i]);
            }
        }
    });
}

} // namespace

void AverageShellStresses(ModelStore& model)
{
    const NodeElements quads = FindNodeElements(model.QuadConnectivity, model.NPOIN);
    const NodeElements tris = FindNodeElements(model.TriConnectivity, model.NPOIN);
    AverageElements(model.QuadElements, model.QuadConnectivity, quads, model.TriElements, tris);
    AverageElements(model.TriElements, model.TriConnectivity, tris, model.QuadElements, quads);
}

} // namespace tarnvexo
