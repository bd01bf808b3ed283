// `tarnvexo` among names, streams and directories that are in its way: files and exit code are right, and it says why.
// Signals, full disks and lack of memory: tests/soak/interrupt_rounds.py.
#include "app/RunFailure.h"
#include "support/ProgramRun.h"

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <unistd.h>

namespace tarnvexo {
namespace {

using test::ProgramRun;
using test::RunProgram;

const std::string Model = TARNVEXO_SOURCE_DIR "/tests/cases/single_quad/fem_solving.txt";
const std::string Solve = "\"" TARNVEXO_PROGRAM "\" solve \"" + Model + "\" -q ";

// A line of the shell in a directory of its own.
ProgramRun Shell(const std::string& command, const std::function<void()>& prepare = {})
{
    return RunProgram({.program = "/bin/sh", .arguments = {"-c", command}, .prepare = prepare});
}

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

TEST(ResultDirectory, MayHaveAnyName)
{
    for (const std::string name :
         {"a b", "结果 目录", "run/", "./a//b/../c", "-dash", "quo'te\"$HOME", "new\nline", "a.unfinished"}) {
        const ProgramRun run = RunProgram({.program = TARNVEXO_PROGRAM,
                                           .arguments = {"solve", Model, "-q", "--output=" + name},
                                           .prepare = [] { std::filesystem::create_directories("a"); }});
        EXPECT_EQ(run.exitCode, ExitGood) << name << "\n" << run.error;
        EXPECT_TRUE(Contains(run.output, "6 written")) << run.output;
        EXPECT_TRUE(run.files.empty()) << name; // nothing beside it
    }
}

TEST(ResultDirectory, MayHaveTheLongestNameAndNoLonger)
{
    EXPECT_EQ(Shell(Solve + "-o " + std::string(255, 'n')).exitCode, ExitGood);
    const ProgramRun run = Shell(Solve + "-o " + std::string(256, 'n'));
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_TRUE(Contains(run.error, "nn: error: the directory for the results cannot be made: File name too long\n"))
        << run.error;
}

TEST(ResultDirectory, CannotBeAFile)
{
    for (const std::string name : {"file", "file/", "file/deeper"}) {
        const ProgramRun run = Shell("echo kept > file; " + Solve + "-o " + name);
        EXPECT_EQ(run.exitCode, ExitFile);
        EXPECT_EQ(run.error.find(name + ": error: the directory for the results cannot be made: "), 0u) << run.error;
        EXPECT_EQ(run.files.at("file"), "kept\n");
    }
}

TEST(ResultDirectory, CannotBeWithoutAName)
{
    const ProgramRun run = Shell(Solve + "-o ''");
    EXPECT_EQ(run.exitCode, ExitUsage);
    EXPECT_EQ(run.error, "tarnvexo solve: error: --output DIR is empty\n"
                         "  expected: a value of at least one character\n"
                         "  to do:    see tarnvexo solve --help\n");
    EXPECT_TRUE(run.files.empty());
}

// The lock is that of the first run; flock(1) stands for it.
TEST(ResultDirectory, IsRefusedWhileAnotherRunWritesIntoIt)
{
    if (Shell("command -v flock").exitCode != 0) {
        GTEST_SKIP() << "flock(1) is not installed";
    }
    const ProgramRun run = Shell("flock . " + Solve);
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_EQ(run.error.find(".: error: another run is writing its results into this directory\n"), 0u) << run.error;
    EXPECT_TRUE(run.files.empty());
}

TEST(ResultDirectory, IsClearedOfUnfinishedFilesWithANote)
{
    const ProgramRun run = Shell("echo half > Node_Dis.txt.1.unfinished; " + Solve);
    EXPECT_EQ(run.exitCode, ExitGood);
    EXPECT_EQ(run.error, ".: note: removed 1 file that a run left unfinished when it was cut off\n");
    EXPECT_EQ(run.files.size(), 6u);
}

// Permissions bind all users but the administrator, as whom the program then does not run here.
ProgramRun SolveAsAUser(const std::string& prepare, const std::string& look)
{
    const std::string user = geteuid() == 0 ? "setpriv --reuid=65534 --regid=65534 --clear-groups " : "";
    return Shell("chmod 755 .; mkdir run; chmod 777 run; " + prepare + "; " + user + Solve + "-o run; code=$?; " +
                 look + "; chmod 755 run; exit $code");
}

bool UsersCanRunTheProgram()
{
    return geteuid() != 0 ||
           Shell("chmod 755 .; setpriv --reuid=65534 --regid=65534 --clear-groups \"" TARNVEXO_PROGRAM "\" info \"" +
                 Model + "\" -q")
                   .exitCode == 0;
}

TEST(ResultDirectory, ThatIsReadOnlyKeepsItsFiles)
{
    if (!UsersCanRunTheProgram()) {
        GTEST_SKIP() << "the program cannot be started as another user than the administrator";
    }
    const ProgramRun run = SolveAsAUser("echo old > run/Node_Dis.txt; chmod 666 run/Node_Dis.txt; chmod 555 run",
                                        "ls run; cat run/Node_Dis.txt");
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_EQ(run.error.find("run/structure.dxf: error: this file was not written: Permission denied\n"), 0u)
        << run.error;
    EXPECT_EQ(run.output, "Node_Dis.txt\nold\n");
}

TEST(ResultDirectory, KeepsAFileThatIsWriteProtectedAndTheOthersWithIt)
{
    if (!UsersCanRunTheProgram()) {
        GTEST_SKIP() << "the program cannot be started as another user than the administrator";
    }
    const ProgramRun run =
        SolveAsAUser("echo old > run/Node_Dis.txt; chmod 444 run/Node_Dis.txt", "ls run; cat run/Node_Dis.txt");
    EXPECT_EQ(run.exitCode, ExitFile);
    EXPECT_EQ(run.error.find("run/Node_Dis.txt: error: this file was not written: the file of this name is "
                             "write-protected\n"),
              0u)
        << run.error;
    EXPECT_EQ(run.output, "Node_Dis.txt\nold\n");
}

// The files stand there all the same.
TEST(StandardOutput, ThatCannotBeWrittenIsAFileErrorAfterTheFilesAreThere)
{
    for (const auto& [redirection, reason] :
         {std::pair(">&-", "Bad file descriptor"), std::pair("> /dev/full", "No space left on device")}) {
        const ProgramRun run = Shell(Solve + "--json report.json " + redirection);
        EXPECT_EQ(run.exitCode, ExitFile);
        EXPECT_EQ(run.error, std::string("standard output: error: the text cannot be written: ") + reason +
                                 "\n  expected: a place that may be written to and has room"
                                 "\n  to do:    name another place\n");
        EXPECT_EQ(run.files.size(), 7u); // the report's too
        EXPECT_TRUE(Contains(run.files.at("report.json"), "}"));
    }
}

TEST(StandardOutput, WhoseReaderHasGoneIsAFileError)
{
    const ProgramRun run = Shell("( " + Solve + "; echo $? > code ) | sleep 0");
    EXPECT_EQ(run.files.at("code"), run.error.empty() ? "0\n" : "4\n"); // the pipe may have taken the report before
    EXPECT_EQ(run.files.size(), 7u);
}

// Without a stream of its number, the first file would get it, and with it the text meant for the stream.
TEST(StandardStreams, ThatAreClosedLeaveTheFilesAsTheyAre)
{
    const ProgramRun open = Shell(Solve);
    ASSERT_EQ(open.files.size(), 6u);
    const ProgramRun quiet = Shell(Solve + "<&- 2>&-");
    EXPECT_EQ(quiet.exitCode, ExitGood);
    EXPECT_EQ(quiet.files, open.files);
    const ProgramRun closed = Shell(Solve + "<&- >&- 2>&-");
    EXPECT_EQ(closed.exitCode, ExitFile);
    EXPECT_EQ(closed.files, open.files);
    const ProgramRun withProgress = Shell("\"" TARNVEXO_PROGRAM "\" solve \"" + Model + "\" <&- 2>&-");
    EXPECT_EQ(withProgress.files, open.files);
}

// nohup lets programs ignore that the terminal has gone.
TEST(Signals, HangUpIsIgnoredWhereTheStarterIgnoresIt)
{
    const ProgramRun run = Shell("trap '' HUP; mkfifo report.json; " + Solve +
                                 "--json report.json & sleep 0.3; kill -HUP $!; cat report.json > /dev/null; wait $!");
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    EXPECT_EQ(run.files.size(), 6u);
}

} // namespace
} // namespace tarnvexo
