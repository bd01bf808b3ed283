#include "export/GltfResults.h"

#include "core/Parallel.h"
#include "export/Viridis.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <ostream>
#include <streambuf>
#include <string>
#include <utility>
#include <vector>

#define TINYGLTF_IMPLEMENTATION
#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_EXTERNAL_IMAGE
#include <tiny_gltf.h>

namespace tarnvexo {

namespace {

static_assert(std::endian::native == std::endian::little, "glTF is little-endian");

constexpr std::size_t PointsPerRange = 4096;
constexpr double HalfDiagonal = 0.70710678118654752440; // cos 45°, sin 45°

using Point = std::array<float, 3>;
using Colour = std::array<std::uint16_t, 4>;
using Triangle = std::array<std::uint32_t, 3>;

// One mesh as glTF has it. Places are relative to the middle of the model: single precision then has seven digits of
// the model's size, however far away its origin is.
struct Surface {
    const char* name = "";
    std::vector<Point> places;
    std::vector<Point> deformation; // displacement times scale
    std::vector<float> stresses;    // equivalent, of the worse face
    std::vector<Triangle> triangles;
};

Point SinglePoint(const Vector3& v)
{
    return {static_cast<float>(v[0]), static_cast<float>(v[1]), static_cast<float>(v[2])};
}

// A quadrilateral as two triangles with its own order of nodes.
void AddQuad(const std::array<int, QuadNodeCount>& points, std::vector<Triangle>& triangles)
{
    const auto at = [&](std::size_t i) { return static_cast<std::uint32_t>(points[i]); };
    triangles.push_back({at(0), at(1), at(2)});
    triangles.push_back({at(0), at(2), at(3)});
}

// placeOf, displacementOf and stressesOf of point i.
template <class PlaceOf, class DisplacementOf, class StressesOf>
void SetPoints(Surface& surface, std::size_t count, const Vector3& middle, double scale, PlaceOf placeOf,
               DisplacementOf displacementOf, StressesOf stressesOf)
{
    surface.places.resize(count);
    surface.deformation.resize(count);
    surface.stresses.resize(count);
    ParallelFor(count, PointsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) {
            const double* d = displacementOf(i);
            surface.places[i] = SinglePoint(placeOf(i) - middle);
            surface.deformation[i] = SinglePoint(scale * Vector3{d[DX], d[DY], d[DZ]});
            surface.stresses[i] = static_cast<float>(LargerEquivalentStress(stressesOf(i)));
        }
    });
}

Surface ShellSurface(const ModelStore& model, const ShellPoints& shells, const Vector3& middle, double scale)
{
    Surface surface;
    surface.name = "shells";
    SetPoints(
        surface, shells.points.size(), middle, scale,
        [&](std::size_t i) { return model.NodeCoordinates[shells.points[i].node]; },
        [&](std::size_t i) { return &model.GlobalDisplacement[DofsPerNode * shells.points[i].node]; },
        [&](std::size_t i) { return shells.points[i].averaged; });
    surface.triangles.reserve(2 * shells.quads.size() + shells.triangles.size());
    for (const auto& quad : shells.quads) { AddQuad(quad, surface.triangles); }
    for (const auto& triangle : shells.triangles) {
        surface.triangles.push_back({static_cast<std::uint32_t>(triangle[0]), static_cast<std::uint32_t>(triangle[1]),
                                     static_cast<std::uint32_t>(triangle[2])});
    }
    return surface;
}

Surface WallSurface(const ModelStore& model, const SectionPoints& sections, const Vector3& middle, double scale)
{
    Surface surface;
    surface.name = "beams";
    SetPoints(
        surface, sections.points.size(), middle, scale,
        [&](std::size_t i) { return PlaceOf(model, sections.points[i]); },
        [&](std::size_t i) { return DisplacementOf(model, sections.points[i]); },
        [&](std::size_t i) { return StressesAt(model, sections.points[i]); });
    surface.triangles.reserve(2 * sections.walls.size());
    for (const SectionWall& wall : sections.walls) { AddQuad(wall.points, surface.triangles); }
    return surface;
}

// Smallest and largest stress of all surfaces; what is not a number does not count.
struct Legend {
    float least = std::numeric_limits<float>::infinity();
    float largest = -std::numeric_limits<float>::infinity();

    explicit Legend(const std::vector<Surface>& surfaces)
    {
        for (const Surface& surface : surfaces) {
            for (const float stress : surface.stresses) {
                if (std::isfinite(stress)) {
                    least = std::min(least, stress);
                    largest = std::max(largest, stress);
                }
            }
        }
        if (largest < least) {
            least = largest = 0.0F;
        }
    }

    // White where the stress is not a number.
    Colour ColourOf(float stress) const
    {
        constexpr double full = 65535.0;
        Colour colour = {65535, 65535, 65535, 65535};
        if (std::isfinite(stress)) {
            const double range = static_cast<double>(largest) - least;
            const auto viridis = ViridisColour(range > 0.0 ? (static_cast<double>(stress) - least) / range : 0.0);
            for (std::size_t k = 0; k < viridis.size(); ++k) {
                colour[k] = static_cast<std::uint16_t>(std::lround(full * LinearIntensity(viridis[k])));
            }
        }
        return colour;
    }
};

std::vector<Colour> ColoursOf(const Surface& surface, const Legend& legend)
{
    std::vector<Colour> colours(surface.stresses.size());
    ParallelFor(colours.size(), PointsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) { colours[i] = legend.ColourOf(surface.stresses[i]); }
    });
    return colours;
}

// ---- the file's arrays

// Appends an array to the buffer and returns the number of its accessor. Every record is a multiple of four bytes long,
// as glTF wants it.
template <class Record>
int AddArray(tinygltf::Model& file, const std::vector<Record>& records, int target, int componentType, int type)
{
    static_assert(sizeof(Record) % 4 == 0);
    std::vector<unsigned char>& bytes = file.buffers[0].data;
    const std::size_t offset = bytes.size(), size = records.size() * sizeof(Record);
    bytes.resize(offset + size);
    std::memcpy(bytes.data() + offset, records.data(), size);

    tinygltf::BufferView view;
    view.buffer = 0;
    view.byteOffset = offset;
    view.byteLength = size;
    view.target = target;
    file.bufferViews.push_back(view);

    tinygltf::Accessor accessor;
    accessor.bufferView = static_cast<int>(file.bufferViews.size()) - 1;
    accessor.componentType = componentType;
    accessor.type = type;
    accessor.count = type == TINYGLTF_TYPE_SCALAR ? size / 4 : records.size();
    file.accessors.push_back(accessor);
    return static_cast<int>(file.accessors.size()) - 1;
}

// glTF wants the bounds of places and of their changes.
int AddPoints(tinygltf::Model& file, const std::vector<Point>& points)
{
    const int number =
        AddArray(file, points, TINYGLTF_TARGET_ARRAY_BUFFER, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_VEC3);
    tinygltf::Accessor& accessor = file.accessors.back();
    for (std::size_t k = 0; k < 3; ++k) {
        const auto [least, largest] = std::minmax_element(points.begin(), points.end(),
                                                          [&](const Point& a, const Point& b) { return a[k] < b[k]; });
        accessor.minValues.push_back((*least)[k]);
        accessor.maxValues.push_back((*largest)[k]);
    }
    return number;
}

using Extras = tinygltf::Value::Object;

void AddSurface(tinygltf::Model& file, const Surface& surface, const Legend& legend, const Vector3& middle)
{
    tinygltf::Primitive primitive;
    primitive.mode = TINYGLTF_MODE_TRIANGLES;
    primitive.material = 0;
    primitive.attributes["POSITION"] = AddPoints(file, surface.places);
    primitive.attributes["COLOR_0"] = AddArray(file, ColoursOf(surface, legend), TINYGLTF_TARGET_ARRAY_BUFFER,
                                               TINYGLTF_COMPONENT_TYPE_UNSIGNED_SHORT, TINYGLTF_TYPE_VEC4);
    file.accessors.back().normalized = true;
    primitive.targets.push_back({{"POSITION", AddPoints(file, surface.deformation)}});
    primitive.indices = AddArray(file, surface.triangles, TINYGLTF_TARGET_ELEMENT_ARRAY_BUFFER,
                                 TINYGLTF_COMPONENT_TYPE_UNSIGNED_INT, TINYGLTF_TYPE_SCALAR);

    tinygltf::Mesh mesh;
    mesh.name = surface.name;
    mesh.primitives.push_back(primitive);
    mesh.weights = {0.0};
    const tinygltf::Value::Array targetNames = {tinygltf::Value(std::string("deformation"))};
    mesh.extras = tinygltf::Value(Extras{{"targetNames", tinygltf::Value(targetNames)}});
    file.meshes.push_back(mesh);

    tinygltf::Node node;
    node.name = surface.name;
    node.mesh = static_cast<int>(file.meshes.size()) - 1;
    node.translation = {middle[0], middle[1], middle[2]};
    file.nodes.push_back(node);
    file.nodes[0].children.push_back(static_cast<int>(file.nodes.size()) - 1);
}

// Out to the deformed shape and back, for viewers that have no slider for morph targets.
void AddMotion(tinygltf::Model& file)
{
    tinygltf::Animation motion;
    motion.name = "deformation";
    const std::vector<float> seconds = {0.0F, 1.0F, 2.0F}, weights = {0.0F, 1.0F, 0.0F};
    constexpr int noTarget = 0;
    tinygltf::AnimationSampler sampler;
    sampler.input = AddArray(file, seconds, noTarget, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_SCALAR);
    file.accessors.back().minValues = {seconds.front()};
    file.accessors.back().maxValues = {seconds.back()};
    sampler.output = AddArray(file, weights, noTarget, TINYGLTF_COMPONENT_TYPE_FLOAT, TINYGLTF_TYPE_SCALAR);
    sampler.interpolation = "LINEAR";
    motion.samplers.push_back(sampler);
    for (const int node : file.nodes[0].children) {
        tinygltf::AnimationChannel channel;
        channel.sampler = 0;
        channel.target_node = node;
        channel.target_path = "weights";
        motion.channels.push_back(channel);
    }
    file.animations.push_back(motion);
}

// Both faces are drawn; without normals viewers shade every triangle flat.
tinygltf::Material PaintOfVertices()
{
    tinygltf::Material material;
    material.name = "equivalent stress";
    material.doubleSided = true;
    material.pbrMetallicRoughness.metallicFactor = 0.0;
    material.pbrMetallicRoughness.roughnessFactor = 1.0;
    return material;
}

Vector3 MiddleOfNodes(const ModelStore& model)
{
    if (model.NodeCoordinates.empty()) {
        return {};
    }
    Vector3 lowest = model.NodeCoordinates[0], highest = lowest;
    for (const Vector3& node : model.NodeCoordinates) {
        for (std::size_t i = 0; i < 3; ++i) {
            lowest[i] = std::min(lowest[i], node[i]);
            highest[i] = std::max(highest[i], node[i]);
        }
    }
    return 0.5 * (lowest + highest);
}

tinygltf::Value ExtrasOf(const Legend& legend, double scale)
{
    const auto text = [](const char* value) { return tinygltf::Value(std::string(value)); };
    return tinygltf::Value(
        Extras{{"legend", tinygltf::Value(Extras{{"quantity", text("equivalent stress, larger of the two faces")},
                                                 {"colour_map", text("viridis")},
                                                 {"least", tinygltf::Value(static_cast<double>(legend.least))},
                                                 {"largest", tinygltf::Value(static_cast<double>(legend.largest))}})},
               {"deformation_scale", tinygltf::Value(scale)}});
}

// ---- writing

// A stream into a result file.
class FileStream : public std::streambuf {
public:
    explicit FileStream(TextFile& destination) : file(destination) {}

private:
    std::streamsize xsputn(const char* characters, std::streamsize count) override
    {
        file.Text().Text({characters, static_cast<std::size_t>(count)});
        return count;
    }

    int_type overflow(int_type character) override
    {
        const char one = traits_type::to_char_type(character);
        xsputn(&one, 1);
        return character;
    }

    TextFile& file;
};

// Bytes of the arrays of a surface.
double SizeOf(const Surface& surface)
{
    return static_cast<double>(surface.places.size()) * (2 * sizeof(Point) + sizeof(Colour)) +
           static_cast<double>(surface.triangles.size()) * sizeof(Triangle);
}

} // namespace

FileResult WriteGltf(const ModelStore& model, const ShellPoints& shells, const SectionPoints& sections,
                     double deformationScale, const std::string& path)
{
    const Vector3 middle = MiddleOfNodes(model);
    std::vector<Surface> surfaces;
    if (!shells.points.empty()) { // glTF has no empty arrays
        surfaces.push_back(ShellSurface(model, shells, middle, deformationScale));
    }
    if (!sections.points.empty()) {
        surfaces.push_back(WallSurface(model, sections, middle, deformationScale));
    }
    double size = 0.0;
    for (const Surface& surface : surfaces) { size += SizeOf(surface); }
    constexpr double most = 4e9; // lengths have 32 bits; some room for the text in front
    if (size > most) {
        return {FileOutcome::NotCreated, 0, path, "a glTF file cannot be longer than 4 GB"};
    }

    TextFile output;
    if (!output.Open(path, FileMode::Binary)) {
        return output.Close();
    }
    const Legend legend(surfaces);
    tinygltf::Model file;
    file.asset.version = "2.0";
    file.asset.generator = "tarnvexo";
    tinygltf::Node root; // glTF has y upwards, models have z
    root.name = "model";
    root.rotation = {-HalfDiagonal, 0.0, 0.0, HalfDiagonal};
    file.nodes.push_back(root);
    tinygltf::Scene scene;
    scene.name = "results";
    scene.nodes = {0};
    scene.extras = ExtrasOf(legend, deformationScale);
    file.scenes.push_back(scene);
    file.defaultScene = 0;
    if (!surfaces.empty()) {
        file.buffers.emplace_back().data.reserve(static_cast<std::size_t>(size) + 64);
        file.materials.push_back(PaintOfVertices());
        for (const Surface& surface : surfaces) { AddSurface(file, surface, legend, middle); }
        AddMotion(file);
    }

    FileStream stream(output);
    std::ostream text(&stream);
    tinygltf::TinyGLTF().WriteGltfSceneToStream(&file, text, false, true);
    return output.Close();
}

} // namespace tarnvexo
