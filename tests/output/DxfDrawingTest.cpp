#include "output/DxfDrawing.h"

#include "support/SmallModels.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <sstream>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;
using test::TemporaryDirectory;
using test::WrittenFile;

std::string Structure(const ModelStore& model)
{
    return WrittenFile("structure.dxf", [&] { WriteStructureDrawing(model, "structure.dxf"); });
}

std::string Deformed(const ModelStore& model)
{
    return WrittenFile("deformation.dxf", [&] { WriteDeformedDrawing(model, "deformation.dxf"); });
}

// Six values per LINE: both end points.
std::vector<std::array<double, 6>> Edges(const std::string& drawing)
{
    std::istringstream lines(drawing);
    std::vector<std::array<double, 6>> edges;
    std::string line;
    while (std::getline(lines, line)) {
        if (line == "LINE") {
            std::getline(lines, line); // "  8"
            std::getline(lines, line); // "0"
            std::array<double, 6> edge = {};
            for (double& value : edge) {
                std::getline(lines, line); // group code
                std::getline(lines, line);
                value = std::stod(line);
            }
            edges.push_back(edge);
        }
    }
    return edges;
}

ModelText Materials()
{
    ModelText model;
    model.Material(2.0, 0.25, 1.0);
    model.Thickness(0.5);
    return model;
}

// Two squares side by side in the plane z = 1; edge 1-2 is shared.
ModelStore TwoQuads()
{
    ModelText model = Materials();
    for (double x : {0.0, 1.0, 3.0}) {
        model.Node(x, 0.0, 1.0);
        model.Node(x, 1.0, 1.0);
    }
    model.Quad({0, 2, 3, 1});
    model.Quad({2, 4, 5, 3});
    ModelStore store = StoreOf(model);
    store.GlobalDisplacement.assign(6 * 6, 0.0);
    return store;
}

TEST(StructureDrawing, OfOneTriangleIsItsThreeEdges)
{
    ModelText model = Materials();
    model.Node(0.0, 0.0, 0.0);
    model.Node(1.5, 0.0, -2.0);
    model.Node(0.0, 1e-7, 1234567.0);
    model.Tri({2, 0, 1});
    EXPECT_EQ(Structure(StoreOf(model)),
              "  0\nSECTION\n  2\nENTITIES\n  0\n"
              "LINE\n  8\n0\n 10\n0\n 20\n1e-07\n 30\n1.23457e+06\n 11\n0\n 21\n0\n 31\n0\n  0\n"
              "LINE\n  8\n0\n 10\n0\n 20\n0\n 30\n0\n 11\n1.5\n 21\n0\n 31\n-2\n  0\n"
              "LINE\n  8\n0\n 10\n1.5\n 20\n0\n 30\n-2\n 11\n0\n 21\n1e-07\n 31\n1.23457e+06\n  0\n"
              "ENDSEC\n  0\nEOF\n");
}

TEST(StructureDrawing, DrawsQuadsBeforeTrianglesAndNoBeams)
{
    const std::vector<std::array<double, 6>> edges = Edges(Structure(StoreOf(test::OneOfEachKind())));
    const std::vector<std::array<double, 6>> expected = {
        {0, 0, 0, 2, 0, 0},       {2, 0, 0, 2, 1, 0},       {2, 1, 0, 0, 1, 0}, {0, 1, 0, 0, 0, 0}, // quad 0 1 2 3
        {2, 0, 0, 2.75, .5, .25}, {2.75, .5, .25, 2, 1, 0}, {2, 1, 0, 2, 0, 0}};                    // triangle 1 4 2
    EXPECT_EQ(edges, expected);
}

TEST(StructureDrawing, OfBeamsOnlyHasEightLines)
{
    ModelText model = Materials();
    model.CSection(0.5, 0.1);
    model.Node(0.0, 0.0, 0.0);
    model.Node(1.0, 0.0, 0.0);
    model.Beam({0, 1}, {0.0, 0.0, 1.0}, 0, CSection, 0);
    ModelStore store = StoreOf(model);
    store.GlobalDisplacement.assign(12, 0.5);
    const std::string eightLines = "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n";
    EXPECT_EQ(Structure(store), eightLines);
    EXPECT_EQ(Deformed(store), eightLines);
}

TEST(StructureDrawing, ShowsASharedEdgeTwiceOnceInEachDirection)
{
    const std::array<double, 6> there = {1, 0, 1, 1, 1, 1}, back = {1, 1, 1, 1, 0, 1};
    int thereCount = 0, backCount = 0;
    for (const auto& edge : Edges(Structure(TwoQuads()))) {
        thereCount += edge == there;
        backCount += edge == back;
    }
    EXPECT_EQ(thereCount, 1);
    EXPECT_EQ(backCount, 1);
}

TEST(StructureDrawing, ShowsCoordinatesAsTheyStandAtTheCall)
{
    ModelStore model = TwoQuads();
    for (Vector3& node : model.NodeCoordinates) { node = node - Vector3{1.5, 0.5, 1.0}; }
    EXPECT_EQ(Edges(Structure(model))[0], (std::array<double, 6>{-1.5, -0.5, 0, -0.5, -0.5, 0}));
}

TEST(DeformedDrawing, MagnifiesTheLargestTranslationToFivePercentOfTheLargestExtent)
{
    ModelStore model = TwoQuads(); // 3 x 1 x 0
    model.GlobalDisplacement[6 * 4 + DY] = -0.25;
    model.GlobalDisplacement[6 * 1 + DX] = 0.125;
    EXPECT_DOUBLE_EQ(DeformationScale(model), 3.0 * 0.05 / 0.25);
    const auto edges = Edges(Deformed(model));
    ASSERT_EQ(edges.size(), 8u);
    EXPECT_EQ(edges[4], (std::array<double, 6>{1, 0, 1, 3, -0.15, 1})); // 2-4
    EXPECT_EQ(edges[2], (std::array<double, 6>{1, 1, 1, 0.075, 1, 1})); // 3-1
    EXPECT_EQ(edges[3], (std::array<double, 6>{0.075, 1, 1, 0, 0, 1})); // 1-0
}

TEST(DeformedDrawing, IgnoresRotations)
{
    ModelStore model = TwoQuads();
    model.GlobalDisplacement[6 * 2 + DZ] = 0.5;
    const std::string withoutRotation = Deformed(model);
    for (int n = 0; n < 6; ++n) { model.GlobalDisplacement[6 * n + RY] = 1e6; }
    EXPECT_EQ(Deformed(model), withoutRotation);
}

TEST(DeformedDrawing, OfAFlatStructureHasAFiniteScaleFromItsLargestExtent)
{
    for (int flat = 0; flat < 3; ++flat) {
        ModelStore model = TwoQuads();
        for (Vector3& node : model.NodeCoordinates) { std::swap(node[flat], node[2]); }
        model.GlobalDisplacement[DZ] = 1e-3;
        EXPECT_DOUBLE_EQ(DeformationScale(model), 150.0) << "flat in direction " << flat;
    }
}

TEST(DeformedDrawing, WithoutAnyTranslationIsNotFinite)
{
    ModelStore model = TwoQuads();
    model.GlobalDisplacement[6 * 3 + RX] = 0.1;
    EXPECT_EQ(DeformationScale(model), std::numeric_limits<double>::infinity());
    for (const auto& edge : Edges(Deformed(model))) {
        for (double value : edge) { EXPECT_FALSE(std::isfinite(value)); }
    }
}

TEST(DeformedDrawing, WithAScaleOfItsOwnIsFiniteWithoutAnyTranslation)
{
    const ModelStore model = TwoQuads();
    EXPECT_EQ(WrittenFile("deformation.dxf", [&] { WriteDeformedDrawing(model, 1.0, "deformation.dxf"); }),
              WrittenFile("structure.dxf", [&] { WriteStructureDrawing(model, "structure.dxf"); }));
}

TEST(DeformedDrawing, CountsNodesWithoutElementsInExtentAndTranslation)
{
    ModelStore model = TwoQuads();
    model.NPOIN = 7;
    model.NodeCoordinates.push_back({-7.0, 0.0, 0.0});
    model.GlobalDisplacement.resize(6 * 7, 0.0);
    model.GlobalDisplacement[6 * 6 + DZ] = -2.0;
    model.GlobalDisplacement[DX] = 1.0;
    EXPECT_DOUBLE_EQ(DeformationScale(model), 10.0 * 0.05 / 2.0);
}

TEST(DeformedDrawing, OfAModelWithoutNodesHoldsNoLine)
{
    EXPECT_EQ(Deformed(ModelStore()), "  0\nSECTION\n  2\nENTITIES\n  0\nENDSEC\n  0\nEOF\n");
}

TEST(Drawing, TellsItsSize)
{
    const TemporaryDirectory directory;
    const FileResult structure = WriteStructureDrawing(TwoQuads(), "a.dxf");
    EXPECT_EQ(structure.outcome, FileOutcome::Written);
    EXPECT_EQ(structure.bytes, std::filesystem::file_size("a.dxf"));
    const FileResult deformed = WriteDeformedDrawing(TwoQuads(), "b.dxf");
    EXPECT_EQ(deformed.outcome, FileOutcome::Written);
    EXPECT_EQ(deformed.bytes, std::filesystem::file_size("b.dxf"));
}

TEST(Drawing, ThatCannotBeCreatedIsToldToTheCaller)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("a.dxf");
    for (const FileResult& file :
         {WriteStructureDrawing(TwoQuads(), "a.dxf"), WriteDeformedDrawing(TwoQuads(), "a.dxf")}) {
        EXPECT_EQ(file.outcome, FileOutcome::NotCreated);
        EXPECT_EQ(file.reason, "Is a directory");
    }
}

} // namespace
} // namespace tarnvexo
