#include "app/ResultWriting.h"

#include "export/CsvTables.h"
#include "export/GltfResults.h"
#include "export/VtuResults.h"
#include "output/ContourFile.h"
#include "output/DxfDrawing.h"
#include "output/NodalDisplacementFile.h"
#include "output/ShellStressFiles.h"

#include <cmath>
#include <vector>

namespace tarnvexo {

namespace {

using Path = const std::string&;

// Without displacements the structure is drawn as it stands.
double FiniteScale(const ModelStore& model)
{
    const double scale = DeformationScale(model);
    return std::isfinite(scale) ? scale : 1.0;
}

void WriteTexts(const ModelStore& model, double scale, ResultFiles& files)
{
    files.Write(NodalDisplacementFileName, [&](Path path) { return WriteNodalDisplacements(model, path); });
    files.Write(DeformationDrawingFileName, [&](Path path) { return WriteDeformedDrawing(model, scale, path); });
    files.Write(ShellStressFileName, [&](Path path) { return WriteShellStresses(model, path); });
    files.Write(AveragedShellStressFileName, [&](Path path) { return WriteAveragedShellStresses(model, path); });
    files.Write(ContourFileName, [&](Path path) { return WriteContourFile(model, path); });
}

void WriteVtus(const ModelStore& model, const ShellPoints& shells, const SectionPoints& sections, ResultFiles& files)
{
    files.Write(VtuBlocksFileName, [&](Path path) { return WriteVtuBlocks(path); });
    files.Write(VtuShellsFileName, [&](Path path) { return WriteVtuShells(model, shells, path); });
    files.Write(VtuWallsFileName, [&](Path path) { return WriteVtuWalls(model, sections, path); });
    files.Write(VtuBeamLinesFileName, [&](Path path) { return WriteVtuBeamLines(model, path); });
}

void WriteCsvs(const ModelStore& model, const std::vector<SupportReaction>& reactions, ResultFiles& files)
{
    std::vector<CsvReaction> rows;
    for (const SupportReaction& reaction : reactions) {
        rows.push_back({reaction.at.node, reaction.at.dof, reaction.value, reaction.hold});
    }
    files.Write(CsvNodesFileName, [&](Path path) { return WriteCsvNodes(model, path); });
    files.Write(CsvQuadsFileName, [&](Path path) { return WriteCsvQuads(model, path); });
    files.Write(CsvTrisFileName, [&](Path path) { return WriteCsvTris(model, path); });
    files.Write(CsvBeamNodesFileName, [&](Path path) { return WriteCsvBeamNodes(model, path); });
    files.Write(CsvBeamsFileName, [&](Path path) { return WriteCsvBeams(model, path); });
    files.Write(CsvReactionsFileName, [&](Path path) { return WriteCsvReactions(rows, path); });
}

// Of a format that has "\n" on every system.
FileResult WriteText(const std::string& text, Path path)
{
    TextFile file;
    if (file.Open(path, FileMode::Binary)) {
        file.Append(text);
    }
    return file.Close();
}

} // namespace

void WriteResults(const ModelStore& model, const SolveReport& report, const ResultFormats& formats,
                  const ReportWriter& jsonText, ResultFiles& files)
{
    const double scale = FiniteScale(model);
    if (formats.contains(ResultFormat::Text)) {
        WriteTexts(model, scale, files);
    }
    if (formats.contains(ResultFormat::Vtu) || formats.contains(ResultFormat::Gltf)) {
        const ShellPoints shells = FindShellPoints(model);
        const SectionPoints sections = FindSectionPoints(model);
        if (formats.contains(ResultFormat::Vtu)) {
            WriteVtus(model, shells, sections, files);
        }
        if (formats.contains(ResultFormat::Gltf)) {
            files.Write(GltfFileName, [&](Path path) { return WriteGltf(model, shells, sections, scale, path); });
        }
    }
    if (formats.contains(ResultFormat::Csv)) {
        WriteCsvs(model, report.reactions, files);
    }
    if (formats.contains(ResultFormat::Json)) {
        SolveReport soFar = report;
        soFar.files = files.Written();
        files.Write(JsonReportFileName, [&](Path path) { return WriteText(jsonText(soFar), path); });
    }
    files.Commit();
}

} // namespace tarnvexo
