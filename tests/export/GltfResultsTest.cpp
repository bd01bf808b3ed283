// results.glb read back with tinygltf, every accessor against its buffer and against the model.
#include "export/GltfResults.h"

#include "output/BeamSectionStress.h"
#include "output/DxfDrawing.h"
#include "output/ShellStressRecovery.h"
#include "support/SmallModels.h"
#include "support/SolveSteps.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_EXTERNAL_IMAGE
#include <tiny_gltf.h>

namespace tarnvexo {
namespace {

using namespace test;

// One element of every kind, solved, far from the origin.
ModelStore SolvedModel()
{
    ModelStore model = RunSolveSteps(OneOfEachKind(), SolverKind::Skyline).model;
    RecoverBeamSectionStresses(model);
    return model;
}

tinygltf::Model ReadBack(const ModelStore& model, double scale)
{
    const std::string bytes = WrittenBytes(GltfFileName, [&] {
        const FileResult result =
            WriteGltf(model, FindShellPoints(model), FindSectionPoints(model), scale, GltfFileName);
        EXPECT_EQ(result.outcome, FileOutcome::Written);
    });
    tinygltf::Model file;
    std::string error, warning;
    EXPECT_TRUE(tinygltf::TinyGLTF().LoadBinaryFromMemory(&file, &error, &warning,
                                                          reinterpret_cast<const unsigned char*>(bytes.data()),
                                                          static_cast<unsigned>(bytes.size())))
        << error;
    EXPECT_EQ(error + warning, "");
    return file;
}

std::size_t RecordSize(const tinygltf::Accessor& accessor)
{
    return static_cast<std::size_t>(tinygltf::GetComponentSizeInBytes(static_cast<unsigned>(accessor.componentType)) *
                                    tinygltf::GetNumComponentsInType(static_cast<unsigned>(accessor.type)));
}

const unsigned char* Record(const tinygltf::Model& file, int accessor, std::size_t i)
{
    const tinygltf::Accessor& array = file.accessors.at(static_cast<std::size_t>(accessor));
    const tinygltf::BufferView& view = file.bufferViews.at(static_cast<std::size_t>(array.bufferView));
    return &file.buffers.at(0).data.at(view.byteOffset + array.byteOffset + i * RecordSize(array));
}

std::array<float, 3> PointAt(const tinygltf::Model& file, int accessor, std::size_t i)
{
    std::array<float, 3> point;
    std::memcpy(point.data(), Record(file, accessor, i), sizeof point);
    return point;
}

std::uint32_t IndexAt(const tinygltf::Model& file, int accessor, std::size_t i)
{
    std::uint32_t index;
    std::memcpy(&index, Record(file, accessor, i), sizeof index);
    return index;
}

// The nodes of the file that show a mesh.
std::vector<tinygltf::Node> Surfaces(const tinygltf::Model& file)
{
    std::vector<tinygltf::Node> surfaces;
    for (const int child : file.nodes.at(0).children) { surfaces.push_back(file.nodes.at(std::size_t(child))); }
    return surfaces;
}

const tinygltf::Primitive& TrianglesOf(const tinygltf::Model& file, const tinygltf::Node& node)
{
    return file.meshes.at(static_cast<std::size_t>(node.mesh)).primitives.at(0);
}

TEST(GltfResults, HaveAccessorsWithinTheirBufferAndTrueBounds)
{
    const ModelStore model = SolvedModel();
    const tinygltf::Model file = ReadBack(model, DeformationScale(model));
    ASSERT_EQ(file.buffers.size(), 1u);
    std::size_t end = 0;
    for (const tinygltf::Accessor& accessor : file.accessors) {
        const tinygltf::BufferView& view = file.bufferViews.at(static_cast<std::size_t>(accessor.bufferView));
        EXPECT_EQ(view.byteOffset, end); // one behind the other, nothing between
        EXPECT_EQ(view.byteOffset % 4, 0u);
        EXPECT_EQ(accessor.count * RecordSize(accessor), view.byteLength);
        EXPECT_GT(accessor.count, 0u);
        end = view.byteOffset + view.byteLength;
    }
    EXPECT_EQ(end, file.buffers[0].data.size());
    for (std::size_t a = 0; a < file.accessors.size(); ++a) {
        if (file.accessors[a].type != TINYGLTF_TYPE_VEC3) {
            continue;
        }
        for (std::size_t k = 0; k < 3; ++k) {
            double least = INFINITY, largest = -INFINITY;
            for (std::size_t i = 0; i < file.accessors[a].count; ++i) {
                const double value = PointAt(file, static_cast<int>(a), i)[k];
                least = std::min(least, value);
                largest = std::max(largest, value);
            }
            EXPECT_EQ(file.accessors[a].minValues.at(k), least) << "accessor " << a;
            EXPECT_EQ(file.accessors[a].maxValues.at(k), largest) << "accessor " << a;
        }
    }
}

TEST(GltfResults, HaveIndicesOfTheirOwnPoints)
{
    const ModelStore model = SolvedModel();
    const tinygltf::Model file = ReadBack(model, 1.0);
    ASSERT_EQ(Surfaces(file).size(), 2u);
    const std::size_t triangles[2] = {2 * 1 + 1, 2 * model.BeamStressRecords[0].patches.size()};
    for (std::size_t s = 0; s < 2; ++s) {
        const tinygltf::Primitive& primitive = TrianglesOf(file, Surfaces(file)[s]);
        const std::size_t points = file.accessors.at(std::size_t(primitive.attributes.at("POSITION"))).count;
        EXPECT_EQ(file.accessors.at(std::size_t(primitive.attributes.at("COLOR_0"))).count, points);
        EXPECT_EQ(file.accessors.at(std::size_t(primitive.targets.at(0).at("POSITION"))).count, points);
        const std::size_t indices = file.accessors.at(std::size_t(primitive.indices)).count;
        EXPECT_EQ(indices, 3 * triangles[s]);
        for (std::size_t i = 0; i < indices; ++i) { EXPECT_LT(IndexAt(file, primitive.indices, i), points); }
    }
}

// Node translation + position is the place in the model, the morph target the displacement times the scale.
TEST(GltfResults, StandWhereTheModelStandsAndMoveAsItMoves)
{
    const ModelStore model = SolvedModel();
    const double scale = DeformationScale(model);
    const tinygltf::Model file = ReadBack(model, scale);
    const tinygltf::Node shells = Surfaces(file)[0];
    EXPECT_EQ(shells.name, "shells");
    EXPECT_EQ(Surfaces(file)[1].name, "beams");
    const tinygltf::Primitive& primitive = TrianglesOf(file, shells);
    const auto& quad = model.QuadConnectivity[0];
    const int corners[6] = {0, 1, 2, 0, 2, 3};
    for (std::size_t i = 0; i < 6; ++i) {
        const std::uint32_t point = IndexAt(file, primitive.indices, i);
        const auto place = PointAt(file, primitive.attributes.at("POSITION"), point);
        const auto moved = PointAt(file, primitive.targets[0].at("POSITION"), point);
        const int node = quad[corners[i]];
        for (std::size_t k = 0; k < 3; ++k) {
            EXPECT_NEAR(shells.translation.at(k) + place[k], model.NodeCoordinates[node][k], 1e-6);
            EXPECT_EQ(moved[k], static_cast<float>(scale * model.GlobalDisplacement[DofsPerNode * node + k]));
        }
    }
}

TEST(GltfResults, TellLegendAndScale)
{
    const ModelStore model = SolvedModel();
    const tinygltf::Model file = ReadBack(model, 12.5);
    double least = INFINITY, largest = 0.0;
    for (const ShellPoint& point : FindShellPoints(model).points) {
        const double stress = LargerEquivalentStress(point.averaged);
        least = std::min(least, stress);
        largest = std::max(largest, stress);
    }
    for (const SectionPoint& point : FindSectionPoints(model).points) {
        const double stress = LargerEquivalentStress(StressesAt(model, point));
        least = std::min(least, stress);
        largest = std::max(largest, stress);
    }
    const tinygltf::Value& extras = file.scenes.at(0).extras;
    EXPECT_EQ(extras.Get("deformation_scale").GetNumberAsDouble(), 12.5);
    EXPECT_FLOAT_EQ(static_cast<float>(extras.Get("legend").Get("least").GetNumberAsDouble()),
                    static_cast<float>(least));
    EXPECT_FLOAT_EQ(static_cast<float>(extras.Get("legend").Get("largest").GetNumberAsDouble()),
                    static_cast<float>(largest));
    EXPECT_EQ(extras.Get("legend").Get("colour_map").Get<std::string>(), "viridis");
    EXPECT_TRUE(file.materials.at(0).doubleSided);
    const tinygltf::Value& names = file.meshes.at(0).extras.Get("targetNames");
    ASSERT_EQ(names.ArrayLen(), 1u);
    EXPECT_EQ(names.Get(0).Get<std::string>(), "deformation");
}

// The largest stress is yellow, the smallest violet: linear intensities of viridis' ends in 16 bits.
TEST(GltfResults, AreColouredFromVioletToYellow)
{
    ModelStore model = SolvedModel();
    model.BeamStressRecords.clear();
    for (auto* faces : {model.QuadElements[0].averagedPositiveFace, model.QuadElements[0].averagedNegativeFace}) {
        for (int i = 0; i < QuadNodeCount; ++i) {
            std::fill(faces[i], faces[i] + StressCount, 0.0);
            faces[i][SX] = 1.0 + i;
        }
    }
    model.TriElements.clear();
    model.TriConnectivity.clear();
    const tinygltf::Model file = ReadBack(model, 1.0);
    ASSERT_EQ(Surfaces(file).size(), 1u);
    const tinygltf::Primitive& primitive = TrianglesOf(file, Surfaces(file)[0]);
    EXPECT_TRUE(file.accessors.at(std::size_t(primitive.attributes.at("COLOR_0"))).normalized);
    const auto colour = [&](std::size_t i) {
        std::array<std::uint16_t, 4> value;
        std::memcpy(value.data(), Record(file, primitive.attributes.at("COLOR_0"), IndexAt(file, primitive.indices, i)),
                    sizeof value);
        return value;
    };
    EXPECT_EQ(colour(0), (std::array<std::uint16_t, 4>{3788, 20, 5810, 65535}));
    EXPECT_EQ(colour(5), (std::array<std::uint16_t, 4>{64372, 52369, 1212, 65535}));
}

TEST(GltfResults, WithoutElementsAreAnEmptyScene)
{
    ModelStore model;
    model.NodeCoordinates.resize(1);
    const tinygltf::Model file = ReadBack(model, 1.0);
    EXPECT_TRUE(file.meshes.empty());
    EXPECT_EQ(file.scenes.at(0).nodes, std::vector<int>{0});
}

} // namespace
} // namespace tarnvexo
