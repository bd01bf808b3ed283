// app/FreeParts.h
// Connected parts of the structure, the rigid motions that their supports leave free, and everything that is held while
// the equations are solved.
#pragma once

#include "app/SolveDriver.h"
#include "core/ConnectedParts.h"
#include "inertia/BalanceCheck.h"
#include "inertia/RigidMotions.h"

#include <string>
#include <vector>

namespace tarnvexo {

struct FreeParts {
    ConnectedParts parts;
    std::vector<PartMotions> motions;      // per part
    std::vector<unsigned char> restrained; // per equation: by a support of the model
    std::vector<unsigned char> isHeld;     // by a support, by a hold, or on a node without elements
};

// holdNodes: where to take holds from, if they serve; empty: where the held structure is stiffest.
FreeParts FindFreeParts(const ModelStore& model, const std::vector<int>& holdNodes = {});

std::vector<PartReport> ReportParts(const FreeParts& free, DisplacementKind displacements);

// The loads in GLOAD, balanced, against the free motions of every part: a part that they still move has no equilibrium.
// Returns warnings: loads on nodes without elements; loads that a part's holds will carry when the balance is classic.
// Errors: throws RunFailure (bad model) for a part that inertia relief of the whole structure does not balance.
std::string CheckPartLoads(const ModelStore& model, const FreeParts& free, const LoadSizes& applied,
                           const SolveOptions& options);

} // namespace tarnvexo
