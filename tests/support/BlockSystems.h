// support/BlockSystems.h
// Systems of equations whose matrix has node blocks, for tests of the engines: right-hand sides, errors, changes of
// the matrix.
#pragma once

#include "solver/BlockMatrix.h"

#include <cstddef>
#include <vector>

namespace tarnvexo::test {

// Vectors of −1 ... 1, one behind the other; the same on every system.
std::vector<double> RandomVectors(std::size_t count, unsigned seed);

// Largest |f − A·x| as a share of the largest |A|·|x| + |f|.
double BackwardError(const BlockMatrix& matrix, const double* x, const double* f);

// The same after rows and columns are scaled to a diagonal of ±1: what a factorisation without exchange of rows keeps
// small however the equations are scaled. Every diagonal entry must differ from zero.
double ScaledBackwardError(const BlockMatrix& matrix, const double* x, const double* f);

double LargestDifference(const std::vector<double>& a, const std::vector<double>& b);
bool SameBits(const std::vector<double>& a, const std::vector<double>& b);

// Entry (u, v) of the diagonal block of a column.
double& DiagonalBlockEntry(BlockMatrix& matrix, int position, int u, int v);
double& Diagonal(BlockMatrix& matrix, int equation);

// Rows and columns times s: ill scaled, as well conditioned as before once scaled back.
void Scale(BlockMatrix& matrix, const std::vector<double>& s);

// Σ Bᵀ·B over the edges of the pattern, B of 6 x 12 random numbers times √stiffness of the edge, and a support of
// random B (6 x 6) for every node: positive definite without a heavy diagonal, as stiffness matrices are.
//   stiffness  [blocks of the pattern] of each edge; of the diagonal blocks: of the support
BlockMatrix RandomStiffness(const NodeGraph& graph, const EliminationOrder& order, unsigned seed,
                            const std::vector<double>& stiffness);

} // namespace tarnvexo::test
