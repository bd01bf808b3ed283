#include "checks/NodeTree.h"

#include "core/Parallel.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace tarnvexo {

namespace {

constexpr std::size_t LeafSize = 12;
constexpr double ReachOfShortestEdge = 0.25;
constexpr double NoElement = -1.0;

constexpr double LargestCoordinate = 1e150;

bool IsUsable(const Vector3& place)
{
    return std::all_of(place.begin(), place.end(), [](double x) { return std::fabs(x) <= LargestCoordinate; });
}

// Writes the shortest side of its elements to every node; sides without length say nothing of the mesh.
template <std::size_t Nodes>
void ShortenSides(const ModelStore& model, const std::vector<std::array<int, Nodes>>& connectivity,
                  std::vector<double>& shortest)
{
    constexpr std::size_t sides = Nodes == 2 ? 1 : Nodes;
    for (const auto& nodes : connectivity) {
        for (std::size_t side = 0; side < sides; ++side) {
            const int a = nodes[side], b = nodes[(side + 1) % Nodes];
            const double length = Length(model.NodeCoordinates[b] - model.NodeCoordinates[a]);
            const double told = length > 0.0 ? length : std::numeric_limits<double>::infinity();
            for (const int node : {a, b}) {
                shortest[node] = shortest[node] == NoElement ? told : std::min(shortest[node], told);
            }
        }
    }
}

} // namespace

NodeTree::NodeTree(std::vector<Point> usedPoints) : points(std::move(usedPoints))
{
    if (points.empty()) {
        return;
    }
    std::size_t leaves = 1;
    while (leaves * LeafSize < points.size()) { leaves *= 2; }
    boxes.resize(2 * leaves - 1);
    ranges.resize(boxes.size());
    ranges[0] = {0, points.size()};
    for (std::size_t first = 0; first < boxes.size(); first = 2 * first + 1) { // level by level
        const std::size_t branches = first + 1;
        ParallelFor(branches, std::max<std::size_t>(1, branches / 64), [&](std::size_t begin, std::size_t end) {
            for (std::size_t b = begin; b < end; ++b) { MakeBranch(first + b); }
        });
    }
}

void NodeTree::MakeBranch(std::size_t branch)
{
    const auto [begin, end] = ranges[branch];
    Box box{points[begin].place, points[begin].place, points[begin].reach, points[begin].reach};
    for (const Point& point : PointsOf(branch)) {
        for (int i = 0; i < 3; ++i) {
            box.low[i] = std::min(box.low[i], point.place[i]);
            box.high[i] = std::max(box.high[i], point.place[i]);
        }
        box.leastReach = std::min(box.leastReach, point.reach);
        box.mostReach = std::max(box.mostReach, point.reach);
    }
    boxes[branch] = box;
    if (IsLeaf(branch)) {
        return;
    }
    const Vector3 sides = box.high - box.low;
    const std::size_t across = std::size_t(std::max_element(sides.begin(), sides.end()) - sides.begin());
    const std::size_t middle = begin + (end - begin) / 2;
    const auto at = [&](std::size_t i) { return points.begin() + std::ptrdiff_t(i); };
    std::nth_element(at(begin), at(middle), at(end),
                     [across](const Point& a, const Point& b) { return a.place[across] < b.place[across]; });
    ranges[2 * branch + 1] = {begin, middle};
    ranges[2 * branch + 2] = {middle, end};
}

double NodeTree::Size() const
{
    return IsEmpty() ? 0.0 : Length(boxes[0].high - boxes[0].low);
}

std::vector<NodeTree::Point> UsedNodes(const ModelStore& model)
{
    std::vector<double> shortest(model.NPOIN, NoElement);
    ShortenSides(model, model.QuadConnectivity, shortest);
    ShortenSides(model, model.TriConnectivity, shortest);
    ShortenSides(model, model.BeamConnectivity, shortest);

    std::vector<NodeTree::Point> points;
    points.reserve(model.NodeCoordinates.size());
    for (int n = 0; n < model.NPOIN; ++n) {
        if (shortest[n] != NoElement && IsUsable(model.NodeCoordinates[n])) {
            points.push_back({model.NodeCoordinates[n], ReachOfShortestEdge * shortest[n], n});
        }
    }
    return points;
}

} // namespace tarnvexo
