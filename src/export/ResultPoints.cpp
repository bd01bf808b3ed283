#include "export/ResultPoints.h"

#include "elements/ShellNodeStress.h"

#include <algorithm>
#include <cmath>

namespace tarnvexo {

namespace {

constexpr double SameStress = 1e-10; // of the largest component
constexpr std::size_t MostCompared = 16;

// One corner of one element: its stresses, and where the number of its point belongs.
struct Corner {
    FaceStresses stresses;
    int* point;
};

double LargestComponent(const FaceStresses& stresses)
{
    double largest = 0.0;
    for (int k = 0; k < StressCount; ++k) {
        largest = std::max({largest, std::fabs(stresses.positive[k]), std::fabs(stresses.negative[k])});
    }
    return largest;
}

// False where a component is not a number.
bool AreSame(const FaceStresses& a, const FaceStresses& b)
{
    const double tolerance = SameStress * std::max(LargestComponent(a), LargestComponent(b));
    for (int k = 0; k < StressCount; ++k) {
        if (!(std::fabs(a.positive[k] - b.positive[k]) <= tolerance &&
              std::fabs(a.negative[k] - b.negative[k]) <= tolerance)) {
            return false;
        }
    }
    return true;
}

// corners of node n: first[n] ... first[n + 1] - 1
template <std::size_t Nodes>
void CountCorners(const std::vector<std::array<int, Nodes>>& connectivity, std::vector<std::size_t>& first)
{
    for (const auto& nodes : connectivity) {
        for (const int node : nodes) { ++first[static_cast<std::size_t>(node) + 1]; }
    }
}

template <class Element, std::size_t Nodes>
void PutCorners(const std::vector<Element>& elements, const std::vector<std::array<int, Nodes>>& connectivity,
                std::vector<std::array<int, Nodes>>& points, std::vector<std::size_t>& next,
                std::vector<Corner>& corners)
{
    points.resize(connectivity.size());
    for (std::size_t e = 0; e < connectivity.size(); ++e) {
        for (std::size_t i = 0; i < Nodes; ++i) {
            corners[next[static_cast<std::size_t>(connectivity[e][i])]++] = {
                {elements[e].averagedPositiveFace[i], elements[e].averagedNegativeFace[i]}, &points[e][i]};
        }
    }
}

// A point of the node from firstOfNode on with these stresses, or a new one.
int PointFor(int node, const FaceStresses& stresses, std::size_t firstOfNode, std::vector<ShellPoint>& points)
{
    const std::size_t from = std::max(firstOfNode, points.size() - std::min(points.size(), MostCompared));
    for (std::size_t p = from; p < points.size(); ++p) {
        if (AreSame(points[p].averaged, stresses)) {
            return static_cast<int>(p);
        }
    }
    points.push_back({node, stresses});
    return static_cast<int>(points.size() - 1);
}

} // namespace

double LargerEquivalentStress(const FaceStresses& stresses)
{
    const double positive = EquivalentStress(stresses.positive), negative = EquivalentStress(stresses.negative);
    return std::isnan(positive) || positive > negative ? positive : negative;
}

ShellPoints FindShellPoints(const ModelStore& model)
{
    ShellPoints found;
    const std::size_t nodes = model.NodeCoordinates.size();
    std::vector<std::size_t> first(nodes + 1, 0);
    CountCorners(model.QuadConnectivity, first);
    CountCorners(model.TriConnectivity, first);
    for (std::size_t n = 1; n <= nodes; ++n) { first[n] += first[n - 1]; }
    std::vector<Corner> corners(first[nodes]);
    std::vector<std::size_t> next(first.begin(), first.end() - 1);
    PutCorners(model.QuadElements, model.QuadConnectivity, found.quads, next, corners);
    PutCorners(model.TriElements, model.TriConnectivity, found.triangles, next, corners);

    for (std::size_t n = 0; n < nodes; ++n) {
        const std::size_t firstOfNode = found.points.size();
        for (std::size_t c = first[n]; c < first[n + 1]; ++c) {
            *corners[c].point = PointFor(static_cast<int>(n), corners[c].stresses, firstOfNode, found.points);
        }
    }
    return found;
}

SectionPoints FindSectionPoints(const ModelStore& model)
{
    SectionPoints found;
    for (std::size_t b = 0; b < model.BeamStressRecords.size(); ++b) {
        const BeamSectionModel& section = model.BeamStressRecords[b];
        const int beam = static_cast<int>(b);
        // Section node 1, the first of the first ring, becomes the next point.
        const int shift = static_cast<int>(found.points.size()) - 1;
        for (int n = 1; n + 1 < static_cast<int>(section.nodes.size()); ++n) { found.points.push_back({beam, n}); }
        for (std::size_t p = 0; p < section.patches.size(); ++p) {
            SectionWall wall = {beam, static_cast<int>(p), {}};
            for (std::size_t i = 0; i < QuadNodeCount; ++i) { wall.points[i] = section.patches[p].nodes[i] + shift; }
            found.walls.push_back(wall);
        }
    }
    return found;
}

FaceStresses StressesAt(const ModelStore& model, const SectionPoint& point)
{
    const auto& averaged = model.BeamStressRecords[static_cast<std::size_t>(point.beam)].averaged;
    const SectionNodeStress& stress = averaged[static_cast<std::size_t>(point.node)];
    return {stress.positiveFace, stress.negativeFace};
}

const Vector3& PlaceOf(const ModelStore& model, const SectionPoint& point)
{
    const auto& nodes = model.BeamStressRecords[static_cast<std::size_t>(point.beam)].nodes;
    return nodes[static_cast<std::size_t>(point.node)];
}

const double* DisplacementOf(const ModelStore& model, const SectionPoint& point)
{
    const auto& displacements = model.BeamStressRecords[static_cast<std::size_t>(point.beam)].displacements;
    return &displacements[static_cast<std::size_t>(DofsPerNode * point.node)];
}

} // namespace tarnvexo
