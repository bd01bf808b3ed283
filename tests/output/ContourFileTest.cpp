#include "output/ContourFile.h"

#include "support/SmallModels.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;
using test::TemporaryDirectory;
using test::WrittenFile;

std::string Written(const ModelStore& model)
{
    return WrittenFile(ContourFileName, [&] { WriteContourFile(model, ContourFileName); });
}

// A quad, a triangle and, between nodes 0 and 1, a beam whose section model is a single patch.
ModelStore StressedModel()
{
    ModelStore model = StoreOf(test::OneOfEachKind());
    for (int i = 0; i < 30; ++i) { model.GlobalDisplacement.push_back(0.5 * i); }
    for (int i = 0; i < QuadNodeCount; ++i) {
        model.QuadElements[0].positiveFace[i][SY] = 1e9; // raw stresses are not what is written
        model.QuadElements[0].averagedPositiveFace[i][SX] = 10.0 + i;
        model.QuadElements[0].averagedNegativeFace[i][SX] = -1.5;
    }
    for (int i = 0; i < TriNodeCount; ++i) {
        model.TriElements[0].averagedPositiveFace[i][SZ] = 1.2345678e-5;
        model.TriElements[0].averagedNegativeFace[i][SZ] = 20.0 + i;
    }
    BeamSectionModel section;
    section.nodes = {{0, 0, 0}, {0, 0, 0.25}, {2, 0, 0.25}, {2, 0, 0.5}, {0, 0, 0.5}, {2, 0, 0}};
    for (int i = 0; i < 36; ++i) { section.displacements.push_back(i); }
    SectionPatch patch;
    const int nodes[4] = {1, 2, 3, 4};
    std::copy(nodes, nodes + 4, patch.nodes);
    patch.positiveFace[0][SY] = 1e9;
    section.patches.push_back(patch);
    section.averaged.resize(6);
    for (int n = 0; n < 6; ++n) {
        section.averaged[std::size_t(n)].positiveFace[SX] = 30.0 + n;
        section.averaged[std::size_t(n)].negativeFace[SX] = -30.0 - n;
    }
    const double components[StressCount] = {1, 2, 3, 4, 5, 6};
    std::copy(components, components + StressCount, section.averaged[1].positiveFace);
    model.BeamStressRecords.push_back(section);
    return model;
}

TEST(ContourFile, HoldsNodesShellsAndBeamsInOneGrammar)
{
    EXPECT_EQ(Written(StressedModel()), "NPOIN=5\n"
                                        "0,0,0\n2,0,0\n2,1,0\n0,1,0\n2.75,0.5,0.25\n"
                                        "0,0.5,1,1.5,2,2.5\n3,3.5,4,4.5,5,5.5\n6,6.5,7,7.5,8,8.5\n"
                                        "9,9.5,10,10.5,11,11.5\n12,12.5,13,13.5,14,14.5\n"
                                        "NELEM_S_4ND=1\n"
                                        "0,1,2,3\n"
                                        "10,0,0,0,0,0,10\n-1.5,0,0,0,0,0,1.5\n"
                                        "11,0,0,0,0,0,11\n-1.5,0,0,0,0,0,1.5\n"
                                        "12,0,0,0,0,0,12\n-1.5,0,0,0,0,0,1.5\n"
                                        "13,0,0,0,0,0,13\n-1.5,0,0,0,0,0,1.5\n"
                                        "NELEM_S_3ND=1\n"
                                        "1,4,2\n"
                                        "0,0,1.23457e-05,0,0,0,1.23457e-05\n0,0,20,0,0,0,20\n"
                                        "0,0,1.23457e-05,0,0,0,1.23457e-05\n0,0,21,0,0,0,21\n"
                                        "0,0,1.23457e-05,0,0,0,1.23457e-05\n0,0,22,0,0,0,22\n"
                                        "NELEM_B=1\n"
                                        "BEI=0\nSND(0,0,0)\nEND(2,0,0)\n"
                                        "NPOIN=6\n"
                                        "0,0,0\n0,0,0.25\n2,0,0.25\n2,0,0.5\n0,0,0.5\n2,0,0\n"
                                        "0,1,2,3,4,5\n6,7,8,9,10,11\n12,13,14,15,16,17\n18,19,20,21,22,23\n"
                                        "24,25,26,27,28,29\n30,31,32,33,34,35\n"
                                        "NELEM=1\n"
                                        "1,2,3,4\n"
                                        "1,2,3,4,5,6,15.2971\n-31,0,0,0,0,0,31\n"
                                        "32,0,0,0,0,0,32\n-32,0,0,0,0,0,32\n"
                                        "33,0,0,0,0,0,33\n-33,0,0,0,0,0,33\n"
                                        "34,0,0,0,0,0,34\n-34,0,0,0,0,0,34\n");
}

TEST(ContourFile, OfAModelWithoutBeamsEndsWithTheCountZero)
{
    ModelText text;
    text.Material(1.0, 0.0, 1.0);
    text.Thickness(0.1);
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 0.0, 0.0);
    text.Node(0.0, 1.0, 0.0);
    text.Tri({0, 1, 2});
    ModelStore model = StoreOf(text);
    model.GlobalDisplacement.assign(18, 0.0);
    const std::string zero = "0,0,0,0,0,0,0\n"; // an equivalent stress of zero is written as well
    EXPECT_EQ(Written(model), "NPOIN=3\n0,0,0\n1,0,0\n0,1,0\n0,0,0,0,0,0\n0,0,0,0,0,0\n0,0,0,0,0,0\n"
                              "NELEM_S_4ND=0\nNELEM_S_3ND=1\n0,1,2\n" +
                                  zero + zero + zero + zero + zero + zero + "NELEM_B=0\n");
}

TEST(ContourFile, OfAModelWithoutShellsHasBothCountsRightAfterTheDisplacements)
{
    ModelStore model;
    model.NPOIN = 1;
    model.NodeCoordinates = {{1.0, 2.0, 3.0}};
    model.GlobalDisplacement = {0.0, 1.0, 2.0, 3.0, 4.0, 5.0};
    EXPECT_EQ(Written(model), "NPOIN=1\n1,2,3\n0,1,2,3,4,5\nNELEM_S_4ND=0\nNELEM_S_3ND=0\nNELEM_B=0\n");
}

TEST(ContourFile, NumbersItsBeamsFromZero)
{
    ModelStore model = StressedModel();
    model.NELEM_B = 2;
    model.BeamConnectivity.push_back({3, 4});
    model.BeamStressRecords.push_back({});
    const std::string text = Written(model);
    EXPECT_NE(text.find("\nNELEM_B=2\nBEI=0\nSND(0,0,0)\nEND(2,0,0)\n"), std::string::npos);
    const std::string secondBeam = "\nBEI=1\nSND(0,1,0)\nEND(2.75,0.5,0.25)\nNPOIN=0\nNELEM=0\n";
    EXPECT_EQ(text.substr(text.size() - secondBeam.size()), secondBeam);
}

TEST(ContourFile, TellsItsSize)
{
    const TemporaryDirectory directory;
    const FileResult file = WriteContourFile(StressedModel(), "a.txt");
    EXPECT_EQ(file.outcome, FileOutcome::Written);
    EXPECT_EQ(file.bytes, std::filesystem::file_size("a.txt"));
}

TEST(ContourFile, ThatCannotBeCreatedIsToldToTheCaller)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("a.txt");
    const FileResult file = WriteContourFile(ModelStore(), "a.txt");
    EXPECT_EQ(file.outcome, FileOutcome::NotCreated);
    EXPECT_EQ(file.reason, "Is a directory");
}

} // namespace
} // namespace tarnvexo
