// checks/UnitChecks.h
// Values of a model that belong to different systems of units (checks/UnitSystems).
#pragma once

#include "checks/Finding.h"
#include "core/ModelStore.h"

#include <string_view>

namespace tarnvexo {

// RuleId::MixedUnits, over materials, thicknesses and sections that elements use:
//   a material whose E belongs to one system and whose Density to another one;
//   materials that belong to one system each, but to different ones: those that are not of the system of most elements;
//   a thickness, or a height or width of a beam's section, above the extent of the model or below 1e-7 of it;
//   an extent of more than 5 km in the system of the materials;
//   a material of another system than the one that the user says the model is in (declaredUnits, its name in
//   checks/UnitSystems.h; empty: not said).
// A material that is stiffer than any other in a system that another material of the model belongs to is taken as made
// stiff on purpose. O(elements).
void CheckUnits(const ModelStore& model, std::string_view declaredUnits, FindingCollector& mixed);

} // namespace tarnvexo
