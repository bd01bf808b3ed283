// solver/BlockMatrix.h
// Symmetric sparse matrix of 6 x 6 node blocks, lower triangle, in elimination order: the stiffness as the sparse
// engines take it.
//
// Block column J (position J in the elimination order) holds the blocks of the rows rows[first[J]] = J, then ascending.
// With b = first[J + 1] - first[J] blocks, its 36·b values stand from values[36·first[J]] on, scalar column by scalar
// column: entry (row block k of the column, DOF u; column DOF v) at 36·first[J] + (6·b)·v + 6·k + u. The diagonal block
// is stored in full. So the six scalar columns of a node are the columns of a dense 6·b x 6 array.
#pragma once

#include "core/LargeArray.h"
#include "solver/EliminationTree.h"
#include "solver/NodeGraph.h"

#include <cstddef>
#include <vector>

namespace tarnvexo {

constexpr int BlockEntries = DofsPerNode * DofsPerNode;

struct BlockPattern {
    std::vector<std::size_t> first; // columns + 1
    std::vector<int> rows;

    int Size() const { return static_cast<int>(first.size()) - 1; }
    int BlocksOf(int column) const { return static_cast<int>(first[column + 1] - first[column]); }
};

struct BlockMatrix {
    BlockPattern pattern;
    LargeArray values;

    double* Column(int column) { return values.Data() + BlockEntries * pattern.first[column]; }
    const double* Column(int column) const { return values.Data() + BlockEntries * pattern.first[column]; }
};

// Pattern of the lower triangle; in parallel.
BlockPattern LowerPattern(const NodeGraph& graph, const EliminationOrder& order);

// Takes equations out of the system: their rows and columns become zero but for the diagonal entry, which keeps its
// value (1 where it is zero). isFixed [6·columns], equation 6·position + DOF.
void EliminateEquations(BlockMatrix& matrix, const std::vector<unsigned char>& isFixed);

// y = A·x and, entry by entry, ySize = |A|·|x|: the scale of y's round-off. All [6·columns], elimination order.
void MultiplyBlockMatrix(const BlockMatrix& matrix, const double* x, double* y, double* ySize);

// Diagonal entries [6·columns].
std::vector<double> DiagonalOf(const BlockMatrix& matrix);

} // namespace tarnvexo
