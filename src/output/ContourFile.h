// output/ContourFile.h
// Tarn+Vexo_AverageStrs.txt, the contour viewer's input: nodes, displacements, shells with averaged face stresses, and
// for every beam the shell mesh of its section walls with that mesh's own results. Values separated by commas.
// Errors: reported on standard error (output/TextFile.h) and told in the result.
#pragma once

#include "core/ModelStore.h"
#include "output/TextFile.h"

#include <string>

namespace tarnvexo {

constexpr const char* ContourFileName = "Tarn+Vexo_AverageStrs.txt";

FileResult WriteContourFile(const ModelStore& model, const std::string& path);

} // namespace tarnvexo
