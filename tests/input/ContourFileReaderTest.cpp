#include "input/ContourFileReader.h"

#include "support/ContourText.h"
#include "support/TemporaryDirectory.h"

#include <cmath>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <limits>

namespace tarnvexo {
namespace {

using test::ContourText;

constexpr const char* FileName = "contour.txt";

std::string FileBytes(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string FaultOf(std::string_view text)
{
    ContourModel model;
    return ReadContourText(model, text, FileName);
}

std::string Replaced(std::string text, std::string_view from, std::string_view to)
{
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return text.replace(at, from.size(), to);
}

template <int Nodes> void AddShell(ContourShells<Nodes>& shells, const std::array<int, Nodes>& nodes, double first)
{
    shells.connectivity.push_back(nodes);
    std::array<ContourStress, Nodes> face = {};
    for (int i = 0; i < Nodes; ++i) { face[std::size_t(i)][SX] = first + i; }
    shells.positiveFace.push_back(face);
    for (int i = 0; i < Nodes; ++i) { face[std::size_t(i)][EquivalentStressColumn] = 0.5; }
    shells.negativeFace.push_back(face);
}

// A shell of each kind and a beam of one wall, on four nodes.
ContourModel SmallModel()
{
    ContourModel model;
    model.nodes.coordinates = {{0, 0, 0}, {1, 0, 0}, {1, 1.5, 0}, {0, 1, -2e-07}};
    model.nodes.displacements.resize(4);
    model.nodes.displacements[2] = {1, 2, 3, 4, 5, 6};
    AddShell(model.quads, {0, 1, 2, 3}, 10.0);
    AddShell(model.tris, {2, 1, 0}, 20.0);
    ContourBeam beam;
    beam.end1 = {0, 0, 0};
    beam.end2 = {1, 0, 0};
    beam.nodes = model.nodes;
    AddShell(beam.walls, {3, 2, 1, 0}, 30.0);
    model.beams.push_back(beam);
    return model;
}

TEST(ContourFileReader, OfEveryResultOfTheWholeRunsKeepsEveryByte)
{
    int files = 0;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(TARNVEXO_SOURCE_DIR "/tests/cases")) {
        if (entry.path().filename() != "Tarn+Vexo_AverageStrs.txt") {
            continue;
        }
        std::string text = FileBytes(entry.path());
        std::erase(text, '\r'); // where the results come from a system whose lines end so
        ContourModel model;
        EXPECT_EQ(ReadContourText(model, text, FileName), "") << entry.path();
        EXPECT_EQ(ContourText(model), text) << entry.path();
        EXPECT_GT(model.nodes.coordinates.size() + model.beams.size(), 0u) << entry.path();
        ++files;
    }
    EXPECT_GT(files, 0);
}

TEST(ContourFileReader, PutsEveryValueInItsPlace)
{
    ContourModel model;
    ASSERT_EQ(ReadContourText(model, ContourText(SmallModel()), FileName), "");
    EXPECT_EQ(model.nodes.coordinates[3], (Vector3{0, 1, -2e-07}));
    EXPECT_EQ(model.nodes.displacements[2], (ContourDisplacement{1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(model.quads.connectivity[0], (std::array<int, 4>{0, 1, 2, 3}));
    EXPECT_EQ(model.quads.positiveFace[0][3], (ContourStress{13, 0, 0, 0, 0, 0, 0}));
    EXPECT_EQ(model.quads.negativeFace[0][3], (ContourStress{13, 0, 0, 0, 0, 0, 0.5}));
    EXPECT_EQ(model.tris.connectivity[0], (std::array<int, 3>{2, 1, 0}));
    EXPECT_EQ(model.tris.positiveFace[0][1][SX], 21.0);
    EXPECT_EQ(model.beams[0].end2, (Vector3{1, 0, 0}));
    EXPECT_EQ(model.beams[0].nodes.coordinates, model.nodes.coordinates);
    EXPECT_EQ(model.beams[0].walls.connectivity[0], (std::array<int, 4>{3, 2, 1, 0}));
    EXPECT_EQ(model.beams[0].walls.negativeFace[0][2][SX], 32.0);
}

TEST(ContourFileReader, TakesEveryNumberThatTheWriterWrites)
{
    using Limits = std::numeric_limits<double>;
    for (const double value : {0.0,
                               -0.0,
                               1.0,
                               -1.5,
                               123456.0,
                               999999.0,
                               1e6,
                               1e-4,
                               1e-5,
                               1.23457e-5,
                               1.23457e100,
                               Limits::max(),
                               Limits::lowest(),
                               Limits::min(),
                               Limits::denorm_min(),
                               1.23457e-310,
                               Limits::infinity(),
                               -Limits::infinity(),
                               Limits::quiet_NaN(),
                               -Limits::quiet_NaN()}) {
        ContourModel written;
        written.nodes.coordinates = {{value, 0.0, value}};
        written.nodes.displacements.resize(1);
        const std::string text = ContourText(written);
        ContourModel model;
        EXPECT_EQ(ReadContourText(model, text, FileName), "");
        EXPECT_EQ(ContourText(model), text);
        EXPECT_EQ(std::signbit(model.nodes.coordinates[0][2]), std::signbit(value)) << text;
    }
}

TEST(ContourFileReader, RefusesEveryOtherWayToWriteANumber)
{
    const std::string text = ContourText(SmallModel());
    for (const char* number : {"",      " 1.5",    "1.5 ",     "+1.5", "1.50", "01.5",    ".5",    "1.",     "15e-1",
                               "1.5E0", "0x1.8p0", "1.234567", "1e5",  "1e6",  "0.00001", "1e400", "1e-400", "infinity",
                               "INF",   "NAN",     "nan(1)",   "-",    "1,5",  "1;5",     "1.5\r"}) {
        const std::string fault = FaultOf(Replaced(text, "1,1.5,0\n", std::string("1,") + number + ",0\n"));
        EXPECT_EQ(fault.find("contour.txt:4:"), 0u) << number << "\n" << fault;
    }
}

TEST(ContourFileReader, TakesTheLineEndsOfWindows)
{
    const std::string text = ContourText(SmallModel());
    std::string windows;
    for (const char c : text) { windows += c == '\n' ? "\r\n" : std::string(1, c); }
    ContourModel model;
    EXPECT_EQ(ReadContourText(model, windows, FileName), "");
    EXPECT_EQ(ContourText(model), text);
}

TEST(ContourFileReader, TellsPlaceRecordAndWhatWasExpected)
{
    EXPECT_EQ(
        FaultOf(Replaced(ContourText(SmallModel()), "1,2,3,4", "1,2,x,4")),
        "contour.txt:8:5: error: displacements of node 2: the text does not match the format of the contour file\n"
        "  8 | 1,2,x,4,5,6\n"
        "    |     ^\n"
        "  expected: a number in general notation with six significant digits, as \"-1.5\" or \"2e-07\"\n"
        "  to do:    solve the model again; the file was cut off or altered");
}

TEST(ContourFileReader, NamesTheBeamOfAFault)
{
    std::string text = ContourText(SmallModel());
    text.replace(text.rfind("3,2,1,0"), 7, "3,2,4,0");
    const std::string fault = FaultOf(text);
    EXPECT_NE(fault.find(":5: error: wall 0 of beam 0: "), std::string::npos) << fault;
    EXPECT_NE(fault.find("expected: a node number below 4\n"), std::string::npos) << fault;
}

TEST(ContourFileReader, RefusesNodeNumbersOutsideTheTable)
{
    const std::string text = ContourText(SmallModel());
    for (const char* nodes :
         {"0,1,2,4\n", "0,1,2,-1\n", "0,1,2,99999999999\n", "0,1,2,03\n", "0,1,2\n", "0,1,2,3,1\n"}) {
        const std::string fault = FaultOf(Replaced(text, "0,1,2,3\n", nodes));
        EXPECT_EQ(fault.find("contour.txt:11:"), 0u) << nodes << fault;
        EXPECT_NE(fault.find("four-node shell 0"), std::string::npos) << fault;
    }
}

TEST(ContourFileReader, RefusesACountThatTheRestOfTheFileCannotHold)
{
    const std::string text = ContourText(SmallModel());
    for (const std::string key : {"NPOIN=", "NELEM_S_4ND=", "NELEM_S_3ND=", "NELEM_B=", "NELEM="}) {
        const std::string fault = FaultOf(Replaced(text, key, key + "200000000"));
        EXPECT_NE(fault.find(", but the rest of the file cannot hold so many "), std::string::npos) << fault;
        EXPECT_NE(FaultOf(Replaced(text, key, key + "-")).find("expected: an integer from 0 to 2147483647\n"),
                  std::string::npos);
    }
}

TEST(ContourFileReader, RefusesBeamsOutOfOrder)
{
    EXPECT_NE(FaultOf(Replaced(ContourText(SmallModel()), "BEI=0", "BEI=1")).find("expected: \"BEI=0\"\n"),
              std::string::npos);
}

TEST(ContourFileReader, RefusesTextBehindTheLastBeam)
{
    const std::string fault = FaultOf(ContourText(SmallModel()) + "\n");
    EXPECT_NE(fault.find("expected: the end of the file behind the last beam\n"), std::string::npos) << fault;
}

TEST(ContourFileReader, RefusesAFileThatIsCutAfterAnyByte)
{
    const std::string text = ContourText(SmallModel());
    for (std::size_t size = 0; size < text.size(); ++size) {
        // A copy of exactly that size, so that a sanitizer sees a read behind its end.
        const std::vector<char> cut(text.begin(), text.begin() + std::ptrdiff_t(size));
        const std::string fault = FaultOf({cut.data(), cut.size()});
        EXPECT_EQ(fault.find("contour.txt:"), 0u) << size;
    }
}

// Inputs kept by the fuzzer (fuzz/ContourReaderFuzz.cpp): together they take every way through the reader it has found.
TEST(ContourFileReader, TakesFromTheCorpusOfTheFuzzerOnlyWhatItWouldWrite)
{
    int files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(TARNVEXO_SOURCE_DIR "/tests/input/contour_corpus")) {
        const std::string bytes = FileBytes(entry.path());
        const std::vector<char> text(bytes.begin(), bytes.end());
        ContourModel model;
        if (ReadContourText(model, {text.data(), text.size()}, FileName).empty()) {
            std::string plain = bytes;
            std::erase(plain, '\r');
            EXPECT_EQ(ContourText(model), plain) << entry.path();
        }
        ++files;
    }
    EXPECT_GT(files, 0);
}

TEST(TryReadContourFile, ReadsAFile)
{
    const test::TemporaryDirectory directory;
    const std::string text = ContourText(SmallModel());
    std::ofstream(FileName, std::ios::binary) << text;
    ContourModel model;
    EXPECT_EQ(TryReadContourFile(model, FileName), "");
    EXPECT_EQ(ContourText(model), text);
}

TEST(TryReadContourFile, TellsThatThereIsNoFile)
{
    const test::TemporaryDirectory directory;
    ContourModel model;
    EXPECT_FALSE(TryReadContourFile(model, FileName).has_value());
}

} // namespace
} // namespace tarnvexo
