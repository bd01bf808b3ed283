// app/FreeParts.h
// Connected parts of the structure, the rigid motions that their supports leave free, and everything that is held while
// the equations are solved.
#pragma once

#include "app/SolveOptions.h"
#include "app/SolveReport.h"
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

// Per part, the sizes of the loads in GLOAD on it: Σ|F|, plus moments about the part's reference point, with the
// forces' arms, divided by its size.   force
std::vector<double> LoadSizesOfParts(const ModelStore& model, const FreeParts& free);

// The loads in GLOAD, balanced, against the free motions of every part: a part that they still move has no equilibrium.
//   appliedByPart  LoadSizesOfParts before balancing
//   appliedForces  Σ|F| of the whole model before balancing: round-off of the balance is of its size
struct PartLoadCheck {
    std::string fault;                 // a part that inertia relief of the whole structure does not balance
    std::vector<std::string> warnings; // a rest that the holds of the only part carry
};
PartLoadCheck CheckPartLoads(const ModelStore& model, const FreeParts& free, const std::vector<double>& appliedByPart,
                             double appliedForces, BalanceKind kind, const std::string& modelFile);

// Parts with more restrained directions than rigid motions: balanced loads leave such supports next to nothing to
// carry, so a structure that stands on the ground comes out wrong. Empty without loads.
std::vector<std::string> SupportWarnings(const FreeParts& free, const LoadSizes& applied, const std::string& modelFile);

} // namespace tarnvexo
