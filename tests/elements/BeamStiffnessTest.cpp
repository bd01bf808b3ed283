#include "elements/BeamStiffness.h"

#include "elements/BeamSection.h"
#include "support/Eigenvalues.h"
#include "support/ElementTools.h"

#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <string>

namespace tarnvexo {
namespace {

using namespace test;

const Material Steel = {2.1e5, 0.3, 7.85e-9};
const double G = Steel.E / (2.0 * (1.0 + Steel.Mu));
const double NoShear = std::numeric_limits<double>::infinity();
constexpr double Oz = 7.0;

// A section, how its beam is set up and the areas that carry shear along z' and y'.
struct SectionCase {
    std::string name;
    std::function<BeamElement(const Vector3& node1, const Vector3& node2, const Vector3& reference)> beam;
    double shearAreaZ;
    double shearAreaY;
};

void PrintTo(const SectionCase& section, std::ostream* out)
{
    *out << section.name;
}

SectionCase TCase()
{
    return {"T",
            [](const Vector3& node1, const Vector3& node2, const Vector3& reference) {
                BeamElement beam;
                TBeamSetUp(beam, node1, node2, reference, Steel, {120.0, 8.0, 70.0, 11.0}, Oz);
                return beam;
            },
            120.0 * 8.0, NoShear};
}

SectionCase LCase(bool mirrored)
{
    return {mirrored ? "MirroredL" : "L",
            [mirrored](const Vector3& node1, const Vector3& node2, const Vector3& reference) {
                BeamElement beam;
                LBeamSetUp(beam, node1, node2, reference, Steel, {110.0, 9.0, 60.0, 12.0}, Oz, mirrored);
                return beam;
            },
            110.0 * 9.0, NoShear};
}

SectionCase RectangleCase()
{
    return {"Rectangle",
            [](const Vector3& node1, const Vector3& node2, const Vector3& reference) {
                BeamElement beam;
                TBeamSetUp(beam, node1, node2, reference, Steel, {90.0, 30.0, 0.0, 0.0}, Oz);
                return beam;
            },
            2.0 / 3.0 * 90.0 * 30.0, NoShear};
}

SectionCase TubeCase()
{
    const double area = std::acos(-1.0) * (54.0 * 54.0 - 46.0 * 46.0);
    return {"Tube",
            [](const Vector3& node1, const Vector3& node2, const Vector3& reference) {
                BeamElement beam;
                TubeBeamSetUp(beam, node1, node2, reference, Steel, {50.0, 8.0}, Oz);
                return beam;
            },
            0.5 * area, 0.5 * area};
}

const Vector3 Node1 = {300.0, -200.0, 150.0}, Node2 = {610.0, 240.0, -90.0}, Up = {0.2, 0.1, 1.0};

std::vector<double> StiffnessOf(const BeamElement& beam)
{
    std::vector<double> K(BeamDofCount * BeamDofCount, -777.0);
    BeamStiffness(beam, reinterpret_cast<double(*)[BeamDofCount]>(K.data()));
    return K;
}

// Along global x with z' up: local axes are global ones.
BeamElement StraightBeam()
{
    return LCase(false).beam({0.0, 0.0, 0.0}, {500.0, 0.0, 0.0}, {0.0, 0.0, 1.0});
}

// Entries of the upper triangle of the Euler–Bernoulli space frame, as textbooks print them.
TEST(BeamStiffness, WithoutShearAndOffsetIsTheClassicalFrameMatrix)
{
    BeamElement beam = StraightBeam();
    BeamSectionConstants& s = beam.section;
    s.phi1 = s.phi2 = s.ey = s.ez = 0.0;
    const double L = 500.0, EA = beam.E * s.A, EIy = beam.E * s.I1, EIz = beam.E * s.I2, GJ = G * s.J;
    double expected[BeamDofCount][BeamDofCount] = {};
    const auto set = [&](int i, int j, double value) { expected[i][j] = expected[j][i] = value; };
    for (int n : {0, 6}) {
        set(n + 0, n + 0, EA / L);
        set(n + 1, n + 1, 12.0 * EIz / (L * L * L));
        set(n + 2, n + 2, 12.0 * EIy / (L * L * L));
        set(n + 3, n + 3, GJ / L);
        set(n + 4, n + 4, 4.0 * EIy / L);
        set(n + 5, n + 5, 4.0 * EIz / L);
        set(1, n + 5, 6.0 * EIz / (L * L));
        set(7, n + 5, -6.0 * EIz / (L * L));
        set(2, n + 4, -6.0 * EIy / (L * L));
        set(8, n + 4, 6.0 * EIy / (L * L));
    }
    set(0, 6, -EA / L);
    set(1, 7, -12.0 * EIz / (L * L * L));
    set(2, 8, -12.0 * EIy / (L * L * L));
    set(3, 9, -GJ / L);
    set(4, 10, 2.0 * EIy / L);
    set(5, 11, 2.0 * EIz / L);
    const std::vector<double> K = StiffnessOf(beam);
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) {
            EXPECT_NEAR(K[i * BeamDofCount + j], expected[i][j], 1e-14 * std::fabs(expected[i][j])) << i << "," << j;
        }
    }
}

TEST(BeamStiffness, HeightOfTheCentroidCouplesAxialForceAndBending)
{
    BeamElement beam = StraightBeam();
    const std::vector<double> K = StiffnessOf(beam);
    const double a = beam.E * beam.section.A / 500.0;
    EXPECT_NEAR(K[DX * BeamDofCount + RY], a * beam.section.ez, 1e-14 * a * beam.section.ez);
    EXPECT_NEAR(K[DX * BeamDofCount + RZ], -a * beam.section.ey, 1e-14 * a * beam.section.ey);
}

TEST(BeamStiffness, ShearFactorsEnterBothEndRotationTerms)
{
    BeamElement beam = TubeCase().beam({0.0, 0.0, 0.0}, {120.0, 0.0, 0.0}, {0.0, 0.0, 1.0});
    BeamSectionConstants& s = beam.section;
    s.ez = 0.0;
    s.phi1 = 0.7;
    s.phi2 = 0.4;
    const std::vector<double> K = StiffnessOf(beam);
    const double b1 = beam.E * s.I1 / (1.7 * 120.0), b2 = beam.E * s.I2 / (1.4 * 120.0); // b·L²
    EXPECT_NEAR(K[RY * BeamDofCount + RY], 4.7 * b1, 1e-14 * b1);
    EXPECT_NEAR(K[RY * BeamDofCount + 6 + RY], 1.3 * b1, 1e-14 * b1);
    EXPECT_NEAR(K[RZ * BeamDofCount + RZ], 4.4 * b2, 1e-14 * b2);
    EXPECT_NEAR(K[RZ * BeamDofCount + 6 + RZ], 1.6 * b2, 1e-14 * b2);
}

TEST(BeamStiffness, DegenerateBeamsGiveNonFiniteEntries)
{
    EXPECT_FALSE(std::isfinite(StiffnessOf(TCase().beam(Node1, Node1, Node1 + Up))[0]));
    EXPECT_FALSE(std::isfinite(StiffnessOf(TCase().beam(Node1, Node2, Node2))[0]));
}

class BeamOfEverySection : public testing::TestWithParam<SectionCase> {
protected:
    static BeamElement SkewBeam() { return GetParam().beam(Node1, Node2, Node1 + Up); }
};

TEST_P(BeamOfEverySection, StiffnessIsSymmetric)
{
    const std::vector<double> K = StiffnessOf(SkewBeam());
    std::vector<double> transposed(K.size());
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) { transposed[j * BeamDofCount + i] = K[i * BeamDofCount + j]; }
    }
    EXPECT_LT(LargestDifference(K.data(), transposed.data(), BeamDofCount * BeamDofCount), 1e-15);
}

TEST_P(BeamOfEverySection, RigidMotionsGiveNoForce)
{
    EXPECT_LT(RigidMotionForce(StiffnessOf(SkewBeam()).data(), {Node1, Node2}), 1e-14);
}

TEST_P(BeamOfEverySection, RotationsTurnedTheWrongWayGiveForces)
{
    EXPECT_GT(RigidMotionForce(StiffnessOf(SkewBeam()).data(), {Node1, Node2}, -1.0), 1e-3);
}

// In units of about the beam's length, so that translations and rotations weigh alike.
TEST_P(BeamOfEverySection, NoOtherMotionIsFreeOfForce)
{
    std::vector<double> K = StiffnessOf(SkewBeam());
    const double unit = 100.0;
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) {
            K[i * BeamDofCount + j] /= (i % 6 < 3 ? 1.0 : unit) * (j % 6 < 3 ? 1.0 : unit);
        }
    }
    EXPECT_EQ(ZeroEigenvalues(K.data(), BeamDofCount), 6);
    EXPECT_GT(SmallestResistance(K.data(), BeamDofCount), 1e-6);
}

TEST_P(BeamOfEverySection, TurningTheAxesLeavesTheEnergyUnchanged)
{
    const Frame frame = SkewFrame();
    std::vector<double> d(BeamDofCount), turned(BeamDofCount);
    for (int i = 0; i < BeamDofCount; ++i) { d[i] = (i % 6 < 3 ? 1.0 : 0.01) * std::sin(3.0 * i + 1.0); }
    for (int i = 0; i < BeamDofCount; i += 3) {
        const Vector3 v = FromFrame(frame, {d[i], d[i + 1], d[i + 2]});
        std::copy(v.begin(), v.end(), &turned[i]);
    }
    const BeamElement beam =
        GetParam().beam(FromFrame(frame, Node1), FromFrame(frame, Node2), FromFrame(frame, Node1 + Up));
    const double energy = StrainEnergy(StiffnessOf(SkewBeam()).data(), d.data(), BeamDofCount);
    EXPECT_NEAR(StrainEnergy(StiffnessOf(beam).data(), turned.data(), BeamDofCount), energy, 1e-12 * energy);
}

// The same beam from its other end: x' and y' turn round, z' stays, so an L must be mirrored to stay where it is.
TEST_P(BeamOfEverySection, ExchangingTheEndsKeepsTheStiffness)
{
    BeamElement reversed = GetParam().beam(Node2, Node1, Node2 + Up);
    reversed.section.ey = -reversed.section.ey;
    const std::vector<double> K = StiffnessOf(SkewBeam()), R = StiffnessOf(reversed);
    std::vector<double> exchanged(K.size());
    for (int i = 0; i < BeamDofCount; ++i) {
        for (int j = 0; j < BeamDofCount; ++j) {
            exchanged[(i + 6) % 12 * BeamDofCount + (j + 6) % 12] = R[i * BeamDofCount + j];
        }
    }
    EXPECT_LT(LargestDifference(K.data(), exchanged.data(), BeamDofCount * BeamDofCount), 1e-13);
}

// Cantilever of a few elements of unequal length, clamped at Node1. Forces and moments (components along x', y', z')
// act at the last node. Displacements of the tip along the same axes from the shear-deformable theory of the line of
// centroids, to which the nodes are tied rigidly: u = u_c − θ × e.
class Cantilever : public BeamOfEverySection {
protected:
    static Motion TheoryTip(const BeamElement& beam, const Vector3& force, const Vector3& moment)
    {
        const BeamSectionConstants& s = beam.section;
        const double L = Length(Node2 - Node1), EI1 = beam.E * s.I1, EI2 = beam.E * s.I2;
        const Vector3 e = {s.ex, s.ey, s.ez};
        const Vector3 Mc = moment - Cross(e, force); // about the centroid of the tip
        const Vector3 centroid = {
            force[0] * L / (beam.E * s.A),
            force[1] * (L * L * L / (3.0 * EI2) + L / (G * GetParam().shearAreaY)) + Mc[2] * L * L / (2.0 * EI2),
            force[2] * (L * L * L / (3.0 * EI1) + L / (G * GetParam().shearAreaZ)) - Mc[1] * L * L / (2.0 * EI1)};
        const Vector3 rotation = {Mc[0] * L / (G * s.J), -force[2] * L * L / (2.0 * EI1) + Mc[1] * L / EI1,
                                  force[1] * L * L / (2.0 * EI2) + Mc[2] * L / EI2};
        return {centroid - Cross(rotation, e), rotation};
    }

    static void ExpectTipAsInTheory(const std::vector<double>& fractions, const Vector3& force, const Vector3& moment)
    {
        Vector3 axes[3];
        BeamFrame(SkewBeam(), axes);
        const Frame frame = {axes[0], axes[1], axes[2]};
        const int tip = static_cast<int>(fractions.size()) - 1;
        DenseSystem system(tip + 1);
        for (int i = 0; i < tip; ++i) {
            const Vector3 from = Node1 + fractions[i] * (Node2 - Node1);
            const Vector3 to = Node1 + fractions[i + 1] * (Node2 - Node1);
            system.AddElement<BeamNodeCount>({i, i + 1}, StiffnessOf(GetParam().beam(from, to, from + Up)).data());
        }
        const Vector3 F = FromFrame(frame, force), M = FromFrame(frame, moment);
        for (int k = 0; k < 3; ++k) {
            system.AddForce(tip, DX + k, F[k]);
            system.AddForce(tip, RX + k, M[k]);
        }
        system.Clamp(0);

        const std::vector<double> d = system.Solve();
        const double* end = &d[DofsPerNode * tip];
        const Vector3 u = IntoFrame(frame, {end[DX], end[DY], end[DZ]});
        const Vector3 rotation = IntoFrame(frame, {end[RX], end[RY], end[RZ]});
        const Motion theory = TheoryTip(SkewBeam(), force, moment);
        const double tolerance = 1e-10; // the axial terms that cancel are some 10⁴ times the bending ones
        for (int k = 0; k < 3; ++k) {
            EXPECT_NEAR(u[k], theory.u[k], tolerance * Length(theory.u)) << "displacement along " << k;
            EXPECT_NEAR(rotation[k], theory.rotation[k],
                        tolerance * (Length(theory.rotation) + Length(theory.u) / Length(Node2 - Node1)))
                << "rotation about " << k;
        }
    }

    static void ExpectForAnyMesh(const Vector3& force, const Vector3& moment)
    {
        ExpectTipAsInTheory({0.0, 1.0}, force, moment);
        ExpectTipAsInTheory({0.0, 0.25, 0.4, 1.0}, force, moment);
    }
};

TEST_P(Cantilever, StretchesUnderAnAxialForce)
{
    ExpectForAnyMesh({1000.0, 0.0, 0.0}, {});
}

TEST_P(Cantilever, BendsSidewaysUnderATransverseForce)
{
    ExpectForAnyMesh({0.0, 1000.0, 0.0}, {});
}

TEST_P(Cantilever, BendsAndShearsUnderAVerticalForce)
{
    ExpectForAnyMesh({0.0, 0.0, 1000.0}, {});
}

TEST_P(Cantilever, TwistsUnderATorque)
{
    ExpectForAnyMesh({}, {1e5, 0.0, 0.0});
}

TEST_P(Cantilever, BendsUnderAMomentAboutY)
{
    ExpectForAnyMesh({}, {0.0, 1e5, 0.0});
}

TEST_P(Cantilever, BendsUnderAMomentAboutZ)
{
    ExpectForAnyMesh({}, {0.0, 0.0, 1e5});
}

TEST_P(Cantilever, MovesAsTheSumUnderAllLoadsTogether)
{
    ExpectForAnyMesh({700.0, -300.0, 500.0}, {2e4, 5e4, -3e4});
}

std::string NameOf(const testing::TestParamInfo<SectionCase>& info)
{
    return info.param.name;
}

const auto EverySection = testing::Values(TCase(), LCase(false), LCase(true), RectangleCase(), TubeCase());
INSTANTIATE_TEST_SUITE_P(Sections, BeamOfEverySection, EverySection, NameOf);
INSTANTIATE_TEST_SUITE_P(Sections, Cantilever, EverySection, NameOf);

// An axial force on the node line bends the beam by its arm to the centroid: the tip sinks by F·e·L²/(2·E·I).
TEST(BeamStiffness, AxialForceOnTheNodeLineBendsAnOffsetBeam)
{
    const double L = 500.0, F = 1000.0;
    const BeamElement beam = TCase().beam({0.0, 0.0, 0.0}, {L, 0.0, 0.0}, {0.0, 0.0, 1.0});
    DenseSystem system(2);
    system.AddElement<BeamNodeCount>({0, 1}, StiffnessOf(beam).data());
    system.Clamp(0);
    system.AddForce(1, DX, F);
    const double deflection = F * beam.section.ez * L * L / (2.0 * beam.E * beam.section.I1);
    EXPECT_NEAR(system.Solve()[DofsPerNode + DZ], deflection, 1e-11 * deflection);
}

// A vertical force through the web twists an L whose centroid lies beside it, the mirrored L the other way.
TEST(BeamStiffness, ForceBesideTheCentroidTwistsTheBeamTheMirroredOneTheOtherWay)
{
    for (const bool mirrored : {false, true}) {
        const BeamElement beam = LCase(mirrored).beam({0.0, 0.0, 0.0}, {500.0, 0.0, 0.0}, {0.0, 0.0, 1.0});
        DenseSystem system(2);
        system.AddElement<BeamNodeCount>({0, 1}, StiffnessOf(beam).data());
        system.Clamp(0);
        system.AddForce(1, DZ, 1000.0);
        const double twist = -1000.0 * beam.section.ey * 500.0 / (G * beam.section.J);
        EXPECT_NEAR(system.Solve()[DofsPerNode + RX], twist, 1e-11 * std::fabs(twist));
        EXPECT_EQ(twist < 0.0, !mirrored);
    }
}

} // namespace
} // namespace tarnvexo
