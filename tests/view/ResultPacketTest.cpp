#include "view/ResultPacket.h"

#include "support/SmallModels.h"
#include "view/Gzip.h"

#include <cmath>
#include <cstdint>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <nlohmann/json.hpp>

namespace tarnvexo {
namespace {

// A packet taken apart as its format says.
struct Decoded {
    nlohmann::json head;
    std::string arrays;

    explicit Decoded(const std::string& packet)
    {
        std::uint32_t length = 0;
        EXPECT_EQ(packet.substr(0, 8), "TVXRES1\n");
        std::memcpy(&length, packet.data() + 8, sizeof length);
        EXPECT_EQ((12 + length) % 8, 0u);
        head = nlohmann::json::parse(packet.substr(12, length));
        arrays = packet.substr(12 + length);
    }

    template <class Item> std::vector<Item> Array(const char* name, const char* type) const
    {
        const nlohmann::json& place = head.at("arrays").at(name);
        EXPECT_EQ(place.at("type"), type) << name;
        const auto offset = place.at("offset").get<std::size_t>();
        std::vector<Item> items(place.at("length").get<std::size_t>());
        EXPECT_EQ(offset % 8, 0u) << name;
        EXPECT_LE(offset + items.size() * sizeof(Item), arrays.size()) << name;
        std::memcpy(items.data(), arrays.data() + offset, items.size() * sizeof(Item));
        return items;
    }
    std::vector<float> Floats(const char* name) const { return Array<float>(name, "f32"); }
    std::vector<std::uint32_t> Numbers(const char* name) const { return Array<std::uint32_t>(name, "u32"); }
    bool Has(const char* name) const { return head.at("arrays").contains(name); }
};

using Numbers = std::vector<std::uint32_t>;

ContourStress Stress(double value)
{
    ContourStress stress = {};
    stress[SX] = value;
    return stress;
}

// positive, negative: SX of the faces at each node.
template <int N>
void AddShell(ContourShells<N>& shells, const std::array<int, N>& nodes, const std::array<double, N>& positive,
              const std::array<double, N>& negative)
{
    shells.connectivity.push_back(nodes);
    auto& front = shells.positiveFace.emplace_back();
    auto& back = shells.negativeFace.emplace_back();
    for (std::size_t i = 0; i < N; ++i) {
        front[i] = Stress(positive[i]);
        back[i] = Stress(negative[i]);
    }
}

// Two quadrilaterals over the nodes 0 1 2 3 and 1 4 5 2, a triangle on 3 2 5, a beam of one wall on nodes 0 and 1. At
// node 1 the quadrilaterals have the same stresses, at node 2 another negative face.
ContourModel TwoQuads()
{
    ContourModel model;
    model.nodes.coordinates = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {2, 0, 0.5}, {2, 1, 0.5}};
    model.nodes.displacements.resize(6);
    model.nodes.displacements[5] = {1, 2, 3, 4, 5, 6};
    AddShell<4>(model.quads, {0, 1, 2, 3}, {10, 11, 12, 13}, {0, 0, 0, 0});
    AddShell<4>(model.quads, {1, 4, 5, 2}, {11, 14, 15, 12}, {-0.0, 0, 0, 7});
    AddShell<3>(model.tris, {3, 2, 5}, {13, 12, 15}, {0, 7, 0});
    ContourBeam beam;
    beam.end1 = {0, 0, 0};
    beam.end2 = {1, 0, 0};
    beam.nodes.coordinates = {{0, 0, 0}, {1, 0, 0}, {1, 0, 1}, {0, 0, 1}};
    beam.nodes.displacements.resize(4);
    AddShell<4>(beam.walls, {0, 1, 2, 3}, {10, 11, 12, 13}, {0, 0, 0, 0});
    model.beams.push_back(beam);
    return model;
}

ResultParts Parts(const ContourModel& contour)
{
    ResultParts parts;
    parts.title = "two quads";
    parts.contour = contour;
    return parts;
}

TEST(ResultPacket, HasNodesOfTheStructureThenOfSectionWalls)
{
    const Decoded packet(GzipDecompressed(GzipCompressed(ResultPacket(Parts(TwoQuads())))));
    EXPECT_EQ(packet.head.at("title"), "two quads");
    EXPECT_EQ(packet.head.at("structureNodes"), 6);
    EXPECT_EQ(packet.head.at("shellQuads"), 2);
    EXPECT_EQ(packet.head.at("beamCount"), 1);
    const std::vector<float> coordinates = packet.Floats("coordinates");
    ASSERT_EQ(coordinates.size(), 30u);
    EXPECT_EQ(coordinates[3 * 5 + 2], 0.5f);
    EXPECT_EQ(coordinates[3 * 8 + 2], 1.0f); // node 2 of the beam
    EXPECT_EQ(packet.Floats("displacements")[6 * 5 + 3], 4.0f);
    EXPECT_EQ(packet.Floats("beamEnds"), (std::vector<float>{0, 0, 0, 1, 0, 0}));
    EXPECT_EQ(packet.Numbers("beamWallBegin"), (Numbers{2, 3}));
    EXPECT_EQ(packet.Numbers("beamNodeBegin"), (Numbers{6, 10}));
}

TEST(ResultPacket, SharesAVertexWhereANodeHasTheSameStresses)
{
    const Decoded packet(ResultPacket(Parts(TwoQuads())));
    EXPECT_EQ(packet.Numbers("quads"), (Numbers{0, 1, 2, 3, 1, 4, 5, 6, 7, 8, 9, 10}));
    EXPECT_EQ(packet.Numbers("tris"), (Numbers{3, 6, 5}));
    EXPECT_EQ(packet.Numbers("vertexNodes"), (Numbers{0, 1, 2, 3, 4, 5, 2, 6, 7, 8, 9}));
    EXPECT_EQ(packet.Floats("positiveFace").at(7 * 6), 12.0f);
    EXPECT_EQ(packet.Floats("negativeFace").at(7 * 6), 7.0f);
    EXPECT_EQ(packet.Floats("negativeFace").at(7 * 2), 0.0f);
}

// 5000 triangles around one node, all with other stresses there: the table of vertices grows and loses none.
TEST(ResultPacket, KeepsEveryVertexOfManyAtOneNode)
{
    constexpr int count = 5000;
    ContourModel model;
    model.nodes.coordinates.resize(count + 2);
    model.nodes.displacements.resize(count + 2);
    for (int e = 0; e < count; ++e) { AddShell<3>(model.tris, {0, e + 1, e + 2}, {double(e), 1, 1}, {0, 0, 0}); }
    const Decoded packet(ResultPacket(Parts(model)));
    const Numbers tris = packet.Numbers("tris"), nodes = packet.Numbers("vertexNodes");
    const std::vector<float> stresses = packet.Floats("positiveFace");
    ASSERT_EQ(nodes.size(), std::size_t(2 * count + 1)); // of node 0 one per triangle, of the others one each
    for (std::size_t e = 0; e < count; ++e) {
        EXPECT_EQ(nodes[tris[3 * e]], 0u);
        EXPECT_EQ(stresses[7 * tris[3 * e]], float(e));
        EXPECT_EQ(nodes[tris[3 * e + 2]], e + 2);
    }
}

TEST(ResultPacket, MakesNumbersBeyondSinglePrecisionInfinite)
{
    ContourModel model = TwoQuads();
    model.nodes.displacements[0] = {1e300, -1e300, std::nan(""), 1e-300, 0, 0};
    const std::vector<float> displacements = Decoded(ResultPacket(Parts(model))).Floats("displacements");
    EXPECT_EQ(displacements[0], std::numeric_limits<float>::infinity());
    EXPECT_EQ(displacements[1], -std::numeric_limits<float>::infinity());
    EXPECT_TRUE(std::isnan(displacements[2]));
    EXPECT_EQ(displacements[3], 0.0f);
}

TEST(ResultPacket, HasOwnStressesAndModelOnlyWhereTheyAreKnown)
{
    const Decoded packet(ResultPacket(Parts(TwoQuads())));
    for (const char* name : {"ownQuadPositive", "ownTriNegative", "quadThickness", "supportBits", "inertiaForces"}) {
        EXPECT_FALSE(packet.Has(name)) << name;
    }
    EXPECT_FALSE(packet.head.contains("thicknesses"));
    EXPECT_FALSE(packet.head.contains("view"));
}

TEST(ResultPacket, HasOwnStressesPerCorner)
{
    ResultParts parts = Parts(TwoQuads());
    parts.hasOwnStresses = true;
    AddShell<4>(parts.ownStresses.quads, {0, 1, 2, 3}, {1, 2, 3, 4}, {5, 6, 7, 8});
    AddShell<3>(parts.ownStresses.tris, {3, 2, 5}, {1, 2, 3}, {4, 5, 9});
    const Decoded packet(ResultPacket(parts));
    EXPECT_EQ(packet.Floats("ownQuadPositive").at(7 * 3), 4.0f);
    EXPECT_EQ(packet.Floats("ownQuadNegative").at(7 * 1), 6.0f);
    EXPECT_EQ(packet.Floats("ownTriPositive").size(), 21u);
    EXPECT_EQ(packet.Floats("ownTriNegative").at(7 * 2), 9.0f);
}

TEST(ResultPacket, HasTheTablesSupportsAndForcesOfTheModel)
{
    ResultParts parts = Parts(TwoQuads());
    parts.hasModel = true;
    ModelStore& model = parts.model;
    model.Materials = {{2.1e11, 0.3, 7850}};
    model.Thicknesses = {0.01, 0.025};
    model.TBeamSections = {{200, 8, 100, 15}};
    model.LBeamSections = {{1, 2, 3, 4}, {0.2, 0.01, 0.1, 0.012}};
    model.CBeamSections = {{50, 3}};
    model.QuadProperties = {{0, 1}, {0, 0}};
    model.TriProperties = {{0, 1}};
    model.BeamProperties.resize(1);
    model.BeamConnectivity = {{4, 1}};
    model.BeamSectionRefs = {{CSection, 0, 0.0, false}};
    model.Restraints = {{{1, 0, 1, 2, 0, 1}, 3}};
    model.NodalForces = {{5, {1, 2, 3, 4, 5, 6}}};
    parts.inertiaForces.assign(36, 0.5);
    parts.view = "field=U";
    const Decoded packet(ResultPacket(parts));
    EXPECT_EQ(packet.head.at("thicknesses"), (nlohmann::json{0.01, 0.025}));
    EXPECT_EQ(packet.head.at("sections"),
              (nlohmann::json{"T 200x8/100x15", "L 1x2/3x4", "L 0.2x0.01/0.1x0.012", "tube R50x3"}));
    EXPECT_EQ(packet.head.at("materials"), nlohmann::json::parse(R"([{"E":2.1e11,"Mu":0.3,"Density":7850.0}])"));
    EXPECT_EQ(packet.head.at("view"), "field=U");
    EXPECT_EQ(packet.Numbers("quadThickness"), (Numbers{1, 0}));
    EXPECT_EQ(packet.Numbers("triMaterial"), (Numbers{0}));
    EXPECT_EQ(packet.Numbers("beamSection"), (Numbers{3})); // behind one T and two L
    EXPECT_EQ(packet.Numbers("beamNodes"), (Numbers{4, 1}));
    EXPECT_EQ(packet.Numbers("supportNodes"), (Numbers{3}));
    EXPECT_EQ(packet.Numbers("supportBits"), (Numbers{1 + 4 + 32})); // 2 is no support
    EXPECT_EQ(packet.Numbers("forceNodes"), (Numbers{5}));
    EXPECT_EQ(packet.Floats("forces"), (std::vector<float>{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(packet.Floats("inertiaForces"), std::vector<float>(36, 0.5f));
}

// Over the plate 10 + 5·x + 10·y, which is 20 at its fourth node (0, 1); the beam's section stands downwards.
TEST(ResultPacket, HasPressuresAtAllNodesAndLineLoadsWithTheirDirection)
{
    ResultParts parts = Parts(TwoQuads());
    parts.hasModel = true;
    parts.model = test::StoreOf(test::OneOfEachKind());
    const Decoded packet(ResultPacket(parts));
    EXPECT_EQ(packet.Numbers("quadPressureElements"), (Numbers{0}));
    EXPECT_EQ(packet.Floats("quadPressures"), (std::vector<float>{10, 20, 30, 20}));
    EXPECT_EQ(packet.Numbers("triPressureElements"), (Numbers{0}));
    EXPECT_EQ(packet.Floats("triPressures"), (std::vector<float>{5, 5, 5}));
    EXPECT_EQ(packet.Numbers("lineLoadBeams"), (Numbers{0}));
    EXPECT_EQ(packet.Floats("lineLoads"), (std::vector<float>{3, 4}));
    EXPECT_EQ(packet.Floats("lineLoadDirections"), (std::vector<float>{0, 0, -1}));
}

TEST(ResultPacket, OfATitleThatIsNotUtf8HasAHeadThatIs)
{
    ResultParts parts = Parts(TwoQuads());
    parts.title = "a\xff";
    EXPECT_EQ(Decoded(ResultPacket(parts)).head.at("title"), "a\xEF\xBF\xBD");
}

} // namespace
} // namespace tarnvexo
