#include "input/StrictReader.h"

#include "input/ModelFileReader.h"
#include "platform/FilePath.h"
#include "support/SameModel.h"
#include "support/TemporaryDirectory.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>

namespace tarnvexo {
namespace {

constexpr const char* FileName = "fem_solving.txt";

// Every section holds records; line numbers of the first ones are those of the damages below.
const char* const GoodModel = R"(### Quor_Tarn+Vexo release=3.0 ###
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
TK=0.01
#1:
TK=0.02
Number of T_beam sections:NTBS=1
#0: frame
Hw=0.1
Tw=0.006
Bf=0.05
Tf=0.008
Number of L_beam sections:NLBS=1
#0: stringer
Hw=0.2
Tw=0.008
Bf=0.1
Tf=0.01
Number of C_beam sections:NCBS=1
#0: pillar
R=0.02
T=0.003
Number of nodal points:NPOIN=5
0:0,0,0
1:1,0,0
2:1,1,0
3:0,1,0
4:2,0.5,0
Number of four-nodes shell elements:NELEM_S_4ND=1
0:0,1,2,3[0,0]
Number of three-nodes shell elements:NELEM_S_3ND=1
0:1,4,2[1,1]
Number of beam elements:NELEM_B=3
0:0,1<0,0,1>[0,BeamSecType=0,BeamSecIndex=0,BeamSecOz=0.005,BeamSecMirrored=0]
1:1,2<0,0,1>[0,BeamSecType=1,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=1]
2:2,3<0,0,1>[1,BeamSecType=2,BeamSecIndex=0,BeamSecOz=0,BeamSecMirrored=0]
Number of restricted nodal points:NRN=2
0:1 1 1 1 1 1
1:0 0 1 0 0 0
Number of forces:NFOR=2
2<0,0,-1000,0,0,0>
3<1.5,0,0,0,0,0>
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=1
0:100,200,300
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=1
0:10,20,30
Number of distributed loads on beam elements:NDL_B=2
0:-30,60
2:-30,60
)";

StrictReading Read(std::string_view text, const RuleBook& rules = RuleBook())
{
    ModelStore model;
    return ReadModelStrictly(model, text, FileName, rules);
}

std::string GoodWith(std::string_view old, std::string_view with)
{
    std::string text = GoodModel;
    const std::size_t at = text.find(old);
    EXPECT_NE(at, std::string::npos) << old;
    return text.replace(at, old.size(), with);
}

std::string AllTexts(const StrictReading& reading)
{
    std::string all;
    for (const SourceDiagnostic& one : reading.diagnostics) { all += one.text + "\n"; }
    return all;
}

std::string FileText(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// Both readers fill the same store, and neither finds anything wrong.
void ExpectReadAlike(const std::string& text, const std::string& name)
{
    ModelStore strict, loose;
    const StrictReading reading = ReadModelStrictly(strict, text, FileName, RuleBook());
    EXPECT_TRUE(reading.IsUsable()) << name << "\n" << AllTexts(reading);
    EXPECT_EQ(ReadModelText(loose, text, FileName).warnings, "") << name;
    EXPECT_EQ(test::DifferentTable(strict, loose), "") << name;
}

// ------------------------------------------------------------ what is good

TEST(StrictReader, FindsNothingInAGoodModel)
{
    const StrictReading reading = Read(GoodModel);
    EXPECT_EQ(reading.errors + reading.warnings + reading.notes, 0) << AllTexts(reading);
    ExpectReadAlike(GoodModel, "good");
}

TEST(StrictReader, FillsTheStoreOfTheConsoleReaderFromAllCasesAndExamples)
{
    int models = 0;
    for (const char* folder : {"tests/cases", "examples"}) {
        for (const auto& entry :
             std::filesystem::recursive_directory_iterator(std::filesystem::path(TARNVEXO_SOURCE_DIR) / folder)) {
            if (entry.path().filename() == FileName) {
                ExpectReadAlike(FileText(entry.path()), entry.path().string());
                ++models;
            }
        }
    }
    EXPECT_GE(models, 12);
}

TEST(StrictReader, SkipsAByteOrderMarkAndCountsColumnsBehindIt)
{
    EXPECT_TRUE(Read(std::string("\xEF\xBB\xBF") + GoodModel).IsUsable());
    const StrictReading reading = Read("\xEF\xBB\xBF" + GoodWith("release=3.0", "release=4.0"));
    ASSERT_EQ(reading.diagnostics.size(), 1u);
    EXPECT_EQ(reading.diagnostics[0].column, 28u);
}

TEST(StrictReader, TakesCarriageReturnsMixedLineEndsAMissingLastOneAndGbkLabels)
{
    std::string windows, mixed;
    int line = 0;
    for (const char* c = GoodModel; *c != '\0'; ++c) {
        windows += *c == '\n' ? "\r\n" : std::string(1, *c);
        mixed += *c == '\n' && ++line % 2 == 0 ? "\r\n" : std::string(1, *c);
    }
    ExpectReadAlike(windows, "carriage returns");
    ExpectReadAlike(mixed, "mixed");
    ExpectReadAlike(std::string(GoodModel).substr(0, std::string(GoodModel).size() - 1), "no last line end");
    ExpectReadAlike(GoodWith("frame", "\xBF\xF2\xBC\xDC=1"), "GBK");
    ExpectReadAlike(GoodWith("frame", "框架 Hw=3"), "UTF-8");
}

// ------------------------------------------------------------ one damage, one diagnostic

struct Damage {
    const char* name;
    std::string old;
    std::string with;
    RuleId rule;
    std::size_t line;
    std::size_t column;
    const char* says;
    Severity severity = Severity::Error;
};

class OneDamage : public testing::TestWithParam<Damage> {};

TEST_P(OneDamage, GivesOneDiagnosticAtItsPlace)
{
    const Damage& damage = GetParam();
    const StrictReading reading = Read(GoodWith(damage.old, damage.with));
    ASSERT_EQ(reading.diagnostics.size(), 1u) << AllTexts(reading);
    const SourceDiagnostic& one = reading.diagnostics[0];
    EXPECT_EQ(one.rule, damage.rule) << one.text;
    EXPECT_EQ(one.severity, damage.severity) << one.text;
    EXPECT_EQ(one.line, damage.line) << one.text;
    EXPECT_EQ(one.column, damage.column) << one.text;
    EXPECT_NE(one.what.find(damage.says), std::string::npos) << one.text;
    EXPECT_EQ(reading.errors, damage.severity == Severity::Error ? 1 : 0);
    EXPECT_EQ(reading.warnings, damage.severity == Severity::Warning ? 1 : 0);
    EXPECT_EQ(reading.notes, damage.severity == Severity::Note ? 1 : 0);
}

using enum RuleId;
constexpr Severity Warning = Severity::Warning, Note = Severity::Note;

INSTANTIATE_TEST_SUITE_P(
    StrictReader, OneDamage,
    testing::Values(
        // Records whose text does not fit.
        Damage{"OtherRelease", "3.0 #", "2.0 #", Format, 1, 28, "another release"},
        Damage{"DamagedFirstLine", "### Q", "## Q", Format, 1, 3, "the first line"},
        Damage{"WrongKey", "E=7e10", "EE=7e10", Format, 8, 2, "material 1: found \"EE=7e10\" where \"E=\" belongs"},
        Damage{"MissingValue", "Mu=0.3\n", "Mu=\n", Format, 5, 4, "material 0: found the end of the line"},
        Damage{"MissingMaterialLine", "Density=7850\n", "", Format, 6, 1, "material 0: found \"#1:\""},
        Damage{"MissingLabelLine", "#0: frame\n", "", Format, 18, 1, "T section 0: found \"Tw=0.006\""},
        Damage{"MissingSectionLine", "Tf=0.01\n", "", Format, 27, 1, "L section 0: found \"Number of C_beam"},
        Damage{"TwoDecimalPoints", "1:1,0,0", "1:0.9.0,0,0", Format, 34, 6, "with two decimal points"},
        Damage{"OtherSeparator", "1:1,0,0", "1:1;0,0", Format, 34, 4, "node 1: found \";0,0\" where \",\" belongs"},
        Damage{"MissingCoordinate", "1:1,0,0", "1:1,0", Format, 34, 6, "node 1: found the end of the line"},
        Damage{"CoordinateOfTheNextLine", "1:1,0,0", "1:1,0,", Format, 34, 7, "node 1"},
        Damage{"TooManyCoordinates", "1:1,0,0", "1:1,0,0,5", Format, 34, 8, "node 1 is followed by \",5\""},
        Damage{"LetterInANumber", "1:1,0,0", "1:1,o,0", Format, 34, 5, "node 1: found \"o,0\" where a number"},
        Damage{"DecimalComma", "4:2,0.5,0", "4:2,0,5,0", Format, 37, 8, "node 4 is followed by \",0\""},
        Damage{"NodeNumberWithAPoint", "[0,0]", "[0,0.0]", Format, 39, 14, "a whole number is written with a decimal"},
        Damage{"QuadWithThreeNodes", "0:0,1,2,3[", "0:0,1,2[", Format, 39, 8, "four-node shell 0: found \"[0,0]\""},
        Damage{"WrongBracket", "[1,1]", "(1,1)", Format, 41, 8, "three-node shell 0"},
        Damage{"UnfinishedExponent", "3<1.5", "3<1.5e+", Format, 51, 3, "\"1.5e+\" is no number"},
        Damage{"IntegerBeyondInt", "0:100", "4294967296:100", Format, 53, 1, "\"4294967296\" is no number"},
        Damage{"FiveFlags", "1:0 0 1 0 0 0", "1:0 0 1 0 0", Format, 48, 12, "restraint 1: found the end of the line"},
        Damage{"SevenFlags", "1:0 0 1 0 0 0", "1:0 0 1 0 0 0 0", Format, 48, 15, "restraint 1 is followed by \"0\""},
        Damage{"ForceWithFiveComponents", "3<1.5,0", "3<1.5", Format, 51, 14, "force 1: found \">\" where \",\""},
        Damage{"BeamKey", "BeamSecOz=0.005", "BeamSecOx=0.005", Format, 43, 53,
               "beam 0: found \"BeamSecOx=0.005\" where \"BeamSecOz=\" belongs"},
        Damage{"TextInsteadOfARecord", "2:1,1,0", "two: 1,1,0", Format, 35, 1, "node 2: found \"two: 1,1,0\""},
        // Numbers that are none.
        Damage{"NotANumber", "1:1,0,0", "1:1,nan,0", Format, 34, 5, "node 1: \"nan\" is not a finite number"},
        Damage{"Infinite", "1.5,0", "-inf,0", Format, 51, 3, "force 1: \"-inf\" is not"},
        Damage{"UnfinishedPoisson", "Mu=0.33", "Mu=1e+", Format, 9, 4, "\"1e+\" is no number"},
        Damage{"NodeBeyondInt", "0:0,1,2,3[", "0:0,1,2,2147483648[", Format, 39, 9, "\"2147483648\" is no number"},
        Damage{"InfiniteWall", "T=0.003", "T=inf", Format, 31, 3, "C section 0: \"inf\" is not a finite number"},
        Damage{"UnfinishedPlaceOfABeam", "1:1,0,0", "1:0,0,1e+", Format, 34, 7, "node 1: \"1e+\" is no number"},
        Damage{"BeyondADouble", "E=7e10", "E=1e999", Format, 8, 3, "material 1: \"1e999\" is not"},
        Damage{"InfiniteOrientation", "0:0,1<0,0,1>", "0:0,1<0,0,1e400>", Format, 43, 11, "\"1e400\""},
        // Counts and sections.
        Damage{"OneNodeMissing", "4:2,0.5,0\n", "", Format, 32, 30, "NPOIN=5, but 4 node records follow"},
        Damage{"OneNodeTooMany", "4:2,0.5,0\n", "4:2,0.5,0\n5:1,1,0\n", Format, 32, 30, "NPOIN=5, but 6 node records"},
        Damage{"CountTooLarge", "NTBS=1", "NTBS=2", Format, 16, 32, "NTBS=2, but 1 T section record follows"},
        Damage{"CountTooSmall", "NELEM_B=3", "NELEM_B=2", Format, 42, 33, "NELEM_B=2, but 3 beam records follow"},
        Damage{"CountOfZero", "NPOIN=5", "NPOIN=0", Format, 32, 30, "NPOIN=0, but 5 node records follow"},
        Damage{"LastCountTooSmall", "NDL_B=2", "NDL_B=1", Format, 56, 52, "NDL_B=1, but 2 beam load records"},
        Damage{"LastCountTooLarge", "NDL_B=2", "NDL_B=3", Format, 56, 52, "NDL_B=3, but 2 beam load records"},
        Damage{"NegativeCount", "NFOR=2", "NFOR=-2", Format, 49, 23, "NFOR=-2, but 2 force records follow"},
        Damage{"AbsurdCount", "NPOIN=5", "NPOIN=2147483647", Format, 32, 30, "NPOIN=2147483647, but 5 node"},
        Damage{"CountBeyondInt", "NPOIN=5", "NPOIN=4294967301", Format, 32, 30, "NPOIN=4294967301 is beyond"},
        Damage{"CountWithAPoint", "NMT=2", "NMT=2.0", Format, 2, 25, "NMT has no whole number"},
        Damage{"HexadecimalCount", "NPOIN=5", "NPOIN=0x5", Format, 32, 30, "NPOIN has no whole number"},
        Damage{"LastCountHexadecimal", "NDL_B=2", "NDL_B=0x2", Format, 56, 52, "NDL_B has no whole number"},
        Damage{"TwoCounts", "NFOR=2", "NFOR=2 2", Format, 49, 25, "the count NFOR is followed by \"2\""},
        Damage{"TextBehindTheLastCount", "NDL_B=2", "NDL_B=2 loads", Format, 56, 54, "the count NDL_B is followed"},
        Damage{"NoCount", "NRN=2", "NRN=", Format, 46, 39, "NRN has no whole number"},
        Damage{"WordAsCount", "NTK=2", "NTK=two", Format, 11, 33, "the header of the section NTK"},
        Damage{"MissingHeader", "Number of nodal points:NPOIN=5\n", "", Format, 32, 1, "NPOIN is missing"},
        Damage{"MissingSection", "Number of four-nodes shell elements:NELEM_S_4ND=1\n0:0,1,2,3[0,0]\n", "", Format, 38,
               1, "NELEM_S_4ND is missing"},
        Damage{"MisspeltHeader", "Number of nodal", "Numbre of nodal", Format, 32, 5, "header of the section NPOIN"},
        Damage{"MisspeltKey", "NPOIN=", "NPOINT=", Format, 32, 1, "NPOIN is missing, or its header is damaged"},
        Damage{"TextBetweenSections", "Number of forces", "some remark\nNumber of forces", Format, 49, 1,
               "text between the restraints"},
        Damage{"CommentBehindMaterials", "Number of shell", "# end\nNumber of shell", Format, 11, 1,
               "text between the materials"},
        Damage{"CommentBehindACount", "NPOIN=5\n", "NPOIN=5 # nodes\n", Format, 32, 32, "the count NPOIN is followed"},
        Damage{"LabelTwice", "#1:\nE=", "#1:\n#1:\nE=", Format, 8, 1, "material 1: found \"#1:\" where \"E=\""},
        Damage{"LinesJoined", "3:0,1,0\n", "3:0,1,0", Format, 36, 9, "node 3 is followed by \":2,0.5,0\""},
        // Indices.
        Damage{"NodeOutside", "0:0,1,2,3[", "0:0,1,2,5[", Format, 39, 9, "uses node 5, but the model has 5 nodes"},
        Damage{"NegativeNode", "0:1,4,2", "0:1,-4,2", Format, 41, 5, "three-node shell 0 uses node -4"},
        Damage{"MaterialOutside", "[1,1]", "[2,1]", Format, 41, 9, "uses material 2, but the model has 2 materials"},
        Damage{"ThicknessOutside", "[1,1]", "[1,7]", Format, 41, 11, "uses thickness 7"},
        Damage{"SectionOutside", "Type=2,BeamSecIndex=0", "Type=2,BeamSecIndex=1", Format, 45, 43, "uses C section 1"},
        Damage{"SectionTypeUnknown", "Type=2", "Type=3", Format, 45, 28, "beam 2 has section type 3"},
        Damage{"RestraintOutside", "1:0 0 1", "9:0 0 1", Format, 48, 1, "restraint 1 uses node 9"},
        Damage{"ForceOutside", "3<1.5", "-1<1.5", Format, 51, 1, "force 1 uses node -1"},
        Damage{"LoadedShellOutside", "0:100", "1:100", Format, 53, 1, "uses four-node shell 1"}),
    [](const auto& damage) { return damage.param.name; });

INSTANTIATE_TEST_SUITE_P(
    StrictReaderValues, OneDamage,
    testing::Values(
        Damage{"ModulusOfZero", "E=7e10", "E=0", MaterialValue, 8, 3, "material 1 has E=0"},
        Damage{"ModulusBelowZero", "E=7e10", "E=-7e10", MaterialValue, 8, 3, "E=-7e10"},
        Damage{"Incompressible", "Mu=0.33", "Mu=0.5", MaterialValue, 9, 4, "Mu=0.5"},
        Damage{"NegativePoisson", "Mu=0.33", "Mu=-0.1", MaterialValue, 9, 4, "Mu=-0.1"},
        Damage{"NegativeDensity", "=2700", "=-2700", MaterialValue, 10, 9, "Density=-2700"},
        Damage{"ThicknessOfZero", "TK=0.02", "TK=0", ThicknessValue, 15, 4, "thickness 1 has TK=0"},
        Damage{"WebOfZero", "Tw=0.006", "Tw=0", SectionValue, 19, 4, "T section 0 has Tw=0"},
        Damage{"NegativeFlange", "Bf=0.1", "Bf=-0.1", SectionValue, 26, 4, "L section 0 has Bf=-0.1"},
        Damage{"TubeWithoutWall", "T=0.003", "T=0", SectionValue, 31, 3, "C section 0 has T=0"},
        Damage{"WallThickerThanTheTube", "T=0.003", "T=0.041", SectionValue, 31, 3, "T=0.041, is thicker"},
        Damage{"SectionBeyondADouble", "Hw=0.1", "Hw=1e200", SectionValue, 43, 43, "not finite"},
        Damage{"OrientationOfZero", "0:0,1<0,0,1>", "0:0,1<0,0,0>", BeamOrientation, 43, 7, "of length 0"},
        Damage{"OrientationAlong", "0:0,1<0,0,1>", "0:0,1<-3,1e-9,0>", BeamOrientation, 43, 7, "along itself"},
        Damage{"FlagOfTwo", "0:1 1 1 1 1 1", "0:1 1 2 1 1 1", FlagValue, 47, 7, "leaves the direction free", Warning},
        Damage{"MirroredTwice", "Mirrored=1", "Mirrored=2", FlagValue, 44, 73, "beam 1 has the flag 2", Warning},
        Damage{"RestrainedTwice", "1:0 0 1", "0:0 0 1", DuplicateRestraint, 48, 1, "node 0, as is restraint 0",
               Warning},
        Damage{"LoadedTwice", "3<1.5", "2<1.5", DuplicateLoad, 51, 1, "force 1 is for node 2, as is force 0", Warning},
        Damage{"BeamLoadedTwice", "2:-30", "0:-30", DuplicateLoad, 58, 1, "beam load 1 is for beam 0", Warning},
        Damage{"TextBehind", "2:-30,60\n", "2:-30,60\nremarks", TrailingText, 59, 1, "behind the last", Warning},
        Damage{"OtherLabel", "2:1,1,0", "7:1,1,0", LabelOrder, 35, 1, "node 2 carries the number 7", Note},
        Damage{"LabelLeftOut", "2:1,1,0", "3:1,1,0", LabelGap, 35, 1, "the number 2 is left out: node 2", Warning},
        Damage{"LabelTwice", "2:1,1,0", "1:1,1,0", LabelGap, 35, 1, "the number 1 stands again: node 2", Warning}),
    [](const auto& damage) { return damage.param.name; });

TEST(StrictReader, TellsSeveralFaultsInOneRunInTheOrderOfTheFile)
{
    std::string text = GoodWith("Mu=0.3\n", "Mu=0.6\n");
    for (const auto& [old, with] : {std::pair("2:1,1,0", "2:1,1;0"), {"[1,1]", "[1,5]"}, {"NFOR=2", "NFOR=3"}}) {
        text.replace(text.find(old), std::string_view(old).size(), with);
    }
    const StrictReading reading = Read(text);
    ASSERT_EQ(reading.diagnostics.size(), 4u) << AllTexts(reading);
    const std::size_t lines[] = {5, 35, 41, 49};
    for (int i = 0; i < 4; ++i) { EXPECT_EQ(reading.diagnostics[i].line, lines[i]) << reading.diagnostics[i].text; }
}

// Each damaged place may have been a record, or none: only what they do not explain is the fault of the count.
TEST(StrictReader, TellsACountThatDamagedRecordsDoNotExplain)
{
    std::string text = GoodWith("1:1,0,0\n", "1:1;0,0\n");
    text.replace(text.find("NPOIN=5"), 7, "NPOIN=9");
    const StrictReading reading = Read(text);
    ASSERT_EQ(reading.diagnostics.size(), 2u) << AllTexts(reading);
    EXPECT_EQ(reading.diagnostics[0].line, 32u);
    EXPECT_EQ(reading.diagnostics[1].line, 34u);
}

TEST(StrictReader, NamesThePlaceOfAZeroByte)
{
    const StrictReading reading = Read(GoodWith("1:1,0,0\n", std::string("1:1,\0,0\n", 9)));
    ASSERT_EQ(reading.diagnostics.size(), 1u) << AllTexts(reading);
    EXPECT_EQ(reading.diagnostics[0].text.substr(0, 37), "fem_solving.txt:34:5: error: the file");
}

TEST(StrictReader, TellsNumbersThatCountFromOneOncePerTable)
{
    std::string text = GoodModel;
    for (const auto& [old, with] : {std::pair("\n0:0,0,0\n1:1,0,0\n2:1,1,0", "\n1:0,0,0\n2:1,0,0\n3:1,1,0"),
                                    {"#0:\nE", "#1:\nE"},
                                    {"#1:\nE=7", "#2:\nE=7"}}) {
        text.replace(text.find(old), std::string_view(old).size(), with);
    }
    const StrictReading reading = Read(text);
    EXPECT_TRUE(reading.IsUsable());
    EXPECT_EQ(reading.warnings, 2) << AllTexts(reading);
    EXPECT_EQ(reading.diagnostics[0].rule, LabelsFromOne);
}

// What users of other formats take for granted is told as such.
TEST(StrictReader, AdvisesOnHabitsOfOtherFormats)
{
    struct Habit {
        const char* old;
        const char* with;
        const char* advice;
    };
    const Habit habits[] = {
        {"TK=0.01", "TK=0,01", "write a point as the decimal mark"},
        {"Mu=0.3\n", "Mu=0,3\n", "write a point as the decimal mark"},
        {"T=0.003", "T=0,003", "write a point as the decimal mark"},
        {"1:1,0,0\n", "# corner\n1:1,0,0\n", "the format has none"},
        {"0:0,1,2,3[", "// plate\n0:0,1,2,3[", "the format has none"},
        {"1:1,0,0\n", "", "number 1 is missing in front of line 34"},
        {"1:1,0,0\n", "1:1,0,0\n1:1,0,0\n", "number 1 stands again in line 35"},
    };
    for (const Habit& habit : habits) {
        const StrictReading reading = Read(GoodWith(habit.old, habit.with));
        ASSERT_EQ(reading.errors, 1) << AllTexts(reading);
        EXPECT_NE(reading.diagnostics[0].toDo.find(habit.advice), std::string::npos) << reading.diagnostics[0].text;
    }
}

TEST(StrictReader, AdvisesToLowerNodeNumbersWhereTheNodesCountFromOne)
{
    std::string text = GoodWith("\n0:0,0,0\n1:1,0,0\n2:1,1,0\n3:0,1,0\n4:", "\n1:0,0,0\n2:1,0,0\n3:1,1,0\n4:0,1,0\n5:");
    text.replace(text.find("0:1,4,2["), 8, "0:2,5,3[");
    const StrictReading reading = Read(text);
    ASSERT_EQ(reading.errors, 1) << AllTexts(reading);
    EXPECT_NE(AllTexts(reading).find("lower every number of a node by 1"), std::string::npos) << AllTexts(reading);
}

// It would be taken for the label of the next section.
TEST(StrictReader, TellsTextBehindTheLastSizeOfASectionThatAnotherFollows)
{
    const std::string sections = "NTBS=2\n#0: frame\nHw=0.1\nTw=0.006\nBf=0.05\nTf=0.008 m\n#1: ";
    const StrictReading reading = Read(GoodWith("NTBS=1\n#0: ", sections));
    ASSERT_EQ(reading.diagnostics.size(), 1u) << AllTexts(reading);
    EXPECT_EQ(reading.diagnostics[0].line, 21u);
    EXPECT_EQ(reading.diagnostics[0].column, 10u);
}

TEST(StrictReader, ShowsTwentyErrorsAndTellsTheNumberOfTheOthers)
{
    std::string nodes, text = GoodModel;
    for (int n = 0; n < 50; ++n) { nodes += std::to_string(n) + ":0,0;0\n"; }
    const std::size_t begin = text.find("0:0,0,0\n"), end = text.find("Number of four");
    text.replace(begin, end - begin, nodes);
    text.replace(text.find("NPOIN=5"), 7, "NPOIN=50");
    const StrictReading reading = Read(text);
    EXPECT_EQ(reading.errors, 50);
    EXPECT_EQ(reading.diagnostics.size(), ShownDiagnostics);
    const std::string all = ErrorText(reading, FileName);
    EXPECT_EQ(all.substr(all.rfind('\n') + 1), "fem_solving.txt: error: 30 more errors are not shown");
}

// ------------------------------------------------------------ whole files that are none

TEST(StrictReader, SaysOnceWhatAFileIsThatIsNoModel)
{
    const std::pair<std::string, const char*> files[] = {
        {"", "the file is empty"},
        {" \r\n\t\n", "the file is empty"},
        {std::string("\x7F"
                     "ELF\2\1\1\0\0\0",
                     10),
         "the file is binary"},
        {"\xFF\xFE#\0#\0", "the file is written in UTF-16"},
        {std::string("#\0#\0#\0", 6), "the file is written in UTF-16"},
        {"node,x,y,z\n1,0,0,0\n2,1,0,0\n", "the file does not begin as a model file does"},
        {"*HEADING\n*NODE\n1, 0., 0., 0.\n*END\n", "the file does not begin as a model file does"},
    };
    for (const auto& [text, what] : files) {
        const StrictReading reading = Read(text);
        EXPECT_EQ(reading.errors, 1) << what;
        ASSERT_EQ(reading.diagnostics.size(), 1u) << what;
        EXPECT_EQ(reading.diagnostics[0].what.find(what), 0u) << reading.diagnostics[0].text;
    }
}

TEST(StrictReader, RefusesAFileCutAfterAnyByteButTheLastLineEnd)
{
    std::string text = GoodModel;
    text.replace(text.find("2:-30,60"), 8, "2:-30,6"); // a number that loses a digit is another one
    for (std::size_t size = 0; size + 1 < text.size(); ++size) {
        const StrictReading reading = Read(text.substr(0, size));
        EXPECT_GE(reading.errors, 1) << size;
        EXPECT_LE(reading.errors, 2) << size << "\n" << AllTexts(reading);
    }
    EXPECT_TRUE(Read(text.substr(0, text.size() - 1)).IsUsable());
}

TEST(StrictReader, ReadsAnyTextWithoutHarmWhenAnyByteIsReplaced)
{
    const std::string good = GoodModel;
    for (std::size_t i = 0; i < good.size(); ++i) {
        for (const char c : {'\0', '\n', ' ', '9', '-', '=', ':', '\xFF'}) {
            std::string text = good;
            text[i] = c;
            ModelStore strict, loose;
            if (ReadModelStrictly(strict, text, FileName, RuleBook()).IsUsable()) {
                ASSERT_EQ(ReadModelText(loose, text, FileName).warnings, "") << i << " " << c;
                ASSERT_EQ(test::DifferentTable(strict, loose), "") << i << " " << c;
            }
        }
    }
}

// A header that the text ends within, behind text of another kind; no byte stands behind the view.
TEST(StrictReader, StaysWithinATextThatEndsInAHeader)
{
    const std::string text = "### Quor_Tarn+Vexo release=3.0 ###\nremark\nNumber of materials:NMT=";
    const std::vector<char> bytes(text.begin(), text.end());
    ModelStore model;
    EXPECT_FALSE(ReadModelStrictly(model, {bytes.data(), bytes.size()}, FileName, RuleBook()).IsUsable());
}

// With a search to the next header behind every fault each of these would take minutes.
TEST(StrictReader, CountsTheFaultsOfHugeTablesOneByOne)
{
    constexpr int count = 200000;
    std::string nodes, text = GoodModel;
    for (int n = 0; n < count; ++n) { nodes += std::to_string(n) + ":0,0;0\n"; }
    const std::size_t begin = text.find("0:0,0,0\n"), end = text.find("Number of four");
    text.replace(begin, end - begin, nodes);
    text.replace(text.find("NPOIN=5"), 7, "NPOIN=" + std::to_string(count));
    EXPECT_EQ(Read(text).errors, count);
}

TEST(StrictReader, SkipsMegabytesOfBlankLinesBehindAFault)
{
    EXPECT_EQ(Read(GoodWith("1:1,0,0\n", "1:1;0,0\n" + std::string(4000000, '\n'))).errors, 1);
}

TEST(StrictReader, CountsSectionsThatStandInOneLineAgainAndAgain)
{
    constexpr int count = 200000;
    std::string again;
    for (int i = 0; i < count; ++i) { again += "NMT=1 "; }
    EXPECT_EQ(Read(GoodWith("Number of four", again + "\nNumber of four")).errors, count);
}

// Inputs that took the console reader along every way of its own.
TEST(StrictReader, TakesNothingOfTheCommittedCorpusThatTheConsoleReaderWarnsOf)
{
    RuleBook allOff;
    for (std::size_t rule = 0; rule < RuleCount; ++rule) {
        allOff.SetSeverity(static_cast<RuleId>(rule), Severity::Off);
    }
    int inputs = 0, usable = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TARNVEXO_SOURCE_DIR "/tests/input/corpus")) {
        const std::string text = FileText(entry.path());
        ModelStore strict, loose;
        const StrictReading reading = ReadModelStrictly(strict, text, FileName, allOff);
        EXPECT_EQ(reading.diagnostics.empty(), reading.IsUsable()) << entry.path();
        if (reading.IsUsable()) {
            EXPECT_EQ(ReadModelText(loose, text, FileName).warnings, "") << entry.path();
            EXPECT_EQ(test::DifferentTable(strict, loose), "") << entry.path();
            ++usable;
        }
        ++inputs;
    }
    EXPECT_GE(inputs, 20);
    EXPECT_GE(usable, 1);
}

// ------------------------------------------------------------ rules

TEST(StrictReader, LetsValuesPassWhoseRulesAreOffAndPromotesOthers)
{
    RuleBook rules;
    for (const RuleId rule : {MaterialValue, ThicknessValue, SectionValue, BeamOrientation, Format}) {
        rules.SetSeverity(rule, Severity::Off);
    }
    EXPECT_TRUE(Read(GoodWith("E=2.06e11", "E=0"), rules).IsUsable());
    EXPECT_TRUE(Read(GoodWith("TK=0.01", "TK=-1"), rules).IsUsable());
    EXPECT_TRUE(Read(GoodWith("Hw=0.1", "Hw=0"), rules).IsUsable());
    EXPECT_TRUE(Read(GoodWith("<0,0,1>", "<0,0,0>"), rules).IsUsable());
    EXPECT_EQ(Read(GoodWith("1:1,0,0", "1:1;0,0"), rules).errors, 1);
    rules.SetSeverity(TrailingText, Severity::Error);
    EXPECT_FALSE(Read(std::string(GoodModel) + "end", rules).IsUsable());
}

// ------------------------------------------------------------ messages, whole

std::string OnlyMessage(const std::string& text)
{
    return ErrorText(Read(text), FileName);
}

TEST(StrictReader, WritesTheMessageOfADamagedRecord)
{
    EXPECT_EQ(OnlyMessage(GoodWith("1:1,0,0", "1:1;0,0")),
              "fem_solving.txt:34:4: error: node 1: found \";0,0\" where \",\" belongs [format]\n"
              "  34 | 1:1;0,0\n"
              "     |    ^\n"
              "  expected: number:x,y,z\n"
              "  to do:    write it as the format has it");
}

TEST(StrictReader, WritesTheMessageOfACount)
{
    EXPECT_EQ(OnlyMessage(GoodWith("4:2,0.5,0\n", "")),
              "fem_solving.txt:32:30: error: NPOIN=5, but 4 node records follow [format]\n"
              "  32 | Number of nodal points:NPOIN=5\n"
              "     |                              ^\n"
              "  expected: NPOIN=4, or 5 records\n"
              "  to do:    correct NPOIN, or the records behind it");
}

TEST(StrictReader, WritesTheMessageOfAnIndex)
{
    EXPECT_EQ(OnlyMessage(GoodWith("0:0,1,2,3[", "0:0,1,2,512[")),
              "fem_solving.txt:39:9: error: four-node shell 0 uses node 512, but the model has 5 nodes [format]\n"
              "  39 | 0:0,1,2,512[0,0]\n"
              "     |         ^~~\n"
              "  expected: a node number from 0 to 4 (NPOIN=5, line 32)\n"
              "  to do:    correct the number, or add the nodes and raise NPOIN");
}

TEST(StrictReader, WritesTheMessageOfACutFile)
{
    const std::string text = GoodModel;
    EXPECT_EQ(OnlyMessage(text.substr(0, text.find("3:0,1,0\n"))),
              "fem_solving.txt:35:8: error: the file ends after 3 of 5 node records [format]\n"
              "  35 | 2:1,1,0\n"
              "     |        ^\n"
              "  expected: NPOIN=5 records and the sections behind them\n"
              "  to do:    write the file again if it was cut off, or complete it");
}

TEST(StrictReader, WritesTheMessageOfAFileThatIsEmpty)
{
    EXPECT_EQ(OnlyMessage(""),
              "fem_solving.txt:1:1: error: the file is empty [format]\n"
              "  expected: a model file, which is text from its first line \"### Quor_Tarn+Vexo ...\" on\n"
              "  to do:    name another file, or write this one again");
}

// ------------------------------------------------------------ files

TEST(StrictReader, ReadsAFileOfAChineseNameWithBlanks)
{
    const test::TemporaryDirectory directory;
    const std::string name = "我的 模型.txt";
    std::ofstream(platform::PathOf(name)) << GoodModel;
    ModelStore model;
    const auto reading = ReadModelFileStrictly(model, name.c_str(), RuleBook());
    ASSERT_TRUE(reading);
    EXPECT_TRUE(reading->IsUsable());
    EXPECT_EQ(model.NPOIN, 5);
}

TEST(StrictReader, StopsAtStreamsThatAreNoModel)
{
    for (const char* device : {"/dev/zero", "/dev/urandom"}) {
        ModelStore model;
        const auto reading = ReadModelFileStrictly(model, device, RuleBook());
        ASSERT_TRUE(reading) << device;
        EXPECT_EQ(reading->errors, 1) << device;
    }
}

TEST(StrictReader, DoesNotReadDirectories)
{
    const test::TemporaryDirectory directory;
    std::filesystem::create_directory("fem_solving.txt");
    ModelStore model;
    EXPECT_FALSE(ReadModelFileStrictly(model, FileName, RuleBook()));
}

// A file without contents of 16 GB is told by its first bytes.
TEST(StrictReader, TellsASparseFileOfManyGigabytesAtOnce)
{
    const test::TemporaryDirectory directory;
    std::ofstream(FileName) << "### Quor_Tarn+Vexo release=3.0 ###\n";
    std::error_code tooLarge;
    std::filesystem::resize_file(FileName, std::uintmax_t(1) << 34, tooLarge);
    if (tooLarge) {
        GTEST_SKIP() << tooLarge.message();
    }
    ModelStore model;
    const auto reading = ReadModelFileStrictly(model, FileName, RuleBook());
    ASSERT_TRUE(reading);
    ASSERT_EQ(reading->diagnostics.size(), 1u);
    EXPECT_EQ(reading->diagnostics[0].what, "the file is binary: it holds zero bytes");
}

} // namespace
} // namespace tarnvexo
