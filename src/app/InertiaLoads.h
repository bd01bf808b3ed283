// app/InertiaLoads.h
// The inertia loads that balance the applied ones, for showing beside a result.
#pragma once

#include "core/ModelStore.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Laid out like GLOAD, which it fills. Balanced the exact way (inertia/BalanceSheet); the classic way of the console
// run gives the same for shells of one density. Coordinates are those of the model file, up to round-off afterwards
// too. Empty, with a complete message in `fault`, when there is no balance.
std::vector<double> BalancingInertiaLoads(ModelStore& model, const std::string& modelFile, std::string& fault);

} // namespace tarnvexo
