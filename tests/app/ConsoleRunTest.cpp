// Whole runs of the built program: what a user sees, file by file, key by key.
#include "support/ModelText.h"
#include "support/ProgramRun.h"
#include "support/SmallModels.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <gtest/gtest.h>
#include <set>
#include <sstream>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

namespace tarnvexo {
namespace {

using test::GbkToUtf8;
using test::ModelText;
using test::ProgramRun;
using test::ProgramStart;
using test::RunProgram;

const std::vector<std::string> ResultFiles = {"structure.dxf",
                                              "Node_Dis.txt",
                                              "deformation.dxf",
                                              "Shell element node stress.txt",
                                              "Shell element average node stress.txt",
                                              "Tarn+Vexo_AverageStrs.txt"};

const std::string Banner = "-----------------------------\n"
                           "tarnvexo\n"
                           "Static analysis of shells and beams with inertia relief\n"
                           "2026.7.18开始修订\n"
                           "-----------------------------\n";

const std::string ViewerNotice = "[Warning!] Program \"Tarn+Vexo_Contour.exe\"does not exist! "
                                 "Please copy it to the current folder and run it.\nPress Enter to continue . . .";

const std::string Back13(13, '\b'), Back2(2, '\b');

ProgramStart Start(const ModelText& model)
{
    return {.program = TARNVEXO_PROGRAM, .files = {{"fem_solving.txt", model.Text()}}};
}

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

bool EndsWith(const std::string& text, const std::string& end)
{
    return text.size() >= end.size() && text.compare(text.size() - end.size(), end.size(), end) == 0;
}

// The names of the result files among those of a run.
std::vector<std::string> WrittenResults(const ProgramRun& run)
{
    std::vector<std::string> names;
    for (const std::string& name : ResultFiles) {
        if (run.files.count(name) != 0) {
            names.push_back(name);
        }
    }
    return names;
}

// Square of 2 x 2, thickness 1/2, density 2: mass 4, centroid (1, 1, 0). The same force of (3, 0, 1) at every node.
ModelText Plate()
{
    ModelText model;
    model.Material(2e11, 0.25, 2.0);
    model.Thickness(0.5);
    model.Node(0, 0, 0);
    model.Node(2, 0, 0);
    model.Node(2, 2, 0);
    model.Node(0, 2, 0);
    model.Quad({0, 1, 2, 3});
    model.Restrain(0, {1, 1, 1, 0, 0, 0});
    model.Restrain(1, {0, 1, 1, 0, 0, 0});
    model.Restrain(3, {0, 0, 1, 0, 0, 0});
    for (int n : {0, 1, 2, 3}) { model.Force(n, {3, 0, 1, 0, 0, 0}); }
    return model;
}

// Numbers that are zero but for round-off as "0", in the same field.
std::string WithoutNoise(const std::string& text)
{
    const char* const numberCharacters = "+-.0123456789e";
    std::string clean;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find_first_not_of(numberCharacters, at), text.size());
        const std::string word = text.substr(at, end - at);
        char* rest = nullptr;
        const double value = std::strtod(word.c_str(), &rest);
        if (!word.empty() && *rest == '\0' && std::fabs(value) < 1e-12) {
            const bool padded = !clean.empty() && clean.back() == ' ';
            clean += padded ? std::string(word.size() - 1, ' ') + "0" : "0";
        } else {
            clean += word;
        }
        const std::size_t next = std::min(text.find_first_of(numberCharacters, end), text.size());
        clean += text.substr(end, next - end);
        at = next;
    }
    return clean;
}

// The seconds of the solution taken out of the text.
std::string WithoutTime(std::string text)
{
    const std::string before = "(Solution time:", behind = " seconds)";
    const std::size_t from = text.find(before) + before.size();
    return text.erase(from, text.find(behind) - from);
}

std::string Column(const std::vector<int>& values)
{
    std::string text;
    for (int value : values) {
        char line[32];
        std::snprintf(line, sizeof line, "%15d\n", value);
        text += line;
    }
    return text;
}

// ---- a complete run

TEST(ConsoleRun, ShowsEveryStageInOrder)
{
    const ProgramRun run = RunProgram(Start(Plate()));
    EXPECT_EQ(run.exitCode, 0);
    const std::string matrix4 = "              4              0              0\n"
                                "              0              4              0\n"
                                "              0              0              4\n";
    const std::string inertia = "        1.33333              0              0\n"
                                "              0        1.33333              0\n"
                                "              0              0        2.66667\n";
    std::string counter = " 4%Completed." + Back13;
    for (int i = 1; i < 23; ++i) {
        const std::string percent = std::to_string((i + 1) * 100 / 24);
        counter += (percent.size() < 2 ? " " : "") + percent + Back2;
    }
    counter += "100%Completed.";
    const std::vector<int> nodeForces = {3, 0, 1, 0, 0, 0, 3, 0, 1, 0, 0, 0, 3, 0, 1, 0, 0, 0, 3, 0, 1, 0, 0, 0};
    EXPECT_EQ(WithoutNoise(WithoutTime(GbkToUtf8(run.output))),
              Banner +
                  "结构质心坐标(1,1,0).\n"
                  "The global stiffness matrix will occupy 2.23517e-06 GB of memory space.\n" // 300 entries
                  "Assembling the global stiffness matrix...\n"
                  "模型总质量=4\n"
                  "模型平动质量阵:\n" +
                  matrix4 + "模型平动载荷向量:\n" + Column({12, 0, 4}) + "模型平动加速度向量:\n" + Column({3, 0, 1}) +
                  "模型转动质量阵:\n" + inertia + "模型转动载荷向量:\n" + Column({0, 0, 0}) + "模型转动加速度向量:\n" +
                  Column({0, 0, 0}) + "平衡前GLOAD：\n" + Column(nodeForces) +
                  "平衡前结构受到的集中力合力:\n"
                  "sumFX=12\nsumFY=0\nsumFZ=4\nsumMX=0\nsumMY=0\nsumMZ=0\n"
                  "平衡后GLOAD：\n" +
                  Column(std::vector<int>(24, 0)) +
                  "平衡后结构受到的集中力合力:\n"
                  "sumFX=0\nsumFY=0\nsumFZ=0\nsumMX=0\nsumMY=0\nsumMZ=0\n"
                  "Solute the equilibrium equations..." +
                  counter + "(Solution time: seconds)\n" + Banner);
}

TEST(ConsoleRun, WritesChineseTextAsGbkBytes)
{
    const ProgramRun run = RunProgram(Start(Plate()));
    EXPECT_TRUE(Contains(run.output, "\n2026.7.18\xBF\xAA\xCA\xBC\xD0\xDE\xB6\xA9\n"));
    EXPECT_TRUE(Contains(run.output, "\n\xBD\xE1\xB9\xB9\xD6\xCA\xD0\xC4\xD7\xF8\xB1\xEA(1,1,0).\n"));
    EXPECT_TRUE(Contains(run.output, "\n\xC6\xBD\xBA\xE2\xC7\xB0GLOAD\xA3\xBA\n"));
}

TEST(ConsoleRun, WritesAllSixFiles)
{
    const ProgramRun run = RunProgram(Start(test::OneOfEachKind()));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(WrittenResults(run), ResultFiles);
    EXPECT_EQ(run.files.size(), ResultFiles.size() + 1); // and the model file
}

// Six equations: a single node. Without mass every balanced load is not a number, and the run goes on.
TEST(ConsoleRun, OfOneNodeCountsItsSixEquationsAndGoesOnWithoutMass)
{
    ModelText model;
    model.Node(1.0, 2.0, 3.0);
    model.Restrain(0);
    const ProgramRun run = RunProgram(Start(model));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(Contains(run.output, "Solute the equilibrium equations...16%Completed." + Back13 + "33" + Back2 + "50" +
                                         Back2 + "66" + Back2 + "83" + Back2 + "100%Completed.(Solution time:"));
    EXPECT_EQ(WrittenResults(run), ResultFiles);
}

// The first drawing stands about the centroid, everything after the solution in the model file's coordinates.
TEST(ConsoleRun, DrawsTheStructureAboutItsCentroidAndTheRestWhereTheModelFileHasIt)
{
    ModelText plate = Plate();
    plate.Force(2, {0, 0, 5, 0, 0, 0}); // the others alone are balanced without leaving any deformation
    const ProgramRun run = RunProgram(Start(plate));
    EXPECT_TRUE(Contains(run.files.at("structure.dxf"), " 10\n-1\n 20\n-1\n 30\n0\n 11\n1\n 21\n-1\n 31\n0\n"));
    EXPECT_TRUE(Contains(run.files.at("Tarn+Vexo_AverageStrs.txt"), "NPOIN=4\n0,0,0\n2,0,0\n2,2,0\n0,2,0\n"));
    const std::string& deformed = run.files.at("deformation.dxf");
    double x = 0.0, y = 0.0;
    ASSERT_EQ(std::sscanf(deformed.c_str() + deformed.find(" 11\n"), " 11\n%lf\n 21\n%lf", &x, &y), 2);
    EXPECT_NEAR(x, 2.0, 0.1 + 1e-9); // node 1, moved by 5 % of the extent at most
    EXPECT_NEAR(y, 0.0, 0.1 + 1e-9);
}

// Web thirds of 0.2: the last bit of the longest decides for 14 slices of six points, and the two ends.
TEST(ConsoleRun, GivesABeamOfFifteenSegmentsLengthFourteenSlices)
{
    ModelText model;
    model.Material(2.06e11, 0.3, 7850);
    model.Thickness(0.01);
    model.LSection(0.2, 0.008, 0.1, 0.01);
    model.Node(0, 0, 0);
    model.Node(1, 0, 0);
    model.Node(1, 1, 0);
    model.Node(0, 1, 0);
    model.Quad({0, 1, 2, 3});
    model.Beam({0, 1}, {0, 0, 1}, 0, LSection, 0);
    model.Restrain(0);
    model.Force(2, {0, 0, -1000, 0, 0, 0});
    const ProgramRun run = RunProgram(Start(model));
    const std::string& contour = run.files.at("Tarn+Vexo_AverageStrs.txt");
    EXPECT_TRUE(Contains(contour, "NELEM_B=1\nBEI=0\nSND(0,0,0)\nEND(1,0,0)\nNPOIN=92\n"));
    EXPECT_TRUE(Contains(contour, "\nNELEM=70\n"));
}

// The drawings are pipes that no one opens for a while: one holds the run up before the solution, one after it.
TEST(ConsoleRun, TimesTheSolutionAlone)
{
    static constexpr auto Delay = std::chrono::milliseconds(400);
    std::thread reader;
    int pipes[2] = {-1, -1};
    ProgramStart start = Start(Plate());
    start.prepare = [&] {
        const std::string before = std::filesystem::absolute("structure.dxf").string();
        const std::string after = std::filesystem::absolute("Node_Dis.txt").string();
        mkfifo(before.c_str(), 0600);
        mkfifo(after.c_str(), 0600);
        reader = std::thread([&pipes, before, after] {
            std::this_thread::sleep_for(Delay);
            pipes[0] = open(before.c_str(), O_RDWR); // both ends: neither side waits any more
            std::this_thread::sleep_for(Delay);
            pipes[1] = open(after.c_str(), O_RDWR);
        });
    };
    const auto begin = std::chrono::steady_clock::now();
    const ProgramRun run = RunProgram(start);
    const auto duration = std::chrono::steady_clock::now() - begin;
    reader.join();
    for (int descriptor : pipes) { close(descriptor); }
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_GE(duration, 2 * Delay);
    double seconds = -1.0;
    const std::size_t at = run.output.find("(Solution time:");
    ASSERT_NE(at, std::string::npos);
    ASSERT_EQ(std::sscanf(run.output.c_str() + at, "(Solution time:%lf seconds)", &seconds), 1);
    EXPECT_LT(seconds, 0.4);
}

// ---- the viewer

TEST(ConsoleRun, WithoutAViewerEndsWellAfterANoticeAndOneLine)
{
    ProgramStart start = Start(test::OneOfEachKind());
    start.input = "some text\nnext";
    const ProgramRun run = RunProgram(start);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(EndsWith(run.error, ViewerNotice)) << run.error;
    EXPECT_EQ(run.inputTaken, 10u);
    EXPECT_EQ(WrittenResults(run), ResultFiles);
    EXPECT_TRUE(EndsWith(GbkToUtf8(run.output), Banner));
}

TEST(ConsoleRun, WithoutAViewerAndWithoutInputEndsWell)
{
    const ProgramRun run = RunProgram(Start(Plate()));
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(EndsWith(run.error, ViewerNotice + "\n")) << run.error;
}

// The viewer finds all files complete, has no arguments, and has ended before the run does, whatever its exit code.
TEST(ConsoleRun, StartsTheViewerLastAndWaitsForIt)
{
    ProgramStart start = Start(test::OneOfEachKind());
    start.input = "viewer's own\n";
    start.files["Tarn+Vexo_Contour.exe"] = "#!/bin/sh\n"
                                           "for file in *.dxf *.txt; do wc -c < \"$file\" >> seen; done\n"
                                           "echo \"viewer with $# arguments\"\n"
                                           "sleep 0.2\n"
                                           "cat > typed\n"
                                           "exit 3\n";
    start.prepare = [] { std::filesystem::permissions("Tarn+Vexo_Contour.exe", std::filesystem::perms::owner_all); };
    const ProgramRun run = RunProgram(start);
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_TRUE(EndsWith(run.output, "-----------------------------\nviewer with 0 arguments\n"));
    EXPECT_FALSE(Contains(run.error, "[Warning!]"));
    ASSERT_EQ(run.files.count("typed"), 1u);
    EXPECT_EQ(run.files.at("typed"), "viewer's own\n");

    std::vector<std::string> names = ResultFiles;
    names.push_back("fem_solving.txt");
    std::multiset<std::size_t> sizes, seen;
    for (const std::string& name : names) { sizes.insert(run.files.at(name).size()); }
    std::istringstream lines(run.files.at("seen"));
    for (std::size_t size = 0; lines >> size;) { seen.insert(size); }
    EXPECT_EQ(seen, sizes);
}

// ---- what ends a run

TEST(ConsoleRun, WithoutAModelFileShowsTheNoticeThenTheReadersMessageAndPauses)
{
    const ProgramRun run = RunProgram({.program = TARNVEXO_PROGRAM, .input = "\nxy", .errorWithOutput = true});
    EXPECT_EQ(GbkToUtf8(run.output),
              Banner + "[Warning!] File Read Error!\nPress Enter to continue . . ."
                       "fem_solving.txt: error: the model file cannot be read: No such file or directory\n"
                       "  expected: a readable file of this name in the current directory\n"
                       "  to do:    change to the directory of the model and start the program there\n"
                       "Preprocessor file read error!\nPress any key to continue . . . ");
    EXPECT_EQ(run.inputTaken, 2u); // the line of the notice, one key of the pause
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(run.files.empty());
}

TEST(ConsoleRun, WithoutAModelFileAndWithoutInputEndsAllTheSame)
{
    const ProgramRun run = RunProgram({.program = TARNVEXO_PROGRAM});
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(run.error.find("[Warning!] File Read Error!\nPress Enter to continue . . .\n"
                             "fem_solving.txt: error: the model file cannot be read: No such file or directory\n"),
              0u);
    EXPECT_TRUE(EndsWith(run.output, "-\nPreprocessor file read error!\nPress any key to continue . . . "));
}

TEST(ConsoleRun, OfAnotherReleaseEndsAfterOneKeyBeforeAnythingIsWritten)
{
    ProgramStart start = Start(Plate());
    std::string& text = start.files["fem_solving.txt"];
    text.replace(text.find("3.0"), 3, "3.1");
    start.input = "xy";
    const ProgramRun run = RunProgram(start);
    EXPECT_EQ(GbkToUtf8(run.output), Banner + "Release File Number error!\n");
    EXPECT_EQ(run.error.find("fem_solving.txt:1:28: error: the file is of another release"), 0u) << run.error;
    EXPECT_EQ(run.inputTaken, 1u);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(WrittenResults(run), std::vector<std::string>{});
}

TEST(ConsoleRun, OfANodeOutsideItsTableEndsBeforeAnythingIsWritten)
{
    ModelText model = Plate();
    model.Force(4, {1, 0, 0, 0, 0, 0});
    ProgramStart start = Start(model);
    start.input = "x";
    const ProgramRun run = RunProgram(start);
    EXPECT_EQ(GbkToUtf8(run.output), Banner);
    EXPECT_TRUE(Contains(run.error, "fem_solving.txt:")) << run.error;
    EXPECT_TRUE(Contains(run.error, "error: force 4 uses node 4, but the model has 4 nodes\n")) << run.error;
    EXPECT_EQ(run.inputTaken, 0u);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(WrittenResults(run), std::vector<std::string>{});
}

// A directory of its name stands where a file should be created.
TEST(ConsoleRun, EndsAtAFileThatCannotBeOpenedAfterItsMessageAndOneKey)
{
    const std::string messages[6] = {"文件输出失败!",
                                     "节点位移文件输出失败!",
                                     "文件输出失败!",
                                     "单元节点应力文件输出失败!",
                                     "单元节点应力文件输出失败!",
                                     "节点应力文件输出失败!"};
    for (std::size_t i = 0; i < ResultFiles.size(); ++i) {
        ProgramStart start = Start(test::OneOfEachKind());
        start.input = "xy";
        start.prepare = [&] { std::filesystem::create_directory(ResultFiles[i]); };
        const ProgramRun run = RunProgram(start);
        EXPECT_TRUE(EndsWith(GbkToUtf8(run.output), "\n" + messages[i] + "\n")) << ResultFiles[i];
        EXPECT_EQ(run.inputTaken, 1u) << ResultFiles[i];
        EXPECT_EQ(run.exitCode, 1) << ResultFiles[i];
        EXPECT_FALSE(Contains(run.error, "[Warning!]")) << ResultFiles[i];
        // The files before it are complete, those behind it do not exist.
        EXPECT_EQ(WrittenResults(run), std::vector<std::string>(ResultFiles.begin(), ResultFiles.begin() + long(i)));
    }
}

TEST(ConsoleRun, ReportsAFullDiskOnStandardErrorAndWritesTheOtherFiles)
{
    for (std::size_t i = 0; i < ResultFiles.size(); ++i) {
        ProgramStart start = Start(test::OneOfEachKind());
        start.prepare = [&] { std::filesystem::create_symlink("/dev/full", ResultFiles[i]); };
        const ProgramRun run = RunProgram(start);
        EXPECT_TRUE(Contains(run.error, ResultFiles[i] + ": error: the file could not be written to its end: "
                                                         "No space left on device\n"))
            << run.error;
        EXPECT_EQ(run.exitCode, 0) << ResultFiles[i];
        EXPECT_EQ(WrittenResults(run).size(), ResultFiles.size() - 1) << ResultFiles[i];
    }
}

TEST(ConsoleRun, OfAModelWithoutNodesEndsWithADiagnosticBehindTheDisplacementFile)
{
    const ProgramRun run = RunProgram(Start(ModelText()));
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(EndsWith(
        run.error, "deformation.dxf: error: the model has no nodes, so there is nothing to draw\n"
                   "  expected: NPOIN of 1 or more\n"
                   "  to do:    add the nodes to the model file; if they are there, mend the first place that the\n"
                   "            warnings above name\n"))
        << run.error;
    EXPECT_EQ(WrittenResults(run), (std::vector<std::string>{"structure.dxf", "Node_Dis.txt"}));
}

TEST(ConsoleRun, OfAnUnknownSectionTypeEndsAfterAPauseWhenTheOtherFilesAreWritten)
{
    ModelText model = test::OneOfEachKind();
    model.Beam({1, 2}, {0, 0, 1}, 0, 3, 0);
    ProgramStart start = Start(model);
    start.input = "xy";
    const ProgramRun run = RunProgram(start);
    EXPECT_TRUE(EndsWith(GbkToUtf8(run.output), Banner + "梁截面类型数字错误!\nPress any key to continue . . . "));
    EXPECT_EQ(run.inputTaken, 1u);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_EQ(WrittenResults(run), std::vector<std::string>(ResultFiles.begin(), ResultFiles.end() - 1));
}

// 15,600 equations that all reach up to the first: about 1 GB, in a process whose data may have half of it, a limit
// that shows only when it is reached.
TEST(ConsoleRun, EndsWithADiagnosticWhenMemoryRunsOut)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the address sanitizer needs more address space than any limit leaves";
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    GTEST_SKIP() << "the address sanitizer needs more address space than any limit leaves";
#endif
#endif
    ModelText model;
    model.Material(2e11, 0.3, 1.0);
    model.CSection(0.1, 0.01);
    for (int n = 0; n < 2600; ++n) { model.Node(n, 0, 0); }
    for (int n = 1; n < 2600; ++n) { model.Beam({0, n}, {0, 0, 1}, 0, CSection, 0); }
    ProgramStart start = Start(model);
    start.program = "/bin/sh";
    start.arguments = {"-c", std::string("ulimit -d 500000; exec ") + TARNVEXO_PROGRAM};
    const ProgramRun run = RunProgram(start);
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_TRUE(EndsWith(run.output, "The global stiffness matrix will occupy 0.906645 GB of memory space.\n"));
    EXPECT_EQ(run.error,
              "fem_solving.txt: error: the skyline of the stiffness matrix has 121687800 entries (0.907 GB)\n"
              "  expected: at most what the system gives this program\n"
              "  to do:    number the nodes so that connected nodes have close numbers, or coarsen the mesh\n");
    EXPECT_EQ(WrittenResults(run), std::vector<std::string>{});
}

TEST(ConsoleRun, DoesNotBeginWithArgumentsThatAreNoCommand)
{
    ProgramStart start = Start(Plate());
    start.arguments = {"--fast", "x"};
    start.input = "x";
    const ProgramRun run = RunProgram(start);
    EXPECT_EQ(run.exitCode, 2);
    EXPECT_EQ(run.output, "");
    EXPECT_EQ(run.error, "tarnvexo: error: there is no option \"--fast\"\n"
                         "  expected: --help --version\n"
                         "  to do:    see tarnvexo --help\n");
    EXPECT_EQ(run.inputTaken, 0u);
    EXPECT_EQ(WrittenResults(run), std::vector<std::string>{});
}

} // namespace
} // namespace tarnvexo
