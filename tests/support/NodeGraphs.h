// support/NodeGraphs.h
// Node graphs and matrices of node blocks without a model, for tests of the sparse solver, and their dense
// counterparts.
#pragma once

#include "core/Vector3.h"
#include "solver/BlockMatrix.h"
#include "solver/NodeOrdering.h"

#include <utility>
#include <vector>

namespace tarnvexo::test {

using Edge = std::pair<int, int>;

// Each edge once, in any order.
NodeGraph GraphOf(int nodes, const std::vector<Edge>& edges);

NodeGraph Chain(int nodes);              // 0 - 1 - 2 - ...
NodeGraph Star(int spokes);              // node 0 with nodes 1 ... spokes
NodeGraph QuadGrid(int m, int n);        // m x n nodes of quadrilaterals: eight neighbours inside
NodeGraph Brick(int m, int n, int p);    // m x n x p nodes, 26 neighbours inside
NodeGraph Girder(int around, int along); // closed tube of quadrilaterals
NodeGraph RandomGraph(int nodes, int edges, unsigned seed);

// Places of their nodes, one unit apart.
std::vector<Vector3> BrickPlaces(int m, int n, int p);
std::vector<Vector3> GirderPlaces(int around, int along);
// The same turned about two axes.
std::vector<Vector3> Askew(std::vector<Vector3> places);

EliminationOrder NaturalOrder(int nodes);
EliminationOrder RandomOrder(int nodes, unsigned seed);
ChosenOrder OrderNodes(const NodeGraph& graph); // all nodes at one place

// Blocks under the diagonal block of every column of the factor, and its parent, by striking out one node after the
// other in a table of all pairs.
EliminationTree DenseElimination(const NodeGraph& graph, const EliminationOrder& order);

// Symmetric, positive definite by a diagonal that outweighs the entries of −1 ... 1 beside it by 1.
BlockMatrix RandomMatrix(const NodeGraph& graph, const EliminationOrder& order, unsigned seed);

// Full symmetric matrix [6·columns][6·columns] from the lower triangle.
std::vector<double> DenseOf(const BlockMatrix& matrix);

// The diagonal of D in L·D·Lᵀ, without exchange of rows.
std::vector<double> DensePivots(std::vector<double> dense);

} // namespace tarnvexo::test
