// output/NodalDisplacementFile.h
// Node_Dis.txt: one line per node, its number and six displacements, in columns 15 characters wide.
// Errors: a file that cannot be opened ends the run with a message, after one key.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

constexpr const char* NodalDisplacementFileName = "Node_Dis.txt";

void WriteNodalDisplacements(const ModelStore& model);

} // namespace tarnvexo
