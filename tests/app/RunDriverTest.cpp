#include "app/RunDriver.h"

#include "solver/SkylineSolver.h"
#include "support/ChildProcess.h"
#include "support/ProgramRun.h"
#include "support/SmallModels.h"

#include <cstdio>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::ChildResult;
using test::ModelText;
using test::RunInChild;
using test::StoreOf;
using test::TemporaryDirectory;

// A diagonal system: what SolveSkyline prints does not depend on the matrix.
std::string Counter(int equations)
{
    const ChildResult run = RunInChild([equations] {
        ModelStore model;
        model.EquationCount = model.SkylineSize = equations;
        model.ColumnHeight.assign(std::size_t(equations), 1);
        for (int j = 0; j < equations; ++j) { model.DiagonalAddress.push_back(j); }
        model.GlobalStiffness.assign(std::size_t(equations), 2.0);
        model.GLOAD.assign(std::size_t(equations), 1.0);
        SolveSkyline(model);
    });
    EXPECT_EQ(run.exitCode, 0);
    return run.output;
}

const std::string Back13(13, '\b'), Back2(2, '\b');

TEST(ProgressCounter, OfOneEquationIsTheFirstFormOnly)
{
    EXPECT_EQ(Counter(1), "100%Completed." + Back13);
}

TEST(ProgressCounter, OfSixEquationsCountsTruncatedPercentages)
{
    EXPECT_EQ(Counter(6),
              "16%Completed." + Back13 + "33" + Back2 + "50" + Back2 + "66" + Back2 + "83" + Back2 + "100%Completed.");
}

TEST(ProgressCounter, OfTwoHundredEquationsPrintsEveryEquationInTwoPlaces)
{
    std::string expected = " 0%Completed." + Back13;
    for (int i = 1; i < 199; ++i) {
        char percent[16];
        std::snprintf(percent, sizeof percent, "%2d", (i + 1) * 100 / 200);
        expected += percent + Back2;
    }
    EXPECT_EQ(Counter(200), expected + "100%Completed.");
}

TEST(ProgressCounter, WithoutEquationsIsSilent)
{
    EXPECT_EQ(Counter(0), "");
}

TEST(ReleaseModel, LeavesTheStoreAsItWasConstructed)
{
    ModelStore model = StoreOf(test::OneOfEachKind());
    model.GlobalStiffness.resize(1000);
    model.BeamStressRecords.resize(1);
    model.StructureCentroid = {1.0, 2.0, 3.0};
    ReleaseModel(model);
    EXPECT_EQ(model.NPOIN, 0);
    EXPECT_EQ(model.NELEM_B, 0);
    EXPECT_EQ(model.QuadElements.capacity(), 0u);
    EXPECT_EQ(model.QuadConnectivity.capacity(), 0u);
    EXPECT_EQ(model.TriElements.capacity(), 0u);
    EXPECT_EQ(model.BeamElements.capacity(), 0u);
    EXPECT_EQ(model.BeamStressRecords.capacity(), 0u);
    EXPECT_EQ(model.GlobalStiffness.capacity(), 0u);
    EXPECT_EQ(model.NodeCoordinates.capacity(), 0u);
    EXPECT_EQ(model.StructureCentroid, (Vector3{}));
}

TEST(ReleaseModel, OfAnEmptyStoreOrTwiceDoesNothing)
{
    ModelStore model;
    ReleaseModel(model);
    ReleaseModel(model);
    EXPECT_EQ(model.NPOIN, 0);
}

// Models that lack an element type, or two of them.
TEST(ModelStore, WithoutAnElementTypeHoldsNothingOfItAndRunsThroughAllTheSame)
{
    for (int kinds = 1; kinds < 7; ++kinds) {
        ModelText text;
        text.Material(2.1e11, 0.3, 7850.0);
        text.Thickness(0.01);
        text.CSection(0.1, 0.01);
        for (const Vector3& p : {Vector3{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}) { text.Node(p[0], p[1], p[2]); }
        const bool quad = kinds & 1, tri = kinds & 2, beam = kinds & 4;
        if (quad) {
            text.Quad({0, 1, 2, 3});
        }
        if (tri) {
            text.Tri({0, 1, 2});
        }
        if (beam) {
            text.Beam({0, 1}, {0, 0, 1}, 0, CSection, 0);
        }
        text.Force(1, {0, 0, 1, 0, 0, 0});
        const ModelStore model = StoreOf(text);
        EXPECT_EQ(model.QuadElements.capacity() + model.QuadConnectivity.capacity() > 0, quad);
        EXPECT_EQ(model.TriElements.capacity() + model.TriConnectivity.capacity() > 0, tri);
        EXPECT_EQ(model.BeamElements.capacity() + model.BeamConnectivity.capacity() > 0, beam);

        const TemporaryDirectory directory;
        std::ofstream("fem_solving.txt") << text.Text();
        const ChildResult run = RunInChild([] { std::exit(RunConsole()); });
        EXPECT_EQ(run.exitCode, 0) << run.error;
        EXPECT_TRUE(std::ifstream("Tarn+Vexo_AverageStrs.txt").good());
    }
}

} // namespace
} // namespace tarnvexo
