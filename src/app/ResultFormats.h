// app/ResultFormats.h
// The formats that a run may write its results in, and the files of each. The files of a format do not depend on the
// model: what a model does not have is an empty table or an empty block.
#pragma once

#include <set>
#include <string>
#include <vector>

namespace tarnvexo {

enum class ResultFormat { Text, Vtu, Gltf, Csv, Json };

using ResultFormats = std::set<ResultFormat>;

constexpr ResultFormat AllResultFormats[] = {ResultFormat::Text, ResultFormat::Vtu, ResultFormat::Gltf,
                                             ResultFormat::Csv, ResultFormat::Json};

constexpr const char* JsonReportFileName = "results.json";

// As the command line has it: "text", "vtu", ...
const char* NameOf(ResultFormat format);

std::vector<std::string> FilesOf(ResultFormat format);
std::vector<std::string> FilesOf(const ResultFormats& formats);

// The files of every format.
std::vector<std::vector<std::string>> FilesOfAllFormats();

// A warning when files of formats that a run does not write are in its directory: they are of an earlier run, and stay.
// "" when there are none.
std::string WarningOfOtherFiles(const std::string& directory, const ResultFormats& written);

} // namespace tarnvexo
