// output/ContourFile.h
// Tarn+Vexo_AverageStrs.txt, the contour viewer's input: nodes, displacements, shells with averaged face stresses, and
// for every beam the shell mesh of its section walls with that mesh's own results. Values separated by commas.
// Errors: a file that cannot be opened ends the run with a message, after one key.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

constexpr const char* ContourFileName = "Tarn+Vexo_AverageStrs.txt";

void WriteContourFile(const ModelStore& model, const char* fileName);

} // namespace tarnvexo
