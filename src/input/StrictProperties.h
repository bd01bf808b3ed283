// input/StrictProperties.h
// Strict reading of the properties that elements share: materials, shell thicknesses, beam sections.
// Each procedure reads one table into the model, with the count that the text gives it: the text of its records through
// `tables`, their values through `checks`. What is wrong goes into the diagnostics of both.
#pragma once

#include "core/ModelStore.h"
#include "input/RecordChecks.h"
#include "input/StrictTables.h"

namespace tarnvexo {

void ReadMaterials(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadThicknesses(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadTSections(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadLSections(ModelStore& model, StrictTables& tables, RecordChecks& checks);
void ReadTubeSections(ModelStore& model, StrictTables& tables, RecordChecks& checks);

} // namespace tarnvexo
