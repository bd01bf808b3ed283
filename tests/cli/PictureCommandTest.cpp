// `tarnvexo picture` with a page that stands in for the viewer: it posts a fixed picture. Most tests have a script
// stand in for the browser as well.
#include "cli/PictureCommand.h"

#include "app/RunFailure.h"
#include "output/ContourFile.h"
#include "platform/Browser.h"
#include "support/ChildProcess.h"
#include "support/TemporaryDirectory.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <signal.h>

namespace tarnvexo {
namespace {

namespace fs = std::filesystem;
using test::ChildResult;
using test::RunInChild;
using test::TemporaryDirectory;

constexpr const char* PngBegin = "\x89PNG\r\n\x1a\n";

std::string FileBytes(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// Results in run/, temporary files in tmp/, a browser that is this Python script: `address` is that of the page.
class PictureCommandTest : public testing::Test {
protected:
    PictureCommandTest()
    {
        fs::create_directory("run");
        fs::create_directory("tmp");
        fs::copy_file(fs::path(TARNVEXO_SOURCE_DIR) / "tests/cases/stiffened_panel/expected" / ContourFileName,
                      fs::path("run") / ContourFileName);
        command.result = "run";
        command.outputFile = "a.png";
        command.state = "field=SE";
        command.quiet = true;
    }

    void PutBrowser(const std::string& script)
    {
        std::ofstream("browser") << "#!" << TARNVEXO_PYTHON << "\n"
                                 << "import html, os, re, stat, sys, time, subprocess, urllib.request\n"
                                    "start = urllib.request.urlopen(sys.argv[-1]).read().decode()\n"
                                    "address = html.unescape(re.search('content=\"0;url=(.*)\">', start)[1])\n"
                                    "page, view = address.split('#')\n"
                                    "def post(name, body):\n"
                                    "    urllib.request.urlopen(page + name, data=body).read()\n"
                                 << script;
        fs::permissions("browser", fs::perms::owner_all);
        browser = fs::absolute("browser").string();
    }

    ChildResult Draw(const PicturePatience& patience = {}, const std::string& page = "<body></body>")
    {
        return RunInChild([&] {
            setenv("TARNVEXO_BROWSER", browser.c_str(), 1);
            setenv("TMPDIR", fs::absolute("tmp").c_str(), 1);
            try {
                std::exit(RunPictureCommand(command, page, patience));
            } catch (const RunFailure& failure) {
                std::fputs(failure.what(), stderr);
                std::exit(failure.exitCode);
            }
        });
    }

    void ExpectNothingLeft()
    {
        EXPECT_FALSE(fs::exists("a.png"));
        EXPECT_TRUE(fs::is_empty("tmp"));
    }

    TemporaryDirectory here;
    PictureCommand command;
    std::string browser;
};

TEST_F(PictureCommandTest, WritesThePictureThatThePagePosts)
{
    PutBrowser("assert view == 'field=SE&picture=1600x1000', view\n"
               "text = urllib.request.urlopen(page).read()\n"
               "assert b'data-packet=\"packet\"' in text, text\n"
               "assert urllib.request.urlopen(page + 'packet').read()[:2] == b'\\x1f\\x8b'\n"
               "post('picture', b'\\x89PNG\\r\\n\\x1a\\nthe rest')\n"
               "time.sleep(60)\n");
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    EXPECT_EQ(FileBytes("a.png"), PngBegin + std::string("the rest"));
    EXPECT_EQ(run.output, "a.png  1600 x 1000, 16 bytes\n");
    EXPECT_TRUE(fs::is_empty("tmp"));
}

TEST_F(PictureCommandTest, KeepsTheAddressFromOtherUsers)
{
    PutBrowser("word = page.split('/')[3]\n"
               "assert len(word) == 32 and not any(word in text for text in sys.argv), sys.argv\n"
               "directory = os.path.dirname(sys.argv[-1].removeprefix('file://'))\n"
               "assert stat.S_IMODE(os.stat(directory).st_mode) == 0o700\n"
               "post('picture', b'\\x89PNG\\r\\n\\x1a\\n')\n");
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
}

TEST_F(PictureCommandTest, TellsWhatThePageCouldNotDo)
{
    PutBrowser("post('error', b'there is no WebGL')\ntime.sleep(60)\n");
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_TRUE(run.error.find("error: the page could not draw the picture: there is no WebGL\n") != std::string::npos)
        << run.error;
    ExpectNothingLeft();
}

TEST_F(PictureCommandTest, RefusesWhatIsNoPng)
{
    PutBrowser("post('picture', b'GIF89a')\n");
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_NE(run.error.find("is no PNG picture"), std::string::npos) << run.error;
    ExpectNothingLeft();
}

TEST_F(PictureCommandTest, TellsWhatABrowserSaidThatEndedEarly)
{
    PutBrowser("print('cannot open the moon', file=sys.stderr)\nsys.exit(1)\n");
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_NE(run.error.find("error: the browser has ended without a picture\n  it said:  cannot open the moon\n"),
              std::string::npos)
        << run.error;
    ExpectNothingLeft();
}

TEST_F(PictureCommandTest, GivesUpABrowserThatDrawsNothing)
{
    PutBrowser("urllib.request.urlopen(page).read()\ntime.sleep(60)\n");
    PicturePatience patience;
    patience.untilDrawn = std::chrono::seconds(1);
    const ChildResult run = Draw(patience);
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_NE(run.error.find("error: the browser has drawn no picture within 1.0"), std::string::npos) << run.error;
    ExpectNothingLeft();
}

// Sooner than one that draws nothing: it is none. A child in a session of its own, out of reach of a signal to the
// group.
TEST_F(PictureCommandTest, EndsAProgramThatDoesNotAskForThePageWithAllThatItStarted)
{
    const std::string note = fs::absolute("child").string();
    PutBrowser("child = subprocess.Popen(['/bin/sleep', '60'], start_new_session=True)\n"
               "open('" +
               note +
               "', 'w').write(str(child.pid))\n"
               "time.sleep(60)\n");
    PicturePatience patience;
    patience.untilAsked = std::chrono::seconds(5);
    const ChildResult run = Draw(patience);
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_NE(run.error.find("error: the browser has not asked for the page within 5.0"), std::string::npos)
        << run.error;
    ExpectNothingLeft();
    ASSERT_TRUE(fs::exists("child"));
    EXPECT_NE(kill(std::stoi(FileBytes("child")), 0), 0);
}

TEST_F(PictureCommandTest, LeavesNothingWhenItIsInterrupted)
{
    const std::string note = fs::absolute("browser_id").string();
    PutBrowser("import signal\n"
               "open('" +
               note +
               "', 'w').write(str(os.getpid()))\n"
               "os.kill(os.getppid(), signal.SIGINT)\n"
               "time.sleep(60)\n");
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitInterrupted);
    EXPECT_EQ(run.error, "\ninterrupted: no picture was written\n");
    ExpectNothingLeft();
    EXPECT_NE(kill(std::stoi(FileBytes("browser_id")), 0), 0);
}

TEST_F(PictureCommandTest, TellsWhatToInstallWhereThereIsNoBrowser)
{
    browser = "/nowhere/chromium";
    const ChildResult run = Draw();
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_TRUE(run.error.starts_with("tarnvexo picture: error: there is no program \"/nowhere/chromium\", which "
                                      "TARNVEXO_BROWSER names\n"))
        << run.error;
    EXPECT_NE(run.error.find("apt install chromium"), std::string::npos);
    ExpectNothingLeft();
}

// The browser of this system, if there is one, draws with a page of one line.
TEST_F(PictureCommandTest, DrawsInARealBrowser)
{
    browser = platform::FindProgram({"chromium", "chromium-browser", "google-chrome"});
    if (browser.empty()) {
        GTEST_SKIP() << "no browser is installed";
    }
    const ChildResult run =
        Draw({}, "<body><script>\n"
                 "const png = Uint8Array.from([0x89, 0x50, 0x4e, 0x47, 0x0d, 0x0a, 0x1a, 0x0a]);\n"
                 "fetch('packet').then((packet) => packet.ok && location.hash.includes('picture=') &&\n"
                 "  fetch('picture', { method: 'POST', body: png }));\n"
                 "</script></body>");
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    EXPECT_EQ(FileBytes("a.png"), PngBegin);
    EXPECT_TRUE(fs::is_empty("tmp"));
}

} // namespace
} // namespace tarnvexo
