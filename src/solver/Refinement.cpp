#include "solver/Refinement.h"

#include "solver/CompensatedResidual.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace tarnvexo {

namespace {

constexpr int MostSteps = 5;

// Of a rounded number, 2⁻⁵³.
constexpr double RoundOff = 0x1p-53;

// Errors that are worth no further step: digits that no result shows.
constexpr double ErrorWanted = 1e-13;

// Relative residuals of sound factorisations stay below.
constexpr double SmallResidual = 1e-14;

// Round-off of K, as a share of the work of the loads, that calls for a correction. Below, displacements had errors of
// 4e-10 at most in 40 models (docs/theory/sparse-solver.md), and between 1/400 and 40 times this share.
constexpr double LargestPlainShare = 1e-9;

// Rotations (or translations) that take part in |u|ᵀ·|K|·|u| with less are round-off themselves, as the rotations of a
// plate that is pulled in its plane, and have no digits to lose. Bending of a plate in elements of h has h/L and more.
constexpr double LeastShare = 1e-16;

// Forces and moments, translations and rotations have scales of their own, so that nothing depends on the unit of
// length.
using OfEachKind = std::array<double, 2>;

int KindOf(std::size_t equation)
{
    return equation % DofsPerNode >= RX ? 1 : 0;
}

// The larger one; what is not a number wins.
double Larger(double a, double b)
{
    return std::isnan(a) || a > b ? a : b;
}

OfEachKind LargestOf(const double* x, std::size_t n)
{
    OfEachKind largest = {};
    for (std::size_t i = 0; i < n; ++i) { largest[KindOf(i)] = Larger(std::fabs(x[i]), largest[KindOf(i)]); }
    return largest;
}

double LargestShare(const OfEachKind& part, const OfEachKind& whole)
{
    double share = 0.0;
    for (int kind = 0; kind < 2; ++kind) {
        if (part[kind] != 0.0 || std::isnan(whole[kind])) {
            share = Larger(part[kind] / whole[kind], share);
        }
    }
    return share;
}

// |du| against |u|. size: |K|·|u| + |f|.
double RelativeChange(const double* du, const double* u, const double* size, std::size_t n)
{
    OfEachKind taken = {}; // part in |u|ᵀ·|K|·|u|
    for (std::size_t i = 0; i < n; ++i) { taken[KindOf(i)] += size[i] * std::fabs(u[i]); }
    OfEachKind change = LargestOf(du, n);
    for (int kind = 0; kind < 2; ++kind) {
        if (taken[kind] < LeastShare * taken[1 - kind]) {
            change[kind] = 0.0;
        }
    }
    return LargestShare(change, LargestOf(u, n));
}

// What is known of one solution while others are refined beside it.
struct Progress {
    bool isDone = false;
    double change = 1.0;          // the last correction made, relative; the solution itself is the first
    std::vector<double> previous; // solution before it
};

class Refiner {
public:
    Refiner(SparseEngine& engine, const BlockMatrix& matrix, const double* f, double* u, int count)
        : engine(engine), matrix(matrix), left(BlocksLeftOfDiagonal(matrix.pattern)), f(f), u(u),
          n(static_cast<std::size_t>(DofsPerNode) * matrix.pattern.Size()), residual(n * count), size(n * count),
          solutions(count), progress(count)
    {
        FormResiduals();
        for (std::size_t c = 0; c < solutions.size(); ++c) {
            solutions[c].residualBefore = solutions[c].residual = RelativeResidual(c);
        }
    }

    std::vector<RefinedSolution> Refine(Corrections corrections)
    {
        for (std::size_t c = 0; c < solutions.size(); ++c) {
            progress[c].isDone = solutions[c].residual == 0.0 || !std::isfinite(solutions[c].residual) ||
                                 (corrections == Corrections::WhereNeeded && solutions[c].residual <= SmallResidual &&
                                  RoundOffShare(c) <= LargestPlainShare);
        }
        while (Step()) {}
        for (std::size_t c = 0; c < solutions.size(); ++c) { solutions[c].strainEnergy = StrainEnergy(c); }
        return solutions;
    }

private:
    void FormResiduals()
    {
        FormCompensatedResidual(matrix, left, f, u, static_cast<int>(solutions.size()), residual.data(), size.data());
    }

    double RelativeResidual(std::size_t c) const
    {
        return LargestShare(LargestOf(&residual[n * c], n), LargestOf(&size[n * c], n));
    }

    // ½·uᵀ·K·u = ½·uᵀ·(f − r)
    double StrainEnergy(std::size_t c) const
    {
        double work = 0.0;
        for (std::size_t i = n * c; i < n * (c + 1); ++i) { work += u[i] * (f[i] - residual[i]); }
        return 0.5 * work;
    }

    // Round-off of K as a share of the work of the loads.
    double RoundOffShare(std::size_t c) const
    {
        double terms = 0.0;
        for (std::size_t i = n * c; i < n * (c + 1); ++i) { terms += std::fabs(u[i]) * size[i]; }
        return RoundOff * terms / std::fabs(2.0 * StrainEnergy(c));
    }

    // One correction of every solution that can do with it. False: there was none.
    bool Step()
    {
        std::vector<std::size_t> open;
        for (std::size_t c = 0; c < progress.size(); ++c) {
            if (!progress[c].isDone) {
                open.push_back(c);
            }
        }
        if (open.empty()) {
            return false;
        }
        std::vector<double> corrections(n * open.size());
        for (std::size_t k = 0; k < open.size(); ++k) { std::copy_n(&residual[n * open[k]], n, &corrections[n * k]); }
        engine.Solve(corrections.data(), static_cast<int>(open.size()));
        bool hasChanged = false;
        for (std::size_t k = 0; k < open.size(); ++k) {
            hasChanged = Correct(open[k], &corrections[n * k]) || hasChanged;
        }
        if (hasChanged) {
            FormResiduals();
            if (TakeBackWorse(open)) {
                FormResiduals();
            }
        }
        return true;
    }

    // True: the solution is another one now.
    bool Correct(std::size_t c, const double* du)
    {
        RefinedSolution& solution = solutions[c];
        Progress& now = progress[c];
        const double change = RelativeChange(du, u + n * c, &size[n * c], n);
        if (solution.steps == 0) {
            solution.errorBefore = std::isfinite(change) ? std::min(change, 1.0) : 1.0;
        }
        now.isDone = true;
        if (!(change < now.change)) { // the step before was for nothing, or this is not a number
            solution.error = now.change;
            return TakeBack(c);
        }
        const double fall = change / now.change;
        if (fall > 0.5) {
            solution.error = change;
            return false;
        }
        now.previous.assign(u + n * c, u + n * (c + 1));
        for (std::size_t i = 0; i < n; ++i) { u[n * c + i] += du[i]; }
        ++solution.steps;
        solution.error = std::max(change * fall, RoundOff);
        now.change = change;
        now.isDone = solution.steps == MostSteps || change * fall <= ErrorWanted;
        return true;
    }

    // Corrections that have made the residual larger, by more than the rounding of u does. True: there were some.
    bool TakeBackWorse(const std::vector<std::size_t>& corrected)
    {
        bool anyTaken = false;
        for (const std::size_t c : corrected) {
            const double after = RelativeResidual(c);
            if (!(after <= std::max(solutions[c].residual, SmallResidual)) && TakeBack(c)) {
                solutions[c].error = progress[c].change;
                progress[c].isDone = true;
                anyTaken = true;
            } else {
                solutions[c].residual = after;
            }
        }
        return anyTaken;
    }

    // The last correction. False: there was none.
    bool TakeBack(std::size_t c)
    {
        std::vector<double>& previous = progress[c].previous;
        if (previous.empty()) {
            return false;
        }
        std::copy(previous.begin(), previous.end(), u + n * c);
        previous.clear();
        --solutions[c].steps;
        return true;
    }

    SparseEngine& engine;
    const BlockMatrix& matrix;
    const LeftBlocks left;
    const double* const f;
    double* const u;
    const std::size_t n;
    std::vector<double> residual, size;
    std::vector<RefinedSolution> solutions;
    std::vector<Progress> progress;
};

} // namespace

std::vector<RefinedSolution> RefineSolutions(SparseEngine& engine, const BlockMatrix& matrix, Corrections corrections,
                                             const double* f, double* u, int count)
{
    return Refiner(engine, matrix, f, u, count).Refine(corrections);
}

} // namespace tarnvexo
