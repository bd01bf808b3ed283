#include "input/ModelFileReader.h"

#include "core/Messages.h"
#include "elements/BeamSection.h"
#include "elements/ShellSetUp.h"
#include "support/ChildProcess.h"
#include "support/ModelText.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>
#include <string>
#include <sys/stat.h>
#include <thread>

namespace tarnvexo {
namespace {

using End = ModelReading::End;
using test::ModelText;

constexpr const char* FileName = "fem_solving.txt";

// One material, thickness and L section, four nodes, a shell, a beam, a support and a force.
const char* const ExampleFile = R"(### Quor_Tarn+Vexo release=3.0 ###
Number of materials:NMT=1
#0:
E=2.06e11
Mu=0.3
Density=7850
Number of shell thicknesses:NTK=1
#0:
TK=0.01
Number of T_beam sections:NTBS=0
Number of L_beam sections:NLBS=1
#0:
Hw=0.2
Tw=0.008
Bf=0.1
Tf=0.01
Number of C_beam sections:NCBS=0
Number of nodal points:NPOIN=4
0:0,0,0
1:1,0,0
2:1,1,0
3:0,1,0
Number of four-nodes shell elements:NELEM_S_4ND=1
0:0,1,2,3[0,0]
Number of three-nodes shell elements:NELEM_S_3ND=0
Number of beam elements:NELEM_B=1
0:0,1<0,0,1>[0,BeamSecType=1,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]
Number of restricted nodal points:NRN=1
0:1 1 1 1 1 1
Number of forces:NFOR=1
2<0,0,-1000,0,0,0>
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=0
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=0
Number of distributed loads on beam elements:NDL_B=0
)";

// Every section holds records.
ModelText FullModel()
{
    ModelText model;
    model.Material(2.06e11, 0.3, 7850);
    model.Material(7e10, 0.33, 2700);
    model.Thickness(0.01);
    model.Thickness(0.02);
    model.TSection(0.1, 0.006, 0.05, 0.008);
    model.LSection(0.2, 0.008, 0.1, 0.01);
    model.CSection(0.02, 0.003);
    model.Node(0, 0, 0);
    model.Node(1, 0, 0.1);
    model.Node(1.1, 0.9, 0.2);
    model.Node(0, 1, 0.3);
    model.Node(2, 0.25, 0);
    model.Quad({0, 1, 2, 3}, 1, 0);
    model.Tri({1, 4, 2}, 0, 1);
    model.Beam({0, 1}, {0, 0, 1}, 0, 0, 0, 0.005);
    model.Beam({1, 2}, {0, 0, 1}, 1, 1, 0, 0, 7);
    model.Beam({2, 3}, {0, 1, 1}, 1, 2, 0, -0.1);
    model.Restrain(0);
    model.Restrain(3, {1, 0, 2, 1, 0, -1});
    model.Force(4, {1, 2, 3, 4, 5, 6.5});
    model.QuadLoad(0, 100, 200, 300);
    model.TriLoad(0, 10, -20, 30);
    model.BeamLoad(2, -30, 60);
    return model;
}

struct Read {
    ModelStore model;
    ModelReading reading;
};

Read ReadText(std::string_view text)
{
    Read read;
    read.reading = ReadModelText(read.model, text, FileName);
    return read;
}

std::string Replaced(std::string text, std::string_view old, std::string_view with)
{
    const std::size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return at == std::string::npos ? text : text.replace(at, old.size(), with);
}

std::string ExampleWith(std::string_view old, std::string_view with)
{
    return Replaced(ExampleFile, old, with);
}

std::size_t LineCount(const std::string& text)
{
    return std::size_t(std::count(text.begin(), text.end(), '\n'));
}

// ------------------------------------------------------------ whole files

TEST(ModelFileReader, ReadsTheExampleFileWhole)
{
    const auto [model, reading] = ReadText(ExampleFile);
    ASSERT_EQ(reading.end, End::Complete);
    EXPECT_EQ(reading.warnings, "");

    ASSERT_EQ(model.NMT, 1);
    ASSERT_EQ(model.Materials.size(), 1u);
    EXPECT_EQ(model.Materials[0].E, 2.06e11);
    EXPECT_EQ(model.Materials[0].Mu, 0.3);
    EXPECT_EQ(model.Materials[0].Density, 7850);
    ASSERT_EQ(model.NTK, 1);
    EXPECT_EQ(model.Thicknesses, std::vector<double>{0.01});
    EXPECT_EQ(model.NTBS, 0);
    ASSERT_EQ(model.NLBS, 1);
    EXPECT_EQ(model.LBeamSections[0].Hw, 0.2);
    EXPECT_EQ(model.LBeamSections[0].Tw, 0.008);
    EXPECT_EQ(model.LBeamSections[0].Bf, 0.1);
    EXPECT_EQ(model.LBeamSections[0].Tf, 0.01);
    EXPECT_EQ(model.NCBS, 0);
    ASSERT_EQ(model.NPOIN, 4);
    EXPECT_EQ(model.NodeCoordinates, (std::vector<Vector3>{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}));

    ASSERT_EQ(model.NELEM_S_4ND, 1);
    EXPECT_EQ(model.QuadConnectivity[0], (std::array<int, 4>{0, 1, 2, 3}));
    const QuadShellElement& quad = model.QuadElements[0];
    EXPECT_EQ(quad.coordinates[2], (Vector3{1, 1, 0}));
    EXPECT_EQ(quad.E, 2.06e11);
    EXPECT_EQ(quad.Mu, 0.3);
    EXPECT_EQ(quad.Density, 7850);
    EXPECT_EQ(quad.thickness, 0.01);
    EXPECT_EQ(quad.axes[2], (Vector3{0, 0, 1}));
    EXPECT_EQ(model.NELEM_S_3ND, 0);

    ASSERT_EQ(model.NELEM_B, 1);
    EXPECT_EQ(model.BeamConnectivity[0], (std::array<int, 2>{0, 1}));
    EXPECT_EQ(model.BeamSectionRefs[0].BeamSecType, LSection);
    EXPECT_EQ(model.BeamSectionRefs[0].BeamSecIndex, 0);
    EXPECT_EQ(model.BeamSectionRefs[0].BeamSecOz, 0);
    EXPECT_FALSE(model.BeamSectionRefs[0].BeamSecMirrored);
    const BeamElement& beam = model.BeamElements[0];
    EXPECT_EQ(beam.reference, (Vector3{0, 0, 1}));
    EXPECT_EQ(beam.E, 2.06e11);
    EXPECT_EQ(beam.Density, 7850);
    EXPECT_NEAR(beam.section.A, 0.2 * 0.008 + 0.1 * 0.01, 1e-18);

    ASSERT_EQ(model.NRN, 1);
    EXPECT_EQ(model.Restraints[0].node, 0);
    for (const int flag : model.Restraints[0].flags) { EXPECT_EQ(flag, 1); }
    ASSERT_EQ(model.NFOR, 1);
    EXPECT_EQ(model.NodalForces[0].node, 2);
    EXPECT_EQ(model.NodalForces[0].components[DZ], -1000);
    EXPECT_EQ(model.NodalForces[0].components[RZ], 0);
    EXPECT_EQ(model.NDL_S_4ND + model.NDL_S_3ND + model.NDL_B, 0);
}

TEST(ModelFileReader, SetsUpEveryElementFromItsRecord)
{
    const auto [model, reading] = ReadText(FullModel().Text());
    ASSERT_EQ(reading.end, End::Complete) << reading.fault;
    EXPECT_EQ(reading.warnings, "");

    EXPECT_EQ(model.QuadElements[0].E, 7e10);
    EXPECT_EQ(model.QuadElements[0].thickness, 0.01);
    EXPECT_EQ(model.TriConnectivity[0], (std::array<int, 3>{1, 4, 2}));
    const TriShellElement& tri = model.TriElements[0];
    EXPECT_EQ(tri.coordinates[1], (Vector3{2, 0.25, 0}));
    EXPECT_EQ(tri.E, 2.06e11);
    EXPECT_EQ(tri.Density, 7850);
    EXPECT_EQ(tri.thickness, 0.02);

    BeamElement T, L, C;
    TBeamSetUp(T, {0, 0, 0}, {1, 0, 0.1}, {0, 0, 1}, {2.06e11, 0.3, 7850}, {0.1, 0.006, 0.05, 0.008}, 0.005);
    LBeamSetUp(L, {1, 0, 0.1}, {1.1, 0.9, 0.2}, {1, 0, 1.1}, {7e10, 0.33, 2700}, {0.2, 0.008, 0.1, 0.01}, 0, true);
    TubeBeamSetUp(C, {1.1, 0.9, 0.2}, {0, 1, 0.3}, {1.1, 1.9, 1.2}, {7e10, 0.33, 2700}, {0.02, 0.003}, -0.1);
    const BeamElement* expected[] = {&T, &L, &C};
    ASSERT_EQ(model.BeamElements.size(), 3u);
    for (std::size_t b = 0; b < 3; ++b) {
        const BeamElement& beam = model.BeamElements[b];
        EXPECT_EQ(beam.node1, expected[b]->node1);
        EXPECT_EQ(beam.node2, expected[b]->node2);
        EXPECT_EQ(beam.reference, expected[b]->reference);
        EXPECT_EQ(beam.E, expected[b]->E);
        EXPECT_EQ(beam.Mu, expected[b]->Mu);
        EXPECT_EQ(beam.Density, expected[b]->Density);
        EXPECT_EQ(beam.sectionOffset, expected[b]->sectionOffset);
        EXPECT_EQ(beam.mirrored, expected[b]->mirrored);
        EXPECT_EQ(std::memcmp(&beam.section, &expected[b]->section, sizeof beam.section), 0) << "beam " << b;
    }
    EXPECT_TRUE(model.BeamSectionRefs[1].BeamSecMirrored);

    EXPECT_TRUE(std::ranges::equal(model.Restraints[1].flags, std::array{1, 0, 2, 1, 0, -1}));
    EXPECT_TRUE(std::ranges::equal(model.NodalForces[0].components, std::array{1.0, 2.0, 3.0, 4.0, 5.0, 6.5}));
    EXPECT_TRUE(std::ranges::equal(model.QuadDistributedLoads[0].pressure, std::array{100.0, 200.0, 300.0}));
    EXPECT_TRUE(std::ranges::equal(model.TriDistributedLoads[0].pressure, std::array{10.0, -20.0, 30.0}));
    EXPECT_EQ(model.BeamDistributedLoads[0].element, 2);
    EXPECT_EQ(model.BeamDistributedLoads[0].q1, -30);
    EXPECT_EQ(model.BeamDistributedLoads[0].q2, 60);
}

TEST(ModelFileReader, ReadsEverySectionEmptyAndAllocatesNothing)
{
    const auto [model, reading] = ReadText(ModelText().Text());
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.NPOIN, 0);
    EXPECT_EQ(model.QuadElements.capacity() + model.QuadConnectivity.capacity(), 0u);
    EXPECT_EQ(model.TriElements.capacity() + model.TriConnectivity.capacity(), 0u);
    EXPECT_EQ(model.BeamElements.capacity() + model.BeamConnectivity.capacity() + model.BeamSectionRefs.capacity(), 0u);
    EXPECT_EQ(model.NodalForces.capacity() + model.QuadDistributedLoads.capacity(), 0u);
}

TEST(ModelFileReader, LeavesAnEmptyElementSectionUnallocatedAndReadsTheOthers)
{
    const auto [model, reading] = ReadText(ExampleFile);
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(model.TriElements.capacity() + model.TriConnectivity.capacity(), 0u);
    EXPECT_EQ(model.QuadElements.size(), 1u);
    EXPECT_EQ(model.BeamElements.size(), 1u);
}

TEST(ModelFileReader, DoesNotLookAtTextAfterTheLastSection)
{
    const auto [model, reading] = ReadText(std::string(ExampleFile) + "\nremarks, 1:2,3\n\xFF");
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(reading.warnings, "");
}

TEST(ModelFileReader, NeedsNoLineEndAtTheEndOfTheFile)
{
    std::string text = FullModel().Text();
    text.pop_back();
    const auto [model, reading] = ReadText(text);
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.BeamDistributedLoads[0].q2, 60);
}

TEST(ModelFileReader, TakesCarriageReturnsAsWhiteSpace)
{
    std::string text;
    for (const char c : FullModel().Text()) { text += c == '\n' ? "\r\n" : std::string(1, c); }
    const auto [model, reading] = ReadText(text);
    EXPECT_EQ(reading.end, End::Complete) << reading.fault;
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.BeamDistributedLoads[0].q2, 60);
    EXPECT_EQ(model.TBeamSections[0].Hw, 0.1);
}

TEST(ModelFileReader, TakesLineBreaksAnywhereBeforeANumber)
{
    const auto [model, reading] = ReadText(ExampleWith("0:0,1,2,3[0,0]\n", "\n\n 0:\n 0, \t1,\n2,\n 3[ 0,\n0] "));
    EXPECT_EQ(reading.end, End::Complete) << reading.fault;
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.QuadConnectivity[0], (std::array<int, 4>{0, 1, 2, 3}));
}

// ------------------------------------------------------------ header

TEST(ModelFileReader, AcceptsTheReleaseInAnyFormOfTheNumberThree)
{
    for (const char* release : {"3", "3.000", "+3", "0.3e1", "0x3", " \n3.0"}) {
        const auto [model, reading] = ReadText(ExampleWith("3.0", release));
        EXPECT_EQ(reading.end, End::Complete) << release;
        EXPECT_EQ(model.NPOIN, 4) << release;
    }
}

TEST(ModelFileReader, RefusesAnotherRelease)
{
    for (const char* release : {"3.01", "2", "4.0", "-3", "nan", "3.0000000000001"}) {
        const auto [model, reading] = ReadText(ExampleWith("3.0", release));
        EXPECT_EQ(reading.end, End::WrongRelease) << release;
        EXPECT_EQ(model.NMT, 0) << release;
    }
}

TEST(ModelFileReader, RefusesAHeaderThatDoesNotScanAsAnotherRelease)
{
    EXPECT_EQ(ReadText("").reading.end, End::WrongRelease);
    EXPECT_EQ(ReadText("\n\n").reading.end, End::WrongRelease);
    EXPECT_EQ(ReadText(std::string(100, '\0')).reading.end, End::WrongRelease);
    EXPECT_EQ(ReadText(ExampleWith("release=3.0", "release=three")).reading.end, End::WrongRelease);
    EXPECT_EQ(ReadText(ExampleWith("Quor", "quor")).reading.end, End::WrongRelease);
}

TEST(ModelFileReader, RefusesAByteOrderMarkBeforeTheHeader)
{
    EXPECT_EQ(ReadText("\xEF\xBB\xBF" + std::string(ExampleFile)).reading.end, End::WrongRelease);
}

// The number has been stored when the scan fails behind it, and only the number is looked at.
TEST(ModelFileReader, AcceptsAHeaderThatLacksItsEndWithAWarning)
{
    const auto [model, reading] = ReadText(ExampleWith("3.0 ###", "3.0"));
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(reading.warnings, "fem_solving.txt:2:1: warning: release: expected \"###\", found \"Number of "
                                "materials:NMT=1\"\n");
    EXPECT_EQ(model.NMT, 1);
}

// ------------------------------------------------------------ labels and written numbers

TEST(ModelFileReader, SkipsTheLabelLineOfASectionWhateverItHolds)
{
    for (const char* label : {"#0: frame 12, Hw=9 [drawing]", "x", "   \t #", "#0:\r", "Hw=5", "\xB8\xDF %d"}) {
        const auto [model, reading] = ReadText(ExampleWith("NLBS=1\n#0:\n", std::string("NLBS=1\n") + label + "\n"));
        EXPECT_EQ(reading.end, End::Complete) << label;
        EXPECT_EQ(reading.warnings, "") << label;
        EXPECT_EQ(model.LBeamSections[0].Hw, 0.2) << label;
    }
}

TEST(ModelFileReader, TakesTheFirstNonBlankLineAsTheLabelOfASection)
{
    const auto [model, reading] = ReadText(ExampleWith("NLBS=1\n#0:\n", "NLBS=1\n\n  \n#0:\n"));
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.LBeamSections[0].Hw, 0.2);
}

TEST(ModelFileReader, SkipsALabelLineOfAMillionCharacters)
{
    const auto [model, reading] = ReadText(ExampleWith("NLBS=1\n#0:\n", "NLBS=1\n" + std::string(1000000, '=') + "\n"));
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.LBeamSections[0].Hw, 0.2);
}

TEST(ModelFileReader, StopsALabelLineAtTheEndOfTheFile)
{
    const std::string text = ExampleFile;
    const std::size_t label = text.find("#0:\nHw");
    ASSERT_NE(label, std::string::npos);
    const auto [model, reading] = ReadText(text.substr(0, label) + "#0: a label without an end, long enough for L");
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_NE(reading.warnings.find("warning: L section 0: expected the end of the label line, found the end of the "
                                    "file\n"),
              std::string::npos)
        << reading.warnings;
    EXPECT_EQ(model.LBeamSections[0].Hw, 0);
}

TEST(ModelFileReader, BreaksTheScanOfEWhenAMaterialLabelCarriesText)
{
    const auto [model, reading] = ReadText(ExampleWith("NMT=1\n#0:\n", "NMT=1\n#0: steel\n"));
    EXPECT_EQ(model.Materials[0].E, 0);
    EXPECT_EQ(model.Materials[0].Mu, 0);
    EXPECT_NE(reading.warnings.find("fem_solving.txt:3:5: warning: material 0: expected \"E=\", found \"steel\"\n"),
              std::string::npos)
        << reading.warnings;
}

TEST(ModelFileReader, IgnoresTheNumberWrittenBeforeANode)
{
    const auto [model, reading] = ReadText(ExampleWith("0:0,0,0\n1:1,0,0", "7:0.5,0,0\n-3:1,0,0"));
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(model.NodeCoordinates[0], (Vector3{0.5, 0, 0}));
    EXPECT_EQ(model.NodeCoordinates[1], (Vector3{1, 0, 0}));
    EXPECT_EQ(model.QuadElements[0].coordinates[0], (Vector3{0.5, 0, 0}));
}

// ------------------------------------------------------------ scans that do not match

TEST(ModelFileReader, DoesNotScanRestraintFlagsWithCommasBetweenThem)
{
    const auto [model, reading] = ReadText(ExampleWith("0:1 1 1 1 1 1", "0:1,1,1,1,1,1"));
    EXPECT_TRUE(std::ranges::equal(model.Restraints[0].flags, std::array{1, 0, 0, 0, 0, 0}));
    EXPECT_NE(reading.warnings.find(":29:4: warning: restraint 0: expected an integer, found \",1,1,1,1,1\"\n"),
              std::string::npos)
        << reading.warnings;
}

TEST(ModelFileReader, WritesOneWarningForAScanThatDoesNotMatchAndGoesOn)
{
    const auto [model, reading] = ReadText(ExampleWith("2:1,1,0\n", "2:1,1;0\n"));
    EXPECT_EQ(LineCount(reading.warnings.substr(0, reading.warnings.find("node 3"))), 1u) << reading.warnings;
    EXPECT_EQ(reading.warnings.find("fem_solving.txt:21:6: warning: node 2: expected \",\", found \";0\"\n"), 0u)
        << reading.warnings;
    EXPECT_EQ(model.NodeCoordinates[2], (Vector3{1, 1, 0}));
    // The next scan wants a number and finds the semicolon.
    EXPECT_EQ(model.NodeCoordinates[3], (Vector3{0, 0, 0}));
}

TEST(ModelFileReader, KeepsWhatARecordDidNotStoreFromTheRecordBefore)
{
    const std::string text =
        Replaced(ExampleWith("NELEM_S_4ND=1\n0:0,1,2,3[0,0]\n", "NELEM_S_4ND=2\n0:0,1,2,3[1,1]\n1:3,2,1,0\n"),
                 "NMT=1\n#0:\nE=2.06e11\nMu=0.3\nDensity=7850\n",
                 "NMT=2\n#0:\nE=1\nMu=0.3\nDensity=1\n#1:\nE=2\nMu=0.3\nDensity=2\n");
    const auto [model, reading] = ReadText(Replaced(text, "NTK=1\n#0:\nTK=0.01\n", "NTK=2\n#0:\nTK=1\n#1:\nTK=2\n"));
    ASSERT_EQ(reading.end, End::Complete) << reading.fault;
    EXPECT_EQ(model.QuadConnectivity[1], (std::array<int, 4>{3, 2, 1, 0}));
    EXPECT_EQ(model.QuadElements[1].E, 2);
    EXPECT_EQ(model.QuadElements[1].thickness, 2);
}

TEST(ModelFileReader, KeepsOrientationMaterialAndMirroringOfTheBeamBefore)
{
    ModelText text;
    text.Material(1, 0.3, 1);
    text.Material(2, 0.3, 2);
    text.TSection(0.1, 0.01, 0.1, 0.01);
    text.LSection(0.1, 0.01, 0.1, 0.01);
    text.Node(0, 0, 0);
    text.Node(1, 0, 0);
    text.Beam({0, 1}, {0.5, 2, 3}, 1, 1, 0, 0.25, 1);
    text.Beam({1, 0}, {9, 9, 9}, 0, 1, 0, 0.5, 0);
    std::string damaged = text.Text();
    damaged = Replaced(damaged, "1:1,0<9,9,9>", "1:1,0(9,9,9>");
    const auto [model, reading] = ReadText(damaged);
    ASSERT_EQ(reading.end, End::Complete) << reading.fault;
    EXPECT_EQ(model.BeamConnectivity[1], (std::array<int, 2>{1, 0}));
    EXPECT_EQ(model.BeamElements[1].reference, (Vector3{1.5, 2, 3}));
    EXPECT_EQ(model.BeamElements[1].E, 2);
    EXPECT_TRUE(model.BeamSectionRefs[1].BeamSecMirrored);
    EXPECT_EQ(model.BeamSectionRefs[1].BeamSecType, TSection); // stored in the record itself: never stored is 0
    EXPECT_EQ(model.BeamSectionRefs[1].BeamSecOz, 0);
}

TEST(ModelFileReader, LeavesEverythingAfterAWrongSectionTitleUnread)
{
    const auto [model, reading] = ReadText(ExampleWith("Number of nodal points:NPOIN=4", "Number of nodes:NPOIN=4"));
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(model.NLBS, 1);
    EXPECT_EQ(model.NPOIN, 0);
    EXPECT_EQ(model.NFOR, 0);
    EXPECT_EQ(reading.warnings.find("fem_solving.txt:18:14: warning: NPOIN: expected \"al points:NPOIN=\", found "
                                    "\"es:NPOIN=4\"\n"),
              0u)
        << reading.warnings;
}

TEST(ModelFileReader, ReadsABeamOfAnotherSectionTypeSilently)
{
    const auto [model, reading] =
        ReadText(ExampleWith("[0,BeamSecType=1,BeamSecIndex=0", "[7,BeamSecType=3,BeamSecIndex=99"));
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(reading.warnings, "");
    EXPECT_EQ(model.BeamConnectivity[0], (std::array<int, 2>{0, 1}));
    EXPECT_EQ(model.BeamSectionRefs[0].BeamSecType, 3);
    EXPECT_EQ(model.BeamSectionRefs[0].BeamSecIndex, 99);
    EXPECT_EQ(model.BeamElements[0].E, 0);
    EXPECT_EQ(model.BeamElements[0].section.A, 0);
    EXPECT_EQ(model.BeamElements[0].tolerance, 1e-15);
}

TEST(ModelFileReader, ShowsTwentyWarningsAndCountsTheRest)
{
    // 50 restraints of which every flag is a word: 7 scans each, of which the node matches in the first record only.
    ModelText text;
    text.Node(0, 0, 0);
    for (int r = 0; r < 50; ++r) { text.Restrain(0); }
    const auto [model, reading] = ReadText(Replaced(text.Text(), "0:1 1 1 1 1 1", "0:fixed"));
    EXPECT_EQ(reading.end, End::Complete);
    ASSERT_EQ(LineCount(reading.warnings), 21u) << reading.warnings;
    // 6 flags, then 49 records of 7 scans, then the counts of 4 load sections.
    const std::size_t last = reading.warnings.rfind('\n', reading.warnings.size() - 2);
    EXPECT_EQ(reading.warnings.substr(last + 1), "fem_solving.txt: warning: " + std::to_string(6 + 49 * 7 + 4 - 20) +
                                                     " more places did not match and are not shown\n");
}

TEST(ModelFileReader, ShowsExactlyTwentyWarningsWithoutACount)
{
    // The colon of every label is missing, and nothing else.
    ModelText text;
    text.Material(1, 0.3, 1);
    text.Thickness(1);
    text.Node(0, 0, 0);
    for (int e = 0; e < 20; ++e) { text.Quad({0, 0, 0, 0}); }
    std::string damaged = text.Text();
    for (int e = 0; e < 20; ++e) { damaged = Replaced(damaged, ":0,0,0,0[", " 0,0,0,0["); }
    const auto [model, reading] = ReadText(damaged);
    EXPECT_EQ(reading.end, End::Complete);
    EXPECT_EQ(LineCount(reading.warnings), 20u);
    EXPECT_EQ(reading.warnings.find("more places"), std::string::npos);
}

TEST(ModelFileReader, ShowsOnlyPrintableCharactersOfTheFileInAWarning)
{
    const auto [model, reading] = ReadText(ExampleWith("Mu=0.3", std::string("\xCE\xBC\t\x01=\0 0.3", 10)));
    EXPECT_EQ(reading.warnings.find("fem_solving.txt:5:1: warning: material 0: expected \"Mu=\", found \"?? ?=? 0.3\""),
              0u)
        << reading.warnings;
}

TEST(ModelFileReader, ShowsTheBeginningOfALongLineInAWarning)
{
    const auto [model, reading] = ReadText(ExampleWith("Mu=0.3", std::string(5000, 'x')));
    EXPECT_EQ(reading.warnings.find("fem_solving.txt:5:1: warning: material 0: expected \"Mu=\", found \"" +
                                    std::string(40, 'x') + "...\"\n"),
              0u)
        << reading.warnings;
}

// ------------------------------------------------------------ faults that end the run

TEST(ModelFileReader, RefusesANodeNumberOutsideTheTableWithItsPlaceAndTheRange)
{
    const auto [model, reading] = ReadText(ExampleWith("0:0,1,2,3[0,0]", "0:0,1,512,3[0,0]"));
    EXPECT_EQ(reading.end, End::Fault);
    EXPECT_EQ(reading.fault, "fem_solving.txt:24:7: error: four-node shell 0 uses node 512, but the model has 4 nodes\n"
                             "  24 | 0:0,1,512,3[0,0]\n"
                             "     |       ^~~\n"
                             "  expected: a node number from 0 to 3 (NPOIN=4, line 18)\n"
                             "  to do:    correct the number, or add the nodes and raise NPOIN");
}

struct Fault {
    const char* name;
    const char* old;
    const char* with;
    const char* message; // first line, without the file name
};

class OutsideItsTable : public testing::TestWithParam<Fault> {};

TEST_P(OutsideItsTable, EndsTheRun)
{
    const Fault& fault = GetParam();
    const auto [model, reading] = ReadText(Replaced(FullModel().Text(), fault.old, fault.with));
    EXPECT_EQ(reading.end, End::Fault);
    EXPECT_NE(reading.fault.substr(0, reading.fault.find('\n')).find(fault.message), std::string::npos)
        << reading.fault;
}

INSTANTIATE_TEST_SUITE_P(
    ModelFileReader, OutsideItsTable,
    testing::Values(
        Fault{"NodeOfAQuad", "0:0,1,2,3[", "0:0,1,2,5[", "four-node shell 0 uses node 5, but the model has 5 nodes"},
        Fault{"NegativeNodeOfAQuad", "0:0,1,2,3[", "0:-1,1,2,3[", "four-node shell 0 uses node -1,"},
        Fault{"MaterialOfAQuad", "3[1,0]", "3[2,0]", "four-node shell 0 uses material 2, but the model has 2 mat"},
        Fault{"ThicknessOfAQuad", "3[1,0]", "3[1,-2]", "four-node shell 0 uses thickness -2,"},
        Fault{"NodeOfATriangle", "0:1,4,2[", "0:1,4,-2147483648[", "three-node shell 0 uses node -2147483648,"},
        Fault{"MaterialOfATriangle", "2[0,1]", "2[7,1]", "three-node shell 0 uses material 7,"},
        Fault{"ThicknessOfATriangle", "2[0,1]", "2[0,2147483647]", "three-node shell 0 uses thickness 2147483647,"},
        Fault{"NodeOfABeam", "1:1,2<", "1:1,20<", "beam 1 uses node 20,"},
        Fault{"MaterialOfABeam", "1>[1,BeamSecType=1", "1>[-1,BeamSecType=1", "beam 1 uses material -1,"},
        Fault{"TSectionOfABeam", "BeamSecType=0,BeamSecIndex=0", "BeamSecType=0,BeamSecIndex=1",
              "beam 0 uses T section 1, but the model has 1 T section"},
        Fault{"LSectionOfABeam", "BeamSecType=1,BeamSecIndex=0", "BeamSecType=1,BeamSecIndex=-1",
              "beam 1 uses L section -1,"},
        Fault{"CSectionOfABeam", "BeamSecType=2,BeamSecIndex=0", "BeamSecType=2,BeamSecIndex=5",
              "beam 2 uses C section 5,"},
        Fault{"NodeOfARestraint", "3:1 0 2 1 0 -1", "5:1 0 2 1 0 -1", "restraint 1 uses node 5,"},
        Fault{"NodeOfAForce", "4<1,2,", "-4<1,2,", "force 0 uses node -4,"},
        Fault{"ElementOfAQuadLoad", "0:100,", "1:100,",
              "four-node shell load 0 uses four-node shell 1, but the model has 1 four-node shell"},
        Fault{"ElementOfATriangleLoad", "0:10,", "-1:10,", "three-node shell load 0 uses three-node shell -1,"},
        Fault{"ElementOfABeamLoad", "2:-30,", "3:-30,", "beam load 0 uses beam 3, but the model has 3 beams"}),
    [](const auto& info) { return info.param.name; });

TEST(ModelFileReader, RefusesAnIndexIntoAnEmptyTableEvenWhenTheScanStoredNone)
{
    // The indices keep their initial 0, and the model has no material.
    ModelText text;
    text.Node(0, 0, 0);
    text.Quad({0, 0, 0, 0});
    const auto [model, reading] = ReadText(Replaced(text.Text(), "[0,0]", "(0,0)"));
    EXPECT_EQ(reading.end, End::Fault);
    EXPECT_EQ(
        reading.fault.find("fem_solving.txt:10:10: error: four-node shell 0 uses material 0, but the model has no "
                           "materials\n"),
        0u)
        << reading.fault;
    EXPECT_NE(reading.fault.find("expected: a model that has materials (NMT=0, line 2)\n"), std::string::npos);
    EXPECT_NE(reading.warnings.find("expected \"[\", found \"(0,0)\""), std::string::npos);
}

TEST(ModelFileReader, RefusesEveryNegativeCount)
{
    const std::string text = FullModel().Text();
    for (const char* key : {"NMT", "NTK", "NTBS", "NLBS", "NCBS", "NPOIN", "NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B",
                            "NRN", "NFOR", "NDL_S_4ND", "NDL_S_3ND", "NDL_B"}) {
        const std::string equals = std::string(key) + "=";
        const auto [model, reading] = ReadText(Replaced(text, equals, equals + "-"));
        EXPECT_EQ(reading.end, End::Fault) << key;
        EXPECT_NE(reading.fault.find(" is negative\n"), std::string::npos) << reading.fault;
        EXPECT_NE(reading.fault.find(equals), std::string::npos) << reading.fault;
    }
}

TEST(ModelFileReader, RefusesEveryCountThatTheRestOfTheFileCannotHold)
{
    const std::string text = FullModel().Text();
    for (const char* key : {"NMT", "NTK", "NTBS", "NLBS", "NCBS", "NPOIN", "NELEM_S_4ND", "NELEM_S_3ND", "NELEM_B",
                            "NRN", "NFOR", "NDL_S_4ND", "NDL_S_3ND", "NDL_B"}) {
        const std::string equals = std::string(key) + "=";
        const auto [model, reading] = ReadText(Replaced(text, equals, equals + "200000000"));
        EXPECT_EQ(reading.end, End::Fault) << key;
        EXPECT_NE(reading.fault.find("but the rest of the file cannot hold so many"), std::string::npos)
            << reading.fault;
    }
}

TEST(ModelFileReader, ShowsACountThatTheFileCannotHoldWithTheMostThatFits)
{
    const auto [model, reading] = ReadText("### Quor_Tarn+Vexo release=3.0 ###\nNumber of materials:NMT=3\n"
                                           "#0:\nE=1\nMu=1\nDensity=1\n#1:\nE=1\nMu=1\nDensity=1\n");
    EXPECT_EQ(reading.fault,
              "fem_solving.txt:2:25: error: NMT=3, but the rest of the file cannot hold so many materials\n"
              "  2 | Number of materials:NMT=3\n"
              "    |                         ^\n"
              "  expected: at most 2 (46 bytes follow, one material takes 19 or more)\n"
              "  to do:    correct NMT, or write the file again if it was cut off");
}

TEST(ModelFileReader, AcceptsACountThatTheRestOfTheFileJustHolds)
{
    const std::string head = Replaced(ModelText().Text(), "NDL_B=0\n", "NDL_B=2\n");
    // Without elements a load can refer to none, so the fault must be about the reference and not about the count.
    const auto [model, reading] = ReadText(head + "0:1,+0:1,1");
    EXPECT_NE(reading.fault.find("beam load 0 uses beam 0, but the model has no beams"), std::string::npos)
        << reading.fault;
    const auto [same, shorter] = ReadText(head + "0:1,+0:1,");
    EXPECT_NE(shorter.fault.find("NDL_B=2, but the rest of the file cannot hold so many"), std::string::npos)
        << shorter.fault;
}

TEST(ModelFileReader, MarksAFaultInALineOfAMillionCharacters)
{
    const auto [model, reading] =
        ReadText(ExampleWith("0:0,1,2,3[0,0]", std::string(500000, ' ') + "0:0,1,2,3[0,9]" + std::string(500000, ' ')));
    EXPECT_EQ(reading.end, End::Fault);
    EXPECT_LT(reading.fault.size(), 600u);
    EXPECT_NE(reading.fault.find("0:0,1,2,3[0,9]"), std::string::npos) << reading.fault;
    EXPECT_NE(reading.fault.find("     | " + std::string(50, ' ') + "^\n"), std::string::npos) << reading.fault;
}

// ------------------------------------------------------------ no text can take the reader outside its tables

TEST(ModelFileReader, StaysInsideItsTablesWhenTheFileIsCutAfterAnyByte)
{
    const std::string text = FullModel().Text();
    for (std::size_t size = 0; size <= text.size(); ++size) {
        // A copy of exactly that size, so that a sanitizer sees a read behind its end.
        const std::vector<char> cut(text.begin(), text.begin() + std::ptrdiff_t(size));
        const auto [model, reading] = ReadText({cut.data(), cut.size()});
        EXPECT_EQ(model.NodeCoordinates.size(), std::size_t(model.NodeCoordinates.empty() ? 0 : model.NPOIN));
        if (size < std::strlen("### Quor_Tarn+Vexo release=3")) {
            EXPECT_EQ(reading.end, End::WrongRelease) << size;
        }
    }
}

TEST(ModelFileReader, StaysInsideItsTablesWhenAnyByteIsReplaced)
{
    const std::string text = FullModel().Text();
    for (std::size_t at = 0; at < text.size(); ++at) {
        for (const char replacement : {'9', '-', ',', '\n', '\0'}) {
            std::string damaged = text;
            damaged[at] = replacement;
            const auto [model, reading] = ReadText(damaged);
            for (const std::array<int, QuadNodeCount>& corners : model.QuadConnectivity) {
                for (const int node : corners) {
                    EXPECT_TRUE(reading.end == End::Fault || (node >= 0 && node < model.NPOIN));
                }
            }
        }
    }
}

// Inputs kept by the fuzzer (fuzz/ReaderFuzz.cpp): together they take every way through the reader it has found.
TEST(ModelFileReader, ReadsTheCorpusOfTheFuzzer)
{
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TARNVEXO_SOURCE_DIR "/tests/input/corpus")) {
        std::ifstream file(entry.path(), std::ios::binary);
        const std::vector<char> text{std::istreambuf_iterator<char>(file), {}};
        const auto [model, reading] = ReadText({text.data(), text.size()});
        EXPECT_TRUE(reading.end != End::Complete || reading.fault.empty()) << entry.path();
        EXPECT_TRUE(reading.end != End::Fault || !reading.fault.empty()) << entry.path();
        EXPECT_LE(LineCount(reading.warnings), 21u) << entry.path();
        ++files;
    }
    EXPECT_GT(files, 0);
}

// ------------------------------------------------------------ the process

void WriteFile(const char* name, std::string_view text)
{
    std::ofstream(name, std::ios::binary) << text;
}

TEST(ReadModelFile, ReadsAFileSilently)
{
    const test::TemporaryDirectory directory;
    WriteFile(FileName, ExampleFile);
    const test::ChildResult run = test::RunInChild([] {
        ModelStore model;
        ReadModelFile(model, FileName);
        std::exit(model.NPOIN == 4 && model.NFOR == 1 ? 0 : 3);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "");
}

#ifndef _WIN32 // pipes have no names in directories there
// A pipe cannot be mapped into memory.
TEST(ReadModelFile, ReadsAPipeToItsEnd)
{
    const test::TemporaryDirectory directory;
    ASSERT_EQ(mkfifo(FileName, 0600), 0);
    std::thread writer([] { WriteFile(FileName, ExampleFile); });
    ModelStore model;
    ReadModelFile(model, FileName);
    writer.join();
    EXPECT_EQ(model.NPOIN, 4);
    EXPECT_EQ(model.NFOR, 1);
}
#endif

TEST(ReadModelFile, EndsTheRunWithAPauseWhenTheFileCannotBeOpened)
{
    const test::TemporaryDirectory directory;
    const test::ChildResult run = test::RunInChild([] {
        ModelStore model;
        ReadModelFile(model, FileName);
    });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "Preprocessor file read error!\nPress any key to continue . . . ");
    EXPECT_EQ(run.error, "fem_solving.txt: error: the model file cannot be read: No such file or directory\n"
                         "  expected: a readable file of this name in the current directory\n"
                         "  to do:    change to the directory of the model and start the program there\n");
}

TEST(ReadModelFile, EndsTheRunAfterAKeyWhenTheReleaseIsAnother)
{
    const test::TemporaryDirectory directory;
    WriteFile(FileName, ExampleWith("3.0", "3.01"));
    const test::ChildResult run = test::RunInChild([] {
        ModelStore model;
        ReadModelFile(model, FileName);
    });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "Release File Number error!\n");
    EXPECT_EQ(run.error, "fem_solving.txt:1:28: error: the file is of another release than this program reads\n"
                         "  1 | ### Quor_Tarn+Vexo release=3.01 ###\n"
                         "    |                            ^\n"
                         "  expected: release=3.0\n"
                         "  to do:    write the model again with a pre-processor of that release\n");
}

// The colon behind the label is missing; the scan of the nodes begins at the blank in its place and goes well.
TEST(ReadModelFile, WritesWarningsToStandardErrorAndGoesOn)
{
    const test::TemporaryDirectory directory;
    WriteFile(FileName, ExampleWith("0:0,1,2,3[0,0]", "0 0,1,2,3[0,0]"));
    const test::ChildResult run = test::RunInChild([] {
        ModelStore model;
        ReadModelFile(model, FileName);
        std::exit(model.QuadConnectivity[0][3] == 3 && model.NFOR == 1 ? 0 : 3);
    });
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "fem_solving.txt:24:2: warning: four-node shell 0: expected \":\", found \" 0,1,2,3[0,0]\"\n");
}

TEST(ReadModelFile, EndsTheRunWithTheFaultOnStandardErrorAfterTheWarnings)
{
    const test::TemporaryDirectory directory;
    WriteFile(FileName, Replaced(ExampleWith("0:0,1,2,3[0,0]", "0 0,1,2,3[0,0]"), "2<0,0,", "4<0,0,"));
    const test::ChildResult run = test::RunInChild([] {
        ModelStore model;
        ReadModelFile(model, FileName);
    });
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "fem_solving.txt:24:2: warning: four-node shell 0: expected \":\", found \" 0,1,2,3[0,0]\"\n"
                         "fem_solving.txt:31:1: error: force 0 uses node 4, but the model has 4 nodes\n"
                         "  31 | 4<0,0,-1000,0,0,0>\n"
                         "     | ^\n"
                         "  expected: a node number from 0 to 3 (NPOIN=4, line 18)\n"
                         "  to do:    correct the number, or add the nodes and raise NPOIN\n");
}

TEST(ReadModelFileDeathTest, EndsTheRunOnACountThatTheFileCannotHold)
{
    const test::TemporaryDirectory directory;
    WriteFile(FileName, ExampleWith("NPOIN=4", "NPOIN=2000000000"));
    ModelStore model;
    EXPECT_EXIT(ReadModelFile(model, FileName), testing::ExitedWithCode(1), ":18:30: error: NPOIN=2000000000, but");
}

} // namespace
} // namespace tarnvexo
