#include "output/ContourFile.h"

#include "elements/ShellNodeStress.h"
#include "output/RangeWriter.h"

#include <cstddef>

namespace tarnvexo {

namespace {

// Records of a range: some hundred kilobytes of text.
constexpr std::size_t NodesPerRange = 4096;
constexpr std::size_t ElementsPerRange = 512;
constexpr std::size_t BeamsPerRange = 4;

void WriteNumbers(TextWriter& text, const double* values, int count)
{
    text.Number(values[0]);
    for (int i = 1; i < count; ++i) { text.Text(",").Number(values[i]); }
}

template <class Nodes> void WriteNodeNumbers(TextWriter& text, const Nodes& nodes)
{
    const char* separator = "";
    for (int node : nodes) {
        text.Text(separator).Integer(node);
        separator = ",";
    }
    text.EndLine();
}

void WriteStressLine(TextWriter& text, const double stress[StressCount])
{
    WriteNumbers(text, stress, StressCount);
    text.Text(",").Number(EquivalentStress(stress)).EndLine();
}

void WriteCount(TextWriter& text, const char* key, std::size_t count)
{
    text.Text(key).Integer(static_cast<long long>(count)).EndLine();
}

void WriteCoordinates(TextWriter& text, const std::vector<Vector3>& nodes, std::size_t begin, std::size_t end)
{
    for (std::size_t n = begin; n < end; ++n) {
        WriteNumbers(text, nodes[n].data(), 3);
        text.EndLine();
    }
}

void WriteDisplacements(TextWriter& text, const std::vector<double>& displacements, std::size_t begin, std::size_t end)
{
    for (std::size_t n = begin; n < end; ++n) {
        WriteNumbers(text, &displacements[DofsPerNode * n], DofsPerNode);
        text.EndLine();
    }
}

void WriteNodes(TextFile& file, const ModelStore& model)
{
    const std::size_t count = model.NodeCoordinates.size();
    WriteCount(file.Text(), "NPOIN=", count);
    WriteRanges(file, count, NodesPerRange, [&](TextWriter& text, std::size_t begin, std::size_t end) {
        WriteCoordinates(text, model.NodeCoordinates, begin, end);
    });
    WriteRanges(file, count, NodesPerRange, [&](TextWriter& text, std::size_t begin, std::size_t end) {
        WriteDisplacements(text, model.GlobalDisplacement, begin, end);
    });
}

template <class Elements, class Connectivity>
void WriteShells(TextFile& file, const char* key, const Elements& elements, const Connectivity& connectivity)
{
    WriteCount(file.Text(), key, elements.size());
    WriteRanges(file, elements.size(), ElementsPerRange, [&](TextWriter& text, std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            WriteNodeNumbers(text, connectivity[e]);
            for (std::size_t i = 0; i < connectivity[e].size(); ++i) {
                WriteStressLine(text, elements[e].averagedPositiveFace[i]);
                WriteStressLine(text, elements[e].averagedNegativeFace[i]);
            }
        }
    });
}

void WriteBeamEnd(TextWriter& text, const char* key, const Vector3& point)
{
    text.Text(key).Text("(");
    WriteNumbers(text, point.data(), 3);
    text.Text(")").EndLine();
}

void WriteSectionModel(TextWriter& text, const BeamSectionModel& section)
{
    WriteCount(text, "NPOIN=", section.nodes.size());
    WriteCoordinates(text, section.nodes, 0, section.nodes.size());
    WriteDisplacements(text, section.displacements, 0, section.nodes.size());
    WriteCount(text, "NELEM=", section.patches.size());
    for (const SectionPatch& patch : section.patches) {
        WriteNodeNumbers(text, patch.nodes);
        for (int node : patch.nodes) {
            WriteStressLine(text, section.averaged[node].positiveFace);
            WriteStressLine(text, section.averaged[node].negativeFace);
        }
    }
}

void WriteBeams(TextFile& file, const ModelStore& model)
{
    const auto count = std::size_t(model.NELEM_B);
    WriteCount(file.Text(), "NELEM_B=", count);
    WriteRanges(file, count, BeamsPerRange, [&](TextWriter& text, std::size_t begin, std::size_t end) {
        for (std::size_t b = begin; b < end; ++b) {
            text.Text("BEI=").Integer(static_cast<long long>(b)).EndLine();
            WriteBeamEnd(text, "SND", model.NodeCoordinates[model.BeamConnectivity[b][0]]);
            WriteBeamEnd(text, "END", model.NodeCoordinates[model.BeamConnectivity[b][1]]);
            WriteSectionModel(text, model.BeamStressRecords[b]);
        }
    });
}

} // namespace

FileResult WriteContourFile(const ModelStore& model, const std::string& path)
{
    TextFile file;
    if (!file.Open(path)) {
        return file.Close();
    }
    WriteNodes(file, model);
    WriteShells(file, "NELEM_S_4ND=", model.QuadElements, model.QuadConnectivity);
    WriteShells(file, "NELEM_S_3ND=", model.TriElements, model.TriConnectivity);
    WriteBeams(file, model);
    return file.Close();
}

} // namespace tarnvexo
