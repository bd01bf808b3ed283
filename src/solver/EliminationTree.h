// solver/EliminationTree.h
// What a Cholesky factorisation of a node graph in a given order will be, before a number is computed: elimination
// tree, entries of each column, size and operations of the factor. Sources: J. W. H. Liu, SIAM J. Matrix Anal. Appl. 11
// (1990) 134–172 (tree, postorder, row subtrees); J. R. Gilbert, E. G. Ng, B. W. Peyton, SIAM J. Matrix Anal. Appl. 15
// (1994) 1075–1091 (column counts).
#pragma once

#include "solver/NodeGraph.h"

#include <vector>

namespace tarnvexo {

// Order of elimination: nodeAt[k] is eliminated as number k; positionOf is its inverse.
struct EliminationOrder {
    std::vector<int> nodeAt;
    std::vector<int> positionOf;
};

// nodeAt must be a permutation.
EliminationOrder OrderFromSequence(std::vector<int> nodeAt);

// Column k of the factor in node blocks: below[k] blocks under its diagonal block; parent[k] is the column of the first
// of them, -1 at a root.
struct EliminationTree {
    std::vector<int> parent;
    std::vector<int> below;
};

// The same factor with its columns renumbered so that every subtree is contiguous and precedes its root, as supernodes
// need it; the tree belongs to the new order.
struct PostorderedTree {
    EliminationOrder order;
    EliminationTree tree;
};

// Cost: nearly linear in the graph.
PostorderedTree BuildEliminationTree(const NodeGraph& graph, const EliminationOrder& order);

// Scalar entries (lower triangle, diagonal included) and operations (additions and multiplications) of the factor of
// a matrix of 6 x 6 node blocks.
struct FactorCost {
    double entries = 0.0;
    double operations = 0.0;
};
FactorCost CostOfFactor(const EliminationTree& tree);

} // namespace tarnvexo
