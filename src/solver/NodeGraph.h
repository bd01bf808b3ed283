// solver/NodeGraph.h
// Which nodes share an element: the sparsity of the stiffness matrix in blocks of one node, six times smaller than that
// of its equations. Orderings and symbolic factorisation work on it.
#pragma once

#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

// Neighbours of node n: neighbours[first[n]] ... neighbours[first[n + 1] - 1], ascending, without n itself; symmetric.
struct NodeGraph {
    std::vector<int> first; // size of the graph + 1 entries
    std::vector<int> neighbours;

    int Size() const { return static_cast<int>(first.size()) - 1; }
    int Degree(int node) const { return first[node + 1] - first[node]; }
};

// From the connectivity of all elements. Cost: linear, through the elements around each node; in parallel.
// Errors: none; nodes without elements have no neighbours.
NodeGraph BuildNodeGraph(const ModelStore& model);

} // namespace tarnvexo
