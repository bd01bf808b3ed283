// checks/ModelChecks.h
// All checks of a model that has been read, before anything is computed. Every one costs O(N log N) or less in nodes
// and elements. Node coordinates are those of the model file (no origin shift).
#pragma once

#include "checks/Finding.h"
#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

// Findings in the order of RuleId. Rules that are off are not looked at.
std::vector<Finding> CheckModel(const ModelStore& model, const RuleBook& rules);

// The same, by subject.
void CheckShapes(const ModelStore& model, const RuleBook& rules, std::vector<Finding>& findings);
void CheckConnections(const ModelStore& model, const RuleBook& rules, std::vector<Finding>& findings);
void CheckUse(const ModelStore& model, const RuleBook& rules, std::vector<Finding>& findings);

} // namespace tarnvexo
