#include "elements/BeamSection.h"

#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr double E = 2.1e11, Mu = 0.3, L = 1.7, Oz = 0.013;
const double G = E / (2.0 * (1.0 + Mu));
const double Pi = std::acos(-1.0);

// Every constant, so that a comparison prints all of them.
std::array<double, 13> All(const BeamSectionConstants& s)
{
    return {s.A, s.I1, s.I2, s.J, s.phi1, s.phi2, s.c1, s.c2, s.c3, s.c4, s.ex, s.ey, s.ez};
}

// One of the plates of a section: widths across y', z' and centre.
struct Plate {
    double width, height, y, z;
};

// Area, centroid and second moments from the definitions, about the centroid: ∫z² dA, ∫y² dA.
struct Integrals {
    double A = 0.0, y = 0.0, z = 0.0, I1 = 0.0, I2 = 0.0;
};
Integrals Integrate(std::initializer_list<Plate> plates)
{
    Integrals sum;
    for (const Plate& p : plates) {
        sum.A += p.width * p.height;
        sum.y += p.width * p.height * p.y;
        sum.z += p.width * p.height * p.z;
    }
    sum.y /= sum.A;
    sum.z /= sum.A;
    for (const Plate& p : plates) {
        const double dy = p.y - sum.y, dz = p.z - sum.z;
        sum.I1 += p.width * p.height * (p.height * p.height / 12.0 + dz * dz);
        sum.I2 += p.width * p.height * (p.width * p.width / 12.0 + dy * dy);
    }
    return sum;
}

const TBeamSection T = {0.2, 0.01, 0.1, 0.015};
const LBeamSection Angle = {0.18, 0.012, 0.09, 0.02};

TEST(TSectionConstants, OfTheWorkedExample)
{
    const BeamSectionConstants s = TSectionConstants({0.2, 0.01, 0.1, 0.01}, E, Mu, L, 0.0);
    EXPECT_NEAR(s.A, 0.003, 1e-17);
    EXPECT_NEAR(s.ez, 0.135, 1e-15); // zc
    EXPECT_NEAR(s.c3, 0.075, 1e-15);
    EXPECT_NEAR(s.c4, 0.135, 1e-15);
}

TEST(TSectionConstants, AreTheIntegralsOverWebAndFlange)
{
    const BeamSectionConstants s = TSectionConstants(T, E, Mu, L, Oz);
    const Integrals exact = Integrate({{T.Tw, T.Hw, 0.0, T.Hw / 2}, {T.Bf, T.Tf, 0.0, T.Hw + T.Tf / 2}});
    EXPECT_NEAR(s.A, exact.A, 1e-15 * exact.A);
    EXPECT_NEAR(s.I1, exact.I1, 1e-14 * exact.A * T.Hw * T.Hw); // difference of moments about the base
    EXPECT_NEAR(s.I2, exact.I2, 1e-14 * exact.I2);
    EXPECT_EQ(s.ex, 0.0);
    EXPECT_EQ(s.ey, 0.0);
    EXPECT_NEAR(s.ez, exact.z + Oz, 1e-15);
}

TEST(TSectionConstants, TorsionAddsTheTwoPlates)
{
    const double J = (T.Hw * std::pow(T.Tw, 3) + T.Bf * std::pow(T.Tf, 3)) / 3.0;
    EXPECT_NEAR(TSectionConstants(T, E, Mu, L, Oz).J, J, 1e-15 * J);
}

TEST(TSectionConstants, WebAloneCarriesShear)
{
    const BeamSectionConstants s = TSectionConstants(T, E, Mu, L, Oz);
    const double phi1 = 12.0 * E * s.I1 / (G * T.Hw * T.Tw * L * L);
    EXPECT_NEAR(s.phi1, phi1, 1e-14 * phi1);
}

TEST(TSectionConstants, ExtremeFibresReachTheFlangeEdgesTheTopAndTheBase)
{
    const BeamSectionConstants s = TSectionConstants(T, E, Mu, L, Oz);
    EXPECT_EQ(s.c1, T.Bf / 2);
    EXPECT_EQ(s.c2, T.Bf / 2);
    EXPECT_NEAR(s.c3 + s.c4, T.Hw + T.Tf, 1e-15);
    EXPECT_NEAR(s.c4, s.ez - Oz, 1e-15);
}

TEST(LSectionConstants, AreTheIntegralsOverBothLegs)
{
    const BeamSectionConstants s = LSectionConstants(Angle, E, Mu, L, Oz, false);
    const double yf = Angle.Bf / 2 - Angle.Tw / 2; // the flange starts at the web's outer face
    const Integrals exact =
        Integrate({{Angle.Tw, Angle.Hw, 0.0, Angle.Hw / 2}, {Angle.Bf, Angle.Tf, yf, Angle.Hw + Angle.Tf / 2}});
    EXPECT_NEAR(s.A, exact.A, 1e-15 * exact.A);
    EXPECT_NEAR(s.I1, exact.I1, 1e-14 * exact.A * Angle.Hw * Angle.Hw);
    EXPECT_NEAR(s.I2, exact.I2, 1e-14 * exact.A * Angle.Bf * Angle.Bf);
    EXPECT_EQ(s.ex, 0.0);
    EXPECT_NEAR(s.ey, exact.y, 1e-15);
    EXPECT_NEAR(s.ez, exact.z + Oz, 1e-15);
}

TEST(LSectionConstants, TorsionAndShearAreThoseOfTheT)
{
    const BeamSectionConstants s = LSectionConstants(Angle, E, Mu, L, Oz, false);
    const BeamSectionConstants t = TSectionConstants(Angle, E, Mu, L, Oz);
    EXPECT_EQ(s.J, t.J);
    EXPECT_EQ(s.I1, t.I1);
    EXPECT_EQ(s.phi1, t.phi1);
}

TEST(LSectionConstants, ExtremeFibresAreMeasuredFromTheWebCentreLine)
{
    const BeamSectionConstants s = LSectionConstants(Angle, E, Mu, L, Oz, false);
    EXPECT_EQ(s.c1, Angle.Bf - Angle.Tw / 2);
    EXPECT_EQ(s.c2, Angle.Tw / 2);
    EXPECT_NEAR(s.c3, Angle.Hw + Angle.Tf - (s.ez - Oz), 1e-15);
    EXPECT_NEAR(s.c4, s.ez - Oz, 1e-15);
}

TEST(LSectionConstants, MirroringChangesOnlyTheSideFibresAndTheSignOfTheLateralOffset)
{
    BeamSectionConstants plain = LSectionConstants(Angle, E, Mu, L, Oz, false);
    const BeamSectionConstants mirrored = LSectionConstants(Angle, E, Mu, L, Oz, true);
    EXPECT_EQ(mirrored.c1, plain.c2);
    EXPECT_EQ(mirrored.c2, plain.c1);
    EXPECT_EQ(mirrored.ey, -plain.ey);
    EXPECT_NE(plain.ey, 0.0);
    plain.c1 = mirrored.c1;
    plain.c2 = mirrored.c2;
    plain.ey = mirrored.ey;
    EXPECT_EQ(All(mirrored), All(plain));
}

// h x t: two thirds of the area carry shear, not the whole web as in a T.
std::array<double, 13> RectangleByHand(double h, double t)
{
    const double A = h * t, I1 = t * h * h * h / 12.0;
    const double phi1 = 12.0 * E * I1 / (G * 2.0 / 3.0 * A * L * L);
    return {A,   I1,        h * t * t * t / 12.0, h * t * t * t / 3.0, phi1, 0.0, t / 2, t / 2, h / 2, h / 2, 0.0,
            0.0, h / 2 + Oz};
}

void ExpectRectangle(const BeamSectionConstants& s, const WebFlangeSection& section)
{
    const auto values = All(s), expected = RectangleByHand(section.Hw, section.Tw);
    for (std::size_t i = 0; i < values.size(); ++i) { EXPECT_NEAR(values[i], expected[i], 1e-14 * expected[i]) << i; }
}

TEST(TSectionConstants, WithoutFlangeWidthAreThoseOfTheRectangle)
{
    const TBeamSection section = {0.2, 0.03, 0.0, 0.015};
    ExpectRectangle(TSectionConstants(section, E, Mu, L, Oz), section);
}

TEST(TSectionConstants, WithoutFlangeThicknessAreThoseOfTheRectangle)
{
    const TBeamSection section = {0.2, 0.03, 0.1, 0.0};
    ExpectRectangle(TSectionConstants(section, E, Mu, L, Oz), section);
}

TEST(LSectionConstants, WithoutFlangeWidthAreThoseOfTheRectangle)
{
    const LBeamSection section = {0.2, 0.03, 0.0, 0.015};
    ExpectRectangle(LSectionConstants(section, E, Mu, L, Oz, false), section);
}

TEST(LSectionConstants, WithoutFlangeThicknessAreThoseOfTheRectangle)
{
    const LBeamSection section = {0.2, 0.03, 0.1, 0.0};
    ExpectRectangle(LSectionConstants(section, E, Mu, L, Oz, false), section);
}

TEST(LSectionConstants, MirroringDoesNothingToARectangle)
{
    for (const LBeamSection& section : {LBeamSection{0.2, 0.03, 0.0, 0.015}, LBeamSection{0.2, 0.03, 0.1, 0.0}}) {
        EXPECT_EQ(All(LSectionConstants(section, E, Mu, L, Oz, true)),
                  All(LSectionConstants(section, E, Mu, L, Oz, false)));
    }
}

TEST(BeamSectionConstants, BendingAboutTheWebAxisHasNoShearDeformation)
{
    EXPECT_EQ(TSectionConstants(T, E, Mu, L, Oz).phi2, 0.0);
    EXPECT_EQ(LSectionConstants(Angle, E, Mu, L, Oz, false).phi2, 0.0);
    EXPECT_EQ(LSectionConstants(Angle, E, Mu, L, Oz, true).phi2, 0.0);
    EXPECT_EQ(TSectionConstants({0.2, 0.03, 0.0, 0.0}, E, Mu, L, Oz).phi2, 0.0);
}

TEST(TubeSectionConstants, AreThoseOfTheRing)
{
    const CBeamSection tube = {0.05, 0.008};
    const double outer = 0.054, inner = 0.046;
    const BeamSectionConstants s = TubeSectionConstants(tube, E, Mu, L, Oz);
    const double A = Pi * (outer * outer - inner * inner);
    const double I = Pi / 4.0 * (std::pow(outer, 4) - std::pow(inner, 4));
    EXPECT_NEAR(s.A, A, 1e-14 * Pi * outer * outer);
    EXPECT_NEAR(s.I1, I, 1e-14 * Pi * std::pow(outer, 4));
    EXPECT_EQ(s.I2, s.I1);
    EXPECT_NEAR(s.J, 2.0 * I, 1e-14 * Pi * std::pow(outer, 4));
}

TEST(TubeSectionConstants, HalfTheAreaCarriesShearInBothDirections)
{
    const BeamSectionConstants s = TubeSectionConstants({0.05, 0.008}, E, Mu, L, Oz);
    const double phi = 12.0 * E * s.I1 / (G * 0.5 * s.A * L * L);
    EXPECT_NEAR(s.phi1, phi, 1e-14 * phi);
    EXPECT_EQ(s.phi2, s.phi1);
}

TEST(TubeSectionConstants, FibresReachTheOuterWallAndOnlyTheSectionOffsetMovesTheCentroid)
{
    const BeamSectionConstants s = TubeSectionConstants({0.05, 0.008}, E, Mu, L, Oz);
    for (double c : {s.c1, s.c2, s.c3, s.c4}) { EXPECT_DOUBLE_EQ(c, 0.054); }
    EXPECT_EQ(s.ex, 0.0);
    EXPECT_EQ(s.ey, 0.0);
    EXPECT_EQ(s.ez, Oz);
}

TEST(TubeSectionConstants, WallOfTwiceTheMeanRadiusIsASolidBar)
{
    const double R = 0.02, Do = 4.0 * R;
    const BeamSectionConstants s = TubeSectionConstants({R, 2.0 * R}, E, Mu, L, 0.0);
    EXPECT_NEAR(s.A, Pi * Do * Do / 4.0, 1e-15 * s.A);
    EXPECT_NEAR(s.I1, Pi * std::pow(Do, 4) / 64.0, 1e-15 * s.I1);
    EXPECT_NEAR(s.J, Pi * std::pow(Do, 4) / 32.0, 1e-15 * s.J);
}

TEST(BeamSectionConstants, ShearFactorFallsWithTheSquareOfTheLength)
{
    const double shortBeam = TSectionConstants(T, E, Mu, 0.5, 0.0).phi1;
    const double longBeam = TSectionConstants(T, E, Mu, 1.5, 0.0).phi1;
    EXPECT_NEAR(shortBeam, 9.0 * longBeam, 1e-14 * shortBeam);
}

TEST(BeamSectionConstants, ZeroLengthGivesAnInfiniteShearFactor)
{
    EXPECT_FALSE(std::isfinite(TSectionConstants(T, E, Mu, 0.0, 0.0).phi1));
    EXPECT_FALSE(std::isfinite(TubeSectionConstants({0.05, 0.008}, E, Mu, 0.0, 0.0).phi1));
}

const Vector3 Node1 = {0.3, -0.2, 0.5}, Node2 = {1.1, 0.9, -0.4}, Up = {0.2, 0.1, 1.0};
const Material Steel = {E, Mu, 7850.0};

void ExpectPlaced(const BeamElement& beam)
{
    EXPECT_EQ(beam.node1, Node1);
    EXPECT_EQ(beam.node2, Node2);
    EXPECT_EQ(beam.reference, Node1 + Up);
    EXPECT_EQ(beam.tolerance, 1e-15);
    EXPECT_EQ(beam.E, E);
    EXPECT_EQ(beam.Mu, Mu);
    EXPECT_EQ(beam.Density, 7850.0);
    EXPECT_EQ(beam.sectionOffset, Oz);
}

TEST(BeamSetUp, TStoresPointsMaterialAndSectionForItsLength)
{
    BeamElement beam;
    TBeamSetUp(beam, Node1, Node2, Node1 + Up, Steel, T, Oz);
    ExpectPlaced(beam);
    EXPECT_FALSE(beam.mirrored);
    EXPECT_EQ(All(beam.section), All(TSectionConstants(T, E, Mu, Length(Node2 - Node1), Oz)));
}

TEST(BeamSetUp, LStoresPointsMaterialSectionAndItsMirroredFlag)
{
    BeamElement beam;
    LBeamSetUp(beam, Node1, Node2, Node1 + Up, Steel, Angle, Oz, true);
    ExpectPlaced(beam);
    EXPECT_TRUE(beam.mirrored);
    EXPECT_EQ(All(beam.section), All(LSectionConstants(Angle, E, Mu, Length(Node2 - Node1), Oz, true)));
}

TEST(BeamSetUp, TubeStoresPointsMaterialAndSectionForItsLength)
{
    BeamElement beam;
    TubeBeamSetUp(beam, Node1, Node2, Node1 + Up, Steel, {0.05, 0.008}, Oz);
    ExpectPlaced(beam);
    EXPECT_EQ(All(beam.section), All(TubeSectionConstants({0.05, 0.008}, E, Mu, Length(Node2 - Node1), Oz)));
}

BeamElement Placed(const Vector3& node1, const Vector3& node2, const Vector3& reference)
{
    BeamElement beam;
    LBeamSetUp(beam, node1, node2, reference, Steel, Angle, Oz, false);
    return beam;
}

TEST(BeamFrame, AlongGlobalXWithTheReferenceAboveIsTheIdentity)
{
    Vector3 frame[3];
    BeamFrame(Placed({0.0, 0.0, 0.0}, {2.5, 0.0, 0.0}, {0.0, 0.0, 1.0}), frame);
    EXPECT_EQ(frame[0], (Vector3{1.0, 0.0, 0.0}));
    EXPECT_EQ(frame[1], (Vector3{0.0, 1.0, 0.0}));
    EXPECT_EQ(frame[2], (Vector3{0.0, 0.0, 1.0}));
}

TEST(BeamFrame, IsOrthonormalAndRightHanded)
{
    Vector3 frame[3];
    BeamFrame(Placed(Node1, Node2, Node1 + Up), frame);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(Dot(frame[i], frame[i]), 1.0, 1e-15);
        EXPECT_NEAR(Dot(frame[i], frame[(i + 1) % 3]), 0.0, 1e-15);
    }
    EXPECT_NEAR(Dot(Cross(frame[0], frame[1]), frame[2]), 1.0, 1e-15);
}

TEST(BeamFrame, ZLiesInThePlaneOfTheReferencePointAndOnItsSide)
{
    Vector3 frame[3];
    BeamFrame(Placed(Node1, Node2, Node1 + Up), frame);
    EXPECT_NEAR(Dot(frame[0], Node2 - Node1), Length(Node2 - Node1), 1e-15);
    EXPECT_NEAR(Dot(frame[1], Up), 0.0, 1e-15);
    EXPECT_GT(Dot(frame[2], Up), 0.0);
}

TEST(BeamFrame, TheLengthOfTheOrientationVectorAndItsPartAlongTheBeamDoNotMatter)
{
    Vector3 frame[3], same[3];
    BeamFrame(Placed(Node1, Node2, Node1 + Up), frame);
    BeamFrame(Placed(Node1, Node2, Node1 + 7.0 * Up + 0.6 * (Node2 - Node1)), same);
    for (int i = 0; i < 3; ++i) {
        for (int k = 0; k < 3; ++k) { EXPECT_NEAR(same[i][k], frame[i][k], 1e-14); }
    }
}

TEST(BeamFrame, OrientationAlongTheBeamHasNoFrame)
{
    Vector3 frame[3];
    BeamFrame(Placed({0.0, 0.0, 0.0}, {2.0, 0.0, 0.0}, {1.0, 0.0, 0.0}), frame);
    EXPECT_FALSE(std::isfinite(frame[1][0]));
    EXPECT_FALSE(std::isfinite(frame[2][0]));
}

TEST(BeamCentroidOffset, GoesUpTheSectionAndTowardsTheFlange)
{
    const BeamElement beam = Placed({0.0, 0.0, 0.0}, {0.0, 3.0, 0.0}, {0.0, 0.0, 1.0}); // y' = -x
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 offset = BeamCentroidOffset(beam, frame);
    EXPECT_NEAR(offset[0], -beam.section.ey, 1e-16);
    EXPECT_NEAR(offset[1], 0.0, 1e-16);
    EXPECT_NEAR(offset[2], beam.section.ez, 1e-16);
}

} // namespace
} // namespace tarnvexo
