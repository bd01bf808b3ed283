#include "refine/NodeGraph.h"

#include <algorithm>
#include <cstddef>
#include <numeric>

namespace tarnvexo {

namespace {

// Calls visit(a, b) for every ordered pair of different nodes of an element.
template <class Connectivity, class Visit> void ForEachPair(const Connectivity& connectivity, const Visit& visit)
{
    for (const auto& nodes : connectivity) {
        for (const int a : nodes) {
            for (const int b : nodes) {
                if (a != b) {
                    visit(a, b);
                }
            }
        }
    }
}

template <class Visit> void ForEachPair(const ModelStore& model, const Visit& visit)
{
    ForEachPair(model.QuadConnectivity, visit);
    ForEachPair(model.TriConnectivity, visit);
    ForEachPair(model.BeamConnectivity, visit);
}

} // namespace

NodeGraph BuildNodeGraph(const ModelStore& model)
{
    NodeGraph graph;
    // Every pair of every element, then each pair once.
    std::vector<std::int64_t> begin(std::size_t(model.NPOIN) + 1, 0);
    ForEachPair(model, [&](int a, int) { ++begin[std::size_t(a) + 1]; });
    std::partial_sum(begin.begin(), begin.end(), begin.begin());
    graph.neighbours.resize(std::size_t(begin.back()));
    std::vector<std::int64_t> next(begin.begin(), begin.end() - 1);
    ForEachPair(model, [&](int a, int b) { graph.neighbours[std::size_t(next[std::size_t(a)]++)] = b; });

    graph.first.assign(begin.size(), 0);
    auto kept = graph.neighbours.begin();
    for (std::size_t n = 0; n + 1 < begin.size(); ++n) {
        const auto from = graph.neighbours.begin() + begin[n], to = graph.neighbours.begin() + begin[n + 1];
        std::sort(from, to);
        kept = std::copy(from, std::unique(from, to), kept);
        graph.first[n + 1] = kept - graph.neighbours.begin();
    }
    graph.neighbours.erase(kept, graph.neighbours.end());
    return graph;
}

} // namespace tarnvexo
