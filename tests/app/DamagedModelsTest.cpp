// Models damaged one by one, out of a sound one, as editors, scripts and pre-processors damage them: the program names
// the rule and the place, ends with the right exit code, and writes nothing that cannot be trusted.
#include "support/ProgramRun.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <ostream>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

// A plate of five quadrilaterals and two triangles, 3 m by 2 m, with a T, an L and a tube on it:
//     8---9--10--11
//     |   |   | / |      y
//     4===5===6===7      |
//     |   |   |   |      +--x
//     0---1---2---3
const std::string SoundModel = R"(### Quor_Tarn+Vexo release=3.0 ###
Number of materials:NMT=2
#0:
E=2.06e11
Mu=0.3
Density=7850
#1:
E=7e10
Mu=0.33
Density=2700
Number of shell thicknesses:NTK=2
#0:
TK=0.010
#1:
TK=0.012
Number of T_beam sections:NTBS=1
#0: stiffener
Hw=0.20
Tw=0.008
Bf=0.10
Tf=0.015
Number of L_beam sections:NLBS=1
#0: edge angle
Hw=0.15
Tw=0.007
Bf=0.05
Tf=0.009
Number of C_beam sections:NCBS=1
#0: tube
R=0.06
T=0.005
Number of nodal points:NPOIN=12
0:0,0,0
1:1,0,0
2:2,0,0
3:3,0,0
4:0,1,0
5:1.1,1.1,0
6:2,1,0
7:3,1,0
8:0,2,0
9:1,2,0
10:2,2,0
11:3,2,0
Number of four-nodes shell elements:NELEM_S_4ND=5
0:0,1,5,4[0,0]
1:1,2,6,5[0,0]
2:2,3,7,6[0,1]
3:4,5,9,8[0,0]
4:5,6,10,9[0,0]
Number of three-nodes shell elements:NELEM_S_3ND=2
0:6,7,11[0,1]
1:6,11,10[0,1]
Number of beam elements:NELEM_B=5
0:4,5<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0.005,BeamSecMirrored=0]
1:5,6<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0.005,BeamSecMirrored=0]
2:6,7<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0.005,BeamSecMirrored=0]
3:0,4<0,0,1>[0,BeamSecType=1,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=1]
4:4,8<0,0,1>[1,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]
Number of restricted nodal points:NRN=3
0:1 1 1 0 0 0
3:0 1 1 0 0 0
8:0 0 1 0 0 0
Number of forces:NFOR=2
11<0,0,-1000,0,0,0>
7<0,500,0,20,0,0>
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=1
1:2000,2000,2500
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=1
0:1500,1500,1500
Number of distributed loads on beam elements:NDL_B=1
2:300,400
)";

// Replacements in the sound model, each of the first place where `from` stands. A "^" in a new text marks where the
// message must point and does not get into the model.
struct Replacement {
    std::string from;
    std::string to;
};

struct Damage {
    std::string name;
    std::vector<Replacement> changes;
    std::string rule;
    int exitCode;      // of `check` and of `solve`
    std::string words; // that the message has; may be empty
};

void PrintTo(const Damage& damage, std::ostream* out)
{
    *out << damage.rule;
}

struct DamagedModel {
    std::string text;
    std::string place; // "fem_solving.txt:12:3:"; empty without a mark
};

DamagedModel Damaged(const Damage& damage)
{
    DamagedModel model = {SoundModel, ""};
    for (const Replacement& change : damage.changes) {
        const std::size_t at = change.from.empty() ? 0 : model.text.find(change.from);
        EXPECT_NE(at, std::string::npos) << damage.name << ": " << change.from;
        model.text.replace(at, change.from.empty() ? model.text.size() : change.from.size(), change.to);
    }
    const std::size_t mark = model.text.find('^');
    if (mark != std::string::npos) {
        const std::size_t lineBegin = mark == 0 ? 0 : model.text.rfind('\n', mark - 1) + 1;
        const auto line =
            1 + std::count(model.text.begin(), model.text.begin() + static_cast<std::ptrdiff_t>(mark), '\n');
        model.place = "fem_solving.txt:" + std::to_string(line) + ":" + std::to_string(mark - lineBegin + 1) + ":";
        model.text.erase(mark, 1);
    }
    return model;
}

const std::vector<Damage> Damages = {
    // ---- the text
    {"Header", {{"### Quor_Tarn+Vexo release", "##^ Quor_Tarn+Vexo release"}}, "format", 1, ""},
    {"Release", {{"release=3.0", "release=^2.0"}}, "format", 1, "release"},
    {"OtherProgramsText", {{"", "^solid cube\nfacet normal 0 0 1\n"}}, "format", 1, ""},
    {"KeyOfACount", {{"nodal points:NPOIN", "nodal point^:NPOIN"}}, "format", 1, "NPOIN"},
    {"MissingSection",
     {{"Number of restricted nodal points:NRN=3\n0:1 1 1 0 0 0\n3:0 1 1 0 0 0\n8:0 0 1 0 0 0\n", "^"}},
     "format",
     1,
     "NRN"},
    {"TextBehindTheLastCount", {{"NDL_B=1", "NDL_B=0 ^beams"}}, "format", 1, "NDL_B"},
    {"HexadecimalCount", {{"NDL_B=1", "NDL_B=^0x1"}}, "format", 1, "NDL_B"},
    {"NodeNumberBeyondIntegers", {{"1:1,2,6,5[0,0]", "1:1,2,^4294967297,5[0,0]"}}, "format", 1, ""},
    {"OneMaterialTooFew", {{"NMT=2", "NMT=3"}}, "format", 1, "NMT=3"},
    {"OneNodeTooFew", {{"NPOIN=12", "NPOIN=^13"}}, "format", 1, "12"},
    {"OneNodeTooMany", {{"NPOIN=12", "NPOIN=^11"}}, "format", 1, "12"},
    {"OneQuadTooFew", {{"NELEM_S_4ND=5", "NELEM_S_4ND=^6"}}, "format", 1, "5"},
    {"OneQuadTooMany", {{"NELEM_S_4ND=5", "NELEM_S_4ND=^4"}}, "format", 1, "5"},
    {"OneBeamTooFew", {{"NELEM_B=5", "NELEM_B=^7"}}, "format", 1, "5"},
    {"OneRestraintTooFew", {{"NRN=3", "NRN=^4"}}, "format", 1, "3"},
    {"ForcesNotCounted", {{"NFOR=2", "NFOR=^0"}}, "format", 1, "2"},
    {"NegativeCount", {{"NPOIN=12", "NPOIN=^-1"}}, "format", 1, "-1"},
    {"LargestCount", {{"NELEM_S_4ND=5", "NELEM_S_4ND=^2147483647"}}, "format", 1, "2147483647"},
    {"CountBeyondIntegers", {{"NPOIN=12", "NPOIN=^99999999999999"}}, "format", 1, "99999999999999"},
    {"CountThatIsNoNumber", {{"NPOIN=12", "NPOIN=^twelve"}}, "format", 1, "NPOIN"},
    {"CountWithAPoint", {{"NFOR=2", "NFOR=^2.5"}}, "format", 1, ""},
    {"SemicolonForAComma", {{"2:2,0,0", "2:2^;0,0"}}, "format", 1, ""},
    {"MissingCoordinate", {{"2:2,0,0", "2:2,0^"}}, "format", 1, ""},
    {"DecimalComma", {{"2:2,0,0", "2:2,0,0^,01"}}, "format", 1, ""},
    {"CoordinateNotANumber", {{"2:2,0,0", "2:^nan,0,0"}}, "format", 1, ""},
    {"InfiniteCoordinate", {{"2:2,0,0", "2:2,^-inf,0"}}, "format", 1, ""},
    {"CoordinateBeyondDoubles", {{"2:2,0,0", "2:2,^1e999,0"}}, "format", 1, ""},
    {"LetterForADigit", {{"9:1,2,0", "9:1,^O,0"}}, "format", 1, ""},
    {"RunawayLine", {{"2:2,0,0\n", "2:2,0,0 ^and more\n"}}, "format", 1, ""},
    {"ModulusThatIsNoNumber", {{"E=2.06e11", "E=^steel"}}, "format", 1, ""},
    {"MissingModulus", {{"E=7e10\n", "^"}}, "format", 1, "E="},
    {"MaterialLabelWithText", {{"#1:\nE=7e10", "#1: ^aluminium\nE=7e10"}}, "format", 1, ""},
    {"UnknownNodeOfAQuad", {{"1:1,2,6,5[0,0]", "1:1,2,^12,5[0,0]"}}, "format", 1, "12"},
    {"NegativeNodeOfAQuad", {{"1:1,2,6,5[0,0]", "1:1,^-2,6,5[0,0]"}}, "format", 1, "-2"},
    {"NodeNumberWithAPoint", {{"1:1,2,6,5[0,0]", "1:1,2^.0,6,5[0,0]"}}, "format", 1, ""},
    {"UnknownMaterialOfAQuad", {{"1:1,2,6,5[0,0]", "1:1,2,6,5[^2,0]"}}, "format", 1, "material"},
    {"UnknownThicknessOfAQuad", {{"1:1,2,6,5[0,0]", "1:1,2,6,5[0,^2]"}}, "format", 1, "thickness"},
    {"QuadOfThreeNodes", {{"1:1,2,6,5[0,0]", "1:1,2,6^[0,0]"}}, "format", 1, ""},
    {"UnknownNodeOfATriangle", {{"0:6,7,11[0,1]", "0:6,7,^110[0,1]"}}, "format", 1, "110"},
    {"MissingBracketOfATriangle", {{"0:6,7,11[0,1]", "0:6,7,11^,0,1]"}}, "format", 1, "["},
    {"UnknownNodeOfABeam", {{"3:0,4<", "3:0,^40<"}}, "format", 1, "40"},
    {"UnknownMaterialOfABeam", {{"4:4,8<0,0,1>[1,", "4:4,8<0,0,1>[^3,"}}, "format", 1, "material"},
    {"UnknownSectionType", {{"BeamSecType=2", "BeamSecType=^3"}}, "format", 1, "3"},
    {"NegativeSectionType", {{"BeamSecType=2", "BeamSecType=^-1"}}, "format", 1, "-1"},
    {"UnknownSectionIndex", {{"BeamSecType=1,BeamSecIndex=0", "BeamSecType=1,BeamSecIndex=^1"}}, "format", 1, "L"},
    {"KeyOfABeam",
     {{"BeamSecOz=0.005", "BeamSec^oz=0.005"}},
     "format",
     1,
     "found \"BeamSecoz=0.005\" where \"BeamSecOz=\" belongs"},
    {"UnknownNodeOfARestraint", {{"3:0 1 1 0 0 0", "^33:0 1 1 0 0 0"}}, "format", 1, "33"},
    {"CommasBetweenRestraints", {{"3:0 1 1 0 0 0", "3:0^,1,1,0,0,0"}}, "format", 1, ""},
    {"RestraintOfFiveFlags", {{"3:0 1 1 0 0 0", "3:0 1 1 0 0^"}}, "format", 1, ""},
    {"UnknownNodeOfAForce", {{"11<0,0,-1000", "^12<0,0,-1000"}}, "format", 1, "12"},
    {"ForceOfFiveComponents", {{"11<0,0,-1000,0,0,0>", "11<0,0,-1000,0,0^>"}}, "format", 1, ""},
    {"ForceNotANumber", {{"11<0,0,-1000", "11<0,0,^nan"}}, "format", 1, ""},
    {"UnknownElementOfAQuadLoad", {{"1:2000,2000", "^5:2000,2000"}}, "format", 1, "5"},
    {"UnknownElementOfATriangleLoad", {{"0:1500,1500", "^2:1500,1500"}}, "format", 1, "2"},
    {"UnknownElementOfABeamLoad", {{"2:300,400", "^-1:300,400"}}, "format", 1, "-1"},
    {"CutOff",
     {{"3:4,5,9,8[0,0]\n4:5,6,10,9[0,0]\n" + SoundModel.substr(SoundModel.find("Number of three-nodes")), "3:4,5"}},
     "format",
     1,
     ""},

    // ---- values
    {"DensityWithoutSize", {{"Density=7850", "Density=0"}, {"Density=2700", "Density=0"}}, "the mass 0", 1, ""},
    {"LoadsBeyondMeasure", {{"11<0,0,-1000", "11<0,0,1.7e308"}}, "error: the inertial loads", 1, "not numbers"},
    {"TubeTooThinForItsWalls",
     {{"R=0.06", "R=1e-9"}, {"\nT=0.005", "\nT=1e-10"}},
     "the section mesh of beam 4",
     1,
     "too many to solve"},
    {"ModulusZero", {{"E=7e10", "E=^0"}}, "material-value", 1, "E"},
    {"ModulusNegative", {{"E=7e10", "E=^-7e10"}}, "material-value", 1, "E"},
    {"PoissonOneHalf", {{"Mu=0.33", "Mu=^0.5"}}, "material-value", 1, "Mu"},
    {"PoissonNegative", {{"Mu=0.33", "Mu=^-0.1"}}, "material-value", 1, "Mu"},
    {"DensityNegative", {{"Density=2700", "Density=^-2700"}}, "material-value", 1, "Density"},
    {"ThicknessZero", {{"TK=0.012", "TK=^0"}}, "thickness-value", 1, "TK"},
    {"ThicknessNegative", {{"TK=0.012", "TK=^-0.012"}}, "thickness-value", 1, "TK"},
    {"WebWithoutHeight", {{"Hw=0.20", "Hw=^0"}}, "section-value", 1, "Hw"},
    {"WebWithoutThickness", {{"Tw=0.007", "Tw=^0"}}, "section-value", 1, "Tw"},
    {"FlangeNegative", {{"Bf=0.10", "Bf=^-0.1"}}, "section-value", 1, "Bf"},
    {"TubeWithoutRadius", {{"R=0.06", "R=^0"}}, "section-value", 1, "R"},
    {"TubeWithoutWall", {{"\nT=0.005", "\nT=^0"}}, "section-value", 1, "T"},
    {"OrientationZero", {{"3:0,4<0,0,1>", "3:0,4<^0,0,0>"}}, "beam-orientation", 1, "beam 3"},
    {"OrientationAlongTheBeam", {{"3:0,4<0,0,1>", "3:0,4<^0,-2,0>"}}, "beam-orientation", 1, "beam 3"},
    {"OrientationWithoutLength", {{"3:0,4<0,0,1>", "3:0,4<^0,0,1e-200>"}}, "beam-orientation", 1, "beam 3"},
    {"OrientationBeyondMeasure", {{"3:0,4<0,0,1>", "3:0,4<^0,0,1e200>"}}, "beam-orientation", 1, "beam 3"},
    {"OrientationLostBesideCoordinates",
     {{"4:0,1,0", "4:0,1,1e7"}, {"4:4,8<0,0,1>", "4:4,8<^1e-4,0,1e-6>"}},
     "beam-orientation",
     1,
     "too short"},
    {"NodeRestrainedTwice",
     {{"NRN=3", "NRN=4"}, {"8:0 0 1 0 0 0\n", "8:0 0 1 0 0 0\n^3:0 1 1 0 0 0\n"}},
     "duplicate-restraint",
     0,
     "3"},
    {"NodeLoadedTwice", {{"NFOR=2", "NFOR=3"}, {"7<0,500", "11<0,0,-10,0,0,0>\n7<0,500"}}, "duplicate-load", 0, "11"},
    {"QuadLoadedTwice", {{"NDL_S_4ND=1", "NDL_S_4ND=2"}, {"1:2000,", "1:1,1,1\n1:2000,"}}, "duplicate-load", 0, "1"},
    {"TextBehindTheEnd", {{"2:300,400\n", "2:300,400\n^end of the model\n"}}, "trailing-text", 0, ""},

    // ---- shapes
    {"NodeTwiceInATriangle", {{"0:6,7,11[0,1]", "0:6,7,7[0,1]"}}, "collapsed-element", 1, "tri 0"},
    {"NodeTwiceInAQuad", {{"1:1,2,6,5[0,0]", "1:1,2,2,5[0,0]"}}, "collapsed-element", 1, "quad 1"},
    {"NodeTwiceInABeam", {{"3:0,4<", "3:4,4<"}}, "zero-length-beam", 1, "beam 3"},
    {"TriangleWithoutArea", {{"0:6,7,11[0,1]", "0:3,7,11[0,1]"}}, "zero-area", 1, "tri 0"},
    {"CrossedQuad", {{"4:5,6,10,9[0,0]", "4:5,10,6,9[0,0]"}}, "self-crossing", 1, "quad 4"},
    {"CrossedSquare", {{"0:0,1,5,4[0,0]", "0:0,5,1,4[0,0]"}, {"5:1.1,1.1,0", "5:1,1,0"}}, "self-crossing", 1, "quad 0"},
    {"ConcaveQuad", {{"0:0,0,0\n", "0:0.55,0.55,0\n"}}, "concave-quad", 1, "quad 0"},
    {"BeamWithoutLength",
     {{"NPOIN=12", "NPOIN=13"}, {"11:3,2,0\n", "11:3,2,0\n12:0,0,0\n"}, {"3:0,4<0,0,1>", "3:0,12<0,0,1>"}},
     "zero-length-beam",
     1,
     "beam 3"},
    {"WarpedQuad", {{"10:2,2,0", "10:2,2,0.5"}}, "warping", 0, "quad 4"},

    // ---- connections
    {"QuadTwice",
     {{"NELEM_S_4ND=5", "NELEM_S_4ND=6"}, {"4:5,6,10,9[0,0]\n", "4:5,6,10,9[0,0]\n5:6,10,9,5[0,0]\n"}},
     "duplicate-element",
     0,
     "quad"},
    {"BeamTwice", {{"2:6,7<", "2:5,6<"}}, "duplicate-element", 0, "beam"},
    {"UnmergedNode",
     {{"NPOIN=12", "NPOIN=13"}, {"11:3,2,0\n", "11:3,2,0\n12:2,1,0\n"}, {"1:6,11,10[0,1]", "1:12,11,10[0,1]"}},
     "coincident-nodes",
     0,
     "12"},
    {"NormalsOpposed", {{"4:5,6,10,9[0,0]", "4:9,10,6,5[0,0]"}}, "opposed-normals", 0, "quad"},
    {"NodeOnAnEdge",
     {{"1:1,2,6,5[0,0]\n2:2,3,7,6[0,1]", "1:1,3,7,5[0,0]\n2:2,3,7,6[0,1]"}, {"6:2,1,0", "6:2.05,1.05,0"}},
     "t-junction",
     0,
     "node 2"},
    {"NodeWithoutElement",
     {{"NPOIN=12", "NPOIN=13"}, {"11:3,2,0\n", "11:3,2,0\n12:9,9,0\n"}},
     "unused-node",
     0,
     "node 12"},
    {"LoadWithoutElement",
     {{"NPOIN=12", "NPOIN=13"}, {"11:3,2,0\n", "11:3,2,0\n12:3,2,1\n"}, {"11<0,0,-1000", "12<0,0,-1000"}},
     "unstiffened-load",
     1,
     "node 12"},
    {"BeamEndInTheAir",
     {{"NPOIN=12", "NPOIN=13"}, {"11:3,2,0\n", "11:3,2,0\n12:0,3,0\n"}, {"4:4,8<", "4:8,12<"}},
     "loose-beam-end",
     0,
     "beam 4"},
    {"ThicknessJump", {{"TK=0.012", "TK=0.12"}}, "thickness-jump", 0, "quad"},
    {"DensityJump", {{"2:2,3,7,6[0,1]", "2:2,3,7,6[1,1]"}, {"Density=2700", "Density=700"}}, "density-jump", 0, "quad"},

    // ---- loads, supports, balance, units
    {"FloatingPart",
     {{"NPOIN=12", "NPOIN=14"}, {"11:3,2,0\n", "11:3,2,0\n12:0,5,0\n13:1,5,0\n"}, {"4:4,8<", "4:12,13<"}},
     "floating-part",
     1,
     "at (0.5, 5, 0)"},
    {"NoLoad",
     {{"11<0,0,-1000", "11<0,0,0"},
      {"7<0,500,0,20", "7<0,0,0,0"},
      {"1:2000,2000,2500", "1:0,0,0"},
      {"0:1500,1500,1500", "0:0,0,0"},
      {"2:300,400", "2:0,0"}},
     "no-load",
     0,
     ""},
    {"DensityOfAnotherSystem", {{"Density=7850", "Density=7.85e-9"}}, "mixed-units", 0, ""},
    {"ModulusOfAnotherSystem", {{"E=2.06e11", "E=2.06e8"}, {"E=7e10", "E=7e7"}}, "mixed-units", 0, ""},
};

class DamagedModels : public testing::TestWithParam<Damage> {};

ProgramRun Tarnvexo(const std::vector<std::string>& arguments, const std::string& model)
{
    return RunProgram({.program = TARNVEXO_PROGRAM,
                       .arguments = arguments,
                       .files = {{"fem_solving.txt", model}},
                       .errorWithOutput = true});
}

TEST_P(DamagedModels, CheckAndSolveNameRuleAndPlace)
{
    const Damage& damage = GetParam();
    const DamagedModel model = Damaged(damage);
    for (const std::string command : {"check", "solve"}) {
        SCOPED_TRACE(command);
        const ProgramRun run = Tarnvexo({command, "fem_solving.txt", "--quiet"}, model.text);
        EXPECT_EQ(run.exitCode, damage.exitCode) << run.output;
        EXPECT_NE(run.output.find(damage.rule), std::string::npos) << run.output;
        EXPECT_NE(run.output.find(model.place), std::string::npos) << model.place << "\n" << run.output;
        EXPECT_NE(run.output.find(damage.words), std::string::npos) << damage.words << "\n" << run.output;
        if (damage.exitCode != 0 || command == "check") {
            EXPECT_EQ(run.files.size(), 1u) << "only the model is there";
        } else {
            EXPECT_EQ(run.files.size(), 7u);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(OneByOne, DamagedModels, testing::ValuesIn(Damages),
                         [](const testing::TestParamInfo<Damage>& info) { return info.param.name; });

// The record behind the text is read: nothing is missing but the line end.
TEST(DamagedModelsBehindACount, TextInPlaceOfALineEndIsOneError)
{
    for (const std::string count : {"NMT=2", "NTK=2", "NPOIN=12", "NELEM_B=5", "NRN=3", "NFOR=2", "NDL_B=1"}) {
        SCOPED_TRACE(count);
        const DamagedModel model = Damaged({"", {{count + "\n", count + "^?"}}, "", 1, ""});
        const ProgramRun run = Tarnvexo({"check", "fem_solving.txt", "--quiet"}, model.text);
        EXPECT_EQ(run.exitCode, 1);
        EXPECT_NE(run.output.find("not ready: 1 error\n"), std::string::npos) << run.output;
        EXPECT_NE(run.output.find(model.place), std::string::npos) << model.place << "\n" << run.output;
    }
}

TEST(DamagedModelsBefore, ModelUnderTheNameOfAResultFileIsNotLost)
{
    const ProgramRun run = RunProgram({.program = TARNVEXO_PROGRAM,
                                       .arguments = {"solve", "Node_Dis.txt", "--quiet"},
                                       .files = {{"Node_Dis.txt", SoundModel}},
                                       .errorWithOutput = true});
    EXPECT_EQ(run.exitCode, 2) << run.output;
    EXPECT_NE(run.output.find("Node_Dis.txt would take the place of the model"), std::string::npos) << run.output;
    EXPECT_EQ(run.files.size(), 1u);
    EXPECT_EQ(run.files.at("Node_Dis.txt"), SoundModel);
}

// The model of all these is sound: no error, no warning.
TEST(DamagedModelsBefore, SoundModelHasNoFinding)
{
    for (const std::string command : {"check", "solve"}) {
        const ProgramRun run = Tarnvexo({command, "fem_solving.txt", "--quiet"}, SoundModel);
        EXPECT_EQ(run.exitCode, 0) << run.output;
        EXPECT_EQ(run.output.find("error:"), std::string::npos) << run.output;
        EXPECT_EQ(run.output.find("warning"), run.output.find("warnings")) << run.output;
    }
}

} // namespace
} // namespace tarnvexo
