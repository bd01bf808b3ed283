#include "output/BeamSectionStress.h"

#include "core/Parallel.h"
#include "elements/BeamSection.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellNodeStress.h"
#include "elements/ShellSetUp.h"
#include "elements/ShellStiffness.h"
#include "output/ShellStressRecovery.h"
#include "support/ChildProcess.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>
#include <vector>

namespace tarnvexo {
namespace {

using test::ChildResult;
using test::ModelText;
using test::RunInChild;
using test::StoreOf;

constexpr double E = 2e11;

struct SectionBeam {
    BeamElement beam;
    SectionOutline outline;
};

// Between two points; "up" is the direction of the orientation point.
SectionBeam TBeam(const TBeamSection& section, double offset, const Vector3& from, const Vector3& to, const Vector3& up,
                  double Mu = 0.0)
{
    SectionBeam b;
    TBeamSetUp(b.beam, from, to, from + up, {E, Mu, 0.0}, section, offset);
    b.outline = TOutline(section, offset);
    return b;
}

SectionBeam LBeam(const LBeamSection& section, double offset, bool mirrored, const Vector3& from, const Vector3& to,
                  const Vector3& up, double Mu = 0.0)
{
    SectionBeam b;
    LBeamSetUp(b.beam, from, to, from + up, {E, Mu, 0.0}, section, offset, mirrored);
    b.outline = LOutline(section, offset, mirrored);
    return b;
}

SectionBeam Tube(const CBeamSection& section, double offset, const Vector3& from, const Vector3& to, const Vector3& up,
                 double Mu = 0.0)
{
    SectionBeam b;
    TubeBeamSetUp(b.beam, from, to, from + up, {E, Mu, 0.0}, section, offset);
    b.outline = TubeOutline(section, offset);
    return b;
}

// One of every section, three units tall, with and without offset, along x with z' = z, y' = y.
std::vector<SectionBeam> OneOfEverySection(const Vector3& to, const Vector3& up, double Mu = 0.0)
{
    std::vector<SectionBeam> beams;
    for (double offset : {0.0, 0.25, -2.0}) {
        beams.push_back(TBeam({3.0, 0.1, 2.0, 0.08}, offset, {}, to, up, Mu));
        beams.push_back(TBeam({3.0, 0.1, 0.0, 0.0}, offset, {}, to, up, Mu));
        beams.push_back(LBeam({3.0, 0.1, 1.2, 0.08}, offset, false, {}, to, up, Mu));
        beams.push_back(LBeam({3.0, 0.1, 1.2, 0.08}, offset, true, {}, to, up, Mu));
        beams.push_back(Tube({1.5, 0.1}, offset, {}, to, up, Mu));
    }
    return beams;
}

const Vector3 Up = {0.0, 0.0, 1.0};

BeamSectionModel Solve(const SectionBeam& b, const std::array<double, BeamDofCount>& ends)
{
    return SolveBeamSection(b.beam, b.outline, ends.data());
}

// Largest magnitude of any raw stress component.
double LargestStress(const BeamSectionModel& section)
{
    double largest = 0.0;
    for (const SectionPatch& patch : section.patches) {
        for (int i = 0; i < QuadNodeCount; ++i) {
            for (int k = 0; k < StressCount; ++k) {
                largest = std::max({largest, std::fabs(patch.positiveFace[i][k]), std::fabs(patch.negativeFace[i][k])});
            }
        }
    }
    return largest;
}

const double* Displacement(const BeamSectionModel& section, int node)
{
    return &section.displacements[std::size_t(DofsPerNode * node)];
}

QuadShellElement WallElement(const BeamElement& beam, const BeamSectionModel& section, const SectionPatch& patch)
{
    Vector3 corners[QuadNodeCount];
    for (int i = 0; i < QuadNodeCount; ++i) { corners[i] = section.nodes[std::size_t(patch.nodes[i])]; }
    QuadShellElement element;
    QuadShellSetUp(element, corners, QuadNodeCount, beam.E, beam.Mu, 0.0, patch.thickness);
    return element;
}

// What holds a node from outside the walls: the sum of the walls' nodal forces there, relative to the terms it is the
// sum of. Round-off at a node that only walls hold.
double OutsideForce(const BeamElement& beam, const BeamSectionModel& section, int node)
{
    double force[DofsPerNode] = {}, terms[DofsPerNode] = {};
    for (const SectionPatch& patch : section.patches) {
        const int* position = std::find(patch.nodes, patch.nodes + QuadNodeCount, node);
        if (position == patch.nodes + QuadNodeCount) {
            continue;
        }
        double K[QuadDofCount][QuadDofCount], d[QuadDofCount];
        QuadShellStiffness(WallElement(beam, section, patch), K);
        GatherDisplacements<QuadNodeCount>(patch.nodes, section.displacements, d);
        for (int k = 0; k < DofsPerNode; ++k) {
            const double* row = K[DofsPerNode * (position - patch.nodes) + k];
            for (int j = 0; j < QuadDofCount; ++j) {
                force[k] += row[j] * d[j];
                terms[k] += std::fabs(row[j] * d[j]);
            }
        }
    }
    double largest = 0.0;
    for (int k = 0; k < 3; ++k) { largest = std::max(largest, std::fabs(force[k]) / terms[k]); }
    return largest;
}

constexpr double RoundOff = 1e-11;  // of the equations' terms, with links ten orders stiffer than walls
constexpr double ClearForce = 1e-5; // what a held node shows in the tests below is larger

// Pull, shear, twist and bending at once: no two points of an end section move alike.
constexpr std::array<double, BeamDofCount> GeneralEnds = {0.0,  0.0,   0.0,  1e-3,  2e-3, -3e-3,
                                                          2e-3, -3e-3, 5e-3, -4e-3, 1e-3, 2e-3};

void ExpectMovesLikeTheEnd(const BeamSectionModel& section, int node, const double* end)
{
    for (int k = 0; k < DofsPerNode; ++k) {
        EXPECT_NEAR(Displacement(section, node)[k], end[k], 1e-17) << "node " << node << ", direction " << k;
    }
}

bool MovesLikeTheEnd(const BeamSectionModel& section, int node, const double* end)
{
    for (int k = 0; k < DofsPerNode; ++k) {
        if (std::fabs(Displacement(section, node)[k] - end[k]) > 1e-17) {
            return false;
        }
    }
    return true;
}

// ---- slices

TEST(SliceCount, IsTheLengthInLongestSegmentsRoundedDown)
{
    const SectionOutline outline = TOutline({6.0, 0.5, 3.0, 0.25}, 0.0); // segments of 2 and 1.5
    EXPECT_EQ(SliceCount(10.0, outline), 5.0);
    EXPECT_EQ(SliceCount(std::nextafter(10.0, 0.0), outline), 4.0);
    EXPECT_EQ(SliceCount(11.99, outline), 5.0);
}

TEST(SliceCount, OfABeamShorterThanItsLongestSegmentIsOne)
{
    const SectionOutline outline = TOutline({6.0, 0.5, 3.0, 0.25}, 0.0);
    EXPECT_EQ(SliceCount(1.9, outline), 1.0);
    EXPECT_EQ(SliceCount(1e-9, outline), 1.0);
    EXPECT_EQ(SliceCount(0.0, outline), 1.0);
}

// The upper third of 0.2 is longer than 0.2/3 by its last bit: a beam of length 1 has 14 slices, not 15.
TEST(SliceCount, TruncatesWithoutTolerance)
{
    EXPECT_EQ(SliceCount(1.0, LOutline({0.2, 0.008, 0.1, 0.01}, 0.0, false)), 14.0);
}

TEST(SliceCount, OfALengthThatIsNotANumberIsOne)
{
    EXPECT_EQ(SliceCount(std::numeric_limits<double>::quiet_NaN(), TOutline({6.0, 0.5, 3.0, 0.25}, 0.0)), 1.0);
}

// ---- mesh

TEST(BeamSectionMesh, IsEndOneThenRingsOfOutlinePointsThenEndTwo)
{
    const SectionBeam b = TBeam({6.0, 0.5, 3.0, 0.25}, 0.5, {1.0, 2.0, 3.0}, {5.0, 2.0, 3.0}, Up);
    const BeamSectionModel section = Solve(b, GeneralEnds);
    constexpr int slices = 2, points = 6;
    ASSERT_EQ(section.nodes.size(), std::size_t(points * (slices + 1) + 2));
    EXPECT_EQ(section.displacements.size(), section.nodes.size() * DofsPerNode);
    EXPECT_EQ(section.nodes.front(), (Vector3{1.0, 2.0, 3.0}));
    EXPECT_EQ(section.nodes.back(), (Vector3{5.0, 2.0, 3.0}));
    for (int ring = 0; ring <= slices; ++ring) {
        for (int i = 0; i < points; ++i) {
            const OutlinePoint& point = b.outline.points[std::size_t(i)];
            EXPECT_EQ(section.nodes[std::size_t(1 + points * ring + i)],
                      (Vector3{1.0 + 2.0 * ring, 2.0 + point.y, 3.0 + point.z}))
                << "ring " << ring << ", point " << i;
        }
    }
}

TEST(BeamSectionMesh, HasOnePatchPerSliceAndSegmentSliceBySlice)
{
    const SectionBeam b = TBeam({6.0, 0.5, 3.0, 0.25}, 0.0, {}, {4.0, 0.0, 0.0}, Up);
    const BeamSectionModel section = Solve(b, GeneralEnds);
    const int expected[10][4] = {{1, 7, 8, 2},   {2, 8, 9, 3},   {3, 9, 10, 4},   {4, 10, 11, 5},   {4, 10, 12, 6},
                                 {7, 13, 14, 8}, {8, 14, 15, 9}, {9, 15, 16, 10}, {10, 16, 17, 11}, {10, 16, 18, 12}};
    ASSERT_EQ(section.patches.size(), 10u);
    for (int p = 0; p < 10; ++p) {
        const SectionPatch& patch = section.patches[std::size_t(p)];
        for (int i = 0; i < 4; ++i) { EXPECT_EQ(patch.nodes[i], expected[p][i]) << "patch " << p; }
        EXPECT_EQ(patch.thickness, p % 5 < 3 ? 0.5 : 0.25) << "patch " << p;
    }
    // Along the beam first, then across: the web looks to -y, the flange halves to +z and -z.
    EXPECT_EQ(section.patches[0].normal, (Vector3{0.0, -1.0, 0.0}));
    EXPECT_EQ(section.patches[3].normal, (Vector3{0.0, 0.0, -1.0}));
    EXPECT_EQ(section.patches[4].normal, (Vector3{0.0, 0.0, 1.0}));
}

TEST(BeamSectionMesh, OfABeamShorterThanItsLongestSegmentHasOneSlice)
{
    const BeamSectionModel section = Solve(Tube({1.5, 0.1}, 0.0, {}, {0.1, 0.0, 0.0}, Up), GeneralEnds);
    EXPECT_EQ(section.nodes.size(), 12u * 2 + 2);
    EXPECT_EQ(section.patches.size(), 12u);
    EXPECT_EQ(section.patches[11].nodes[2], 13); // closed: the last segment ends at the ring's first point
    EXPECT_EQ(section.patches[11].nodes[3], 1);
}

TEST(BeamSectionMesh, OfAMirroredLHasItsLegAtMinusY)
{
    const Vector3 to = {4.0, 0.0, 0.0};
    const BeamSectionModel plain = Solve(LBeam({3.0, 0.1, 1.2, 0.08}, 0.0, false, {}, to, Up), GeneralEnds);
    const BeamSectionModel mirrored = Solve(LBeam({3.0, 0.1, 1.2, 0.08}, 0.0, true, {}, to, Up), GeneralEnds);
    EXPECT_EQ(plain.nodes[6], (Vector3{0.0, 1.2, 3.0}));
    EXPECT_EQ(mirrored.nodes[6], (Vector3{0.0, -1.2, 3.0}));
    EXPECT_EQ(plain.nodes[5], (Vector3{0.0, 0.6, 3.0}));
    EXPECT_EQ(mirrored.nodes[5], (Vector3{0.0, -0.6, 3.0}));
}

// ---- stresses

// u = t + ω × r at both ends. The stresses that cancel have the size E·|u|/(wall segment).
TEST(BeamSectionStress, OfARigidMotionIsZero)
{
    const Vector3 to = {12.0, 6.0, 3.0};
    const Vector3 translation = {0.3, -0.2, 0.7}, omega = {0.5, 0.9, -0.4};
    const auto ends = [&](double sign) {
        std::array<double, BeamDofCount> d;
        for (int k = 0; k < 3; ++k) {
            d[std::size_t(k)] = translation[k];
            d[std::size_t(6 + k)] = translation[k] + Cross(omega, to)[k];
            d[std::size_t(3 + k)] = d[std::size_t(9 + k)] = sign * omega[k];
        }
        return d;
    };
    for (const SectionBeam& b : OneOfEverySection(to, {0.0, 0.3, 1.0}, 0.3)) {
        const double size = E * Length(translation + Cross(omega, to)) / LongestSegment(b.outline);
        EXPECT_LT(LargestStress(Solve(b, ends(1.0))), 1e-12 * size);
        EXPECT_GT(LargestStress(Solve(b, ends(-1.0))), 1e-2 * size); // a wrong sign of the rotation bends the beam
    }
}

// Without Poisson's ratio nothing holds the walls back: σ = E·ε along the beam, everywhere, for any section.
TEST(BeamSectionStress, OfAPureStretchIsYoungsModulusTimesStrain)
{
    const Vector3 to = {12.0, 6.0, 3.0}, axis = Normalised(to);
    const double strain = 1e-3, s = E * strain;
    std::array<double, BeamDofCount> ends = {};
    for (int k = 0; k < 3; ++k) { ends[std::size_t(6 + k)] = strain * to[k]; }
    const double expected[StressCount] = {s * axis[0] * axis[0], s * axis[1] * axis[1], s * axis[2] * axis[2],
                                          s * axis[0] * axis[1], s * axis[2] * axis[0], s * axis[1] * axis[2]};
    for (const SectionBeam& b : OneOfEverySection(to, {0.0, 0.3, 1.0})) {
        const BeamSectionModel section = Solve(b, ends);
        for (const SectionPatch& patch : section.patches) {
            for (int i = 0; i < QuadNodeCount; ++i) {
                for (int k = 0; k < StressCount; ++k) {
                    // The links give way by wall/link stiffness, some 1e-10.
                    ASSERT_NEAR(patch.positiveFace[i][k], expected[k], 1e-8 * s);
                    ASSERT_NEAR(patch.negativeFace[i][k], expected[k], 1e-8 * s);
                }
            }
        }
    }
}

// Ends turned against each other about y': curvature κ = θ/L about the node line, σ = E·κ·z in every wall, z being the
// height of the face over the node line. (The shear of the webs alternates by ±G·κ·a/2 within a slice of length a, as
// bilinear membranes do in bending.)
TEST(BeamSectionStress, OfPureBendingIsLinearOverTheHeight)
{
    const double length = 12.0, theta = 6e-3, kappa = theta / length;
    const std::array<double, BeamDofCount> ends = {0, 0, 0, 0, -theta / 2, 0, 0, 0, 0, 0, theta / 2, 0};
    for (const SectionBeam& b : OneOfEverySection({length, 0.0, 0.0}, Up)) {
        const BeamSectionModel section = Solve(b, ends);
        const double largest = E * kappa * 3.5;
        for (const SectionPatch& patch : section.patches) {
            for (int i = 0; i < QuadNodeCount; ++i) {
                const double z = section.nodes[std::size_t(patch.nodes[i])][2];
                const double face = patch.normal[2] * patch.thickness / 2;
                ASSERT_NEAR(patch.positiveFace[i][SX], E * kappa * (z + face), 1e-8 * largest);
                ASSERT_NEAR(patch.negativeFace[i][SX], E * kappa * (z - face), 1e-8 * largest);
                for (int k : {SY, SZ, TYZ}) {
                    ASSERT_NEAR(patch.positiveFace[i][k], 0.0, 1e-8 * largest);
                    ASSERT_NEAR(patch.negativeFace[i][k], 0.0, 1e-8 * largest);
                }
            }
        }
    }
}

TEST(BeamSectionStress, OfAPatchComesFromItsOwnCornersDisplacements)
{
    for (const SectionBeam& b : OneOfEverySection({7.0, 1.0, 2.0}, Up, 0.3)) {
        const BeamSectionModel section = Solve(b, GeneralEnds);
        for (const SectionPatch& patch : section.patches) {
            const QuadShellElement element = WallElement(b.beam, section, patch);
            double d[QuadDofCount], positive[StressCount], negative[StressCount];
            GatherDisplacements<QuadNodeCount>(patch.nodes, section.displacements, d);
            const double xi[] = {-1, 1, 1, -1}, eta[] = {-1, -1, 1, 1};
            for (int i = 0; i < QuadNodeCount; ++i) {
                QuadNodeStress(element, positive, negative, d, xi[i], eta[i]);
                for (int k = 0; k < StressCount; ++k) {
                    ASSERT_EQ(patch.positiveFace[i][k], positive[k]);
                    ASSERT_EQ(patch.negativeFace[i][k], negative[k]);
                }
            }
        }
    }
}

// ---- ends

// Ring points tied by links move with the end as a rigid plane, all others by what the walls do to them.
TEST(BeamSectionEnds, HoldTheirRingsRigidlyAndNothingElse)
{
    const SectionBeam b = TBeam({3.0, 0.1, 2.0, 0.08}, 0.25, {}, {4.0, 0.0, 0.0}, Up, 0.3);
    const BeamSectionModel section = Solve(b, GeneralEnds);
    const int count = int(section.nodes.size());
    for (int n = 0; n < count; ++n) {
        const bool first = n <= 6, last = n >= count - 7;
        if (first || last) {
            const Vector3 arm = section.nodes[std::size_t(n)] - section.nodes[std::size_t(first ? 0 : count - 1)];
            const double* end = GeneralEnds.data() + (first ? 0 : 6);
            const Vector3 omega = {end[3], end[4], end[5]};
            for (int k = 0; k < 3; ++k) {
                EXPECT_NEAR(Displacement(section, n)[k], end[k] + Cross(omega, arm)[k], 1e-10) << "node " << n;
                EXPECT_NEAR(Displacement(section, n)[3 + k], omega[k], 1e-10) << "node " << n;
            }
        } else {
            EXPECT_LT(OutsideForce(b.beam, section, n), RoundOff) << "node " << n;
        }
    }
}

// Without offset the web's base lies on the node line: no link can hold it, so it receives the end's displacements.
TEST(BeamSectionEnds, GiveTheirDisplacementsToTheOutlinePointOnTheNodeLine)
{
    const Vector3 to = {4.0, 0.0, 0.0};
    for (const SectionBeam& b : {TBeam({3.0, 0.1, 2.0, 0.08}, 0.0, {}, to, Up, 0.3),
                                 LBeam({3.0, 0.1, 1.2, 0.08}, 0.0, true, {}, to, Up, 0.3)}) {
        const BeamSectionModel section = Solve(b, GeneralEnds);
        const int count = int(section.nodes.size());
        ExpectMovesLikeTheEnd(section, 0, GeneralEnds.data());
        ExpectMovesLikeTheEnd(section, 1, GeneralEnds.data());
        ExpectMovesLikeTheEnd(section, count - 7, GeneralEnds.data() + 6);
        ExpectMovesLikeTheEnd(section, count - 1, GeneralEnds.data() + 6);
        EXPECT_GT(OutsideForce(b.beam, section, 1), ClearForce);
        EXPECT_GT(OutsideForce(b.beam, section, count - 7), ClearForce);
    }
}

// Web height 1000: the limit is exactly 1. At that distance a link of length 1 still holds the point, which then moves
// by rotation × arm too; any nearer it moves as the end does.
TEST(BeamSectionEnds, CountAPointAsOnTheNodeLineOnlyBelowAThousandthOfTheHeight)
{
    const TBeamSection section = {1000.0, 30.0, 600.0, 25.0};
    const std::array<double, BeamDofCount> ends = {0, 0, 0, 0, 0.5, 0, 1, 0, 0, 0, 0.25, 0};
    for (double offset : {1.0, -1.0}) {
        const BeamSectionModel at = Solve(TBeam(section, offset, {}, {900.0, 0.0, 0.0}, Up), ends);
        EXPECT_NEAR(Displacement(at, 1)[DX], 0.5 * offset, 1e-4);
        EXPECT_NEAR(Displacement(at, int(at.nodes.size()) - 7)[DX], 1.0 + 0.25 * offset, 1e-4);
        const double nearer = std::nextafter(offset, 0.0);
        const BeamSectionModel inside = Solve(TBeam(section, nearer, {}, {900.0, 0.0, 0.0}, Up), ends);
        ExpectMovesLikeTheEnd(inside, 1, ends.data());
        ExpectMovesLikeTheEnd(inside, int(inside.nodes.size()) - 7, ends.data() + 6);
    }
}

// A flange of half a thousandth lies on the node line as a whole: three points. None has a link; the web's end stands
// first in the ring and alone receives the displacements.
TEST(BeamSectionEnds, GiveTheirDisplacementsToTheFirstPointOnTheNodeLineOnly)
{
    const SectionBeam b = TBeam({1.0, 0.1, 0.0005, 0.05}, -1.0, {}, {0.7, 0.0, 0.0}, Up, 0.3);
    const BeamSectionModel section = Solve(b, GeneralEnds);
    const int count = int(section.nodes.size());
    ExpectMovesLikeTheEnd(section, 4, GeneralEnds.data());
    ExpectMovesLikeTheEnd(section, count - 4, GeneralEnds.data() + 6);
    for (int n : {5, 6}) {
        EXPECT_FALSE(MovesLikeTheEnd(section, n, GeneralEnds.data())) << "node " << n;
        EXPECT_LT(OutsideForce(b.beam, section, n), RoundOff) << "node " << n;
    }
    for (int n : {count - 3, count - 2}) {
        EXPECT_FALSE(MovesLikeTheEnd(section, n, GeneralEnds.data() + 6)) << "node " << n;
        EXPECT_LT(OutsideForce(b.beam, section, n), RoundOff) << "node " << n;
    }
}

// Only six nodes are looked at, of the twelve of a tube's ring. A tube standing on its node line has its lowest point
// (number 9) there: too late at end 1, early enough at end 2; hung below it, the highest (number 3), the other way.
TEST(BeamSectionEnds, LookAtTheFirstAndTheLastSixRingPointsOfATubeOnly)
{
    const Vector3 to = {2.5, 0.0, 0.0};
    const CBeamSection section = {1.5, 0.1};
    for (double offset : {1.5, -1.5}) {
        const SectionBeam b = Tube(section, offset, {}, to, Up, 0.3);
        const BeamSectionModel mesh = Solve(b, GeneralEnds);
        const int count = int(mesh.nodes.size());
        const int point = offset > 0.0 ? 9 : 3;
        const int atEnd1 = 1 + point, atEnd2 = count - 13 + point;
        ASSERT_LT(Length(mesh.nodes[std::size_t(atEnd1)] - mesh.nodes.front()), 1e-15);
        ASSERT_LT(Length(mesh.nodes[std::size_t(atEnd2)] - mesh.nodes.back()), 1e-15);
        const int held = offset > 0.0 ? atEnd2 : atEnd1, notHeld = offset > 0.0 ? atEnd1 : atEnd2;
        ExpectMovesLikeTheEnd(mesh, held, GeneralEnds.data() + (held == atEnd1 ? 0 : 6));
        EXPECT_GT(OutsideForce(b.beam, mesh, held), ClearForce);
        EXPECT_LT(OutsideForce(b.beam, mesh, notHeld), RoundOff); // its link is too short, nothing but walls holds it
    }
}

// The last six nodes of a section of four points begin in the ring before. On a beam shorter than a thousandth of its
// height that ring's point is near enough, comes first and receives the displacements of end 2 after those of end 1;
// the last ring's own point is held by walls alone.
TEST(BeamSectionEnds, OfASectionWithoutFlangeReachIntoTheNextRing)
{
    const double h = 3.0;
    const SectionBeam b = TBeam({h, 0.1, 0.0, 0.0}, -(2 * h / 3), {}, {0.0005 * h, 0.0, 0.0}, Up, 0.3);
    const BeamSectionModel section = Solve(b, GeneralEnds);
    ASSERT_EQ(section.nodes.size(), 10u); // two rings of 1 ... 4 and 5 ... 8
    ASSERT_EQ(section.nodes[3], section.nodes[0]);
    ASSERT_EQ(section.nodes[7], section.nodes[9]);
    ExpectMovesLikeTheEnd(section, 0, GeneralEnds.data());
    ExpectMovesLikeTheEnd(section, 3, GeneralEnds.data() + 6);
    EXPECT_FALSE(MovesLikeTheEnd(section, 7, GeneralEnds.data() + 6));
    EXPECT_LT(OutsideForce(b.beam, section, 7), RoundOff);
}

// ---- all beams

ModelText Frame()
{
    ModelText model;
    model.Material(E, 0.3, 7850.0);
    model.TSection(0.3, 0.02, 0.2, 0.01);
    model.LSection(0.3, 0.02, 0.2, 0.01);
    model.CSection(0.2, 0.01);
    model.Node(0.0, 0.0, 0.0);
    model.Node(1.0, 0.0, 0.0);
    model.Node(1.0, 0.9, 0.1);
    model.Node(0.1, 0.8, 0.7);
    model.Beam({2, 0}, {0.0, 0.0, 1.0}, 0, TSection, 0, 0.05);
    model.Beam({0, 3}, {1.0, 0.0, 0.0}, 0, CSection, 0);
    model.Beam({1, 2}, {0.0, 0.0, 1.0}, 0, LSection, 0, -0.05, 1);
    return model;
}

ModelStore MovedFrame(const ModelText& text)
{
    ModelStore model = StoreOf(text);
    model.EquationCount = DofsPerNode * model.NPOIN;
    for (int i = 0; i < model.EquationCount; ++i) { model.GlobalDisplacement.push_back(1e-3 * std::sin(1.0 + i)); }
    return model;
}

TEST(BeamSectionStress, OfAModelHasOneRecordPerBeamFromItsOwnEndsAndSection)
{
    ModelStore model = MovedFrame(Frame());
    RecoverBeamSectionStresses(model);
    ASSERT_EQ(model.BeamStressRecords.size(), 3u);
    const SectionOutline outlines[3] = {TOutline(model.TBeamSections[0], 0.05),
                                        TubeOutline(model.CBeamSections[0], 0.0),
                                        LOutline(model.LBeamSections[0], -0.05, true)};
    for (std::size_t b = 0; b < 3; ++b) {
        double d[BeamDofCount];
        GatherDisplacements<2>(model.BeamConnectivity[b].data(), model.GlobalDisplacement, d);
        const BeamSectionModel alone = SolveBeamSection(model.BeamElements[b], outlines[b], d);
        const BeamSectionModel& record = model.BeamStressRecords[b];
        EXPECT_EQ(record.nodes, alone.nodes);
        EXPECT_EQ(record.displacements, alone.displacements);
        ASSERT_EQ(record.patches.size(), alone.patches.size());
        EXPECT_EQ(record.patches.back().positiveFace[2][SX], alone.patches.back().positiveFace[2][SX]);
        EXPECT_EQ(record.averaged.size(), record.nodes.size());
    }
}

TEST(BeamSectionStress, OfAModelWithoutBeamsIsNothing)
{
    ModelStore model;
    RecoverBeamSectionStresses(model);
    EXPECT_TRUE(model.BeamStressRecords.empty());
}

TEST(BeamSectionStress, OfASectionTypeOtherThanTLCEndsTheRunAfterAPause)
{
    for (int type : {3, -1}) {
        ModelText text = Frame();
        text.Beam({1, 3}, {0.0, 0.0, 1.0}, 0, type, 0);
        const ModelStore model = MovedFrame(text);
        const ChildResult run = RunInChild([&] { RequireBeamSections(model); }, "k");
        EXPECT_EQ(run.output, "\xC1\xBA\xBD\xD8\xC3\xE6\xC0\xE0\xD0\xCD\xCA\xFD\xD7\xD6\xB4\xED\xCE\xF3!\n"
                              "Press any key to continue . . . ");
        EXPECT_EQ(run.error, "beam 3: error: section type " + std::to_string(type) +
                                 "\n"
                                 "  expected: BeamSecType=0 (T), 1 (L) or 2 (tube)\n"
                                 "  to do:    correct the record of this beam in the model file, then run again\n");
        EXPECT_EQ(run.exitCode, 1) << "type " << type;
    }
}

TEST(BeamSectionStress, OfAnUnknownSectionTypeThrowsWhereNobodyHasChecked)
{
    ModelText text = Frame();
    text.Beam({1, 3}, {0.0, 0.0, 1.0}, 0, 3, 0);
    ModelStore model = MovedFrame(text);
    EXPECT_THROW(RecoverBeamSectionStresses(model), std::invalid_argument);
}

TEST(BeamSectionStress, OfSeveralUnknownSectionTypesTheFirstBeamIsNamed)
{
    ModelText text = Frame();
    text.Beam({1, 3}, {0.0, 0.0, 1.0}, 0, 7, 0);
    for (int b = 0; b < 100; ++b) { text.Beam({1, 3}, {0.0, 0.0, 1.0}, 0, 8, 0); }
    const ModelStore model = MovedFrame(text);
    const ChildResult run = RunInChild([&] { RequireBeamSections(model); }, "k");
    EXPECT_EQ(run.error.substr(0, 31), "beam 3: error: section type 7\n ");
}

// Displacements, raw and averaged stresses of all records in a row.
std::vector<double> AllStresses(const ModelStore& model)
{
    std::vector<double> all;
    for (const BeamSectionModel& record : model.BeamStressRecords) {
        all.insert(all.end(), record.displacements.begin(), record.displacements.end());
        for (const SectionPatch& patch : record.patches) {
            for (const auto& corner : patch.positiveFace) { all.insert(all.end(), corner, corner + StressCount); }
            for (const auto& corner : patch.negativeFace) { all.insert(all.end(), corner, corner + StressCount); }
        }
        for (const SectionNodeStress& node : record.averaged) {
            all.insert(all.end(), node.positiveFace, node.positiveFace + StressCount);
            all.insert(all.end(), node.negativeFace, node.negativeFace + StressCount);
        }
    }
    return all;
}

TEST(BeamSectionStress, IsTheSameForAnyNumberOfThreads)
{
    ModelText text = Frame();
    for (int b = 0; b < 150; ++b) { text.Beam({b % 4, (b + 1) % 4}, {0.2, 0.1, 1.0}, 0, b % 3, 0, 0.01 * (b % 7)); }
    const ModelStore model = MovedFrame(text);
    ModelStore alone = model;
    SetThreadCount(1);
    RecoverBeamSectionStresses(alone);
    for (int threads : {2, 5}) {
        ModelStore shared = model;
        SetThreadCount(threads);
        RecoverBeamSectionStresses(shared);
        EXPECT_TRUE(AllStresses(shared) == AllStresses(alone)) << threads << " threads";
    }
    SetThreadCount(0);
}

TEST(BeamSectionStress, WithTooManySlicesEndsTheRunWithADiagnostic)
{
    ModelText text = Frame();
    text.CSection(1e-9, 1e-10);
    text.Beam({1, 3}, {0.0, 0.0, 1.0}, 0, CSection, 1);
    const ModelStore model = MovedFrame(text);
    const ChildResult run = RunInChild([&] { RequireBeamSections(model); });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "");
    // 1.3928 long, segments of 5.17638e-10.
    EXPECT_EQ(run.error.substr(0, 54), "error: the section mesh of beam 3 would have 2.69076e+");
    EXPECT_NE(run.error.find("\n  expected: a section whose longest wall segment is not tiny"), std::string::npos);
}

// Degenerate geometry goes on with numbers that are not finite.
TEST(BeamSectionStress, OfASectionWithoutSizeTakesOneSlice)
{
    EXPECT_EQ(SliceCount(2.0, TubeOutline({0.0, 0.01}, 0.0)), 1.0);
    EXPECT_EQ(SliceCount(std::numeric_limits<double>::quiet_NaN(), TubeOutline({0.1, 0.01}, 0.0)), 1.0);
    EXPECT_EQ(SliceCount(2.0, TubeOutline({std::numeric_limits<double>::quiet_NaN(), 0.01}, 0.0)), 1.0);
    ModelText text = Frame();
    text.CSection(0.0, 0.01);
    text.Beam({1, 3}, {0.0, 0.0, 1.0}, 0, CSection, 1);
    ModelStore model = MovedFrame(text);
    RecoverBeamSectionStresses(model);
    ASSERT_EQ(model.BeamStressRecords.size(), 4u);
    EXPECT_EQ(model.BeamStressRecords[3].patches.size(), 12u);
}

// Stages fill the store, they do not add to it.
TEST(BeamSectionStress, RecoveredTwiceGivesOneRecordABeam)
{
    ModelStore model = MovedFrame(Frame());
    RecoverBeamSectionStresses(model);
    RecoverBeamSectionStresses(model);
    EXPECT_EQ(model.BeamStressRecords.size(), std::size_t(model.NELEM_B));
}

} // namespace
} // namespace tarnvexo
