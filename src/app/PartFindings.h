// app/PartFindings.h
// Findings about connected parts that need their free motions and balanced loads: parts that float beside supported
// ones, and parts whose loads nothing balances. All offending parts are found, and named as far as a finding keeps
// them.
#pragma once

#include "app/FreeParts.h"
#include "checks/Finding.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Parts with free motions while another part is supported: "floating-part", worst the one of most nodes. Where no part
// is supported each may be free: only the balance of its loads counts. In the classic balance, where the console run
// holds such parts and goes on, the finding is a warning at most.
void FindFloatingParts(const ModelStore& model, const FreeParts& free, BalanceKind kind, const RuleBook& rules,
                       std::vector<Finding>& findings);

// The loads in GLOAD, balanced, against the free motions of every part: a part that they still move has no equilibrium,
// "unbalanced-part", worst the one that is pushed most. Parts that float by an error are told once, by that. What a
// classic balance leaves on the only part is a warning: its holds carry it.
//   appliedByPart  LoadSizesOfParts before balancing
//   appliedForces  Σ|F| of the whole model before balancing: round-off of the balance is of its size
void FindUnbalancedParts(const ModelStore& model, const FreeParts& free, const std::vector<double>& appliedByPart,
                         double appliedForces, BalanceKind kind, const RuleBook& rules, std::vector<Finding>& findings);

// A complete message about one of these findings, with a line for every part that it keeps.
std::string PartFindingText(const Finding& finding, int partCount, const std::string& modelFile);

} // namespace tarnvexo
