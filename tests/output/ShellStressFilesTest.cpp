#include "output/ShellStressFiles.h"

#include "support/SmallModels.h"

#include <algorithm>
#include <filesystem>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using test::StoreOf;
using test::TemporaryDirectory;
using test::WrittenFile;

constexpr const char* Header = "           Node             SX             SY             SZ            TXY            "
                               "TXZ            TYZ             SE\n";

// Stresses with short equivalent stresses: (s, 0, 0, 0, 0, 0) has SE = |s|.
ModelStore StressedModel()
{
    ModelStore model = StoreOf(test::OneOfEachKind());
    QuadShellElement& quad = model.QuadElements[0];
    TriShellElement& tri = model.TriElements[0];
    for (int i = 0; i < QuadNodeCount; ++i) {
        quad.positiveFace[i][SX] = 10.0 + i;
        quad.negativeFace[i][SX] = -10.0 - i;
        quad.averagedPositiveFace[i][SX] = 100.0 + i;
        quad.averagedNegativeFace[i][SX] = -100.0 - i;
    }
    for (int i = 0; i < TriNodeCount; ++i) {
        tri.positiveFace[i][SZ] = 20.0 + i;
        tri.negativeFace[i][SZ] = -20.0 - i;
        tri.averagedPositiveFace[i][SZ] = 200.0 + i;
        tri.averagedNegativeFace[i][SZ] = -200.0 - i;
    }
    return model;
}

// The components in the order of the columns, and what is not a multiple of anything: SE² = ½·(1 + 1 + 4 + 6·77).
TEST(ShellStressFiles, HaveFixedTitlesLabelsAndColumns)
{
    ModelStore model = StressedModel();
    const double components[StressCount] = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    std::copy(components, components + StressCount, model.QuadElements[0].positiveFace[0]);
    const double tiny[StressCount] = {-1234567.0, 0.0, 0.0, 1e-5, 0.0, 0.0};
    std::copy(tiny, tiny + StressCount, model.QuadElements[0].negativeFace[0]);
    const std::string zeros = "              0              0              0              0              0";
    EXPECT_EQ(WrittenFile(ShellStressFileName, [&] { WriteShellStresses(model, ShellStressFileName); }),
              "Four-nodes shell element:0\n" + std::string(Header) +
                  "             0:              1              2              3              4              5          "
                  "    6        15.2971\n"
                  "             0:   -1.23457e+06              0              0          1e-05              0          "
                  "    0    1.23457e+06\n"
                  "             1:             11" +
                  zeros +
                  "             11\n"
                  "             1:            -11" +
                  zeros +
                  "             11\n"
                  "             2:             12" +
                  zeros +
                  "             12\n"
                  "             2:            -12" +
                  zeros +
                  "             12\n"
                  "             3:             13" +
                  zeros +
                  "             13\n"
                  "             3:            -13" +
                  zeros +
                  "             13\n"
                  "Three-nodes shell element:0\n" +
                  Header +
                  "             1:              0              0             20              0              0          "
                  "    0             20\n"
                  "             1:              0              0            -20              0              0          "
                  "    0             20\n"
                  "             4:              0              0             21              0              0          "
                  "    0             21\n"
                  "             4:              0              0            -21              0              0          "
                  "    0             21\n"
                  "             2:              0              0             22              0              0          "
                  "    0             22\n"
                  "             2:              0              0            -22              0              0          "
                  "    0             22\n");
}

TEST(ShellStressFiles, OfAveragesHaveTheirOwnTitlesAndValues)
{
    const ModelStore model = StressedModel();
    const std::string zeros = "              0              0              0              0              0";
    EXPECT_EQ(WrittenFile(AveragedShellStressFileName,
                          [&] { WriteAveragedShellStresses(model, AveragedShellStressFileName); }),
              "Four-nodes element:0\n" + std::string(Header) + "             0:            100" + zeros +
                  "            100\n"
                  "             0:           -100" +
                  zeros +
                  "            100\n"
                  "             1:            101" +
                  zeros +
                  "            101\n"
                  "             1:           -101" +
                  zeros +
                  "            101\n"
                  "             2:            102" +
                  zeros +
                  "            102\n"
                  "             2:           -102" +
                  zeros +
                  "            102\n"
                  "             3:            103" +
                  zeros +
                  "            103\n"
                  "             3:           -103" +
                  zeros +
                  "            103\n"
                  "Three-nodes element:0\n" +
                  Header +
                  "             1:              0              0            200              0              0          "
                  "    0            200\n"
                  "             1:              0              0           -200              0              0          "
                  "    0            200\n"
                  "             4:              0              0            201              0              0          "
                  "    0            201\n"
                  "             4:              0              0           -201              0              0          "
                  "    0            201\n"
                  "             2:              0              0            202              0              0          "
                  "    0            202\n"
                  "             2:              0              0           -202              0              0          "
                  "    0            202\n");
}

TEST(ShellStressFiles, NumberEachElementTypeFromZero)
{
    test::ModelText text;
    text.Material(1.0, 0.0, 1.0);
    text.Thickness(0.1);
    for (double x : {0.0, 1.0, 2.0}) {
        text.Node(x, 0.0, 0.0);
        text.Node(x, 1.0, 0.0);
    }
    text.Quad({0, 2, 3, 1});
    text.Quad({2, 4, 5, 3});
    text.Tri({0, 2, 3});
    text.Tri({2, 4, 5});
    const ModelStore model = StoreOf(text);
    const std::string file = WrittenFile(ShellStressFileName, [&] { WriteShellStresses(model, ShellStressFileName); });
    std::string titles;
    for (std::size_t at = 0; at < file.size(); at = file.find('\n', at) + 1) {
        if (file[at] != ' ') {
            titles += file.substr(at, file.find('\n', at) + 1 - at);
        }
    }
    EXPECT_EQ(titles, "Four-nodes shell element:0\nFour-nodes shell element:1\n"
                      "Three-nodes shell element:0\nThree-nodes shell element:1\n");
    EXPECT_EQ(std::count(file.begin(), file.end(), '\n'), 2 * (2 + 8) + 2 * (2 + 6));
}

TEST(ShellStressFiles, OfAModelWithOnlyBeamsAreEmpty)
{
    test::ModelText text;
    text.Material(1.0, 0.0, 1.0);
    text.CSection(0.1, 0.01);
    text.Node(0.0, 0.0, 0.0);
    text.Node(1.0, 0.0, 0.0);
    text.Beam({0, 1}, {0.0, 0.0, 1.0}, 0, CSection, 0);
    const ModelStore model = StoreOf(text);
    const TemporaryDirectory directory;
    WriteShellStresses(model, ShellStressFileName);
    WriteAveragedShellStresses(model, AveragedShellStressFileName);
    EXPECT_EQ(std::filesystem::file_size(ShellStressFileName), 0u);
    EXPECT_EQ(std::filesystem::file_size(AveragedShellStressFileName), 0u);
}

TEST(ShellStressFiles, TellTheirSize)
{
    const TemporaryDirectory directory;
    const FileResult raw = WriteShellStresses(StressedModel(), "a.txt");
    EXPECT_EQ(raw.outcome, FileOutcome::Written);
    EXPECT_EQ(raw.bytes, std::filesystem::file_size("a.txt"));
    const FileResult averaged = WriteAveragedShellStresses(StressedModel(), "b.txt");
    EXPECT_EQ(averaged.outcome, FileOutcome::Written);
    EXPECT_EQ(averaged.bytes, std::filesystem::file_size("b.txt"));
}

TEST(ShellStressFiles, ThatCannotBeCreatedAreToldToTheCaller)
{
    const TemporaryDirectory directory;
    std::filesystem::create_directory("a.txt");
    for (const FileResult& file :
         {WriteShellStresses(StressedModel(), "a.txt"), WriteAveragedShellStresses(StressedModel(), "a.txt")}) {
        EXPECT_EQ(file.outcome, FileOutcome::NotCreated);
        EXPECT_EQ(file.reason, "Is a directory");
    }
}

} // namespace
} // namespace tarnvexo
