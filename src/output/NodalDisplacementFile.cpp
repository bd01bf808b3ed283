#include "output/NodalDisplacementFile.h"

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
    for (int n = 0; n < model.NPOIN; ++n) {
        text.Integer(n, width - 1).Text(":");
        for (int k = 0; k < DofsPerNode; ++k) {
            text.Number(model.GlobalDisplacement[std::size_t(DofsPerNode) * n + k], width);
        }
        text.EndLine();
    }
    return file.Close();
}

} // namespace tarnvexo
