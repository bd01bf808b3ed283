// app/ResultChecks.h
// Judges a solved model: what must vanish is held against what it is the rest of. Every procedure takes plain figures
// and gives one check; nothing is computed or printed here. docs/result-checks.md tells what each means and what to do.
//
// Limits. Where exact arithmetic gives zero, the value of a sound model is round-off, and the limit that warns stands
// at least a hundred times above what models of up to 600,000 equations show:
//   residual      Cholesky's backward error is at most n·ε, n the longest row of the factor (N. J. Higham, Accuracy and
//                 Stability of Numerical Algorithms, SIAM 2002, theorem 10.4); n < 10⁴ gives 10⁻¹², 6·10⁻¹⁶ is met.
//   balance       sums of N terms: at most N·ε, 10⁻¹⁰ for a million nodes; 4·10⁻¹³ is met.
//   energy        the residual times the displacements: grows with the condition. 5·10⁻⁹ is met.
//   rigid translations  energies of 24 x 24 products: 24·ε at most.
// The others are no matter of round-off but of how much of the loads or of linear theory is lost.
#pragma once

#include "app/ElementEnergy.h"
#include "app/ResultFormats.h"
#include "app/SolveReport.h"
#include "output/ResultCheck.h"

#include <vector>

namespace tarnvexo {

struct CheckLimits {
    double warn;
    double fail;
};
constexpr CheckLimits ResidualLimits = {1e-12, 1e-8};
constexpr CheckLimits BalanceLimits = {1e-10, 1e-6};     // of the exact way
constexpr double ClassicBalanceLimit = BalanceTolerance; // warns; what the classic way leaves by design never fails
constexpr CheckLimits ReactionLimits = {1e-3, 0.1};      // of the loads
constexpr CheckLimits EnergyLimits = {1e-6, 1e-2};
constexpr CheckLimits RigidTranslationLimits = {1e-12, 1e-8};
constexpr CheckLimits RigidRotationLimits = {1e-3, 0.1}; // a quadrilateral warped by about a tenth of its edge; by all
constexpr CheckLimits DisplacementLimits = {0.1, 100.0}; // of the model's size
constexpr CheckLimits RotationLimits = {0.1, 100.0};     // rad

// What forces and moments are judged against: the sizes of the applied loads, with floors where a model has only the
// one kind (moments alone; forces through the centroid).
struct LoadScales {
    double force = 0.0;
    double moment = 0.0;
    bool HasLoads() const { return force != 0.0 || moment != 0.0; }
};

// modelSize: half the diagonal of the box around the nodes of elements.
LoadScales ScalesOfLoads(const BalanceSheet& balance, double modelSize);

// |f − K·u| against |K|·|u| + |f|: the backward error, the least relative change of K and f that makes u exact.
ResultCheck JudgeResidual(const SolverReport& solver);

// Resultant that the balance leaves, force or moment, against the loads.
ResultCheck JudgeBalance(const BalanceSheet& balance, const LoadScales& scales);

// Largest reaction against the loads. redundantSupports: directions restrained beyond what holds the parts; these
// carry loads however well they are balanced.
ResultCheck JudgeReactions(const std::vector<SupportReaction>& reactions, const BalanceSheet& balance,
                           const LoadScales& scales, int redundantSupports);

// Strain energy, of the matrix and of the elements one by one, against the work of the loads. balanced: sizes of the
// loads with inertia; where both cancel node by node, nothing but round-off is left to compare.
ResultCheck JudgeEnergy(const SolveReport& report, double elementEnergy, const LoadScales& scales,
                        const LoadSizes& balanced);

// Energy in rigid translations of a part, and in turns of an element, against its scale.
ResultCheck JudgeRigidTranslations(const ElementEnergies& energies);
ResultCheck JudgeRigidRotations(const ElementEnergies& energies);

// Linear theory: displacements small against the model, rotations against 1. modelSize 0: no displacement is judged.
ResultCheck JudgeDisplacement(const ExtremeValue& largest, double modelSize);
ResultCheck JudgeRotation(const ExtremeValue& largest);

// Number of nodes and elements with a result that is not finite. formats: those that the run writes.
ResultCheck JudgeFiniteNumbers(const std::vector<NonFiniteResults>& counts, const ResultFormats& formats);

// "8 passed, 1 warned: reactions, 1 failed: energy"; empty without checks.
std::string CheckSummary(const std::vector<ResultCheck>& checks);

// Message that ends a run with failed checks; empty when none failed.
std::string FailedChecksMessage(const SolveReport& report);

} // namespace tarnvexo
