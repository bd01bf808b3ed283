#include "output/ShellStressFiles.h"

#include "elements/ShellNodeStress.h"
#include "output/RangeWriter.h"

#include <cstddef>

namespace tarnvexo {

namespace {

constexpr int Width = 15;
constexpr std::size_t ElementsPerRange = 256;

void WriteStressLine(TextWriter& text, int node, const double stress[StressCount])
{
    text.Integer(node, Width - 1).Text(":");
    for (int k = 0; k < StressCount; ++k) { text.Number(stress[k], Width); }
    text.Number(EquivalentStress(stress), Width).EndLine();
}

// faces(element) gives the two sets to write, as a pair of pointers to [node][component].
template <class Elements, class Connectivity, class Faces>
void WriteElements(TextFile& file, const char* title, const Elements& elements, const Connectivity& connectivity,
                   Faces faces)
{
    WriteRanges(file, elements.size(), ElementsPerRange, [&](TextWriter& text, std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            text.Text(title).Integer(static_cast<long long>(e)).EndLine();
            for (const char* label : {"Node", "SX", "SY", "SZ", "TXY", "TXZ", "TYZ", "SE"}) { text.Text(label, Width); }
            text.EndLine();
            const auto [positive, negative] = faces(elements[e]);
            for (std::size_t i = 0; i < connectivity[e].size(); ++i) {
                WriteStressLine(text, connectivity[e][i], positive[i]);
                WriteStressLine(text, connectivity[e][i], negative[i]);
            }
        }
    });
}

template <class Faces>
FileResult WriteStressFile(const ModelStore& model, const std::string& path, const char* quadTitle,
                           const char* triTitle, Faces faces)
{
    TextFile file;
    if (!file.Open(path)) {
        return file.Close();
    }
    WriteElements(file, quadTitle, model.QuadElements, model.QuadConnectivity, faces);
    WriteElements(file, triTitle, model.TriElements, model.TriConnectivity, faces);
    return file.Close();
}

} // namespace

FileResult WriteShellStresses(const ModelStore& model, const std::string& path)
{
    return WriteStressFile(model, path, "Four-nodes shell element:", "Three-nodes shell element:",
                           [](const auto& element) { return std::pair(element.positiveFace, element.negativeFace); });
}

FileResult WriteAveragedShellStresses(const ModelStore& model, const std::string& path)
{
    return WriteStressFile(model, path, "Four-nodes element:", "Three-nodes element:", [](const auto& element) {
        return std::pair(element.averagedPositiveFace, element.averagedNegativeFace);
    });
}

} // namespace tarnvexo
