// cli/ReportFigures.h
// Figures that both reports, text and JSON, derive from what a run knows.
#pragma once

#include "app/SolveReport.h"

#include <string>
#include <vector>

namespace tarnvexo {

// "dx" ... "rz"
const char* DofName(Dof dof);

// "exact", "classic", as on the command line
const char* BalanceName(BalanceKind kind);

// "pass", "warn", "fail"
const char* VerdictName(Verdict verdict);

// Forces among the reactions, added up.
Vector3 SumOfReactionForces(const std::vector<SupportReaction>& reactions);

// A reaction against the loads it is held beside: forces against Σ|F|, moments against Σ(|r|·|F| + |M|); 0 without
// loads.
double ShareOfLoads(const SupportReaction& reaction, const BalanceSheet& balance);

// size / loads; 0 without loads.
double RelativeTo(double loads, double size);

// |strain energy - external work| against the larger of them; 0 when both are 0.
double EnergyDifference(const SolveReport& report);

// Operations a second in the stage "factorise"; 0 when it is not among the stages or took no time.
double FactoriseRate(const SolveReport& report);

// Nothing but round-off is left of the loads (inertia/BalanceCheck's tolerance).
bool IsBalanced(const BalanceSheet& balance);

} // namespace tarnvexo
