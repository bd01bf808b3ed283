// input/StrictMesh.h
// Strict reading of nodes and elements. Elements are set up as long as the text has no fault.
// Each procedure reads one table into the model, with the count that the text gives it: the text of its records through
// `tables`, their values through `checks`. What is wrong goes into the diagnostics of both.
#pragma once

#include "core/ModelStore.h"
#include "input/RecordChecks.h"
#include "input/StrictTables.h"

namespace tarnvexo {

void ReadNodes(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadQuads(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadTris(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadBeams(ModelStore& model, StrictTables& tables, RecordChecks& checks);

} // namespace tarnvexo
