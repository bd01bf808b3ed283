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

// Warning with the resultants that remain in GLOAD, without a line end behind it; empty when they vanish.
// Call it after BalanceByInertiaRelief.
std::string BalanceWarning(const ModelStore& model);

} // namespace tarnvexo
