#include "export/CsvTables.h"

#include "elements/ShellNodeStress.h"
#include "output/RangeWriter.h"

#include <charconv>
#include <cstddef>
#include <string_view>

namespace tarnvexo {

namespace {

constexpr int SignificantDigits = 9;

// Records of a range: some hundred kilobytes of text.
constexpr std::size_t NodesPerRange = 4096;
constexpr std::size_t ElementsPerRange = 256;
constexpr std::size_t BeamsPerRange = 4;

constexpr std::string_view LineEnd = "\r\n";

constexpr const char* DofNames[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};

void AddNumber(TextWriter& text, double value)
{
    char digits[32];
    const auto end =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, SignificantDigits).ptr;
    text.Text(",").Text({digits, static_cast<std::size_t>(end - digits)});
}

void AddNumbers(TextWriter& text, const double* values, int count)
{
    for (int i = 0; i < count; ++i) { AddNumber(text, values[i]); }
}

void AddStress(TextWriter& text, const double stress[StressCount])
{
    AddNumbers(text, stress, StressCount);
    AddNumber(text, EquivalentStress(stress));
}

// Behind "element,node" of a corner: face, averaged stresses, own stresses. Two lines with the same beginning.
template <class Begin>
void AddFaces(TextWriter& text, Begin begin, const double* averagedPositive, const double* ownPositive,
              const double* averagedNegative, const double* ownNegative)
{
    begin();
    text.Text(",positive");
    AddStress(text, averagedPositive);
    AddStress(text, ownPositive);
    text.Text(LineEnd);
    begin();
    text.Text(",negative");
    AddStress(text, averagedNegative);
    AddStress(text, ownNegative);
    text.Text(LineEnd);
}

constexpr std::string_view StressColumns = "face,SX,SY,SZ,TXY,TXZ,TYZ,SE,own_SX,own_SY,own_SZ,own_TXY,own_TXZ,own_TYZ,"
                                           "own_SE\r\n";
constexpr std::string_view NodeColumns = "x,y,z,dx,dy,dz,rx,ry,rz\r\n";

// One table; the header is firstColumns and columns together.
FileResult WriteTable(const std::string& path, std::string_view firstColumns, std::string_view columns,
                      std::size_t records, std::size_t recordsPerRange, const RangeText& format)
{
    TextFile file;
    if (!file.Open(path, FileMode::Binary)) {
        return file.Close();
    }
    file.Text().Text(firstColumns).Text(columns);
    WriteRanges(file, records, recordsPerRange, format);
    return file.Close();
}

template <class Elements, class Connectivity>
FileResult WriteShells(const Elements& elements, const Connectivity& connectivity, const std::string& path)
{
    return WriteTable(path, "element,node,", StressColumns, elements.size(), ElementsPerRange,
                      [&](TextWriter& text, std::size_t begin, std::size_t end) {
                          for (std::size_t e = begin; e < end; ++e) {
                              const auto& element = elements[e];
                              for (std::size_t i = 0; i < connectivity[e].size(); ++i) {
                                  AddFaces(
                                      text,
                                      [&] {
                                          text.Integer(static_cast<long long>(e)).Text(",");
                                          text.Integer(connectivity[e][i]);
                                      },
                                      element.averagedPositiveFace[i], element.positiveFace[i],
                                      element.averagedNegativeFace[i], element.negativeFace[i]);
                              }
                          }
                      });
}

void AddSectionWalls(TextWriter& text, std::size_t beam, const BeamSectionModel& section)
{
    for (std::size_t p = 0; p < section.patches.size(); ++p) {
        const SectionPatch& patch = section.patches[p];
        for (int i = 0; i < QuadNodeCount; ++i) {
            const SectionNodeStress& averaged = section.averaged[static_cast<std::size_t>(patch.nodes[i])];
            AddFaces(
                text,
                [&] {
                    text.Integer(static_cast<long long>(beam)).Text(",");
                    text.Integer(static_cast<long long>(p)).Text(",").Integer(patch.nodes[i]);
                },
                averaged.positiveFace, patch.positiveFace[i], averaged.negativeFace, patch.negativeFace[i]);
        }
    }
}

void AddNode(TextWriter& text, std::size_t node, const Vector3& place, const double* displacement)
{
    text.Integer(static_cast<long long>(node));
    AddNumbers(text, place.data(), 3);
    AddNumbers(text, displacement, DofsPerNode);
    text.Text(LineEnd);
}

} // namespace

FileResult WriteCsvNodes(const ModelStore& model, const std::string& path)
{
    return WriteTable(path, "node,", NodeColumns, model.NodeCoordinates.size(), NodesPerRange,
                      [&](TextWriter& text, std::size_t begin, std::size_t end) {
                          for (std::size_t n = begin; n < end; ++n) {
                              AddNode(text, n, model.NodeCoordinates[n], &model.GlobalDisplacement[DofsPerNode * n]);
                          }
                      });
}

FileResult WriteCsvQuads(const ModelStore& model, const std::string& path)
{
    return WriteShells(model.QuadElements, model.QuadConnectivity, path);
}

FileResult WriteCsvTris(const ModelStore& model, const std::string& path)
{
    return WriteShells(model.TriElements, model.TriConnectivity, path);
}

FileResult WriteCsvBeamNodes(const ModelStore& model, const std::string& path)
{
    return WriteTable(path, "beam,section_node,", NodeColumns, model.BeamStressRecords.size(), BeamsPerRange,
                      [&](TextWriter& text, std::size_t begin, std::size_t end) {
                          for (std::size_t b = begin; b < end; ++b) {
                              const BeamSectionModel& section = model.BeamStressRecords[b];
                              for (std::size_t n = 0; n < section.nodes.size(); ++n) {
                                  text.Integer(static_cast<long long>(b)).Text(",");
                                  AddNode(text, n, section.nodes[n], &section.displacements[DofsPerNode * n]);
                              }
                          }
                      });
}

FileResult WriteCsvBeams(const ModelStore& model, const std::string& path)
{
    return WriteTable(path, "beam,patch,section_node,", StressColumns, model.BeamStressRecords.size(), BeamsPerRange,
                      [&](TextWriter& text, std::size_t begin, std::size_t end) {
                          for (std::size_t b = begin; b < end; ++b) {
                              AddSectionWalls(text, b, model.BeamStressRecords[b]);
                          }
                      });
}

FileResult WriteCsvReactions(const std::vector<CsvReaction>& reactions, const std::string& path)
{
    return WriteTable(path, "node,direction,kind,", "reaction\r\n", reactions.size(), NodesPerRange,
                      [&](TextWriter& text, std::size_t begin, std::size_t end) {
                          for (std::size_t r = begin; r < end; ++r) {
                              const CsvReaction& reaction = reactions[r];
                              text.Integer(reaction.node).Text(",").Text(DofNames[reaction.dof]);
                              text.Text(reaction.isHold ? ",hold" : ",support");
                              AddNumber(text, reaction.value);
                              text.Text(LineEnd);
                          }
                      });
}

} // namespace tarnvexo
