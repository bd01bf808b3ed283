#include "inertia/MassProperties.h"

#include "elements/BeamSection.h"
#include "elements/QuadGeometry.h"
#include "inertia/StructureCentroid.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <initializer_list>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e11, 0.3, 7850.0};
const double Pi = std::acos(-1.0);

// The short decimals of the quadrilateral's rule leave 5e-8 of second moments.
constexpr double RuleError = 1e-7;

// Inertia tensors of single elements about the origin.
template <int Nodes> Matrix3 ShellTensor(const ShellElement<Nodes>& element, const NodeInertia (&nodes)[Nodes])
{
    MassMoments moments;
    for (int i = 0; i < Nodes; ++i) { AddMoments(moments, NodeMoments(nodes[i], element.coordinates[i])); }
    return InertiaTensor(moments.second);
}

Matrix3 QuadTensor(const QuadShellElement& element)
{
    NodeInertia nodes[QuadNodeCount];
    QuadNodeInertia(element, nodes);
    return ShellTensor<QuadNodeCount>(element, nodes);
}

Matrix3 TriTensor(const TriShellElement& element)
{
    NodeInertia nodes[TriNodeCount];
    TriNodeInertia(element, nodes);
    return ShellTensor<TriNodeCount>(element, nodes);
}

Matrix3 Tensor(const ModelStore& model)
{
    return RotationalMass(model, ShellInertia(model));
}

void ExpectTensor(const Matrix3& J, const Matrix3& expected, double relative)
{
    double largest = 0.0;
    for (const auto& row : expected) {
        for (double entry : row) { largest = std::max(largest, std::fabs(entry)); }
    }
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { EXPECT_NEAR(J[i][j], expected[i][j], relative * largest) << i << "," << j; }
    }
}

// Components of a tensor along the axes of a frame, from components along global axes.
Matrix3 InFrame(const Frame& frame, const Matrix3& J)
{
    Matrix3 turned = {};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            for (int k = 0; k < 3; ++k) {
                for (int l = 0; l < 3; ++l) { turned[i][j] += frame[i][k] * J[k][l] * frame[j][l]; }
            }
        }
    }
    return turned;
}

// mass·((r·r)·I − r·rᵀ)
Matrix3 PointMass(double mass, const Vector3& r)
{
    Matrix3 J = {};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { J[i][j] = mass * ((i == j ? Dot(r, r) : 0.0) - r[i] * r[j]); }
    }
    return J;
}

Matrix3 SumOf(std::initializer_list<Matrix3> tensors)
{
    Matrix3 sum = {};
    for (const Matrix3& tensor : tensors) {
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) { sum[i][j] += tensor[i][j]; }
        }
    }
    return sum;
}

// Rectangle centre ± a ± b of four distorted quadrilaterals, or eight triangles.
void AddFace(MeshBuilder& mesh, const Vector3& centre, const Vector3& a, const Vector3& b, double thickness, Cell cell)
{
    AddGrid(mesh, 2, 2, thickness, cell, [&](int i, int j) {
        const bool inner = i == 1 && j == 1;
        return centre + (i - 1.0 + (inner ? 0.3 : 0.0)) * a + (j - 1.0 - (inner ? 0.2 : 0.0)) * b;
    });
}

class ShellMassProperties : public testing::TestWithParam<Cell> {};

// Rectangle a x b about its centre, moved to the point c.
TEST_P(ShellMassProperties, OfAPlateAreThoseOfTheRectangle)
{
    const Frame frame = SkewFrame();
    const double a = 2.0, b = 0.8, t = 0.02, mass = Steel.Density * a * b * t;
    const Vector3 c = {0.4, -0.7, 1.1};
    MeshBuilder mesh(Steel);
    AddFace(mesh, FromFrame(frame, c), a / 2 * frame[0], b / 2 * frame[1], t, GetParam());
    const Matrix3 own = {{{mass * b * b / 12, 0, 0}, {0, mass * a * a / 12, 0}, {0, 0, mass * (a * a + b * b) / 12}}};
    EXPECT_NEAR(TotalMass(mesh.Model()), mass, 1e-14 * mass);
    ExpectTensor(InFrame(frame, Tensor(mesh.Model())), SumOf({own, PointMass(mass, c)}), RuleError);
}

// Six walls a·b, b·c, c·a about the middle of the box.
TEST_P(ShellMassProperties, OfABoxAreThoseOfItsSixWalls)
{
    const Frame f = SkewFrame();
    const double a = 2.0, b = 0.8, c = 1.3, t = 0.02;
    MeshBuilder mesh(Steel);
    for (const double side : {-0.5, 0.5}) {
        AddFace(mesh, side * c * f[2], a / 2 * f[0], b / 2 * f[1], t, GetParam());
        AddFace(mesh, side * a * f[0], b / 2 * f[1], c / 2 * f[2], t, GetParam());
        AddFace(mesh, side * b * f[1], c / 2 * f[2], a / 2 * f[0], t, GetParam());
    }
    // ∫x² dA over all walls: 2·(a·b + c·a)·a²/12 + 2·b·c·a²/4, and so on.
    const double unit = 2.0 * Steel.Density * t;
    const double xx = unit * ((a * b + c * a) * a * a / 12 + b * c * a * a / 4);
    const double yy = unit * ((a * b + b * c) * b * b / 12 + c * a * b * b / 4);
    const double zz = unit * ((c * a + b * c) * c * c / 12 + a * b * c * c / 4);
    const double mass = unit * (a * b + b * c + c * a);
    EXPECT_NEAR(TotalMass(mesh.Model()), mass, 1e-14 * mass);
    ExpectTensor(InFrame(f, Tensor(mesh.Model())), {{{yy + zz, 0, 0}, {0, zz + xx, 0}, {0, 0, xx + yy}}}, RuleError);
}

// Regular prism of n walls: each w wide at the distance r from the axis, M·(r² + w²/12) about it. Half of that and
// M·h²/12 across.
TEST_P(ShellMassProperties, OfARingAreThoseOfItsFacets)
{
    const Frame f = SkewFrame();
    const int n = 16;
    const double R = 1.5, h = 0.6, t = 0.02, w = 2.0 * R * std::sin(Pi / n), r = R * std::cos(Pi / n);
    MeshBuilder mesh(Steel);
    const Grid grid = AddGrid(mesh, n, 1, t, GetParam(), [&](int i, int j) {
        return FromFrame(f, {R * std::cos(2.0 * Pi * i / n), R * std::sin(2.0 * Pi * i / n), (j - 0.5) * h});
    });
    ASSERT_EQ(grid.columns, n);
    const double mass = n * w * h * t * Steel.Density, about = mass * (r * r + w * w / 12);
    const double across = about / 2 + mass * h * h / 12;
    EXPECT_NEAR(TotalMass(mesh.Model()), mass, 1e-14 * mass);
    ExpectTensor(InFrame(f, Tensor(mesh.Model())), {{{across, 0, 0}, {0, across, 0}, {0, 0, about}}}, RuleError);
}

TEST_P(ShellMassProperties, TurnWithTheStructure)
{
    const auto turned = [](const Frame& frame) {
        MeshBuilder mesh(Steel);
        AddFace(mesh, FromFrame(frame, {0.4, -0.7, 1.1}), FromFrame(frame, {1.0, 0.2, 0.1}),
                FromFrame(frame, {-0.3, 0.5, 0.2}), 0.02, GetParam());
        return Tensor(mesh.Model());
    };
    const Frame global = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    ExpectTensor(InFrame(SkewFrame(), turned(SkewFrame())), turned(global), 1e-14);
}

INSTANTIATE_TEST_SUITE_P(Cells, ShellMassProperties, testing::Values(Cell::Quad, Cell::Tri),
                         [](const auto& info) { return info.param == Cell::Quad ? "Quads" : "Triangles"; });

TEST(TriTensor, InThePlaneOfXAndYHasNoProductsWithZAndItsPolarMomentIsTheSumOfTheOthers)
{
    const Matrix3 J =
        TriTensor(MakeTri({{{0.2, 0.1, 0}, {2.3, 0.6, 0}, {0.9, 1.8, 0}}}, 1.0, 0.3, 0.02, Steel.Density));
    EXPECT_EQ(J[0][2], 0.0);
    EXPECT_EQ(J[1][2], 0.0);
    EXPECT_EQ(J[2][0], 0.0);
    EXPECT_EQ(J[2][1], 0.0);
    EXPECT_NEAR(J[2][2], J[0][0] + J[1][1], 1e-15 * J[2][2]);
}

// r runs through the true nodes, the area is that of the projection: 3 x 3 points over the bilinear r.
TEST(QuadTensor, OfAWarpedElementUsesTheTrueNodes)
{
    const double x[4] = {0.0, 2.1, 1.7, -0.3}, y[4] = {0.0, 0.2, 1.4, 1.1}, z[4] = {0.4, 0.4, 0.4, 1.0};
    const auto quad = MakeQuad({{{x[0], y[0], z[0]}, {x[1], y[1], z[1]}, {x[2], y[2], z[2]}, {x[3], y[3], z[3]}}}, 1.0,
                               0.3, 0.02, Steel.Density);
    const double points[3] = {-std::sqrt(0.6), 0.0, std::sqrt(0.6)}, weights[3] = {5.0 / 9, 8.0 / 9, 5.0 / 9};
    // Local axes lie in the plane z = 0.4, so x and y of the projection are the global ones but for a turn.
    Matrix3 exact = {};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            const QuadPoint point = EvaluateQuad(x, y, points[i], points[j]);
            Vector3 r = {};
            for (int n = 0; n < 4; ++n) { r = r + point.N[n] * Vector3{x[n], y[n], z[n]}; }
            exact = SumOf({exact, PointMass(Steel.Density * 0.02 * point.detJ * weights[i] * weights[j], r)});
        }
    }
    ExpectTensor(QuadTensor(quad), exact, RuleError);
    auto flat = quad;
    flat.coordinates[3][2] = 0.4;
    EXPECT_GT(std::fabs(QuadTensor(flat)[0][0] - exact[0][0]), 0.1 * exact[0][0]); // the height matters
}

BeamElement Tube(const Vector3& node1, const Vector3& node2)
{
    BeamElement beam;
    TubeBeamSetUp(beam, node1, node2, node1 + Vector3{0.3, 0.2, 1.0}, Steel, {0.05, 0.01}, 0.0);
    return beam;
}

// A slender rod from p to q: ∫ρA((r·r)·I − r·rᵀ) ds; only xx is replaced.
TEST(BeamRotationalMass, IsThatOfARodThroughTheCentroidsButForXX)
{
    BeamElement beam;
    LBeamSetUp(beam, {0.3, -0.2, 0.5}, {1.1, 0.9, -0.4}, {0.5, -0.1, 1.5}, Steel, {0.2, 0.01, 0.1, 0.02}, 0.05, false);
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 e = BeamCentroidOffset(beam, frame);
    const Vector3 p = beam.node1 + e, q = beam.node2 + e;
    const double mass = Steel.Density * beam.section.A * BeamLength(beam);
    // Simpson's rule is exact for the square of a linear function.
    Matrix3 exact = SumOf({PointMass(mass / 6, p), PointMass(4 * mass / 6, 0.5 * (p + q)), PointMass(mass / 6, q)});
    exact[0][0] = BeamLength(beam) * Steel.Density * beam.section.J;
    ExpectTensor(BeamRotationalMass(beam), exact, 1e-14);
}

// Deliberate: torsional inertia at xx whatever the direction, here that of bending about x.
TEST(BeamRotationalMass, OfABeamAlongYHasItsTorsionalInertiaAtXX)
{
    const BeamElement beam = Tube({0.0, -1.0, 0.0}, {0.0, 1.0, 0.0});
    const double mass = Steel.Density * beam.section.A * 2.0, torsional = 2.0 * Steel.Density * beam.section.J;
    ExpectTensor(BeamRotationalMass(beam), {{{torsional, 0, 0}, {0, 0, 0}, {0, 0, mass * 4.0 / 12.0}}}, 1e-14);
    EXPECT_EQ(BeamRotationalMass(beam)[0][0], torsional);
}

TEST(RotationalMass, ChangesWhenTheStructureMoves)
{
    const auto quad = MakeQuad({{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}}, 1.0, 0.3, 0.02, Steel.Density);
    auto moved = quad;
    for (Vector3& node : moved.coordinates) { node = node + Vector3{0.0, 0.0, 3.0}; }
    const double mass = 0.02 * Steel.Density;
    EXPECT_NEAR(QuadTensor(moved)[0][0] - QuadTensor(quad)[0][0], 9.0 * mass, 1e-13 * mass);
}

ModelStore OneOfEach()
{
    MeshBuilder mesh(Steel);
    for (const Vector3& node : {Vector3{3, 1, 2}, {5, 0.2, 2.5}, {5.3, 2, 2}, {3, 2.4, 1}, {8, 1, 3}, {4, 0, 6}}) {
        mesh.AddNode(node);
    }
    mesh.AddQuad({0, 1, 2, 3}, 0.05);
    mesh.AddTri({1, 4, 2}, 0.02);
    mesh.AddLBeam(0, 5, {1.0, 0.5, 0.0}, {0.2, 0.01, 0.1, 0.02}, 0.05);
    mesh.Model().TriElements[0].Density = 2700.0;
    return mesh.Model();
}

TEST(TotalMass, IsVolumeTimesDensityOfEveryElement)
{
    const ModelStore model = OneOfEach();
    const BeamElement& beam = model.BeamElements[0];
    const double expected = QuadArea(model.QuadElements[0]) * 0.05 * 7850.0 +
                            TriArea(model.TriElements[0]) * 0.02 * 2700.0 + std::sqrt(18.0) * beam.section.A * 7850.0;
    EXPECT_NEAR(TotalMass(model), expected, 1e-14 * expected);
}

TEST(RotationalMass, IsTheSumOfTheElements)
{
    const ModelStore model = OneOfEach();
    ExpectTensor(Tensor(model),
                 SumOf({BeamRotationalMass(model.BeamElements[0]), QuadTensor(model.QuadElements[0]),
                        TriTensor(model.TriElements[0])}),
                 1e-15);
}

// The whole structure about the origin, and every element about a point as if the origin stood there.
TEST(MassMoments, HaveTheMassTheCentreAndTheTensorOfTheElements)
{
    const ModelStore model = OneOfEach();
    const MassMoments moments = MomentsOfMass(model, ShellInertia(model));
    const double mass = TotalMass(model);
    EXPECT_NEAR(moments.mass, mass, 1e-14 * mass);
    Matrix3 rod = BeamRotationalMass(model.BeamElements[0]);
    rod[0][0] = InertiaTensor(BeamMoments(model.BeamElements[0]).second)[0][0];
    ExpectTensor(InertiaTensor(moments.second),
                 SumOf({rod, QuadTensor(model.QuadElements[0]), TriTensor(model.TriElements[0])}), 1e-14);
}

TEST(MassMoments, AboutAPointAreThoseOfTheStructureMovedThere)
{
    const Vector3 point = {2.0, -1.0, 4.0};
    ModelStore moved = OneOfEach();
    ShiftOrigin(moved, -point);
    const ModelStore model = OneOfEach();
    const std::vector<NodeInertia> inertia = ShellInertia(model);
    MassMoments about = BeamMoments(model.BeamElements[0], point);
    for (int n = 0; n < model.NPOIN; ++n) {
        AddMoments(about, NodeMoments(inertia[n], model.NodeCoordinates[n], point));
    }
    const MassMoments expected = MomentsOfMass(moved, ShellInertia(moved));
    EXPECT_NEAR(about.mass, expected.mass, 1e-14 * expected.mass);
    for (int k = 0; k < 3; ++k) { EXPECT_NEAR(about.first[k], expected.first[k], 1e-14 * 10.0 * expected.mass); }
    ExpectTensor(about.second, expected.second, 1e-13);
}

TEST(MassProperties, OfAnEmptyModelAreZero)
{
    EXPECT_EQ(TotalMass(ModelStore()), 0.0);
    EXPECT_EQ(Tensor(ModelStore()), Matrix3{});
}

} // namespace
} // namespace tarnvexo
