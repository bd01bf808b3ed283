// `tarnvexo view` on the results of an example, with a page that stands in for the viewer.
#include "cli/ViewCommand.h"

#include "app/RunFailure.h"
#include "output/ContourFile.h"
#include "output/ShellStressFiles.h"
#include "support/ChildProcess.h"
#include "support/ProgramRun.h"
#include "support/TemporaryDirectory.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <map>

namespace tarnvexo {
namespace {

namespace fs = std::filesystem;
using test::ChildResult;
using test::RunInChild;
using test::TemporaryDirectory;

const fs::path Case = fs::path(TARNVEXO_SOURCE_DIR) / "tests/cases/stiffened_panel";
constexpr const char* Page = "<html><body></body></html>\n";

std::string FileBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// A directory of results in the current one.
void CopyResults(const std::string& directory)
{
    fs::create_directory(directory);
    for (const char* name : {ContourFileName, ShellStressFileName}) {
        fs::copy_file(Case / "expected" / name, fs::path(directory) / name);
    }
    fs::copy_file(Case / "fem_solving.txt", fs::path(directory) / "fem_solving.txt");
}

// In a process of its own, with the cache in the current directory and no display.
ChildResult View(const ViewCommand& command, const std::function<void()>& prepare = {}, const std::string& page = Page,
                 std::size_t largestInPage = LargestPacketInPage)
{
    return RunInChild([&] {
        setenv("XDG_CACHE_HOME", (fs::current_path() / "cache").c_str(), 1);
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "BROWSER"}) { unsetenv(name); }
        if (prepare) {
            prepare();
        }
        try {
            std::exit(RunViewCommand(command, page, largestInPage));
        } catch (const RunFailure& failure) {
            std::fputs(failure.what(), stderr);
            std::exit(failure.exitCode);
        }
    });
}

ViewCommand QuietView()
{
    ViewCommand command;
    command.result = "run";
    command.quiet = true;
    return command;
}

std::vector<fs::path> CachedPages()
{
    std::vector<fs::path> pages;
    if (fs::exists("cache/tarnvexo")) {
        for (const fs::directory_entry& entry : fs::directory_iterator("cache/tarnvexo")) {
            pages.push_back(entry.path());
        }
    }
    return pages;
}

// A program named xdg-open in front of the search path.
void PutOpener(const std::string& script)
{
    fs::create_directory("programs");
    std::ofstream("programs/xdg-open") << script;
    fs::permissions("programs/xdg-open", fs::perms::owner_all);
    setenv("PATH", (fs::absolute("programs").string() + ":/usr/bin:/bin").c_str(), 1);
    setenv("DISPLAY", ":99", 1);
}

// One that notes what it is to open.
void PutOpener(int exitCode)
{
    PutOpener("#!/bin/sh\necho \"$1\" >opened\nexit " + std::to_string(exitCode) + "\n");
}

TEST(ViewCommand, WritesThePageIntoTheFileThatIsNamed)
{
    const TemporaryDirectory here;
    CopyResults("run");
    ViewCommand command = QuietView();
    command.outputFile = "page.html";
    const ChildResult run = View(command);
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_EQ(run.error, "");
    EXPECT_TRUE(run.output.starts_with("page.html  ")) << run.output;
    const std::string page = FileBytes("page.html");
    EXPECT_TRUE(page.starts_with("<html><body><script type=\"application/x-tarnvexo-result\" id=\"result\">H4sI"));
    EXPECT_TRUE(page.ends_with("</script>\n</body></html>\n"));
    EXPECT_TRUE(CachedPages().empty());
}

TEST(ViewCommand, LeavesAnEarlierPageAsItWasWhenItCannotMakeANewOne)
{
    const TemporaryDirectory here;
    CopyResults("run");
    std::ofstream("page.html") << "earlier";
    std::ofstream("run/" + std::string(ContourFileName)) << "NPOIN=1\n0,0\n";
    ViewCommand command = QuietView();
    command.outputFile = "page.html";
    EXPECT_EQ(View(command).exitCode, ExitFile);
    EXPECT_EQ(FileBytes("page.html"), "earlier");
    EXPECT_EQ(std::distance(fs::directory_iterator("."), fs::directory_iterator()), 2);
}

TEST(ViewCommand, ShowsWhereAContourFileIsDamaged)
{
    const TemporaryDirectory here;
    CopyResults("run");
    std::string text = FileBytes("run/" + std::string(ContourFileName));
    const std::size_t line = text.find('\n') + 1;
    std::ofstream("run/" + std::string(ContourFileName)) << text.replace(line, 1, "x");
    const ChildResult run = View(QuietView());
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_TRUE(run.error.starts_with("run/Tarn+Vexo_AverageStrs.txt:2:1: error: coordinates of node 0: the text does "
                                      "not match the format of the contour file\n"))
        << run.error;
    EXPECT_TRUE(CachedPages().empty());
}

TEST(ViewCommand, OpensAPageThatOnlyTheUserCanRead)
{
    const TemporaryDirectory here;
    CopyResults("run");
    const ChildResult run = View(QuietView(), [] { PutOpener(0); });
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_EQ(run.error, "");
    ASSERT_EQ(CachedPages().size(), 1u);
    EXPECT_EQ(FileBytes("opened"), "file://" + fs::absolute(CachedPages()[0]).string() + "\n");
    EXPECT_EQ(fs::status("cache/tarnvexo").permissions(), fs::perms::owner_all);
}

TEST(ViewCommand, TellsTheAddressWhenNothingCanOpenIt)
{
    const TemporaryDirectory here;
    CopyResults("run");
    const ChildResult noDisplay = View(QuietView());
    EXPECT_EQ(noDisplay.exitCode, ExitFile);
    EXPECT_TRUE(noDisplay.error.starts_with("file://" + fs::absolute(CachedPages().at(0)).string() +
                                            ": error: the page cannot be opened: there is no display"))
        << noDisplay.error;
    const ChildResult noBrowser = View(QuietView(), [] { PutOpener(3); });
    EXPECT_EQ(noBrowser.exitCode, ExitFile);
    EXPECT_NE(noBrowser.error.find("xdg-open found no browser"), std::string::npos) << noBrowser.error;
}

// What is opened, a page that leads to the server, gets page and packet, then interrupts the program that started it.
TEST(ViewCommand, ServesALargeResultUntilItIsInterrupted)
{
    const TemporaryDirectory here;
    CopyResults("run");
    const auto prepare = [] {
        PutOpener("#!" TARNVEXO_PYTHON "\n"
                  "import os, re, signal, sys, urllib.request\n"
                  "def get(address):\n"
                  "    return urllib.request.urlopen(address).read()\n"
                  "try:\n"
                  "    address = re.search(b'0;url=(.*)\">', get(sys.argv[1]))[1].decode()\n"
                  "    open('page', 'wb').write(get(address))\n"
                  "    open('packet', 'wb').write(get(address + 'packet'))\n"
                  "finally:\n"
                  "    os.kill(os.getppid(), signal.SIGINT)\n");
    };
    const ChildResult run = View(QuietView(), prepare, Page, 0);
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_TRUE(run.output.starts_with("http://127.0.0.1:")) << run.output;
    EXPECT_TRUE(run.output.ends_with(", served to this machine until Ctrl-C\n")) << run.output;
    EXPECT_EQ(run.error, "\nended: the page is not served any more\n");
    EXPECT_EQ(FileBytes("page"), "<html><body><script type=\"application/x-tarnvexo-result\" id=\"result\" "
                                 "data-packet=\"packet\"></script>\n</body></html>\n");
    EXPECT_TRUE(FileBytes("packet").starts_with("\x1f\x8b"));
    EXPECT_EQ(CachedPages().size(), 1u);
}

TEST(ViewCommand, OpensNothingWhenToldSo)
{
    const TemporaryDirectory here;
    CopyResults("run");
    ViewCommand command = QuietView();
    command.open = false;
    const ChildResult run = View(command, [] { PutOpener(0); });
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_TRUE(run.output.starts_with("file:///")) << run.output;
    EXPECT_FALSE(fs::exists("opened"));
}

TEST(ViewCommand, RemovesPagesOlderThanADay)
{
    const TemporaryDirectory here;
    CopyResults("run");
    fs::create_directories("cache/tarnvexo");
    for (const char* name : {"old.html", "new.html", "old.txt"}) {
        std::ofstream(fs::path("cache/tarnvexo") / name) << "page";
    }
    for (const char* name : {"old.html", "old.txt"}) {
        fs::last_write_time(fs::path("cache/tarnvexo") / name,
                            fs::file_time_type::clock::now() - std::chrono::hours(25));
    }
    ViewCommand command = QuietView();
    command.open = false;
    EXPECT_EQ(View(command).exitCode, ExitGood);
    EXPECT_FALSE(fs::exists("cache/tarnvexo/old.html"));
    EXPECT_TRUE(fs::exists("cache/tarnvexo/new.html"));
    EXPECT_TRUE(fs::exists("cache/tarnvexo/old.txt"));
}

TEST(ViewCommand, NotesWhatStandsBesideAndDoesNotBelong)
{
    const TemporaryDirectory here;
    CopyResults("run");
    fs::copy_file(fs::path(TARNVEXO_SOURCE_DIR) / "examples/jib/fem_solving.txt", "run/fem_solving.txt",
                  fs::copy_options::overwrite_existing);
    std::ofstream("run/" + std::string(ShellStressFileName)) << "";
    ViewCommand command = QuietView();
    command.outputFile = "page.html";
    const ChildResult run = View(command);
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_NE(run.error.find("run/fem_solving.txt: note: thicknesses, sections, supports and loads are not shown: "
                             "it has "),
              std::string::npos)
        << run.error;
    EXPECT_NE(run.error.find("run/Shell element node stress.txt: note: stresses of the elements themselves are not "
                             "shown: it has 0 quadrilaterals, the result "),
              std::string::npos)
        << run.error;
}

TEST(ViewCommand, RefusesANamedModelThatDoesNotBelong)
{
    const TemporaryDirectory here;
    CopyResults("run");
    ViewCommand command = QuietView();
    command.modelFile = TARNVEXO_SOURCE_DIR "/examples/jib";
    const ChildResult run = View(command);
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_NE(run.error.find("examples/jib/fem_solving.txt: error: "), std::string::npos) << run.error;
}

// Its writer moves the nodes to their centroid and back.
TEST(ViewCommand, TakesRoundOffInTheResultForTheSamePlace)
{
    const TemporaryDirectory here;
    CopyResults("run");
    const std::string file = "run/" + std::string(ContourFileName);
    for (const auto& [firstNode, exitCode] :
         std::map<std::string, int>{{"1.13687e-13,0,0", ExitGood}, {"1.13687e-9,0,0", ExitFile}}) {
        std::string text = FileBytes(Case / "expected" / ContourFileName);
        const std::size_t begin = text.find('\n') + 1;
        text.replace(begin, text.find('\n', begin) - begin, firstNode);
        std::ofstream(file, std::ios::binary) << text;
        ViewCommand command = QuietView();
        command.modelFile = "run/fem_solving.txt";
        command.outputFile = "page.html";
        EXPECT_EQ(View(command).exitCode, exitCode) << firstNode;
    }
}

TEST(ViewCommand, RefusesADirectoryWithoutResults)
{
    const TemporaryDirectory here;
    fs::create_directory("run");
    const ChildResult run = View(QuietView());
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_TRUE(run.error.starts_with("run: error: this directory holds no results: there is no ")) << run.error;
}

TEST(ViewCommand, OfAProgramWithoutTheViewerSaysSo)
{
    const ChildResult run = View(QuietView(), {}, "");
    EXPECT_EQ(run.exitCode, ExitUsage);
    EXPECT_TRUE(run.error.starts_with("tarnvexo view: error: this program was built without the viewer\n"));
}

// The program beside its results, as the console run starts it.
test::ProgramRun RunContour(std::map<std::string, std::string> files, std::vector<std::string> arguments = {})
{
    return test::RunProgram(
        {.program = TARNVEXO_CONTOUR_PROGRAM, .arguments = arguments, .files = std::move(files), .prepare = [] {
             setenv("XDG_CACHE_HOME", (fs::current_path() / "cache").c_str(), 1);
             for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "BROWSER"}) { unsetenv(name); }
         }});
}

TEST(ContourProgram, OfADirectoryWithoutResultsSaysSoInOneMessage)
{
    const test::ProgramRun run = RunContour({});
    EXPECT_EQ(run.output, "");
    if (run.exitCode == ExitUsage) {
        GTEST_SKIP() << "built without the viewer";
    }
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_TRUE(run.error.starts_with(".: error: this directory holds no results: ")) << run.error;
}

TEST(ContourProgram, WithoutADisplaySaysSoInOneMessageAndLeavesStandardOutputAlone)
{
    const test::ProgramRun run = RunContour({{ContourFileName, FileBytes(Case / "expected" / ContourFileName)}});
    EXPECT_EQ(run.output, "");
    if (run.exitCode == ExitUsage) {
        GTEST_SKIP() << "built without the viewer";
    }
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_NE(run.error.find(": error: the page cannot be opened: "), std::string::npos) << run.error;
    EXPECT_EQ(run.error.find("error: "), run.error.rfind("error: ")) << run.error;
    EXPECT_EQ(run.error.find("note: "), std::string::npos) << run.error;
}

TEST(ContourProgram, TakesTheArgumentsOfView)
{
    const test::ProgramRun run = RunContour({}, {"--uot", "x"});
    EXPECT_EQ(run.exitCode, ExitUsage);
    EXPECT_EQ(run.output, "");
    EXPECT_NE(run.error.find("did you mean: --out"), std::string::npos) << run.error;
}

} // namespace
} // namespace tarnvexo
