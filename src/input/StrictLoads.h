// input/StrictLoads.h
// Strict reading of restraints, forces and distributed loads.
// Each procedure reads one table into the model, with the count that the text gives it: the text of its records through
// `tables`, their values through `checks`. What is wrong goes into the diagnostics of both.
#pragma once

#include "core/ModelStore.h"
#include "input/RecordChecks.h"
#include "input/StrictTables.h"

namespace tarnvexo {

void ReadRestraints(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadForces(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadQuadLoads(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadTriLoads(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadBeamLoads(ModelStore& model, StrictTables& tables, RecordChecks& checks);

} // namespace tarnvexo
