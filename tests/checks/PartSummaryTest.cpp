#include "checks/PartSummary.h"

#include "inertia/MassProperties.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;

// A quad with a triangle at x = 2 and, apart from them, a beam; node 6 has no element.
ModelText TwoParts()
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Thickness(0.01);
    model.TSection(0.1, 0.01, 0.0, 0.0);
    for (const auto& [x, y] :
         {std::pair{0.0, 0.0}, {2.0, 0.0}, {2.0, 1.0}, {0.0, 1.0}, {3.0, 0.5}, {5.0, 0.0}, {9.0, 9.0}, {5.0, 3.0}}) {
        model.Node(x, y, 0.5);
    }
    model.Quad({0, 1, 2, 3});
    model.Tri({1, 4, 2});
    model.Beam({7, 5}, {0.0, 0.0, 1.0}, 0, TSection, 0);
    model.Restrain(0, {1, 1, 1, 0, 0, 0});
    model.Restrain(0, {0, 0, 1, 0, 0, 1});
    model.Restrain(5, {0, 1, 0, 0, 0, 0});
    model.Restrain(6);
    model.Force(4, {0.0, 0.0, 100.0, 0.0, 0.0, 0.0});
    model.Force(6, {0.0, 0.0, 100.0, 0.0, 0.0, 0.0});
    model.QuadLoad(0, 10.0, 20.0, 30.0);
    model.TriLoad(0, 5.0, 5.0, 5.0);
    model.BeamLoad(0, 3.0, 4.0);
    return model;
}

TEST(PartSummary, CountsWhatBelongsToEachPart)
{
    const ModelStore model = StoreOf(TwoParts());
    const std::vector<PartSummary> parts = SummariseParts(model, FindConnectedParts(model));
    ASSERT_EQ(parts.size(), 2u);

    const PartSummary &plate = parts[0], &beam = parts[1];
    EXPECT_EQ(plate.nodes, 5);
    EXPECT_EQ(plate.lowestNode, 0);
    EXPECT_EQ(plate.quads, 1);
    EXPECT_EQ(plate.tris, 1);
    EXPECT_EQ(plate.beams, 0);
    EXPECT_EQ(plate.Elements(), 2);
    EXPECT_EQ(plate.restrainedDirections, 4); // z of node 0 once
    EXPECT_EQ(plate.nodalForces, 1);
    EXPECT_EQ(plate.distributedLoads, 2);
    EXPECT_NEAR(plate.mass, (2.0 + 0.5) * 0.01 * 7850.0, 1e-10);
    EXPECT_EQ(plate.boxLow, (Vector3{0.0, 0.0, 0.5}));
    EXPECT_EQ(plate.boxHigh, (Vector3{3.0, 1.0, 0.5}));
    EXPECT_EQ(plate.centre, (Vector3{1.5, 0.5, 0.5}));

    EXPECT_EQ(beam.nodes, 2);
    EXPECT_EQ(beam.lowestNode, 5);
    EXPECT_EQ(beam.beams, 1);
    EXPECT_EQ(beam.Elements(), 1);
    EXPECT_EQ(beam.restrainedDirections, 1);
    EXPECT_EQ(beam.nodalForces, 0);
    EXPECT_EQ(beam.distributedLoads, 1);
    EXPECT_NEAR(beam.mass, 3.0 * 0.1 * 0.01 * 7850.0, 1e-10);
}

TEST(PartSummary, MassesOfThePartsAddUpToThatOfTheStructure)
{
    for (unsigned seed = 0; seed < 6; ++seed) {
        const ModelStore model = StoreOf(test::RandomModel(seed, test::Supports::None));
        double mass = 0.0;
        for (const PartSummary& part : SummariseParts(model, FindConnectedParts(model))) { mass += part.mass; }
        EXPECT_NEAR(mass, TotalMass(model), 1e-12 * TotalMass(model)) << seed;
    }
}

TEST(PartSummary, TextNamesWhatIsThere)
{
    const ModelStore model = StoreOf(TwoParts());
    const std::vector<PartSummary> parts = SummariseParts(model, FindConnectedParts(model));
    EXPECT_EQ(PartSummaryText(parts[0]), "5 nodes, 1 quad, 1 tri, mass 196.25, from (0, 0, 0.5) to (3, 1, 0.5), "
                                         "4 directions restrained, 3 loads");
    EXPECT_EQ(PartSummaryText(parts[1]), "2 nodes, 1 beam, mass 23.55, from (5, 0, 0.5) to (5, 3, 0.5), "
                                         "1 direction restrained, 1 load");
}

} // namespace
} // namespace tarnvexo
