// output/NodalDisplacementFile.h
// Node_Dis.txt: one line per node, its number and six displacements, in columns 15 characters wide.
// Errors: reported on standard error (output/TextFile.h) and told in the result.
#pragma once

#include "core/ModelStore.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

constexpr const char* NodalDisplacementFileName = "Node_Dis.txt";

FileResult WriteNodalDisplacements(const ModelStore& model, const std::string& path);

} // namespace tarnvexo
