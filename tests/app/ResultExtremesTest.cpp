#include "app/ResultExtremes.h"

#include "core/Parallel.h"
#include "support/SmallModels.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

TEST(ResultExtremes, NameTheNodeThatMovesMost)
{
    ModelStore model = StoreOf(OneOfEachKind());
    model.GlobalDisplacement.assign(30, 0.0);
    model.GlobalDisplacement[DofsPerNode * 3 + DX] = 3.0;
    model.GlobalDisplacement[DofsPerNode * 3 + DZ] = -4.0;
    model.GlobalDisplacement[DofsPerNode * 1 + DY] = 4.5;
    model.GlobalDisplacement[DofsPerNode * 4 + RY] = -0.1;
    const ExtremeValue translation = LargestTranslation(model), rotation = LargestRotation(model);
    EXPECT_EQ(translation.value, 5.0);
    EXPECT_EQ(translation.node, 3);
    EXPECT_EQ(translation.place, model.NodeCoordinates[3]);
    EXPECT_EQ(rotation.value, 0.1);
    EXPECT_EQ(rotation.node, 4);
}

// SX = 100 alone has the equivalent stress 100, pure shear 60 has √3·60 = 103.9.
TEST(ResultExtremes, NameElementFaceAndNodeOfTheLargestStress)
{
    ModelStore model = StoreOf(OneOfEachKind());
    model.QuadElements[0].averagedPositiveFace[2][0] = 100.0;
    EXPECT_EQ(LargestShellStress(model).kind, "quad");
    EXPECT_EQ(LargestShellStress(model).node, model.QuadConnectivity[0][2]);
    model.TriElements[0].averagedNegativeFace[1][3] = 60.0;
    const ExtremeValue shear = LargestShellStress(model);
    EXPECT_NEAR(shear.value, 103.923048454, 1e-8);
    EXPECT_EQ(shear.kind, "tri");
    EXPECT_EQ(shear.element, 0);
    EXPECT_EQ(shear.node, model.TriConnectivity[0][1]);
}

TEST(ComponentExtremes, OfShellsAreThoseOfBothFacesAndBothKinds)
{
    ModelStore model = StoreOf(OneOfEachKind());
    model.QuadElements[0].averagedPositiveFace[2][0] = 100.0;
    model.QuadElements[0].averagedNegativeFace[1][0] = -70.0;
    model.TriElements[0].averagedNegativeFace[1][0] = -80.0;
    model.TriElements[0].averagedPositiveFace[0][5] = 3.0;
    const std::vector<ComponentExtremes> extremes = ShellStressExtremes(model);
    ASSERT_EQ(extremes.size(), 6u);
    EXPECT_EQ(extremes[0].name, "SX");
    EXPECT_EQ(extremes[0].largest.value, 100.0);
    EXPECT_EQ(extremes[0].largest.kind, "quad");
    EXPECT_EQ(extremes[0].largest.node, model.QuadConnectivity[0][2]);
    EXPECT_EQ(extremes[0].smallest.value, -80.0);
    EXPECT_EQ(extremes[0].smallest.kind, "tri");
    EXPECT_EQ(extremes[0].smallest.place, model.NodeCoordinates[model.TriConnectivity[0][1]]);
    EXPECT_EQ(extremes[5].name, "TYZ");
    EXPECT_EQ(extremes[5].largest.value, 3.0);
    EXPECT_EQ(extremes[5].smallest.value, 0.0);
}

// The ends have no stresses: their zeros are no extreme where every wall is pulled.
TEST(ComponentExtremes, OfBeamsAreThoseOfTheWallsNotOfTheEnds)
{
    ModelStore model = StoreOf(OneOfEachKind());
    BeamSectionModel& section = model.BeamStressRecords.emplace_back();
    section.nodes = {{0, 0, 0}, {1, 0, 0}, {2, 0, 0}, {3, 0, 0}};
    section.averaged.resize(4);
    section.averaged[1].positiveFace[0] = section.averaged[1].negativeFace[0] = 5.0;
    section.averaged[2].positiveFace[0] = section.averaged[2].negativeFace[0] = 7.0;
    const std::vector<ComponentExtremes> extremes = BeamStressExtremes(model);
    ASSERT_EQ(extremes.size(), 6u);
    EXPECT_EQ(extremes[0].smallest.value, 5.0);
    EXPECT_EQ(extremes[0].smallest.place, (Vector3{1, 0, 0}));
    EXPECT_EQ(extremes[0].largest.value, 7.0);
    EXPECT_EQ(extremes[0].largest.element, 0);
}

TEST(ComponentExtremes, OfDisplacementsNameTheNode)
{
    ModelStore model = StoreOf(OneOfEachKind());
    model.GlobalDisplacement.assign(30, 0.0);
    model.GlobalDisplacement[DofsPerNode * 3 + DZ] = -4.0;
    const std::vector<ComponentExtremes> extremes = DisplacementExtremes(model);
    ASSERT_EQ(extremes.size(), 6u);
    EXPECT_EQ(extremes[DZ].smallest.value, -4.0);
    EXPECT_EQ(extremes[DZ].smallest.node, 3);
    EXPECT_EQ(extremes[DZ].largest.value, 0.0);
    EXPECT_TRUE(ShellStressExtremes(ModelStore()).empty());
}

TEST(ResultExtremes, OfEqualValuesNameTheFirstForAnyNumberOfThreads)
{
    ModelStore model;
    model.NodeCoordinates.resize(30000);
    model.GlobalDisplacement.assign(180000, 0.0);
    for (const std::size_t node : {9000u, 9001u, 25000u}) { model.GlobalDisplacement[DofsPerNode * node] = 1.0; }
    for (const int threads : {1, 2, 5}) {
        SetThreadCount(threads);
        EXPECT_EQ(LargestTranslation(model).node, 9000) << threads;
    }
    SetThreadCount(0);
}

// Round-off makes the second of two mirror images larger; what is larger by more counts.
TEST(ResultExtremes, OfValuesThatDifferByRoundOffNameTheFirst)
{
    ModelStore model = StoreOf(OneOfEachKind());
    model.GlobalDisplacement.assign(30, 0.0);
    model.GlobalDisplacement[DofsPerNode * 1 + DZ] = -4.0;
    model.GlobalDisplacement[DofsPerNode * 3 + DZ] = -4.0 * (1.0 + 1e-13);
    EXPECT_EQ(LargestTranslation(model).node, 1);
    EXPECT_EQ(LargestTranslation(model).value, 4.0 * (1.0 + 1e-13));
    EXPECT_EQ(DisplacementExtremes(model)[DZ].smallest.node, 1);
    model.GlobalDisplacement[DofsPerNode * 3 + DZ] = -4.0 * (1.0 + 1e-5);
    EXPECT_EQ(LargestTranslation(model).node, 3);

    model.QuadElements[0].averagedPositiveFace[2][0] = 100.0;
    model.TriElements[0].averagedNegativeFace[1][0] = 100.0 * (1.0 + 1e-13);
    EXPECT_EQ(LargestShellStress(model).kind, "quad");
    EXPECT_EQ(ShellStressExtremes(model)[0].largest.kind, "quad");
    EXPECT_EQ(ShellStressExtremes(model)[0].largest.node, model.QuadConnectivity[0][2]);
}

TEST(ResultExtremes, WithoutResultsNameNothing)
{
    const ExtremeValue none = LargestBeamStress(StoreOf(OneOfEachKind()));
    EXPECT_EQ(none.value, 0.0);
    EXPECT_EQ(none.element, -1);
}

} // namespace
} // namespace tarnvexo
