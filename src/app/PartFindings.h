// app/PartFindings.h
// Findings about connected parts that need their free motions and balanced loads: parts that float beside supported
// ones, parts whose loads nothing balances, and parts with more supports than hold them. All offending parts are found,
// and named as far as a finding keeps them.
#pragma once

#include "app/FreeParts.h"
#include "checks/Finding.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Parts with free motions while another part is supported: "floating-part", worst the one of most nodes. Where no part
// is supported each may be free: only the balance of its loads counts.
void FindFloatingParts(const ModelStore& model, const FreeParts& free, const RuleBook& rules,
                       std::vector<Finding>& findings);

// The loads in GLOAD, balanced, against the free motions of every part: a part that they still move has no equilibrium,
// "unbalanced-part", worst the one that is pushed most. Parts that float by an error are told once, by that. What a
// classic balance leaves on the only part is a warning: its holds carry it.
//   appliedByPart  LoadSizesOfParts before balancing
//   appliedForces  Σ|F| of the whole model before balancing: round-off of the balance is of its size
void FindUnbalancedParts(const ModelStore& model, const FreeParts& free, const std::vector<double>& appliedByPart,
                         double appliedForces, BalanceKind kind, const RuleBook& rules, std::vector<Finding>& findings);

// Parts with more restrained directions than rigid motions, "supports-in-balance": balanced loads leave such supports
// next to nothing to carry, so a structure that stands on the ground comes out wrong. None without loads.
void FindSupportsInBalance(const FreeParts& free, const LoadSizes& applied, const RuleBook& rules,
                           std::vector<Finding>& findings);

} // namespace tarnvexo
