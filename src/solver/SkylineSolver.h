// solver/SkylineSolver.h
// Solves K·u = R for a matrix in skyline storage (solver/SkylineProfile.h): active-column (Crout) LDLᵀ in place,
// forward reduction, row-oriented back substitution. Every entry receives its terms in one fixed order, so the result
// is the same to the last bit for any vector width.
// Source: K. J. Bathe, Finite Element Procedures, section 8.2 (active column solution).
#pragma once

#include "core/ModelStore.h"

#include <functional>
#include <string>
#include <vector>

namespace tarnvexo {

// A skyline matrix that belongs to somebody else. After the factorisation the same storage holds D on the diagonal and
// the unit upper factor U above it: K = Uᵀ·D·U.
struct SkylineView {
    int equationCount;
    const int* columnHeight;
    const int* diagonalAddress;
    double* values;
};

// Called once per column, in order, when the column has been reduced (columns are reduced some dozens at a time).
using ColumnDone = std::function<void(int column)>;

// In place. Pivots are not tested: a zero pivot gives non-finite numbers. Cost: Σ h²/2 multiply-subtracts.
void FactoriseSkyline(const SkylineView& matrix, const ColumnDone& columnDone = {});

// Name of the vector unit that the factorisation uses on this processor, "AVX3" for example.
std::string SkylineVectorUnit();

// R [n] becomes the reduced load, u [n] the solution; the matrix must be factorised.
void ForwardReduce(const SkylineView& factor, double* R);
void BackSubstitute(const SkylineView& factor, const double* R, double* u);

// Text of the progress counter behind column `column`: a percentage that is overwritten in place.
std::string SolutionProgress(int column, int equationCount);

// The whole system of the model: GlobalStiffness and GLOAD are overwritten, GlobalDisplacement is written.
// Prints the progress counter on the console. Does nothing without equations.
void SolveSkyline(ModelStore& model);

} // namespace tarnvexo
