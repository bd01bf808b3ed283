#include "output/NodalDisplacementFile.h"

#include "output/RangeWriter.h"

#include <cstddef>

namespace tarnvexo {

FileResult WriteNodalDisplacements(const ModelStore& model, const std::string& path)
{
    constexpr int width = 15;
    TextFile file;
    if (!file.Open(path)) {
        return file.Close();
    }
    TextWriter& text = file.Text();
    for (const char* label : {"Node", "dx", "dy", "dz", "rx", "ry", "rz"}) { text.Text(label, width); }
    text.EndLine();
    constexpr std::size_t nodesPerRange = 4096;
    WriteRanges(file, std::size_t(model.NPOIN), nodesPerRange,
                [&](TextWriter& lines, std::size_t begin, std::size_t end) {
                    for (std::size_t n = begin; n < end; ++n) {
                        lines.Integer(static_cast<long long>(n), width - 1).Text(":");
                        for (int k = 0; k < DofsPerNode; ++k) {
                            lines.Number(model.GlobalDisplacement[DofsPerNode * n + k], width);
                        }
                        lines.EndLine();
                    }
                });
    return file.Close();
}

} // namespace tarnvexo
