// app/SoftMotions.h
// Motions that next to no stiffness resists: the eigenvectors of K·u = λ·D·u with the smallest λ, D the stiffness of
// each direction, the diagonal of K with all its terms positive. λ compares a motion's energy with that of each
// direction moved alone, so it has no unit: 0 for a mechanism, negative where elements give energy away, 1e-9 for a
// slender structure.
//
// K + s·D is positive definite as soon as s outweighs the negative λ and round-off; it is factorised with the smallest
// of s = 1e-12, 1e-10 ... that serves. Inverse iteration on a block of vectors, with a Rayleigh–Ritz step each time,
// finds all motions at once: those of λ ≪ s stand out after two or three steps. Their space has no basis of its own, so
// one is taken in which every motion has a direction that the others leave alone (Gauss–Jordan elimination with
// complete pivoting): mechanisms of separate places come out apart. Sources: G. H. Golub, C. F. Van Loan, Matrix
// Computations, 4th ed., Johns Hopkins 2013, sections 3.4, 8.2 and 8.7; C. Farhat, M. Géradin, Comput. Struct. 68
// (1998) 357–369 (null space of floating structures from their pivots).
#pragma once

#include "solver/BlockMatrix.h"
#include "solver/SparseEngine.h"

#include <vector>

namespace tarnvexo {

// Motions of smaller λ are told of.
constexpr double SoftLimit = 1e-10;

// Below this λ is round-off of the stiffness.
constexpr double NoStiffness = 1e-15;

struct SoftMotion {
    double lambda = 0.0;
    std::vector<double> motion; // [6·columns] in elimination order; its largest √d·u is 1
};

struct SoftMotions {
    std::vector<SoftMotion> motions; // negative ones, mechanisms, soft ones by λ
    bool mayBeMore = false;          // the block was full
};

//   engine   has analysed the pattern; its factor is another one afterwards
//   matrix   comes back as it was; nothing is found where entries are not numbers
//   weights  D [6·columns], in elimination order; where it is 0, held equations among them, the diagonal of K counts
// Cost: some factorisations, and solutions for six to 40 vectors some times.
SoftMotions FindSoftMotions(SparseEngine& engine, BlockMatrix& matrix, std::vector<double> weights);

} // namespace tarnvexo
