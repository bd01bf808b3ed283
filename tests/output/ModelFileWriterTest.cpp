#include "output/ModelFileWriter.h"

#include "input/ModelFileReader.h"
#include "support/SameModel.h"
#include "support/SmallModels.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>
#include <set>

namespace tarnvexo {
namespace {

using test::DifferentTable;
using test::ModelText;
using test::StoreOf;

std::string Written(const ModelStore& model)
{
    std::string file;
    TextWriter text([&](std::string_view piece) { file += piece; });
    WriteModelText(model, text);
    text.Flush();
    return file;
}

// The store that a text gives; warnings of what the reader makes of odd files are no matter here.
ModelStore Read(const std::string& text)
{
    ModelStore model;
    EXPECT_EQ(ReadModelText(model, text, "fem_solving.txt").end, ModelReading::End::Complete);
    return model;
}

std::string FileText(const std::filesystem::path& path)
{
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::set<std::filesystem::path> ModelFiles()
{
    std::set<std::filesystem::path> files;
    for (const char* folder : {"/tests/cases", "/examples"}) {
        for (const auto& model : std::filesystem::directory_iterator(std::string(TARNVEXO_SOURCE_DIR) + folder)) {
            if (std::filesystem::exists(model.path() / "fem_solving.txt")) {
                files.insert(model.path() / "fem_solving.txt");
            }
        }
    }
    return files;
}

TEST(ModelFileWriter, OfEveryModelWritesAFileThatReadsAsTheSameModel)
{
    const std::set<std::filesystem::path> files = ModelFiles();
    EXPECT_GE(files.size(), 15u);
    for (const std::filesystem::path& file : files) {
        const ModelStore model = Read(FileText(file));
        EXPECT_EQ(DifferentTable(model, Read(Written(model))), "") << file;
    }
}

TEST(ModelFileWriter, WritesItsOwnFilesAgainByteForByte)
{
    for (const std::filesystem::path& file : ModelFiles()) {
        const std::string written = Written(Read(FileText(file)));
        EXPECT_EQ(Written(Read(written)), written) << file;
    }
}

TEST(ModelFileWriter, WritesOneRecordALine)
{
    ModelText model;
    model.Material(2.06e11, 0.3, 7850.0);
    model.Thickness(0.01);
    model.LSection(0.2, 0.008, 0.1, 0.01);
    model.CSection(0.1, 0.005);
    model.Node(0.0, 0.0, 0.0);
    model.Node(1.0, 0.0, 0.0);
    model.Node(1.0, 1.0, 0.0);
    model.Node(0.1, 1.0, -1.0 / 3.0);
    model.Quad({0, 1, 2, 3});
    model.Tri({0, 1, 2});
    model.Beam({0, 1}, {0.0, 0.0, 1.0}, 0, LSection, 0, 0.005, 1);
    model.Restrain(0, {1, 1, 1, 0, 0, 0});
    model.Force(2, {0.0, 0.0, -1000.0, 0.0, 0.0, 1e-300});
    model.QuadLoad(0, 1.0, 2.0, 3.5);
    model.TriLoad(0, 4.0, 5.0, 6.0);
    model.BeamLoad(0, 7.0, -8.0);
    EXPECT_EQ(Written(StoreOf(model)), R"(### Quor_Tarn+Vexo release=3.0 ###
Number of materials:NMT=1
#0:
E=2.06e+11
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
Number of C_beam sections:NCBS=1
#0:
R=0.1
T=0.005
Number of nodal points:NPOIN=4
0:0,0,0
1:1,0,0
2:1,1,0
3:0.1,1,-0.3333333333333333
Number of four-nodes shell elements:NELEM_S_4ND=1
0:0,1,2,3[0,0]
Number of three-nodes shell elements:NELEM_S_3ND=1
0:0,1,2[0,0]
Number of beam elements:NELEM_B=1
0:0,1<0,0,1>[0,BeamSecType=1,BeamSecIndex=0,BeamSecOz=0.005,BeamSecMirrored=1]
Number of restricted nodal points:NRN=1
0:1 1 1 0 0 0
Number of forces:NFOR=1
2<0,0,-1000,0,0,1e-300>
Number of distributed loads on four-nodes shell elements:NDL_S_4ND=1
0:1,2,3.5
Number of distributed loads on three-nodes shell elements:NDL_S_3ND=1
0:4,5,6
Number of distributed loads on beam elements:NDL_B=1
0:7,-8
)");
}

TEST(ModelFileWriter, KeepsEveryDoubleToTheLastBit)
{
    using Limits = std::numeric_limits<double>;
    ModelStore model;
    model.NodeCoordinates = {{0.1, 1.0 / 3.0, -0.0},
                             {Limits::max(), Limits::denorm_min(), Limits::epsilon()},
                             {Limits::infinity(), -Limits::infinity(), Limits::quiet_NaN()}};
    model.NPOIN = 3;
    EXPECT_EQ(DifferentTable(model, Read(Written(model))), "");
}

TEST(ModelFileWriter, KeepsABeamWithoutASectionTypeAsItStands)
{
    ModelText text;
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 0.0, 0.0);
    text.Beam({0, 1}, {0.0, 0.5, 1.0}, 12, 7, 34, 0.25, 1);
    const ModelStore model = StoreOf(text);
    EXPECT_EQ(DifferentTable(model, Read(Written(model))), "");
}

// What a record leaves out it takes from the record before: the file written says it in full.
TEST(ModelFileWriter, WritesWhatAShortRecordTookFromTheRecordBefore)
{
    ModelText text;
    text.Material(1.0, 0.3, 1.0);
    text.Material(2.0, 0.3, 1.0);
    text.Thickness(0.1);
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 0.0, 0.0);
    text.Node(0.0, 1.0, 0.0);
    text.Tri({0, 1, 2}, 1, 0);
    text.Tri({0, 1, 2}, 1, 0);
    std::string file = text.Text();
    file.erase(file.rfind("[1,0]"), 5); // of the second triangle
    const ModelStore model = Read(file);
    EXPECT_GT(model.UnmatchedScans, 0);
    EXPECT_NE(Written(model).find("1:0,1,2[1,0]\n"), std::string::npos);
}

TEST(ModelFileWriter, TellsWhetherTheFileCouldBeWritten)
{
    const ModelStore model = StoreOf(test::OneOfEachKind());
    EXPECT_EQ(test::WrittenFile("model.txt",
                                [&] { EXPECT_EQ(WriteModelFile(model, "model.txt").outcome, FileOutcome::Written); }),
              Written(model));

    const test::TemporaryDirectory directory;
    std::filesystem::create_directory("model.txt");
    const FileResult file = WriteModelFile(model, "model.txt");
    EXPECT_EQ(file.outcome, FileOutcome::NotCreated);
    EXPECT_EQ(file.reason, "Is a directory");
}

} // namespace
} // namespace tarnvexo
