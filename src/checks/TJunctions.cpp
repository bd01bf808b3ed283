#include "checks/TJunctions.h"

#include "core/Parallel.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>
#include <mutex>
#include <span>
#include <tuple>
#include <utility>

namespace tarnvexo {

namespace {

constexpr std::size_t NodesPerRange = 4096;

// Branches that wait while a path is followed down: one per level.
constexpr std::size_t MostLevels = 64;

// Nodes that are found in one face, and shells at one edge that are asked for the nodes they use, at most: thousands of
// shells on one another, or at one edge, do not cost the square of their number.
constexpr std::size_t MostInFace = 200;
constexpr std::size_t MostAsked = 16;

// search.Touches(box) tells whether anything may be in it; visit(point) returns whether to go on.
template <class Area, class Visit> void SearchTree(const NodeTree& tree, const Area& area, Visit visit)
{
    std::size_t waiting[MostLevels];
    std::size_t count = 0;
    waiting[count++] = 0;
    while (count > 0) {
        const std::size_t branch = waiting[--count];
        if (!area.Touches(tree.BoxOf(branch))) {
            continue;
        }
        if (tree.IsLeaf(branch)) {
            for (const NodeTree::Point& point : tree.PointsOf(branch)) {
                if (!visit(point)) {
                    return;
                }
            }
        } else {
            waiting[count++] = 2 * branch + 2;
            waiting[count++] = 2 * branch + 1;
        }
    }
}

// What is near a straight edge.
class EdgeSearch {
public:
    EdgeSearch(const Vector3& start, const Vector3& end, double limit)
        : start(start), direction(end - start), length(Length(direction)), radius(limit * length)
    {
    }

    double EdgeLength() const { return length; }

    // Without length, or with ends that are nowhere, nothing lies between them.
    bool HasInside() const { return length > 0.0 && std::isfinite(length); }

    // The edge against the box, larger by the radius: the part of the edge between its pairs of faces.
    bool Touches(const NodeTree::Box& box) const
    {
        const double margin = std::min(radius, box.mostReach);
        double from = 0.0, to = 1.0;
        for (int i = 0; i < 3; ++i) {
            const double low = box.low[i] - margin - start[i], high = box.high[i] + margin - start[i];
            const double d = direction[i];
            if (std::max(d, 0.0) < low || std::min(d, 0.0) > high) {
                return false;
            }
            if (d != 0.0) {
                from = std::max(from, std::min(low / d, high / d));
                to = std::min(to, std::max(low / d, high / d));
            }
        }
        return from <= to;
    }

    // Is it on the edge, between the ends? distance: out, from the edge.
    bool Has(const NodeTree::Point& point, double& distance) const
    {
        const double within = std::min(radius, point.reach);
        const Vector3 r = point.place - start;
        const double along = Dot(r, direction) / length; // from the start
        if (!(along > within && along < length - within)) {
            return false;
        }
        distance = Length(r - along / length * direction);
        return distance <= within;
    }

private:
    Vector3 start, direction;
    double length, radius;
};

// What is inside the face of a shell: near its mean plane, and on the inner side of every side.
class FaceSearch {
public:
    FaceSearch(const ModelStore& model, int shell, double limit)
    {
        const std::span<const int> nodes = ShellNodes(model, shell);
        const auto X = [&](std::size_t i) { return model.NodeCoordinates[nodes[i % nodes.size()]]; };
        const Vector3 across = ShellNormal(model, shell);
        normal = Normalised(across);
        for (std::size_t i = 0; i < nodes.size(); ++i) {
            const Vector3 side = X(i + 1) - X(i);
            const Vector3 inwards = Cross(across, side);
            middle = middle + X(i) / double(nodes.size());
            for (std::size_t k = 0; k < 3; ++k) {
                low[k] = std::min(low[k], X(i)[k]);
                high[k] = std::max(high[k], X(i)[k]);
            }
            longest = std::max(longest, Length(side));
            if (Length(inwards) > 0.0) {
                sides[sideCount++] = {X(i), Normalised(inwards)};
            }
        }
        radius = limit * longest;
        hasInside = Length(across) > 0.0 && std::isfinite(Length(across)) && sideCount >= 3;
    }

    double LongestSide() const { return longest; }

    // Without area, or with corners that are nowhere, nothing lies inside.
    bool HasInside() const { return hasInside; }

    // The box against that of the corners, then against the planes of face and sides.
    bool Touches(const NodeTree::Box& box) const
    {
        const double most = std::min(radius, box.mostReach);
        for (std::size_t k = 0; k < 3; ++k) {
            if (box.low[k] > high[k] + most || box.high[k] < low[k] - most) {
                return false;
            }
        }
        const Vector3 centre = 0.5 * box.low + 0.5 * box.high, half = 0.5 * box.high - 0.5 * box.low;
        const auto halfWidth = [&](const Vector3& d) {
            return std::fabs(d[0]) * half[0] + std::fabs(d[1]) * half[1] + std::fabs(d[2]) * half[2];
        };
        if (std::fabs(Dot(normal, centre - middle)) - halfWidth(normal) > most) {
            return false;
        }
        const double least = std::min(radius, box.leastReach);
        return std::all_of(sides, sides + sideCount, [&](const Side& side) {
            return Dot(side.inwards, centre - side.start) + halfWidth(side.inwards) > least;
        });
    }

    // Is it inside? distance: out, from the mean plane.
    bool Has(const NodeTree::Point& point, double& distance) const
    {
        const double within = std::min(radius, point.reach);
        distance = std::fabs(Dot(normal, point.place - middle));
        return distance <= within && std::all_of(sides, sides + sideCount, [&](const Side& side) {
                   return Dot(side.inwards, point.place - side.start) > within;
               });
    }

private:
    struct Side {
        Vector3 start;
        Vector3 inwards; // unit, in the mean plane
    };

    static constexpr double Infinity = std::numeric_limits<double>::infinity();

    Vector3 low = {Infinity, Infinity, Infinity}, high = {-Infinity, -Infinity, -Infinity}; // box around the corners
    Vector3 normal, middle = {};
    Side sides[QuadNodeCount];
    int sideCount = 0;
    double longest = 0.0, radius = 0.0;
    bool hasInside = false;
};

// Of each node an edge before a face, the longest, then by number.
void KeepOnePerNode(std::vector<TJunction>& found)
{
    std::sort(found.begin(), found.end(), [](const TJunction& a, const TJunction& b) {
        return std::tuple(a.node, a.IsInFace(), -a.length, a.low, a.high, a.shell) <
               std::tuple(b.node, b.IsInFace(), -b.length, b.low, b.high, b.shell);
    });
    const auto sameNode = [](const TJunction& a, const TJunction& b) { return a.node == b.node; };
    found.erase(std::unique(found.begin(), found.end(), sameNode), found.end());
}

class Search {
public:
    Search(const ModelStore& model, const ShellEdges& edges, const NodeTree& tree, double limit)
        : model(model), edges(edges), tree(tree), limit(limit)
    {
    }

    void Along(const ShellEdge& edge, std::vector<TJunction>& found)
    {
        const EdgeSearch search(model.NodeCoordinates[edge.low], model.NodeCoordinates[edge.high], limit);
        if (!search.HasInside()) {
            return;
        }
        near.clear();
        SearchTree(tree, search, [&](const NodeTree::Point& point) {
            double distance = 0.0;
            if (search.Has(point, distance)) {
                near.push_back({point.node, edge.low, edge.high, edge.uses[0].shell, search.EdgeLength(), distance});
            }
            return true;
        });
        if (!near.empty()) {
            // A sliver triangle on the edge connects the node with its ends.
            SortNear();
            for (const EdgeUse& use : edge.uses) { LeaveOutNodesOf(use.shell); }
            TakeNear(found);
        }
    }

    void Inside(int shell, std::vector<TJunction>& found)
    {
        const FaceSearch search(model, shell, limit);
        if (!search.HasInside()) {
            return;
        }
        near.clear();
        SearchTree(tree, search, [&](const NodeTree::Point& point) {
            double distance = 0.0;
            if (search.Has(point, distance)) {
                near.push_back({point.node, -1, -1, shell, search.LongestSide(), distance});
            }
            return near.size() < MostInFace;
        });
        if (!near.empty()) {
            SortNear();
            LeaveOutNodesOf(shell);
            LeaveOutNodesOfNeighbours(shell);
            TakeNear(found);
        }
    }

private:
    void SortNear()
    {
        std::sort(near.begin(), near.end(), [](const TJunction& a, const TJunction& b) { return a.node < b.node; });
    }

    void LeaveOutNodesOf(int shell)
    {
        const auto byNode = [](const TJunction& junction, int node) { return junction.node < node; };
        for (const int node : ShellNodes(model, shell)) {
            const auto at = std::lower_bound(near.begin(), near.end(), node, byNode);
            if (at != near.end() && at->node == node) {
                at->shell = Connected;
            }
        }
    }

    void LeaveOutNodesOfNeighbours(int shell)
    {
        const std::span<const int> nodes = ShellNodes(model, shell);
        for (std::size_t side = 0; side < nodes.size(); ++side) {
            const auto [low, high] = std::minmax(nodes[side], nodes[(side + 1) % nodes.size()]);
            const std::span<const EdgeUse> uses = edges.UsesOf(low, high);
            for (std::size_t i = 0; i < std::min(uses.size(), MostAsked); ++i) { LeaveOutNodesOf(uses[i].shell); }
        }
    }

    void TakeNear(std::vector<TJunction>& found) const
    {
        std::copy_if(near.begin(), near.end(), std::back_inserter(found),
                     [](const TJunction& junction) { return junction.shell != Connected; });
    }

    static constexpr int Connected = -1; // in place of the shell

    const ModelStore& model;
    const ShellEdges& edges;
    const NodeTree& tree;
    double limit;
    std::vector<TJunction> near;
};

// Edges with an end where nodes coincide: the first of those between the same two places.
class PlacedEdges {
public:
    PlacedEdges(const ModelStore& model, const ShellEdges& edges, const CoincidentNodes& coincident)
        : isShared(model.NPOIN, false)
    {
        if (!coincident.any) {
            return;
        }
        for (int n = 0; n < model.NPOIN; ++n) {
            if (coincident.leader[n] != n) {
                isShared[n] = isShared[coincident.leader[n]] = true;
            }
        }
        std::vector<Placed> placed;
        edges.ForEach([&](const ShellEdge& edge) {
            if (Holds(edge)) {
                const auto [low, high] = std::minmax(coincident.leader[edge.low], coincident.leader[edge.high]);
                placed.push_back({low, high, edge});
            }
        });
        const auto places = [](const Placed& one) { return std::pair(one.lowPlace, one.highPlace); };
        std::stable_sort(placed.begin(), placed.end(),
                         [&](const Placed& a, const Placed& b) { return places(a) < places(b); });
        for (std::size_t i = 0; i < placed.size(); ++i) {
            if (i == 0 || places(placed[i]) != places(placed[i - 1])) {
                first.push_back(placed[i].edge);
            }
        }
    }

    bool Holds(const ShellEdge& edge) const { return isShared[edge.low] || isShared[edge.high]; }
    const std::vector<ShellEdge>& First() const { return first; }

private:
    struct Placed {
        int lowPlace, highPlace; // the leaders of its ends
        ShellEdge edge;
    };

    std::vector<char> isShared; // [NPOIN] there is another node at its place
    std::vector<ShellEdge> first;
};

} // namespace

std::vector<TJunction> FindTJunctions(const ModelStore& model, const ShellEdges& edges, const NodeTree& tree,
                                      const CoincidentNodes& coincident, double limit)
{
    std::vector<TJunction> found;
    if (tree.IsEmpty()) {
        return found;
    }
    const PlacedEdges placed(model, edges, coincident);
    std::mutex foundMutex;
    const auto searchRanges = [&](std::size_t count, auto searchRange) {
        ParallelFor(count, NodesPerRange, [&](std::size_t begin, std::size_t end) {
            Search search(model, edges, tree, limit);
            std::vector<TJunction> ofRange;
            searchRange(search, begin, end, ofRange);
            KeepOnePerNode(ofRange);
            const std::lock_guard lock(foundMutex);
            found.insert(found.end(), ofRange.begin(), ofRange.end());
        });
    };
    searchRanges(std::size_t(model.NPOIN),
                 [&](Search& search, std::size_t begin, std::size_t end, std::vector<TJunction>& ofRange) {
                     edges.ForEach(int(begin), int(end), [&](const ShellEdge& edge) {
                         if (!placed.Holds(edge)) {
                             search.Along(edge, ofRange);
                         }
                     });
                 });
    searchRanges(placed.First().size(),
                 [&](Search& search, std::size_t begin, std::size_t end, std::vector<TJunction>& ofRange) {
                     for (std::size_t e = begin; e < end; ++e) { search.Along(placed.First()[e], ofRange); }
                 });
    searchRanges(std::size_t(ShellCount(model)),
                 [&](Search& search, std::size_t begin, std::size_t end, std::vector<TJunction>& ofRange) {
                     for (std::size_t shell = begin; shell < end; ++shell) { search.Inside(int(shell), ofRange); }
                 });

    KeepOnePerNode(found); // the order in which ranges ended does not matter from here on
    return found;
}

} // namespace tarnvexo
