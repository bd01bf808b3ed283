// app/LoadBalance.h
// The loads of a run: assembled, balanced by inertia, and looked at from every side before anything is solved.
#pragma once

#include "app/FreeParts.h"
#include "checks/Finding.h"
#include "inertia/BalanceSheet.h"
#include "inertia/InertialLoads.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct BalancedLoads {
    std::vector<NodeInertia> shellInertia;
    BalanceSheet sheet;
    FreeParts free;
    std::vector<Finding> findings; // about parts (app/PartFindings)
    std::string fault;             // why there is no balance, a complete message; empty: there is one
};

// Fills GLOAD. The origin stands at the structure's centroid. The exact way leaves out loads on nodes without elements:
// they do not reach the structure, and neither shall the inertia that would balance them. That there are such loads is
// said by the rule unstiffened-load of the model checks.
BalancedLoads BalanceModelLoads(ModelStore& model, const std::string& modelFile, BalanceKind kind,
                                const RuleBook& rules = {});

} // namespace tarnvexo
