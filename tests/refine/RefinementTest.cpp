#include "refine/Refinement.h"

#include "app/AssemblyDriver.h"
#include "inertia/InertiaRelief.h"
#include "inertia/MassProperties.h"
#include "inertia/StructureCentroid.h"
#include "support/MeshBuilder.h"
#include "support/SameModel.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <stdexcept>

namespace tarnvexo {
namespace {

using test::DifferentTable;
using test::ModelText;
using test::StoreOf;

ModelStore Refined(const ModelStore& coarse, int k)
{
    ModelStore fine;
    RefineModel(coarse, k, fine);
    return fine;
}

// Point of a plane that is along no axis.
int NodeInPlane(ModelText& model, double x, double y)
{
    return model.Node(x, y, 0.7 + 0.3 * x - 0.2 * y);
}

// Three distorted quadrilaterals in one plane, two triangles that leave it, three beams: on a shared edge, on the edge
// of a triangle and on no edge at all. Two materials and thicknesses, every kind of section and load.
//
//     3 ---- 4 ------ 5
//     |      |        | \                                                                                  .
//     |  q0  |  q1    |  7 --- 8 (beam)
//     |      |        | /
//     0 ---- 1 ------ 2      q2 below 0-1
ModelText DistortedStructure()
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Material(7.0e10, 0.33, 2700.0);
    model.Thickness(0.01);
    model.Thickness(0.016);
    model.TSection(0.2, 0.01, 0.1, 0.012);
    model.LSection(0.15, 0.01, 0.05, 0.01);
    model.CSection(0.05, 0.004);
    NodeInPlane(model, 0.0, 0.0);
    NodeInPlane(model, 1.1, -0.1);
    NodeInPlane(model, 2.3, 0.2);
    NodeInPlane(model, -0.1, 0.9);
    NodeInPlane(model, 0.9, 1.2);
    NodeInPlane(model, 2.0, 1.0);
    NodeInPlane(model, 0.2, -0.8);
    model.Node(2.9, 0.5, 2.1);
    model.Node(3.9, 0.4, 2.0);
    NodeInPlane(model, 1.2, -1.0);
    model.Quad({0, 1, 4, 3}, 0, 0);
    model.Quad({2, 5, 4, 1}, 1, 1);
    model.Quad({1, 0, 6, 9}, 0, 1);
    model.Tri({2, 7, 5}, 0, 1);
    model.Tri({7, 9, 2}, 1, 0);
    model.Beam({4, 1}, {0.2, 0.1, 1.0}, 0, TSection, 0, 0.005);
    model.Beam({5, 7}, {0.0, 1.0, 0.3}, 1, LSection, 0, 0.008, 1);
    model.Beam({7, 8}, {0.1, 0.2, -1.0}, 0, CSection, 0, 0.02);
    model.Restrain(3, {1, 1, 1, 0, 0, 0});
    model.Restrain(8, {0, 1, 0, 0, 0, 1});
    model.Force(4, {10.0, -20.0, 30.0, 1.0, 2.0, -3.0});
    model.Force(8, {0.0, 5.0, 0.0, 0.0, 0.0, 0.0});
    model.QuadLoad(1, 100.0, 250.0, -80.0);
    model.QuadLoad(0, 10.0, 10.0, 10.0);
    model.QuadLoad(1, 1.0, 2.0, 3.0); // a second one on the same element
    model.TriLoad(1, 40.0, -20.0, 60.0);
    model.BeamLoad(0, 500.0, 700.0);
    model.BeamLoad(2, -30.0, 90.0);
    return model;
}

struct Whole {
    double area = 0.0;
    double mass = 0.0;
    Vector3 centroid = {};
    LoadResultant loads;
};

Whole WholeOf(ModelStore model)
{
    Whole whole;
    for (const QuadShellElement& element : model.QuadElements) { whole.area += QuadArea(element); }
    for (const TriShellElement& element : model.TriElements) { whole.area += TriArea(element); }
    whole.mass = TotalMass(model);
    whole.centroid = StructureCentroid(model);
    model.EquationCount = DofsPerNode * model.NPOIN;
    AssembleLoads(model);
    whole.loads = ResultantOfLoads(model);
    return whole;
}

TEST(Refinement, ByOneGivesTheSameModel)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    EXPECT_EQ(DifferentTable(coarse, Refined(coarse, 1)), "");
}

TEST(Refinement, KeepsAreaMassCentroidAndTheResultantOfTheLoads)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    const Whole before = WholeOf(coarse);
    for (const int k : {2, 3, 7}) {
        const Whole after = WholeOf(Refined(coarse, k));
        EXPECT_NEAR(after.area, before.area, 1e-14 * before.area) << k;
        EXPECT_NEAR(after.mass, before.mass, 1e-14 * before.mass) << k;
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_NEAR(after.centroid[c], before.centroid[c], 1e-14 * 4.0) << k;         // the structure is 4 long
            EXPECT_NEAR(after.loads.force[c], before.loads.force[c], 1e-13 * 600.0) << k; // the beam's load is 600
            EXPECT_NEAR(after.loads.moment[c], before.loads.moment[c], 1e-13 * 600.0 * 4.0) << k;
        }
    }
}

// The twin of the test above that must fail: halves of a beam that each carry the whole one's end values.
TEST(Refinement, WouldChangeTheMomentOfALoadWhoseEndValuesWereOnlyCopied)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    ModelStore fine = Refined(coarse, 2);
    for (BeamDistributedLoad& load : fine.BeamDistributedLoads) {
        load.q1 = load.element < 2 ? 500.0 : -30.0;
        load.q2 = load.element < 2 ? 700.0 : 90.0;
    }
    EXPECT_GT(Length(WholeOf(fine).loads.moment - WholeOf(coarse).loads.moment), 1.0);
}

TEST(Refinement, SharesTheNodesOfEdgesBetweenShellsAndBeams)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    // 0-1, 1-4, 4-3, 3-0; 2-5, 5-4, 1-2; 0-6, 6-9, 9-1; 2-7, 7-5; 7-9, 9-2; 7-8 of the last beam alone.
    const int edges = 15;
    for (const int k : {2, 3, 4}) {
        const ModelStore fine = Refined(coarse, k);
        EXPECT_EQ(fine.NPOIN, 10 + edges * (k - 1) + 3 * (k - 1) * (k - 1) + 2 * (k - 1) * (k - 2) / 2);
        EXPECT_EQ(fine.NELEM_S_4ND, 3 * k * k);
        EXPECT_EQ(fine.NELEM_S_3ND, 2 * k * k);
        EXPECT_EQ(fine.NELEM_B, 3 * k);
    }
}

TEST(Refinement, LeavesNoTwoNodesInOnePlace)
{
    const ModelStore fine = Refined(StoreOf(DistortedStructure()), 5);
    for (std::size_t a = 0; a < fine.NodeCoordinates.size(); ++a) {
        for (std::size_t b = 0; b < a; ++b) {
            EXPECT_GT(Length(fine.NodeCoordinates[a] - fine.NodeCoordinates[b]), 0.01) << a << " and " << b;
        }
    }
}

TEST(Refinement, UsesEveryNodeItMakes)
{
    const ModelStore fine = Refined(StoreOf(DistortedStructure()), 4);
    std::vector<bool> used(fine.NodeCoordinates.size(), false);
    const auto mark = [&](const auto& connectivity) {
        for (const auto& nodes : connectivity) {
            for (const int node : nodes) { used[std::size_t(node)] = true; }
        }
    };
    mark(fine.QuadConnectivity);
    mark(fine.TriConnectivity);
    mark(fine.BeamConnectivity);
    EXPECT_EQ(std::count(used.begin(), used.end(), false), 0);
}

TEST(Refinement, KeepsTheDirectionOfNormalsAndFirstEdges)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    const int k = 3;
    const ModelStore fine = Refined(coarse, k);
    for (int e = 0; e < fine.NELEM_S_4ND; ++e) {
        const QuadShellElement& parent = coarse.QuadElements[std::size_t(e / (k * k))];
        const QuadShellElement& part = fine.QuadElements[std::size_t(e)];
        EXPECT_NEAR(Dot(part.axes[2], parent.axes[2]), 1.0, 1e-14) << e;
        EXPECT_GT(Dot(part.axes[0], parent.axes[0]), 0.85) << e; // edges 1–2 and 4–3 are up to 29° apart
    }
    for (int e = 0; e < fine.NELEM_S_3ND; ++e) {
        const TriShellElement& parent = coarse.TriElements[std::size_t(e / (k * k))];
        const TriShellElement& part = fine.TriElements[std::size_t(e)];
        EXPECT_NEAR(Dot(part.axes[2], parent.axes[2]), 1.0, 1e-14) << e;
        EXPECT_NEAR(std::fabs(Dot(part.axes[0], parent.axes[0])), 1.0, 1e-14) << e;
    }
}

TEST(Refinement, CarriesOverWhatElementsAreMadeOf)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    const int k = 3;
    const ModelStore fine = Refined(coarse, k);
    for (int e = 0; e < fine.NELEM_S_4ND; ++e) {
        const ShellPropertyRef &parent = coarse.QuadProperties[std::size_t(e / (k * k))],
                               &part = fine.QuadProperties[std::size_t(e)];
        EXPECT_EQ(part.material, parent.material);
        EXPECT_EQ(part.thickness, parent.thickness);
        EXPECT_EQ(fine.QuadElements[std::size_t(e)].E, coarse.Materials[std::size_t(parent.material)].E);
    }
    for (int e = 0; e < fine.NELEM_B; ++e) {
        const std::size_t parent = std::size_t(e / k), part = std::size_t(e);
        EXPECT_EQ(fine.BeamProperties[part].orientation, coarse.BeamProperties[parent].orientation);
        EXPECT_EQ(fine.BeamSectionRefs[part].BeamSecType, coarse.BeamSectionRefs[parent].BeamSecType);
        EXPECT_EQ(fine.BeamElements[part].mirrored, coarse.BeamElements[parent].mirrored);
        EXPECT_EQ(fine.BeamElements[part].section.A, coarse.BeamElements[parent].section.A);
        EXPECT_NEAR(fine.BeamElements[part].section.phi1, k * k * coarse.BeamElements[parent].section.phi1,
                    1e-13 * k * k * coarse.BeamElements[parent].section.phi1); // 12·E·I/(G·As·L²) of the part's length
    }
}

TEST(Refinement, LeavesSupportsAndForcesAtTheirNodes)
{
    const ModelStore coarse = StoreOf(DistortedStructure());
    const ModelStore fine = Refined(coarse, 4);
    ASSERT_EQ(fine.NRN, 2);
    ASSERT_EQ(fine.NFOR, 2);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(fine.Restraints[i].node, coarse.Restraints[i].node);
        EXPECT_TRUE(std::equal(fine.Restraints[i].flags, fine.Restraints[i].flags + 6, coarse.Restraints[i].flags));
        EXPECT_EQ(fine.NodalForces[i].node, coarse.NodalForces[i].node);
    }
    for (std::size_t n = 0; n < coarse.NodeCoordinates.size(); ++n) {
        EXPECT_EQ(fine.NodeCoordinates[n], coarse.NodeCoordinates[n]);
    }
}

// z = x·y over the square 2 × 2: the new nodes lie on it, the pressure is linear in the plane of the first three nodes.
TEST(Refinement, OfAWarpedQuadrilateralLiesOnItsBilinearSurface)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.01);
    for (const auto& [x, y] : {std::pair(0.0, 0.0), {2.0, 0.0}, {2.0, 2.0}, {0.0, 2.0}}) {
        text.Node(x, y, 0.1 * x * y);
    }
    text.Quad({0, 1, 2, 3});
    text.QuadLoad(0, 3.0, 5.0, 11.0); // along the element's own axes: 3 + x + 3·y'/|n2 n3|·2
    const ModelStore fine = Refined(StoreOf(text), 4);
    for (const Vector3& X : fine.NodeCoordinates) { EXPECT_NEAR(X[2], 0.1 * X[0] * X[1], 1e-16); }

    const double edge23 = std::sqrt(2.0 * 2.0 + 0.4 * 0.4);
    const Vector3 e2 = {0.0, 2.0 / edge23, 0.4 / edge23};
    for (const ShellDistributedLoad& load : fine.QuadDistributedLoads) {
        for (std::size_t i = 0; i < 3; ++i) {
            const Vector3& X = fine.NodeCoordinates[std::size_t(fine.QuadConnectivity[std::size_t(load.element)][i])];
            EXPECT_NEAR(load.pressure[i], 3.0 + X[0] + 6.0 * Dot(e2, X) / edge23, 1e-14 * 11.0);
        }
    }
}

// A cantilever of one beam: the same tip deflection from ten, since the element is exact for a tip load.
TEST(Refinement, DoesNotChangeTheDeflectionOfABeamUnderATipLoad)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.CSection(0.05, 0.004);
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 2.0, 0.5);
    text.Beam({0, 1}, {0.0, 0.0, 1.0}, 0, CSection, 0);
    text.Restrain(0);
    text.Force(1, {0.0, 0.0, 100.0, 0.0, 0.0, 0.0});
    ModelStore coarse = StoreOf(text);
    ModelStore fine = Refined(coarse, 10);
    test::SolveSupported(coarse);
    test::SolveSupported(fine);
    EXPECT_NEAR(test::Displacement(fine, 1, DZ), test::Displacement(coarse, 1, DZ),
                1e-9 * std::fabs(test::Displacement(coarse, 1, DZ)));
}

// 5 nodes, 6·14999 on edges, 10·14999² in the quadrilaterals, 14999·14998/2 in the triangle.
TEST(Refinement, ThrowsWhenCountsWouldOverflow)
{
    ModelText text = test::OneOfEachKind();
    for (int e = 0; e < 9; ++e) { text.Quad({0, 1, 2, 3}); }
    const ModelStore coarse = StoreOf(text);
    ModelStore fine;
    try {
        RefineModel(coarse, 15000, fine);
        FAIL();
    } catch (const std::length_error& overflow) {
        EXPECT_STREQ(overflow.what(),
                     "error: refined by 15000, the model would have 2362267510 nodes\n"
                     "  expected: 2147483647 or fewer, since counts and numbers of the model file have 32 bits\n"
                     "  to do:    refine by a smaller number");
    }
}

} // namespace
} // namespace tarnvexo
