// solver/CompensatedResidual.h
// r = f − K·u in twice the working precision. A residual formed in plain double precision is round-off of |K|·|u| in
// every digit once u is a good solution, and a correction computed from it corrects nothing.
//
// Every product and every sum is split without error into its rounded value and what the rounding took away:
//
//     TwoProduct   h = fl(a·b), e = a·b − h      one fused multiply-subtract, or Dekker's products of half numbers
//     TwoSum       s = fl(a + b), e = a + b − s  (Knuth; six additions)
//
// and the parts taken away are summed beside: the result is as good as if summed with 106 bits and rounded once,
// |error| ≤ ε·|r| + (n·ε)²·(|K|·|u| + |f|), ε = 2⁻⁵³, n terms. Source: T. Ogita, S. M. Rump, S. Oishi, Accurate sum and
// dot product, SIAM J. Sci. Comput. 26 (2005) 1955–1988, algorithm 5.3 (Dot2).
//
// A row needs the blocks of its own column, K_JIᵀ·u_J standing for the right half of the row, and those left of the
// diagonal, which LeftBlocks finds. So the matrix is read twice, but no thread writes what another one does, and the
// order of additions is fixed: the same bits for any number of threads and any vector unit.
#pragma once

#include "solver/BlockMatrix.h"

#include <cstddef>
#include <vector>

namespace tarnvexo {

// Blocks left of the diagonal, row by row, columns ascending: those of block row I are e = first[I] ... first[I + 1] -
// 1, each block number block[e] of the pattern, in block column column[e].
struct LeftBlocks {
    std::vector<std::size_t> first; // columns + 1
    std::vector<std::size_t> block;
    std::vector<int> column;
};
LeftBlocks BlocksLeftOfDiagonal(const BlockPattern& pattern);

// For `count` vectors, one behind the other, [6·columns] each, elimination order:
//   f, u      loads and displacements
//   residual  out, f − K·u, rounded once
//   size      out, |K|·|u| + |f| in plain double precision: the scale of round-off
// Errors: none; what is not finite in K, u or f, or above 2⁹⁹⁵ where the processor has no fused multiply-add, makes its
// rows not a number. Cost: 2·36·count products a block, the matrix read twice.
void FormCompensatedResidual(const BlockMatrix& matrix, const LeftBlocks& left, const double* f, const double* u,
                             int count, double* residual, double* size);

} // namespace tarnvexo
