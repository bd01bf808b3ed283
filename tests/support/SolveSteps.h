// support/SolveSteps.h
// The steps of `tarnvexo solve` on a model in memory, with their results at hand in full precision, and with what no
// option of the program sets: the nodes where a free part is held.
#pragma once

#include "app/FreeParts.h"
#include "app/SolveDriver.h"
#include "support/ModelText.h"

#include <vector>

namespace tarnvexo::test {

struct SolveSteps {
    ModelStore model;                 // with stresses; GLOAD balanced, GlobalDisplacement mass-orthogonal
    std::vector<double> applied;      // loads before balancing
    std::vector<double> held;         // displacements as held
    std::vector<NodeInertia> inertia; // for products with the mass
    FreeParts free;
    BalanceSheet balance;
    SolverReport solver;
    double strainEnergy = 0.0;
};

SolveSteps RunSolveSteps(const ModelText& text, SolverKind kind, const std::vector<int>& holdNodes = {});
SolveSteps RunSolveSteps(ModelStore read, SolverKind kind, BalanceKind balance, const std::vector<int>& holdNodes = {});

// Every stress component of every shell at its nodes, both faces.
std::vector<double> ShellStresses(const ModelStore& model);

// Largest |a_i − b_i| beside the largest |a_i|; 0 for empty vectors.
double RelativeDifference(const std::vector<double>& a, const std::vector<double>& b);

} // namespace tarnvexo::test
