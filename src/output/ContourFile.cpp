#include "output/ContourFile.h"

#include "elements/ShellNodeStress.h"

#include <cstddef>

namespace tarnvexo {

namespace {

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

// "NPOIN=", coordinates, displacements: the same for the model and for a beam's section mesh.
void WriteNodes(TextWriter& text, const std::vector<Vector3>& nodes, const std::vector<double>& displacements)
{
    text.Text("NPOIN=").Integer(static_cast<long long>(nodes.size())).EndLine();
    for (const Vector3& node : nodes) {
        WriteNumbers(text, node.data(), 3);
        text.EndLine();
    }
    for (std::size_t n = 0; n < nodes.size(); ++n) {
        WriteNumbers(text, &displacements[DofsPerNode * n], DofsPerNode);
        text.EndLine();
    }
}

template <class Elements, class Connectivity>
void WriteShells(TextWriter& text, const char* key, const Elements& elements, const Connectivity& connectivity)
{
    text.Text(key).Integer(static_cast<long long>(elements.size())).EndLine();
    for (std::size_t e = 0; e < elements.size(); ++e) {
        WriteNodeNumbers(text, connectivity[e]);
        for (std::size_t i = 0; i < connectivity[e].size(); ++i) {
            WriteStressLine(text, elements[e].averagedPositiveFace[i]);
            WriteStressLine(text, elements[e].averagedNegativeFace[i]);
        }
    }
}

void WriteBeamEnd(TextWriter& text, const char* key, const Vector3& point)
{
    text.Text(key).Text("(");
    WriteNumbers(text, point.data(), 3);
    text.Text(")").EndLine();
}

void WriteSectionModel(TextWriter& text, const BeamSectionModel& section)
{
    WriteNodes(text, section.nodes, section.displacements);
    text.Text("NELEM=").Integer(static_cast<long long>(section.patches.size())).EndLine();
    for (const SectionPatch& patch : section.patches) {
        WriteNodeNumbers(text, patch.nodes);
        for (int node : patch.nodes) {
            WriteStressLine(text, section.averaged[node].positiveFace);
            WriteStressLine(text, section.averaged[node].negativeFace);
        }
    }
}

} // namespace

FileResult WriteContourFile(const ModelStore& model, const std::string& path)
{
    TextFile file;
    if (!file.Open(path)) {
        return file.Close();
    }
    TextWriter& text = file.Text();
    WriteNodes(text, model.NodeCoordinates, model.GlobalDisplacement);
    WriteShells(text, "NELEM_S_4ND=", model.QuadElements, model.QuadConnectivity);
    WriteShells(text, "NELEM_S_3ND=", model.TriElements, model.TriConnectivity);
    text.Text("NELEM_B=").Integer(model.NELEM_B).EndLine();
    for (int b = 0; b < model.NELEM_B; ++b) {
        text.Text("BEI=").Integer(b).EndLine();
        WriteBeamEnd(text, "SND", model.NodeCoordinates[model.BeamConnectivity[b][0]]);
        WriteBeamEnd(text, "END", model.NodeCoordinates[model.BeamConnectivity[b][1]]);
        WriteSectionModel(text, model.BeamStressRecords[b]);
    }
    return file.Close();
}

} // namespace tarnvexo
