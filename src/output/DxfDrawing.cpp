#include "output/DxfDrawing.h"

#include "output/RangeWriter.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

void WriteLine(TextWriter& text, const Vector3& from, const Vector3& to)
{
    const char* const fromCodes[3] = {" 10", " 20", " 30"};
    const char* const toCodes[3] = {" 11", " 21", " 31"};
    text.Text("LINE\n  8\n0\n");
    for (int i = 0; i < 3; ++i) { text.Text(fromCodes[i]).EndLine().Number(from[i]).EndLine(); }
    for (int i = 0; i < 3; ++i) { text.Text(toCodes[i]).EndLine().Number(to[i]).EndLine(); }
    text.Text("  0\n");
}

constexpr std::size_t ElementsPerRange = 1024;

// Every edge of the elements; position(node) gives the point to draw.
template <class Connectivity, class Position>
void WriteEdges(TextFile& file, const Connectivity& connectivity, Position position)
{
    WriteRanges(file, connectivity.size(), ElementsPerRange, [&](TextWriter& text, std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            const auto& nodes = connectivity[e];
            for (std::size_t i = 0; i < nodes.size(); ++i) {
                WriteLine(text, position(nodes[i]), position(nodes[(i + 1) % nodes.size()]));
            }
        }
    });
}

template <class Position> FileResult WriteDrawing(const ModelStore& model, const std::string& path, Position position)
{
    TextFile file;
    if (!file.Open(path)) {
        return file.Close();
    }
    file.Text().Text("  0\nSECTION\n  2\nENTITIES\n  0\n");
    WriteEdges(file, model.QuadConnectivity, position);
    WriteEdges(file, model.TriConnectivity, position);
    file.Text().Text("ENDSEC\n  0\nEOF\n");
    return file.Close();
}

// Largest side of the box around all nodes.
double LargestExtent(const ModelStore& model)
{
    Vector3 lowest = model.NodeCoordinates[0];
    Vector3 highest = lowest;
    for (const Vector3& node : model.NodeCoordinates) {
        for (int i = 0; i < 3; ++i) {
            lowest[i] = std::min(lowest[i], node[i]);
            highest[i] = std::max(highest[i], node[i]);
        }
    }
    return std::max({highest[0] - lowest[0], highest[1] - lowest[1], highest[2] - lowest[2]});
}

const double* Translation(const ModelStore& model, int node)
{
    return &model.GlobalDisplacement[std::size_t(DofsPerNode) * node];
}

} // namespace

double DeformationScale(const ModelStore& model)
{
    double largest = std::fabs(Translation(model, 0)[DX]);
    for (int n = 0; n < model.NPOIN; ++n) {
        for (int k : {DX, DY, DZ}) { largest = std::max(largest, std::fabs(Translation(model, n)[k])); }
    }
    return LargestExtent(model) / largest * 0.05;
}

FileResult WriteStructureDrawing(const ModelStore& model, const std::string& path)
{
    return WriteDrawing(model, path, [&](int node) { return model.NodeCoordinates[node]; });
}

FileResult WriteDeformedDrawing(const ModelStore& model, const std::string& path)
{
    return WriteDeformedDrawing(model, model.NPOIN > 0 ? DeformationScale(model) : 0.0, path);
}

FileResult WriteDeformedDrawing(const ModelStore& model, double scale, const std::string& path)
{
    return WriteDrawing(model, path, [&](int node) {
        const double* d = Translation(model, node);
        return model.NodeCoordinates[node] + Vector3{scale * d[DX], scale * d[DY], scale * d[DZ]};
    });
}

} // namespace tarnvexo
