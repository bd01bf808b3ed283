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
    Vector3 origin = {}; // of the motions' coordinates, in those of the model file
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

} // namespace tarnvexo
