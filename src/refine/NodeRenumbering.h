// refine/NodeRenumbering.h
// New numbers for the nodes of a model, so that the skyline of the console run gets short.
#pragma once

#include "core/ModelStore.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

// newNumber [NPOIN]: newNumber[old] is the number that node `old` gets. Gives the nodes new numbers in all tables of
// the model file; order and numbers of elements, restraints and loads stay. Nothing that a run computes is moved: to be
// called before one.
void PermuteNodes(ModelStore& model, const std::vector<int>& newNumber);

// Renumbers by reverse Cuthill–McKee (solver/BandOrdering) where that shortens the skyline, else leaves the numbers as
// they are.
struct Renumbering {
    std::vector<int> newNumber; // what was done: identity when the numbers were left
    std::int64_t skylineEntriesBefore = 0;
    std::int64_t skylineEntriesAfter = 0;
};
Renumbering RenumberNodes(ModelStore& model);

} // namespace tarnvexo
