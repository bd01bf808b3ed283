// solver/Refinement.h
// Iterative refinement of solutions of K·u = f with a factorisation that has round-off:
//
//     r = f − K·u    in twice the precision (solver/CompensatedResidual)
//     K·du = r       with the factor there is
//     u ← u + du
//
// Each step multiplies the error of u by about ρ, the error of the factorisation times the condition, until u is the
// exact solution rounded: whatever the condition, as long as ρ < ½. What it repairs is the round-off of factorising and
// solving. That of the entries of K stays: u is the solution of the K that was assembled.
//
// |du| against |u| is the error of u before the step, and its fall from step to step is ρ; so |du|·ρ is the error after
// it. The solution itself is the first correction, of u = 0. Steps end when the error to be expected is 1e-13,
// when a correction is not half of the one before, and after five of them. A correction that would not
// make the solution better is not made, and one that has not is taken back.
// Sources: J. Demmel, Y. Hida, W. Kahan, X. S. Li, S. Mukherjee, E. J. Riedy, Error bounds from extra-precise iterative
// refinement, ACM Trans. Math. Softw. 32 (2006) 325–351; N. J. Higham, Accuracy and Stability of Numerical Algorithms,
// SIAM 2002, chapter 12.
#pragma once

#include "solver/BlockMatrix.h"
#include "solver/SparseEngine.h"

#include <optional>
#include <vector>

namespace tarnvexo {

// Of one solution. Errors are the largest of translations against the largest translation, or of rotations against the
// largest rotation, whichever is worse; estimates, 1 where no digit is right.
struct RefinedSolution {
    int steps = 0;                     // corrections made and kept
    double residualBefore = 0.0;       // |f − K·u| / (|K|·|u| + |f|), largest entries, of forces or of moments
    double residual = 0.0;             // the same of the solution as it is now
    std::optional<double> errorBefore; // none: no correction was computed
    std::optional<double> error;
    double strainEnergy = 0.0; // ½·uᵀ·K·u
};

// Where a correction is worth one more solution. Needed: the residual is more than round-off, or round-off of K can
// matter. To first order the work of the loads fᵀ·u changes by |u|ᵀ·|δK|·|u| at most when K changes by δK, |δK| ≤
// ε·|K|:
//
//     ε·|u|ᵀ·(|K|·|u| + |f|) / fᵀ·u > 1e-9
//
// It is known from the residual and shows the cantilever of many elements, which moves as a rigid body nearly
// everywhere and whose forces cancel, where no pivot is small.
enum class Corrections { WhereNeeded, Always };

//   engine   has factorised the matrix
//   f, u     [6·columns] one behind the other, elimination order: right-hand sides, and what the engine made of them
// Solutions that are not finite stay as they are, with a residual that is not a number. The same bits for any number of
// threads if the engine's are.
std::vector<RefinedSolution> RefineSolutions(SparseEngine& engine, const BlockMatrix& matrix, Corrections corrections,
                                             const double* f, double* u, int count);

} // namespace tarnvexo
