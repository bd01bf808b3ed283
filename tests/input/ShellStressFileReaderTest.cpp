#include "input/ShellStressFileReader.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace tarnvexo {
namespace {

constexpr const char* FileName = "stress.txt";

const std::string Labels = "           Node             SX             SY             SZ            TXY            TXZ"
                           "            TYZ             SE\n";

std::string FileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::string text(std::istreambuf_iterator<char>(file), {});
    std::erase(text, '\r'); // where the results come from a system whose lines end so
    return text;
}

std::string FaultOf(const std::string& text)
{
    ShellStresses stresses;
    return ReadShellStressText(stresses, text, FileName);
}

std::string Line(int node, const std::string& sx, const std::string& se)
{
    const auto field = [](std::size_t width, const std::string& text) {
        return std::string(width - text.size(), ' ') + text;
    };
    std::string line = field(14, std::to_string(node)) + ":" + field(15, sx);
    for (int k = 0; k < 5; ++k) { line += field(15, "0"); }
    return line + field(15, se) + "\n";
}

std::string Triangle(int number)
{
    std::string text = "Three-nodes shell element:" + std::to_string(number) + "\n" + Labels;
    for (const int node : {7, 4, 12}) { text += Line(node, "1.5", "2e-07") + Line(node, "-1.5", "3"); }
    return text;
}

TEST(ShellStressFileReader, PutsEveryValueInItsPlace)
{
    ShellStresses stresses;
    ASSERT_EQ(ReadShellStressText(stresses, Triangle(0) + Triangle(1), FileName), "");
    EXPECT_EQ(stresses.quads.connectivity.size(), 0u);
    ASSERT_EQ(stresses.tris.connectivity.size(), 2u);
    EXPECT_EQ(stresses.tris.connectivity[1], (std::array<int, 3>{7, 4, 12}));
    EXPECT_EQ(stresses.tris.positiveFace[1][2], (ContourStress{1.5, 0, 0, 0, 0, 0, 2e-07}));
    EXPECT_EQ(stresses.tris.negativeFace[0][1], (ContourStress{-1.5, 0, 0, 0, 0, 0, 3}));
}

// The averages differ in their titles alone.
TEST(ShellStressFileReader, TakesEveryResultOfTheWholeRunsAndNoAverages)
{
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TARNVEXO_SOURCE_DIR "/tests/cases")) {
        if (entry.path().filename() == "Shell element node stress.txt") {
            ShellStresses stresses;
            const std::string text = FileBytes(entry.path());
            EXPECT_EQ(ReadShellStressText(stresses, text, FileName), "") << entry.path();
            EXPECT_EQ(stresses.quads.connectivity.empty() && stresses.tris.connectivity.empty(), text.empty());
            const std::string averages =
                FileBytes(entry.path().parent_path() / "Shell element average node stress.txt");
            EXPECT_EQ(FaultOf(averages).empty(), text.empty()) << entry.path();
            ++files;
        }
    }
    EXPECT_GT(files, 0);
}

TEST(ShellStressFileReader, TakesLineEndsOfWindows)
{
    std::string text;
    for (const char c : Triangle(0)) { text += c == '\n' ? "\r\n" : std::string(1, c); }
    EXPECT_EQ(FaultOf(text), "");
}

TEST(ShellStressFileReader, RefusesATextThatIsCutOffAnywhere)
{
    const std::string text = Triangle(0);
    for (std::size_t size = 1; size < text.size(); ++size) { EXPECT_NE(FaultOf(text.substr(0, size)), "") << size; }
}

TEST(ShellStressFileReader, ShowsTheFaultWithItsPlace)
{
    std::string text = Triangle(0);
    text.replace(text.find("2e-07"), 5, "2e-7 ");
    EXPECT_EQ(FaultOf(text), "stress.txt:3:116: error: the text does not match the format of the shell stress file\n"
                             "  3 |          0              0              0          2e-7 \n"
                             "    |                                                   ^\n"
                             "  expected: a number with six significant digits, in a column of 15 characters\n"
                             "  to do:    solve the model again; the file was cut off or altered");
}

TEST(ShellStressFileReader, RefusesWhatTheWriterDoesNotWrite)
{
    const auto replaced = [](const std::string& from, const std::string& to) {
        std::string text = Triangle(0);
        const std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        return FaultOf(text.replace(at, from.size(), to));
    };
    EXPECT_NE(replaced("element:0", "element:1"), ""); // not in order
    EXPECT_NE(replaced("  Node", "  node"), "");
    EXPECT_NE(replaced("            1.5", "           1.50"), "");
    EXPECT_NE(replaced("            1.5", "1.5"), "");
    EXPECT_NE(replaced("           -1.5", "            nix"), "");
    EXPECT_NE(replaced(" 7:", "-7:"), "");
    EXPECT_NE(replaced("             7:           -1.5", "             8:           -1.5"), ""); // another node's face
    EXPECT_NE(FaultOf(Triangle(0) + "\n"), "");
    EXPECT_NE(FaultOf(Triangle(0) + "Four-nodes shell element:0\n"), ""); // quadrilaterals come first
}

} // namespace
} // namespace tarnvexo
