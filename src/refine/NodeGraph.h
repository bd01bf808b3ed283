// refine/NodeGraph.h
// Which nodes share an element: the graph of the stiffness matrix, one vertex per node.
#pragma once

#include "core/ModelStore.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

// Neighbours of node n: neighbours[first[n]] ... neighbours[first[n + 1] - 1], in increasing order, each once, without
// n itself.
struct NodeGraph {
    std::vector<std::int64_t> first; // [NPOIN + 1]
    std::vector<int> neighbours;

    int Degree(int node) const { return static_cast<int>(first[std::size_t(node) + 1] - first[std::size_t(node)]); }
};

// Cost: O(N log d), d the largest number of neighbours.
NodeGraph BuildNodeGraph(const ModelStore& model);

} // namespace tarnvexo
