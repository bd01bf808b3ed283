#include "output/BeamJointAveraging.h"

#include "output/BeamSectionStress.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;

// A square wall between four places, with all components p on its positive face and n on its negative one.
struct Wall {
    Vector3 corners[4];
    Vector3 normal;
    double thickness;
    double p;
    double n;
};

// Adds a beam between two ends whose section model is made of these walls; every wall has nodes of its own unless a
// corner repeats an earlier place of the same beam.
void AddBeam(ModelStore& model, const Vector3& end1, const Vector3& end2, const std::vector<Wall>& walls)
{
    BeamElement beam;
    beam.node1 = end1;
    beam.node2 = end2;
    model.BeamElements.push_back(beam);
    ++model.NELEM_B;
    BeamSectionModel section;
    for (const Wall& wall : walls) {
        SectionPatch patch;
        patch.thickness = wall.thickness;
        patch.normal = wall.normal;
        for (int i = 0; i < 4; ++i) {
            const auto found = std::find(section.nodes.begin(), section.nodes.end(), wall.corners[i]);
            patch.nodes[i] = int(found - section.nodes.begin());
            if (found == section.nodes.end()) {
                section.nodes.push_back(wall.corners[i]);
            }
            std::fill_n(patch.positiveFace[i], StressCount, wall.p);
            std::fill_n(patch.negativeFace[i], StressCount, wall.n);
        }
        section.patches.push_back(patch);
    }
    model.BeamStressRecords.push_back(section);
}

struct Faces {
    double positive;
    double negative;
    bool operator==(const Faces&) const = default;
};

void PrintTo(const Faces& faces, std::ostream* out)
{
    *out << faces.positive << " / " << faces.negative;
}

Faces AveragedAt(const ModelStore& model, int beam, const Vector3& place)
{
    const BeamSectionModel& section = model.BeamStressRecords[std::size_t(beam)];
    const auto node = std::size_t(std::find(section.nodes.begin(), section.nodes.end(), place) - section.nodes.begin());
    EXPECT_LT(node, section.nodes.size());
    return {section.averaged[node].positiveFace[SX], section.averaged[node].negativeFace[TYZ]};
}

const Vector3 O = {0, 0, 0}, X1 = {1, 0, 0}, X2 = {2, 0, 0};

// Walls of length 1 along x from x0, from y0 to y0 + 1, in the plane z = 0.
Wall Flat(double x0, double y0, double up, double p, double n, double thickness = 0.01)
{
    return {{{x0, y0, 0}, {x0 + 1, y0, 0}, {x0 + 1, y0 + 1, 0}, {x0, y0 + 1, 0}}, {0, 0, up}, thickness, p, n};
}

TEST(BeamJointAveraging, TakesTheMeanOfWallsThatMeetAtAPlace)
{
    ModelStore model;
    AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0)});
    AddBeam(model, X1, X2, {Flat(1, 0, 1, 3.0, -5.0)});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, X1), (Faces{2.0, -3.0}));
    EXPECT_EQ(AveragedAt(model, 1, X1), (Faces{2.0, -3.0}));
    EXPECT_EQ(AveragedAt(model, 0, O), (Faces{1.0, -1.0}));
    EXPECT_EQ(AveragedAt(model, 1, {2, 1, 0}), (Faces{3.0, -5.0}));
}

TEST(BeamJointAveraging, ExchangesTheFacesOfAWallWithOpposedNormal)
{
    ModelStore model;
    AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0)});
    AddBeam(model, X1, X2, {Flat(1, 0, -1, 3.0, -5.0)});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, X1), (Faces{-2.0, 1.0}));
    EXPECT_EQ(AveragedAt(model, 1, X1), (Faces{1.0, -2.0}));
}

TEST(BeamJointAveraging, LeavesOutAWallAtRightAngles)
{
    ModelStore model;
    AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0)});
    Wall upright = Flat(1, 0, 1, 3.0, -5.0);
    upright.normal = {0, 1, 0};
    AddBeam(model, X1, X2, {upright});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, X1), (Faces{1.0, -1.0}));
    EXPECT_EQ(AveragedAt(model, 1, X1), (Faces{3.0, -5.0}));
}

// 12/2 - 10/2 = 10/10 without rounding: the last wall that takes part.
TEST(BeamJointAveraging, JudgesThicknessByATenthOfTheCornersOwn)
{
    for (const auto& [thickness, positive] : {std::pair(12.0, 2.0), std::pair(12.0001, 1.0), std::pair(7.9, 1.0)}) {
        ModelStore model;
        AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0, 10.0)});
        AddBeam(model, X1, X2, {Flat(1, 0, 1, 3.0, -5.0, thickness)});
        AverageBeamJoints(model);
        EXPECT_EQ(AveragedAt(model, 0, X1).positive, positive) << thickness;
    }
}

// Two walls of one beam side by side: their common corners average without any other beam.
TEST(BeamJointAveraging, AveragesWithinABeamToo)
{
    ModelStore model;
    AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0), Flat(0, 1, -1, 3.0, -5.0)});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, {0, 1, 0}), (Faces{-2.0, 1.0}));
    EXPECT_EQ(AveragedAt(model, 0, {0, 2, 0}), (Faces{3.0, -5.0}));
}

// At a T's web end the web comes first: its average stands for the flange corners there too, though these lie at right
// angles to it.
TEST(BeamJointAveraging, LetsTheFirstCornerVisitedDecideForItsNode)
{
    ModelStore model;
    Wall web = Flat(0, -1, 1, 7.0, -9.0);
    web.normal = {0, 1, 0};
    AddBeam(model, O, X1, {web, Flat(0, 0, 1, 1.0, -1.0), Flat(0, 0, -1, 3.0, -5.0)});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, O), (Faces{7.0, -9.0}));
    EXPECT_EQ(AveragedAt(model, 0, {0, 1, 0}), (Faces{-2.0, 1.0})); // the first flange half decides, faces exchanged
}

// The walls touch at x = 1, but no end of beam 1 is near an end of beam 0.
TEST(BeamJointAveraging, SkipsBeamsThatShareNoEnd)
{
    ModelStore model;
    AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0)});
    AddBeam(model, {1, 0, 0.5}, {2, 0, 0.5}, {Flat(1, 0, 1, 3.0, -5.0)});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, X1), (Faces{1.0, -1.0}));
    EXPECT_EQ(AveragedAt(model, 1, X1), (Faces{3.0, -5.0}));
}

TEST(BeamJointAveraging, ComparesAllFourPairsOfEnds)
{
    const Vector3 far = {5, 5, 5};
    for (int ownEnd : {0, 1}) {
        for (int otherEnd : {0, 1}) {
            ModelStore model;
            AddBeam(model, ownEnd == 0 ? X1 : O, ownEnd == 0 ? O : X1, {Flat(0, 0, 1, 1.0, -1.0)});
            AddBeam(model, otherEnd == 0 ? X1 : far, otherEnd == 0 ? far : X1, {Flat(1, 0, 1, 3.0, -5.0)});
            AverageBeamJoints(model);
            EXPECT_EQ(AveragedAt(model, 0, X1), (Faces{2.0, -3.0})) << ownEnd << otherEnd;
        }
    }
}

// In model units, whatever the size of the beams; a distance of exactly the limit counts.
TEST(BeamJointAveraging, CountsPlacesAndEndsWithinAThousandthOfAUnitAsOne)
{
    for (const auto& [gap, joined] : {std::pair(0.0009, true), std::pair(0.001, true), std::pair(0.0011, false)}) {
        for (bool gapAtEnd : {true, false}) {
            ModelStore model;
            AddBeam(model, {-1, 0, 0}, O, {Flat(-1, 0, 1, 1.0, -1.0)});
            Wall wall = Flat(0, 0, 1, 3.0, -5.0);
            if (!gapAtEnd) {
                for (Vector3& corner : wall.corners) { corner[0] += gap; }
            }
            AddBeam(model, gapAtEnd ? Vector3{0, 0, gap} : O, X1, {wall});
            AverageBeamJoints(model);
            EXPECT_EQ(AveragedAt(model, 0, O), (joined ? Faces{2.0, -3.0} : Faces{1.0, -1.0})) << gap << gapAtEnd;
        }
    }
}

// Another beam's corners at the place compute averages of their own: from the flange's side here, the web's there.
TEST(BeamJointAveraging, KeepsFlagsPerBeam)
{
    ModelStore model;
    Wall web = Flat(0, -1, 1, 7.0, -9.0);
    web.normal = {0, 1, 0};
    AddBeam(model, O, X1, {web, Flat(0, 0, 1, 1.0, -1.0)});
    AddBeam(model, O, X1, {Flat(0, 0, 1, 3.0, -5.0)});
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, O), (Faces{7.0, -9.0}));
    EXPECT_EQ(AveragedAt(model, 1, O), (Faces{2.0, -3.0}));
}

TEST(BeamJointAveraging, ReadsRawStressesOnly)
{
    ModelStore model;
    AddBeam(model, O, X1, {Flat(0, 0, 1, 1.0, -1.0)});
    AddBeam(model, X1, X2, {Flat(1, 0, 1, 3.0, -5.0)});
    AverageBeamJoints(model);
    AverageBeamJoints(model);
    EXPECT_EQ(AveragedAt(model, 0, X1), (Faces{2.0, -3.0}));
}

// ---- the literal procedure

struct CornerAverage {
    double positive[StressCount] = {};
    double negative[StressCount] = {};
};

bool EndsMeet(const BeamElement& a, const BeamElement& b)
{
    for (const Vector3& p : {a.node1, a.node2}) {
        for (const Vector3& q : {b.node1, b.node2}) {
            if (Length(p - q) <= 0.001) {
                return true;
            }
        }
    }
    return false;
}

// Every patch of every candidate beam, every corner of it.
CornerAverage AverageCornerLiterally(const ModelStore& model, std::size_t b, const SectionPatch& p, int corner)
{
    const Vector3 place = model.BeamStressRecords[b].nodes[std::size_t(p.nodes[corner])];
    std::vector<std::size_t> candidates = {b};
    for (std::size_t other = 0; other < model.BeamElements.size(); ++other) {
        if (other != b && EndsMeet(model.BeamElements[b], model.BeamElements[other])) {
            candidates.push_back(other);
        }
    }
    CornerAverage sum;
    int count = 0;
    for (std::size_t other : candidates) {
        const BeamSectionModel& section = model.BeamStressRecords[other];
        for (const SectionPatch& q : section.patches) {
            for (int k = 0; k < 4; ++k) {
                if (!(Length(section.nodes[std::size_t(q.nodes[k])] - place) <= 0.001)) {
                    continue;
                }
                const bool reversed = Dot(q.normal, p.normal) <= 0.0;
                const Vector3 normal = reversed ? -q.normal : q.normal;
                if (Length(q.thickness / 2 * normal - p.thickness / 2 * p.normal) > p.thickness / 10) {
                    continue;
                }
                for (int c = 0; c < StressCount; ++c) {
                    sum.positive[c] += reversed ? q.negativeFace[k][c] : q.positiveFace[k][c];
                    sum.negative[c] += reversed ? q.positiveFace[k][c] : q.negativeFace[k][c];
                }
                ++count;
            }
        }
    }
    EXPECT_GE(count, 1);
    const double share = 1.0 / count;
    for (int c = 0; c < StressCount; ++c) {
        sum.positive[c] *= share;
        sum.negative[c] *= share;
    }
    return sum;
}

void ExpectLiteralAverages(const ModelStore& model)
{
    for (std::size_t b = 0; b < model.BeamStressRecords.size(); ++b) {
        const BeamSectionModel& section = model.BeamStressRecords[b];
        std::vector<char> flagged(section.nodes.size(), 0);
        std::vector<CornerAverage> ofNode(section.nodes.size());
        for (std::size_t p = 0; p < section.patches.size(); ++p) {
            const SectionPatch& patch = section.patches[p];
            for (int corner = 0; corner < 4; ++corner) {
                const auto node = std::size_t(patch.nodes[corner]);
                if (!flagged[node]) {
                    ofNode[node] = AverageCornerLiterally(model, b, patch, corner);
                    flagged[node] = 1;
                }
                for (int c = 0; c < StressCount; ++c) {
                    ASSERT_EQ(section.averaged[node].positiveFace[c], ofNode[node].positive[c])
                        << "beam " << b << ", patch " << p << ", corner " << corner << ", component " << c;
                    ASSERT_EQ(section.averaged[node].negativeFace[c], ofNode[node].negative[c])
                        << "beam " << b << ", patch " << p << ", corner " << corner << ", component " << c;
                }
            }
        }
    }
}

// Beams in a row, a star, reversed and repeated beams, ends that meet within the tolerance and just not, with sections
// of all kinds and of thicknesses near each other.
ModelText JointedFrame()
{
    ModelText text;
    text.Material(2e11, 0.3, 7850.0);
    text.TSection(0.3, 0.02, 0.2, 0.021);
    text.TSection(0.3, 0.022, 0.2, 0.02);
    text.LSection(0.3, 0.02, 0.2, 0.02);
    text.LSection(0.3, 0.02, 0.0, 0.0);
    text.CSection(0.1, 0.01);
    text.CSection(0.1, 0.0104);
    for (const Vector3& p : {Vector3{0, 0, 0},
                             {0.7, 0, 0},
                             {1.3, 0, 0},
                             {2, 0, 0},
                             {0.7, 0.8, 0},
                             {0.7, 0, 0.9},
                             {0.7, -0.6, 0.1},
                             {1.3004, 0, 0.0003},
                             {1.3, 0.0015, 0},
                             {2.0007, 0, 0}}) {
        text.Node(p[0], p[1], p[2]);
    }
    const Vector3 up = {0, 0, 1}, side = {0, 1, 0};
    text.Beam({0, 1}, up, 0, TSection, 0);
    text.Beam({1, 2}, up, 0, TSection, 1);
    text.Beam({3, 2}, up, 0, TSection, 0); // reversed
    text.Beam({1, 4}, up, 0, LSection, 0);
    text.Beam({6, 1}, up, 0, LSection, 1);
    text.Beam({1, 5}, side, 0, CSection, 0);
    text.Beam({0, 1}, up, 0, TSection, 0); // repeated
    text.Beam({0, 1}, -up, 0, TSection, 0);
    text.Beam({7, 3}, up, 0, TSection, 1, 0.0002);
    text.Beam({8, 9}, up, 0, TSection, 0);
    text.Beam({5, 4}, side, 0, CSection, 1);
    text.Beam({1, 5}, -side, 0, CSection, 1);
    text.Beam({2, 3}, up, 0, LSection, 0, 0.0, 1);
    text.Beam({0, 3}, up, 0, CSection, 0, 0.1);
    return text;
}

TEST(BeamJointAveraging, EqualsTheLiteralSearchThroughAllCornersBitForBit)
{
    ModelStore model = StoreOf(JointedFrame());
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.GlobalDisplacement.assign(std::size_t(model.EquationCount), 0.0);
    RecoverBeamSectionStresses(model);
    std::mt19937 random(65);
    std::uniform_real_distribution<double> stress(-1.0, 1.0);
    for (BeamSectionModel& section : model.BeamStressRecords) {
        for (SectionPatch& patch : section.patches) {
            for (int i = 0; i < 4; ++i) {
                for (int c = 0; c < StressCount; ++c) {
                    patch.positiveFace[i][c] = stress(random);
                    patch.negativeFace[i][c] = stress(random);
                }
            }
        }
    }
    AverageBeamJoints(model);
    ExpectLiteralAverages(model);
}

// The same far from the origin and shrunk until all places of a beam lie within the tolerance.
TEST(BeamJointAveraging, EqualsTheLiteralSearchWhenWholeSectionsLieWithinTheTolerance)
{
    ModelStore model = StoreOf(JointedFrame());
    model.EquationCount = DofsPerNode * model.NPOIN;
    model.GlobalDisplacement.assign(std::size_t(model.EquationCount), 0.0);
    RecoverBeamSectionStresses(model);
    std::mt19937 random(66);
    const auto shrink = [](Vector3& p) { p = Vector3{100.0, -7.0, 3.0} + 0.003 * p; };
    for (BeamElement& beam : model.BeamElements) {
        shrink(beam.node1);
        shrink(beam.node2);
    }
    for (BeamSectionModel& section : model.BeamStressRecords) {
        for (Vector3& node : section.nodes) { shrink(node); }
        for (SectionPatch& patch : section.patches) {
            for (int c = 0; c < 4 * StressCount; ++c) {
                (&patch.positiveFace[0][0])[c] = double(random() % 1000) / 7;
                (&patch.negativeFace[0][0])[c] = double(random() % 1000) / 7;
            }
        }
    }
    AverageBeamJoints(model);
    ExpectLiteralAverages(model);
}

TEST(BeamJointAveraging, OfNoBeamsDoesNothing)
{
    ModelStore model;
    AverageBeamJoints(model);
    EXPECT_TRUE(model.BeamStressRecords.empty());
}

} // namespace
} // namespace tarnvexo
