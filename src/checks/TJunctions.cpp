#include "checks/TJunctions.h"

#include "core/Parallel.h"

#include <algorithm>
#include <cmath>
#include <mutex>
#include <tuple>
#include <utility>

namespace tarnvexo {

namespace {

constexpr std::size_t NodesPerRange = 4096;

// Branches that wait while a path is followed down: one per level.
constexpr std::size_t MostLevels = 64;

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

    // found(point, distance) for the nodes between the ends.
    template <class Found> void In(const NodeTree& tree, Found found) const
    {
        std::size_t waiting[MostLevels];
        std::size_t count = 0;
        waiting[count++] = 0;
        while (count > 0) {
            const std::size_t branch = waiting[--count];
            if (!Touches(tree.BoxOf(branch))) {
                continue;
            }
            if (tree.IsLeaf(branch)) {
                for (const NodeTree::Point& point : tree.PointsOf(branch)) { Measure(point, found); }
            } else {
                waiting[count++] = 2 * branch + 2;
                waiting[count++] = 2 * branch + 1;
            }
        }
    }

private:
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

    template <class Found> void Measure(const NodeTree::Point& point, Found& found) const
    {
        const double within = std::min(radius, point.reach);
        const Vector3 r = point.place - start;
        const double along = Dot(r, direction) / length; // from the start
        if (!(along > within && along < length - within)) {
            return;
        }
        const double distance = Length(r - along / length * direction);
        if (distance <= within) {
            found(point, distance);
        }
    }

    Vector3 start, direction;
    double length, radius;
};

class Search {
public:
    Search(const ModelStore& model, const NodeTree& tree, double limit) : model(model), tree(tree), limit(limit) {}

    void Along(const ShellEdge& edge, std::vector<TJunction>& found)
    {
        const EdgeSearch search(model.NodeCoordinates[edge.low], model.NodeCoordinates[edge.high], limit);
        if (!search.HasInside()) {
            return;
        }
        near.clear();
        search.In(tree, [&](const NodeTree::Point& point, double distance) {
            near.push_back({point.node, edge.low, edge.high, edge.uses[0].shell, search.EdgeLength(), distance});
        });
        if (!near.empty()) {
            LeaveOutNodesOfItsShells(edge);
            found.insert(found.end(), near.begin(), near.end());
        }
    }

private:
    // A sliver triangle on the edge connects the node with its ends.
    void LeaveOutNodesOfItsShells(const ShellEdge& edge)
    {
        const auto byNode = [](const TJunction& junction, int node) { return junction.node < node; };
        std::sort(near.begin(), near.end(), [](const TJunction& a, const TJunction& b) { return a.node < b.node; });
        for (const EdgeUse& use : edge.uses) {
            for (const int node : ShellNodes(model, use.shell)) {
                const auto at = std::lower_bound(near.begin(), near.end(), node, byNode);
                if (at != near.end() && at->node == node) {
                    at->shell = Connected;
                }
            }
        }
        std::erase_if(near, [](const TJunction& junction) { return junction.shell == Connected; });
    }

    static constexpr int Connected = -1; // in place of the shell

    const ModelStore& model;
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
            Search search(model, tree, limit);
            std::vector<TJunction> ofRange;
            searchRange(search, begin, end, ofRange);
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

    // The order in which ranges ended does not matter from here on.
    std::sort(found.begin(), found.end(), [](const TJunction& a, const TJunction& b) {
        return std::tuple(a.node, -a.length, a.low, a.high) < std::tuple(b.node, -b.length, b.low, b.high);
    });
    const auto sameNode = [](const TJunction& a, const TJunction& b) { return a.node == b.node; };
    found.erase(std::unique(found.begin(), found.end(), sameNode), found.end());
    return found;
}

} // namespace tarnvexo
