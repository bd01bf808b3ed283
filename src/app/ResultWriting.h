// app/ResultWriting.h
// Writes the results of a solved model in the formats that are wanted, and gives all files their names together.
#pragma once

#include "app/ResultFiles.h"
#include "app/ResultFormats.h"
#include "app/SolveReport.h"
#include "core/ModelStore.h"

#include <functional>
#include <string>

namespace tarnvexo {

// The text of results.json.
using ReportWriter = std::function<std::string(const SolveReport& report)>;

// The drawing of the structure, which is made about its centroid, must have been written when Text is wanted.
// jsonText is called, when Json is wanted, with the report as it is then: it lists every other file.
// Errors: RunFailure (file error); then no file has its name.
void WriteResults(const ModelStore& model, const SolveReport& report, const ResultFormats& formats,
                  const ReportWriter& jsonText, ResultFiles& files);

} // namespace tarnvexo
