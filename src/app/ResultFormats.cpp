#include "app/ResultFormats.h"

#include "export/CsvTables.h"
#include "export/GltfResults.h"
#include "export/VtuResults.h"
#include "output/ContourFile.h"
#include "output/DxfDrawing.h"
#include "output/NodalDisplacementFile.h"
#include "output/ShellStressFiles.h"
#include "platform/FilePath.h"

#include <cassert>
#include <filesystem>
#include <system_error>

namespace tarnvexo {

namespace {

// "text,vtu"
std::string NamesOf(const ResultFormats& formats)
{
    std::string names;
    for (const ResultFormat format : formats) { names += (names.empty() ? "" : ",") + std::string(NameOf(format)); }
    return names;
}

} // namespace

const char* NameOf(ResultFormat format)
{
    switch (format) {
    case ResultFormat::Text:
        return "text";
    case ResultFormat::Vtu:
        return "vtu";
    case ResultFormat::Gltf:
        return "gltf";
    case ResultFormat::Csv:
        return "csv";
    case ResultFormat::Json:
        return "json";
    }
    assert(!"a format without a name");
    return "";
}

std::vector<std::string> FilesOf(ResultFormat format)
{
    switch (format) {
    case ResultFormat::Text:
        return {StructureDrawingFileName, NodalDisplacementFileName,   DeformationDrawingFileName,
                ShellStressFileName,      AveragedShellStressFileName, ContourFileName};
    case ResultFormat::Vtu:
        return {VtuBlocksFileName, VtuShellsFileName, VtuWallsFileName, VtuBeamLinesFileName};
    case ResultFormat::Gltf:
        return {GltfFileName};
    case ResultFormat::Csv:
        return {CsvNodesFileName,     CsvQuadsFileName, CsvTrisFileName,
                CsvBeamNodesFileName, CsvBeamsFileName, CsvReactionsFileName};
    case ResultFormat::Json:
        return {JsonReportFileName};
    }
    assert(!"a format without files");
    return {};
}

std::vector<std::string> FilesOf(const ResultFormats& formats)
{
    std::vector<std::string> files;
    for (const ResultFormat format : formats) {
        for (const std::string& file : FilesOf(format)) { files.push_back(file); }
    }
    return files;
}

std::vector<std::vector<std::string>> FilesOfAllFormats()
{
    std::vector<std::vector<std::string>> sets;
    for (const ResultFormat format : AllResultFormats) { sets.push_back(FilesOf(format)); }
    return sets;
}

std::string WarningOfOtherFiles(const std::string& directory, const ResultFormats& written)
{
    ResultFormats there;
    std::vector<std::string> files;
    for (const ResultFormat format : AllResultFormats) {
        if (written.contains(format)) {
            continue;
        }
        for (const std::string& file : FilesOf(format)) {
            std::error_code ignored;
            const std::filesystem::path path = platform::PathOf(directory) / platform::PathOf(file);
            if (std::filesystem::is_regular_file(path, ignored)) {
                there.insert(format);
                files.push_back(path.string());
            }
        }
    }
    if (files.empty()) {
        return "";
    }
    ResultFormats both = written;
    both.insert(there.begin(), there.end());
    const std::size_t others = files.size() - 1;
    return files.front() + ": warning: this file" +
           (others == 0 ? "" : " and " + std::to_string(others) + (others == 1 ? " other" : " others") + " beside it") +
           " (" + NamesOf(there) + ") " + (others == 0 ? "is" : "are") +
           " of an earlier run, not of this one\n"
           "  expected: only files of one run in a directory; this one writes " +
           NamesOf(written) +
           "\n"
           "  to do:    remove what is not needed, or write it too with --format " +
           NamesOf(both);
}

} // namespace tarnvexo
