#include "solver/BandOrdering.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace tarnvexo {

namespace {

std::span<const int> Neighbours(const NodeGraph& graph, int node)
{
    return {graph.neighbours.data() + graph.first[std::size_t(node)], std::size_t(graph.Degree(node))};
}

// Rooted level structure: the nodes of a connected part in order of their distance from a root.
class LevelStructure {
public:
    explicit LevelStructure(const NodeGraph& nodeGraph) : graph(nodeGraph), reachedFrom(nodeGraph.first.size(), -1) {}

    void Build(int root)
    {
        nodes.assign(1, root);
        reachedFrom[std::size_t(root)] = root;
        depth = 0;
        lastLevel = 0;
        for (std::size_t levelEnd = 1;; levelEnd = nodes.size()) {
            for (std::size_t i = lastLevel; i < levelEnd; ++i) {
                for (const int neighbour : Neighbours(graph, nodes[i])) {
                    if (reachedFrom[std::size_t(neighbour)] != root) {
                        reachedFrom[std::size_t(neighbour)] = root;
                        nodes.push_back(neighbour);
                    }
                }
            }
            if (nodes.size() == levelEnd) {
                return;
            }
            lastLevel = levelEnd;
            ++depth;
        }
    }

    int Depth() const { return depth; } // distance of the last level from the root
    std::span<const int> LastLevel() const { return std::span(nodes).subspan(lastLevel); }

private:
    const NodeGraph& graph;
    std::vector<int> reachedFrom; // root of the structure that reached the node last
    std::vector<int> nodes;
    std::size_t lastLevel = 0; // where it begins in nodes
    int depth = 0;
};

// A node of nearly the largest distance from some other: from the last level of a node's structure the node of least
// degree becomes the root, as long as that makes the structure deeper.
int PseudoPeripheralNode(const NodeGraph& graph, int anyNode, LevelStructure& levels)
{
    int root = anyNode;
    levels.Build(root);
    for (;;) {
        const int depth = levels.Depth();
        const std::span<const int> last = levels.LastLevel();
        const int candidate = *std::min_element(last.begin(), last.end(), [&](int a, int b) {
            return std::pair(graph.Degree(a), a) < std::pair(graph.Degree(b), b);
        });
        if (candidate == root) {
            return root;
        }
        levels.Build(candidate);
        if (levels.Depth() <= depth) {
            return root;
        }
        root = candidate;
    }
}

} // namespace

std::vector<int> ReverseCuthillMcKee(const NodeGraph& graph)
{
    const int nodeCount = static_cast<int>(graph.first.size()) - 1;
    constexpr int NotReached = -1, Reached = -2;
    std::vector<int> newNumber(std::size_t(nodeCount), NotReached);
    LevelStructure levels(graph);
    std::vector<int> order; // of the part at hand
    int numbered = 0;
    for (int n = 0; n < nodeCount; ++n) {
        if (newNumber[std::size_t(n)] != NotReached) {
            continue;
        }
        order.assign(1, PseudoPeripheralNode(graph, n, levels));
        newNumber[std::size_t(order[0])] = Reached;
        for (std::size_t i = 0; i < order.size(); ++i) {
            const std::size_t added = order.size();
            for (const int neighbour : Neighbours(graph, order[i])) {
                if (newNumber[std::size_t(neighbour)] == NotReached) {
                    newNumber[std::size_t(neighbour)] = Reached;
                    order.push_back(neighbour);
                }
            }
            std::sort(order.begin() + std::ptrdiff_t(added), order.end(),
                      [&](int a, int b) { return std::pair(graph.Degree(a), a) < std::pair(graph.Degree(b), b); });
        }
        for (auto node = order.rbegin(); node != order.rend(); ++node) { newNumber[std::size_t(*node)] = numbered++; }
    }
    return newNumber;
}

SkylineCost SkylineCostWith(const NodeGraph& graph, const std::vector<int>& newNumber)
{
    SkylineCost cost;
    for (int n = 0; n < static_cast<int>(newNumber.size()); ++n) {
        int lowest = newNumber[std::size_t(n)];
        for (const int neighbour : Neighbours(graph, n)) {
            lowest = std::min(lowest, newNumber[std::size_t(neighbour)]);
        }
        // Six columns reach down to the lowest node's first equation.
        const std::int64_t below = DofsPerNode * std::int64_t(newNumber[std::size_t(n)] - lowest);
        for (int dof = 0; dof < DofsPerNode; ++dof) {
            const std::int64_t height = below + dof + 1;
            cost.entries += height;
            cost.operations += static_cast<double>(height) * static_cast<double>(height);
        }
    }
    return cost;
}

} // namespace tarnvexo
