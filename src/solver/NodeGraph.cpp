#include "solver/NodeGraph.h"

#include "core/Parallel.h"

#include <algorithm>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t NodesPerRange = 4096;

// Calls visit(nodes, count) for every element, by kind and number.
template <class Visit> void ForEachElement(const ModelStore& model, Visit visit)
{
    for (const auto& nodes : model.QuadConnectivity) { visit(nodes.data(), QuadNodeCount); }
    for (const auto& nodes : model.TriConnectivity) { visit(nodes.data(), TriNodeCount); }
    for (const auto& nodes : model.BeamConnectivity) { visit(nodes.data(), BeamNodeCount); }
}

// For every node the elements around it, each by its list of nodes.
struct ElementsAroundNodes {
    struct NodeList {
        const int* nodes;
        int count;
    };
    std::vector<std::size_t> first;
    std::vector<NodeList> elements;
};

ElementsAroundNodes FindElementsAroundNodes(const ModelStore& model)
{
    ElementsAroundNodes map;
    map.first.assign(model.NodeCoordinates.size() + 1, 0);
    ForEachElement(model, [&](const int* nodes, int count) {
        for (int i = 0; i < count; ++i) { ++map.first[nodes[i] + 1]; }
    });
    for (std::size_t n = 1; n < map.first.size(); ++n) { map.first[n] += map.first[n - 1]; }
    map.elements.resize(map.first.back());
    std::vector<std::size_t> next(map.first.begin(), map.first.end() - 1);
    ForEachElement(model, [&](const int* nodes, int count) {
        for (int i = 0; i < count; ++i) { map.elements[next[nodes[i]]++] = {nodes, count}; }
    });
    return map;
}

} // namespace

NodeGraph BuildNodeGraph(const ModelStore& model)
{
    const ElementsAroundNodes around = FindElementsAroundNodes(model);
    const std::size_t nodeCount = model.NodeCoordinates.size();

    // Neighbour lists of a range of nodes, one behind the other; joined in order of the ranges.
    struct Range {
        std::vector<int> counts;
        std::vector<int> neighbours;
    };
    std::vector<Range> ranges((nodeCount + NodesPerRange - 1) / NodesPerRange);
    ParallelFor(nodeCount, NodesPerRange, [&](std::size_t begin, std::size_t end) {
        Range& range = ranges[begin / NodesPerRange];
        std::vector<int> found;
        for (std::size_t n = begin; n < end; ++n) {
            found.clear();
            for (std::size_t e = around.first[n]; e < around.first[n + 1]; ++e) {
                const ElementsAroundNodes::NodeList& element = around.elements[e];
                found.insert(found.end(), element.nodes, element.nodes + element.count);
            }
            std::sort(found.begin(), found.end());
            found.erase(std::unique(found.begin(), found.end()), found.end());
            std::erase(found, static_cast<int>(n));
            range.counts.push_back(static_cast<int>(found.size()));
            range.neighbours.insert(range.neighbours.end(), found.begin(), found.end());
        }
    });

    NodeGraph graph;
    graph.first.reserve(nodeCount + 1);
    graph.first.push_back(0);
    for (const Range& range : ranges) {
        for (int count : range.counts) { graph.first.push_back(graph.first.back() + count); }
        graph.neighbours.insert(graph.neighbours.end(), range.neighbours.begin(), range.neighbours.end());
    }
    return graph;
}

} // namespace tarnvexo
