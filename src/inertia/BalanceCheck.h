// inertia/BalanceCheck.h
// Tells when balanced loads are not balanced. The centroid is that of the volume and beams carry their torsional
// inertia at (x, x), so a moment may remain in models with beams or several densities; nominal supports then carry it
// silently.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// Resultants above this share of the loads they are the sum of are no round-off.
constexpr double BalanceTolerance = 1e-6;

// Sizes of the loads in GLOAD, added up without regard to direction: forces, and moments with the forces' arms.
struct LoadSizes {
    double forces = 0.0;
    double moments = 0.0;
};
LoadSizes SizesOfLoads(const ModelStore& model);

// Warning with the resultants that remain in GLOAD after BalanceByInertiaRelief, without a line end behind it; empty
// when they vanish. applied = SizesOfLoads before balancing: loads that balance away entirely leave round-off of that
// size.
std::string BalanceWarning(const ModelStore& model, const LoadSizes& applied, const char* modelName);

// Warning when more directions are restrained than a rigid body has: the balanced loads leave such supports next to
// nothing to carry, so a structure that stands on the ground comes out wrong. Empty without loads or with six
// directions.
std::string SupportWarning(const ModelStore& model, const LoadSizes& applied, const char* modelName);

} // namespace tarnvexo
