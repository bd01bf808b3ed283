#include "inertia/InertialLoads.h"

#include "core/Parallel.h"
#include "elements/BeamSection.h"
#include "elements/QuadGeometry.h"
#include "inertia/MassProperties.h"
#include "inertia/StructureCentroid.h"
#include "support/ElementTools.h"
#include "support/MeshBuilder.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr double T = 0.02, Density = 7850.0;
const Material Steel = {2.1e11, 0.3, Density};

// The short decimals of the quadrilateral's rule leave 5e-8 of second moments.
constexpr double RuleError = 1e-7;

const Vector3 A = {1.5, -0.8, 2.0}, Alpha = {0.7, -1.2, 0.4};

void ExpectVector(const Vector3& v, const Vector3& expected, double tolerance)
{
    for (int k = 0; k < 3; ++k) { EXPECT_NEAR(v[k], expected[k], tolerance) << k; }
}

template <std::size_t Nodes> Vector3 Sum(const Vector3 (&f)[Nodes])
{
    Vector3 sum = {};
    for (const Vector3& force : f) { sum = sum + force; }
    return sum;
}

template <int Nodes> Vector3 MomentAboutOrigin(const ShellElement<Nodes>& element, const Vector3 (&f)[Nodes])
{
    Vector3 moment = {};
    for (int i = 0; i < Nodes; ++i) { moment = moment + Cross(element.coordinates[i], f[i]); }
    return moment;
}

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

void QuadLoads(const QuadShellElement& element, const RigidAcceleration& acceleration, Vector3 f[QuadNodeCount])
{
    NodeInertia nodes[QuadNodeCount];
    QuadNodeInertia(element, nodes);
    for (int i = 0; i < QuadNodeCount; ++i) { f[i] = InertialForce(nodes[i], acceleration); }
}

void TriLoads(const TriShellElement& element, const RigidAcceleration& acceleration, Vector3 f[TriNodeCount])
{
    NodeInertia nodes[TriNodeCount];
    TriNodeInertia(element, nodes);
    for (int i = 0; i < TriNodeCount; ++i) { f[i] = InertialForce(nodes[i], acceleration); }
}

constexpr double X[4] = {0.3, 2.4, 2.0, 0.0}, Y[4] = {-0.5, -0.3, 0.9, 0.6};

// In a skew plane at the height z; node 4 `warp` above it.
QuadShellElement Quad(double warp = 0.0)
{
    const Frame f = SkewFrame();
    return MakeQuad({FromFrame(f, {X[0], Y[0], 0.7}), FromFrame(f, {X[1], Y[1], 0.7}), FromFrame(f, {X[2], Y[2], 0.7}),
                     FromFrame(f, {X[3], Y[3], 0.7 + warp})},
                    1.0, 0.3, T, Density);
}

TriShellElement Tri()
{
    return MakeTri({{{0.2, 0.1, 0.5}, {2.3, 0.6, -0.3}, {0.9, 1.8, 0.4}}}, 1.0, 0.3, T, Density);
}

TEST(QuadTranslationalLoads, AddUpToMinusMassTimesAcceleration)
{
    const double g = 9.81, mass = Density * T * QuadArea(Quad());
    Vector3 f[4];
    QuadLoads(Quad(), {{0.0, 0.0, g}, {}}, f);
    ExpectVector(Sum(f), {0.0, 0.0, -mass * g}, 1e-14 * mass * g);
}

TEST(QuadTranslationalLoads, AreAQuarterPerNodeOfAParallelogram)
{
    const auto quad = MakeQuad({{{0, 0, 0}, {2, 0.5, 0}, {2.6, 1.9, 0}, {0.6, 1.4, 0}}}, 1.0, 0.3, T, Density);
    const double mass = Density * T * 2.5;
    Vector3 f[4];
    QuadLoads(quad, {A, {}}, f);
    for (const Vector3& force : f) { ExpectVector(force, -mass / 4.0 * A, 1e-14 * mass * 2.0); }
}

// ∫Ni dA with 2 x 2 points.
TEST(QuadTranslationalLoads, AreSharedByTheShapeFunctions)
{
    double weight[4] = {};
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPoint point = EvaluateQuad(X, Y, xi, eta);
            for (int i = 0; i < 4; ++i) { weight[i] += Density * T * point.detJ * point.N[i]; }
        }
    }
    Vector3 f[4];
    QuadLoads(Quad(), {A, {}}, f);
    for (int i = 0; i < 4; ++i) { ExpectVector(f[i], -weight[i] * A, RuleError * weight[i]); }
}

// −∫ρ·t·Ni·(α × r) dA with r through the true nodes of a warped element.
TEST(QuadRotationalLoads, AreTheIntegralsOfTheAccelerationAtTheTrueNodes)
{
    const QuadShellElement quad = Quad(0.5);
    Vector3 exact[4] = {}, f[4];
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPoint point = EvaluateQuad(X, Y, xi, eta);
            Vector3 r = {};
            for (int i = 0; i < 4; ++i) { r = r + point.N[i] * quad.coordinates[i]; }
            for (int i = 0; i < 4; ++i) {
                exact[i] = exact[i] - Density * T * point.detJ * point.N[i] * Cross(Alpha, r);
            }
        }
    }
    QuadLoads(quad, {{}, Alpha}, f);
    for (int i = 0; i < 4; ++i) { ExpectVector(f[i], exact[i], RuleError * Density * T * QuadArea(quad)); }
}

TEST(QuadRotationalLoads, HaveTheMomentOfMinusRotationalMassTimesAcceleration)
{
    for (const double warp : {0.0, 0.5}) {
        const QuadShellElement quad = Quad(warp);
        const Matrix3 J = QuadTensor(quad);
        Vector3 f[4];
        QuadLoads(quad, {{}, Alpha}, f);
        ExpectVector(MomentAboutOrigin(quad, f), -Multiply(J, Alpha), 1e-14 * J[0][0]);
    }
}

TEST(TriTranslationalLoads, AreAThirdPerNode)
{
    const double mass = Density * T * TriArea(Tri());
    Vector3 f[3];
    TriLoads(Tri(), {A, {}}, f);
    for (const Vector3& force : f) { ExpectVector(force, -mass / 3.0 * A, 1e-14 * mass); }
}

// −m/12·Σ(1 + δij)·(α × rj)
TEST(TriRotationalLoads, AreSharedConsistently)
{
    const auto tri = Tri();
    const double mass = Density * T * TriArea(tri);
    const Vector3* r = tri.coordinates;
    Vector3 f[3];
    TriLoads(tri, {{}, Alpha}, f);
    for (int i = 0; i < 3; ++i) {
        ExpectVector(f[i], -mass / 12.0 * Cross(Alpha, r[0] + r[1] + r[2] + r[i]), 1e-14 * mass);
    }
}

TEST(TriRotationalLoads, HaveTheMomentOfMinusRotationalMassTimesAcceleration)
{
    const auto tri = Tri();
    const Matrix3 J = TriTensor(tri);
    Vector3 f[3];
    TriLoads(tri, {{}, Alpha}, f);
    ExpectVector(MomentAboutOrigin(tri, f), -Multiply(J, Alpha), 1e-14 * J[0][0]);
}

BeamElement Beam(double offset = 0.05)
{
    BeamElement beam;
    LBeamSetUp(beam, {0.3, -0.2, 0.5}, {1.1, 0.9, -0.4}, {0.5, -0.1, 1.5}, Steel, {0.2, 0.01, 0.1, 0.02}, offset,
               false);
    return beam;
}

BeamElement Tube()
{
    BeamElement beam;
    TubeBeamSetUp(beam, {0.3, -0.2, 0.5}, {1.1, 0.9, -0.4}, {0.5, -0.1, 1.5}, Steel, {0.05, 0.01}, 0.0);
    return beam;
}

Vector3 OffsetOf(const BeamElement& beam)
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    return BeamCentroidOffset(beam, frame);
}

struct EndLoads {
    Vector3 F1, M1, F2, M2;
};
EndLoads Ends(const double f[BeamDofCount])
{
    return {{f[0], f[1], f[2]}, {f[3], f[4], f[5]}, {f[6], f[7], f[8]}, {f[9], f[10], f[11]}};
}

// Work of the distributed load q(s) = −ρ·A·a(s), s = 0 ... 1, in the displacements of a bar along the beam and of a
// beam across it (Hermite polynomials), by four Gauss points, exact to the seventh degree; then the moment of the
// forces, which act at the centroids.
template <class Acceleration> EndLoads ExactLoads(const BeamElement& beam, Acceleration acceleration)
{
    const double L = BeamLength(beam);
    const Vector3 axis = (beam.node2 - beam.node1) / L, e = OffsetOf(beam);
    const double points[4] = {-0.861136311594052575, -0.339981043584856265, 0.339981043584856265, 0.861136311594052575};
    const double weights[4] = {0.347854845137453857, 0.652145154862546143, 0.652145154862546143, 0.347854845137453857};
    EndLoads ends = {};
    for (int k = 0; k < 4; ++k) {
        const double s = 0.5 * (1.0 + points[k]), ds = 0.5 * weights[k] * L;
        const Vector3 q = -Density * beam.section.A * acceleration(beam.node1 + s * L * axis + e);
        const Vector3 along = Dot(q, axis) * axis, across = q - along;
        const double H = 1.0 - 3.0 * s * s + 2.0 * s * s * s;
        ends.F1 = ends.F1 + ds * (H * across + (1.0 - s) * along);
        ends.F2 = ends.F2 + ds * ((1.0 - H) * across + s * along);
        ends.M1 = ends.M1 + ds * L * (s - 2.0 * s * s + s * s * s) * Cross(axis, across);
        ends.M2 = ends.M2 - ds * L * (s * s - s * s * s) * Cross(axis, across);
    }
    ends.M1 = ends.M1 + Cross(e, ends.F1);
    ends.M2 = ends.M2 + Cross(e, ends.F2);
    return ends;
}

void ExpectEnds(const EndLoads& ends, const EndLoads& expected, double tolerance)
{
    ExpectVector(ends.F1, expected.F1, tolerance);
    ExpectVector(ends.M1, expected.M1, tolerance);
    ExpectVector(ends.F2, expected.F2, tolerance);
    ExpectVector(ends.M2, expected.M2, tolerance);
}

double MassOf(const BeamElement& beam)
{
    return Density * beam.section.A * BeamLength(beam);
}

TEST(BeamTranslationalLoads, AreTheIntegralsOfTheInertiaWithTheMomentOfTheOffset)
{
    double f[BeamDofCount];
    BeamInertialLoads(Beam(), {A, {}}, f);
    ExpectEnds(Ends(f), ExactLoads(Beam(), [](const Vector3&) { return A; }), 1e-14 * MassOf(Beam()));
}

TEST(BeamTranslationalLoads, WithoutOffsetAreEqualForcesAndOppositeMoments)
{
    double f[BeamDofCount];
    BeamInertialLoads(Tube(), {A, {}}, f);
    const EndLoads ends = Ends(f);
    const double tolerance = 1e-14 * MassOf(Tube());
    ExpectVector(ends.F1, -MassOf(Tube()) / 2.0 * A, tolerance);
    ExpectVector(ends.F2, ends.F1, tolerance);
    ExpectVector(ends.M2, -ends.M1, tolerance);
    EXPECT_GT(Length(ends.M1), 0.01 * MassOf(Tube()));
}

TEST(BeamRotationalLoads, AreTheIntegralsOfTheInertiaWithTheMomentOfTheOffset)
{
    for (const double offset : {0.05, -0.4}) {
        double f[BeamDofCount];
        BeamInertialLoads(Beam(offset), {{}, Alpha}, f);
        ExpectEnds(Ends(f), ExactLoads(Beam(offset), [](const Vector3& r) { return Cross(Alpha, r); }),
                   1e-14 * MassOf(Beam(offset)));
    }
}

// Resultants about the origin: −∫ρ·A·(r × (α × r)) ds is the rod's true inertia, which is the rotational mass but for
// its replaced entry xx.
TEST(BeamRotationalLoads, HaveTheMomentOfTheRodAndNotOfTheReplacedEntry)
{
    const BeamElement beam = Beam();
    const Vector3 e = OffsetOf(beam), p = beam.node1 + e, q = beam.node2 + e, m = 0.5 * (p + q);
    Matrix3 J = BeamRotationalMass(beam);
    const auto acrossX = [](const Vector3& r) { return r[1] * r[1] + r[2] * r[2]; };
    const double replaced = J[0][0];
    J[0][0] = MassOf(beam) / 6.0 * (acrossX(p) + 4.0 * acrossX(m) + acrossX(q)); // Simpson's rule, exact
    double f[BeamDofCount];
    BeamInertialLoads(beam, {{}, Alpha}, f);
    const EndLoads ends = Ends(f);
    const Vector3 moment = Cross(beam.node1, ends.F1) + ends.M1 + Cross(beam.node2, ends.F2) + ends.M2;
    ExpectVector(moment, -Multiply(J, Alpha), 1e-14 * MassOf(beam));
    EXPECT_GT(std::fabs(J[0][0] - replaced), 0.1 * J[0][0]);
}

TEST(InertialLoads, WithoutAngularAccelerationAreZeroForEveryElement)
{
    Vector3 quad[4], tri[3];
    double beam[BeamDofCount];
    QuadLoads(Quad(), {{}, {}}, quad);
    TriLoads(Tri(), {{}, {}}, tri);
    BeamInertialLoads(Beam(), {{}, {}}, beam);
    for (const Vector3& f : quad) { ExpectVector(f, {}, 0.0); }
    for (const Vector3& f : tri) { ExpectVector(f, {}, 0.0); }
    for (double f : beam) { EXPECT_EQ(f, 0.0); }
}

// The twin of the resultants: the other sign of inertia would double the moment instead of cancelling it.
TEST(InertialLoads, PointAgainstTheAcceleration)
{
    Vector3 quad[4], tri[3];
    double f[BeamDofCount];
    QuadLoads(Quad(), {A, {}}, quad);
    TriLoads(Tri(), {A, {}}, tri);
    BeamInertialLoads(Beam(), {A, {}}, f);
    for (const Vector3& force : quad) { EXPECT_LT(Dot(force, A), 0.0); }
    for (const Vector3& force : tri) { EXPECT_LT(Dot(force, A), 0.0); }
    EXPECT_LT(Dot(Ends(f).F1, A), 0.0);
    EXPECT_LT(Dot(Ends(f).F2, A), 0.0);
}

// One quadrilateral, one triangle and one beam on five nodes; node 5 has no element.
ModelStore OneOfEach()
{
    MeshBuilder mesh(Steel);
    for (const Vector3& node : {Vector3{3, 1, 2}, {5, 0.2, 2.5}, {5.3, 2, 2}, {3, 2.4, 1}, {8, 1, 3}, {4, 0, 6}}) {
        mesh.AddNode(node);
    }
    mesh.AddQuad({0, 1, 2, 3}, 0.05);
    mesh.AddTri({1, 4, 2}, 0.02);
    mesh.AddLBeam(4, 0, {1.0, 0.5, 0.0}, {0.2, 0.01, 0.1, 0.02}, 0.05);
    return mesh.Model();
}

TEST(AddInertialLoads, AddsTheLoadsOfEveryElementAtItsNodes)
{
    const ModelStore model = OneOfEach();
    const RigidAcceleration acceleration = {A, Alpha};
    std::vector<double> expected(std::size_t(DofsPerNode) * model.NPOIN, 1.0);
    Vector3 quad[QuadNodeCount], tri[TriNodeCount];
    double beam[BeamDofCount];
    QuadLoads(model.QuadElements[0], acceleration, quad);
    TriLoads(model.TriElements[0], acceleration, tri);
    BeamInertialLoads(model.BeamElements[0], acceleration, beam);
    for (int k = 0; k < 3; ++k) {
        for (int i = 0; i < QuadNodeCount; ++i) { expected[DofsPerNode * i + k] += quad[i][k]; }
        const int triNodes[TriNodeCount] = {1, 4, 2};
        for (int i = 0; i < TriNodeCount; ++i) { expected[DofsPerNode * triNodes[i] + k] += tri[i][k]; }
    }
    for (int k = 0; k < DofsPerNode; ++k) {
        expected[DofsPerNode * 4 + k] += beam[k];
        expected[k] += beam[DofsPerNode + k];
    }
    std::vector<double> loads(expected.size(), 1.0);
    AddInertialLoads(model, ShellInertia(model), acceleration, loads);
    EXPECT_LT(LargestDifference(expected.data(), loads.data(), static_cast<int>(loads.size())), 1e-14);
    for (int k = 0; k < DofsPerNode; ++k) { EXPECT_EQ(loads[DofsPerNode * 5 + k], 1.0); }
}

// 60 x 60 quadrilaterals and as many beams: several ranges.
TEST(AddInertialLoads, GivesTheSameBitsWithAnyNumberOfThreads)
{
    MeshBuilder mesh(Steel);
    const Grid grid = AddGrid(mesh, 60, 60, 0.02, Cell::Quad, [](int i, int j) {
        return Vector3{0.3 * i + 0.1 * std::sin(7.0 * j), 0.3 * j, std::cos(3.0 * i)};
    });
    for (int i = 0; i < 60; ++i) {
        for (int j = 0; j < 60; ++j) {
            mesh.AddTube(grid.At(i, j), grid.At(i + 1, j + 1), {0.2, 0.1, 1.0}, {0.05, 0.01});
        }
    }
    std::vector<double> first;
    for (const int threads : {1, 2, 5}) {
        SetThreadCount(threads);
        std::vector<double> loads(std::size_t(DofsPerNode) * mesh.Model().NPOIN, 0.0);
        AddInertialLoads(mesh.Model(), ShellInertia(mesh.Model()), {A, Alpha}, loads);
        SetThreadCount(0);
        first = threads == 1 ? loads : first;
        EXPECT_EQ(loads, first) << threads << " threads";
    }
}

} // namespace
} // namespace tarnvexo
