// solver/SparseEngine.h
// The one interface to what factorises and solves K·u = f for a matrix of node blocks:
//
//     std::unique_ptr<SparseEngine> engine = MakeSparseEngine(EngineKind::Multifrontal, threads);
//     FactorSize size = engine->Analyse(pattern);      // memory needed, before any number is computed
//     engine->Factorise(matrix);                       // the pattern that was analysed
//     engine->Solve(u, count);                         // right-hand sides become solutions
//
// Vectors are in elimination order, [6·columns] each, one right-hand side behind the other.
#pragma once

#include "solver/BlockMatrix.h"

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace tarnvexo {

struct FactorSize {
    std::int64_t entries = 0;          // as stored, zeros for wider kernels included
    double operations = 0.0;           // additions and multiplications
    double bytes = 0.0;                // factor and workspace while factorising, without the matrix itself
    double bytesWithScratchFile = 0.0; // of that in memory when the factor is kept on disk; 0: the engine cannot do it
};

// What the factorisation met. pivots [6·columns]: the diagonal of D in K = L·D·Lᵀ with unit L (squares of L's diagonal
// for K = L·Lᵀ). failedAt is the first equation whose pivot is not a positive number. CHOLMOD and the skyline stop
// there: the pivots from there on are zero. The multifrontal engine goes on: all pivots are told.
struct PivotReport {
    std::vector<double> pivots;
    std::int64_t failedAt = -1;

    bool Complete() const { return failedAt < 0; }
};

// How many pivots have which sign: of an engine that goes on, as many eigenvalues of K (Sylvester's law of inertia).
struct Inertia {
    std::int64_t positive = 0;
    std::int64_t negative = 0;
    std::int64_t leftOut = 0; // zero, or no finite number
};
Inertia InertiaOf(const PivotReport& report);

class SparseEngine {
public:
    virtual ~SparseEngine() = default;

    virtual std::string Name() const = 0;    // of the engine, with its version
    virtual std::string Kernels() const = 0; // of the dense kernels in use

    // In this order; Factorise and Solve again as often as wanted. Errors: std::bad_alloc; std::length_error from
    // Analyse when the engine cannot address the factor; std::runtime_error with the status of a library.
    virtual FactorSize Analyse(const BlockPattern& pattern) = 0;
    virtual PivotReport Factorise(const BlockMatrix& matrix) = 0;
    virtual void Solve(double* vectors, int count) = 0;

    // After Analyse: factors are kept in a scratch file in this directory from now on. False where an engine cannot do
    // that. Factorise and Solve then throw ScratchFailure too (solver/FactorStore.h).
    virtual bool KeepFactorIn(const std::string& /*directory*/) { return false; }
};

enum class EngineKind { Multifrontal, Cholmod, Skyline };

// True where this program was built with CHOLMOD; whether the system has what it needs shows when it is loaded.
bool HasCholmod();

// Errors: throws EngineMissing when the engine cannot be loaded; the text says which library and what to do.
struct EngineMissing : std::runtime_error {
    using std::runtime_error::runtime_error;
};
std::unique_ptr<SparseEngine> MakeSparseEngine(EngineKind kind, int threads);

// What OpenBLAS and CHOLMOD read from the environment while they are loaded: the kernels that suit this processor, no
// threads of CHOLMOD's own. MakeSparseEngine sets it; a program that loads them itself calls it before. What the user
// has set is kept, but for OpenBLAS's own threads: there are none, whatever was asked for.
void SetBlasEnvironment();

// One line per engine: its name and its kernels, or why it cannot be loaded. Loads CHOLMOD, which takes milliseconds.
std::vector<std::string> DescribeEngines();

} // namespace tarnvexo
