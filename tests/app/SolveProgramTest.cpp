// `tarnvexo` with arguments, as a user starts it.
#include "app/SolveDriver.h"
#include "output/ModelFileWriter.h"
#include "refine/GeneratedModels.h"
#include "support/ProgramRun.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"
#include "support/TemporaryDirectory.h"

#include <cmath>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <sstream>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnvexo {
namespace {

using namespace test;

const std::string Examples = TARNVEXO_SOURCE_DIR "/examples/";

ProgramRun Tarnvexo(const std::vector<std::string>& arguments, const std::map<std::string, std::string>& files = {})
{
    return RunProgram({.program = TARNVEXO_PROGRAM, .arguments = arguments, .files = files});
}

std::string FileText(const std::string& name)
{
    std::ifstream file(name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

std::string GeneratedText(const ModelStore& model)
{
    const TemporaryDirectory directory;
    WriteModelFile(model, "model.txt");
    return FileText("model.txt");
}

// The number behind a label of the report.
double Figure(const std::string& report, const std::string& label)
{
    const std::size_t at = report.find("\n  " + label + " ");
    EXPECT_NE(at, std::string::npos) << label << " is not in\n" << report;
    return at == std::string::npos ? NAN : std::strtod(report.c_str() + at + 3 + label.size(), nullptr);
}

// Six displacements per node out of Node_Dis.txt, by the numbers in front of the colons.
std::vector<std::array<double, 6>> Displacements(const std::string& file)
{
    std::vector<std::array<double, 6>> all;
    std::istringstream lines(file);
    for (std::string line; std::getline(lines, line);) {
        const std::size_t colon = line.find(':');
        if (colon == std::string::npos || line.find_first_of("0123456789") > colon) {
            continue;
        }
        std::istringstream numbers(line.substr(colon + 1));
        std::array<double, 6> d;
        for (double& value : d) { numbers >> value; }
        EXPECT_TRUE(numbers) << line;
        EXPECT_EQ(std::strtoul(line.c_str(), nullptr, 10), all.size());
        all.push_back(d);
    }
    return all;
}

TEST(Program, SolvesTheExamples)
{
    for (const std::string name : {"wing", "elements"}) {
        const ProgramRun run = Tarnvexo({"solve", Examples + name, "-o", ".", "--quiet"});
        EXPECT_EQ(run.exitCode, 0) << run.error;
        EXPECT_EQ(run.error, "");
        EXPECT_EQ(run.files.size(), 6u);
        EXPECT_NE(run.output.find("\nSUMMARY\n"), std::string::npos) << run.output;
        EXPECT_GT(Figure(run.output, "strain energy"), 0.0);
    }
}

TEST(Program, DescribesAModelWithoutSolvingIt)
{
    const ProgramRun run = Tarnvexo({"info", Examples + "wing", "--quiet"});
    EXPECT_EQ(run.exitCode, 0) << run.error;
    EXPECT_TRUE(run.files.empty());
    EXPECT_NE(run.output.find("\n  equations "), std::string::npos) << run.output;
}

TEST(Program, NamesItsEnginesAndTheirKernels)
{
    const ProgramRun run = Tarnvexo({"--version"});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_NE(run.output.find("  engines   multifrontal LLᵀ, Highway "), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("            CHOLMOD "), std::string::npos) << run.output;
    EXPECT_NE(run.output.find(", OpenBLAS "), std::string::npos) << run.output;
    EXPECT_NE(run.output.find("            skyline LDLᵀ, Highway "), std::string::npos) << run.output;
}

// A finer mesh is softer, and by a few per cent only when the coarse one was fine enough.
TEST(Program, RefinesAModelWithoutChangingTheStructure)
{
    const ProgramRun coarse = Tarnvexo({"solve", Examples + "wing", "--format", "none", "-q"});
    const ProgramRun refine = Tarnvexo({"refine", Examples + "wing", "-k", "2", "-o", "fine.txt"});
    ASSERT_EQ(refine.exitCode, 0) << refine.error;
    const ProgramRun fine =
        Tarnvexo({"solve", "fine.txt", "--format", "none", "-q"}, {{"fine.txt", refine.files.at("fine.txt")}});
    ASSERT_EQ(fine.exitCode, 0) << fine.error;
    const double before = Figure(coarse.output, "strain energy"), after = Figure(fine.output, "strain energy");
    EXPECT_GT(after, before);
    EXPECT_LT(after, 1.1 * before);
    EXPECT_NEAR(Figure(fine.output, "mass"), Figure(coarse.output, "mass"), 1e-5 * Figure(coarse.output, "mass"));
}

// Which node is which is told by its place: no two share one.
TEST(Program, RenumbersAModelForTheConsoleRun)
{
    const std::string oldModel = RandomModel(0, Supports::ThreeTwoOne).Text();
    const ProgramRun renumber = Tarnvexo({"renumber", "old.txt", "-o", "new.txt"}, {{"old.txt", oldModel}});
    ASSERT_EQ(renumber.exitCode, 0) << renumber.error;
    const auto consoleRun = [](const std::string& model) {
        const ProgramRun run = Tarnvexo({}, {{"fem_solving.txt", model}});
        EXPECT_EQ(run.exitCode, 0) << run.error;
        return Displacements(run.files.at("Node_Dis.txt"));
    };
    const auto placesOf = [](const std::string& model) {
        std::vector<std::string> places; // of the nodes, as written
        std::istringstream lines(model.substr(model.find("NPOIN=")));
        std::string line;
        std::getline(lines, line);
        while (std::getline(lines, line) && line.find("NELEM_S_4ND") == std::string::npos) {
            double x = 0.0, y = 0.0, z = 0.0;
            std::sscanf(line.c_str(), "%*d:%lf,%lf,%lf", &x, &y, &z);
            places.push_back(std::to_string(x) + " " + std::to_string(y) + " " + std::to_string(z));
        }
        return places;
    };
    const std::string newModel = renumber.files.at("new.txt");
    EXPECT_NE(newModel, oldModel);
    const std::vector<std::array<double, 6>> before = consoleRun(oldModel), after = consoleRun(newModel);
    const std::vector<std::string> oldPlaces = placesOf(oldModel), newPlaces = placesOf(newModel);
    ASSERT_EQ(before.size(), oldPlaces.size());
    ASSERT_EQ(after.size(), newPlaces.size());
    std::map<std::string, std::size_t> newNumber;
    for (std::size_t n = 0; n < newPlaces.size(); ++n) { newNumber[newPlaces[n]] = n; }
    ASSERT_EQ(newNumber.size(), oldPlaces.size());
    double largest[2] = {}; // translation, rotation
    for (const auto& d : before) {
        for (int k = 0; k < 6; ++k) { largest[k / 3] = std::max(largest[k / 3], std::fabs(d[k])); }
    }
    for (std::size_t n = 0; n < oldPlaces.size(); ++n) {
        for (int k = 0; k < 6; ++k) {
            EXPECT_NEAR(before[n][k], after[newNumber.at(oldPlaces[n])][k], 1e-5 * largest[k / 3]) << n << ", " << k;
        }
    }
}

TEST(Program, EndsWithAMessageForAFaultOfEachKind)
{
    EXPECT_EQ(Tarnvexo({"solve", "nothing.txt"}).exitCode, ExitFile);
    EXPECT_EQ(Tarnvexo({"solve", "m.txt", "-q"}, {{"m.txt", "no model"}}).exitCode, ExitBadModel);
    EXPECT_EQ(Tarnvexo({"solve"}).exitCode, ExitUsage);
    EXPECT_EQ(Tarnvexo({"solve", Examples + "elements", "-q", "-o", "/proc/self/task"}).exitCode, ExitFile);
}

// check tells on standard output, solve on standard error; neither writes a file.
TEST(Program, RefusesAModelThatNothingBalancesWithEveryCommandThatLooksAtIt)
{
    const std::map<std::string, std::string> files = {{"m.txt", PulledApart().Text()}};
    for (const std::string command : {"check", "info", "solve"}) {
        const ProgramRun run = Tarnvexo({command, "m.txt", "-q"}, files);
        EXPECT_EQ(run.exitCode, ExitBadModel) << command;
        EXPECT_EQ(run.files.size(), 1u) << command;
        EXPECT_NE((command == "solve" ? run.error : run.output).find("unbalanced-part"), std::string::npos) << command;
    }
}

// Two plates that a foil joins: no rule of the model forbids it, and the results would be noise.
TEST(Program, EndsAtAMechanismWithTheOldResultsAsTheyWere)
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Thickness(0.1);
    model.Thickness(1e-13);
    for (int i = 0; i <= 3; ++i) {
        model.Node(i, 0.0, 0.1 * (i % 2));
        model.Node(i, 1.0, 0.1 * (i % 2));
    }
    for (int e = 0; e < 3; ++e) { model.Quad({2 * e, 2 * e + 2, 2 * e + 3, 2 * e + 1}, 0, e == 1 ? 1 : 0); }
    model.Force(0, {0.0, 0.0, 1000.0, 0.0, 0.0, 0.0});
    std::map<std::string, std::string> files = {{"m.txt", model.Text()}};
    for (const char* name : {"structure.dxf", "Node_Dis.txt", "deformation.dxf", "Shell element node stress.txt",
                             "Shell element average node stress.txt", "Tarn+Vexo_AverageStrs.txt"}) {
        files[name] = std::string("old ") + name;
    }
    EXPECT_EQ(Tarnvexo({"check", "m.txt"}, files).exitCode, ExitGood);
    for (const std::string solver : {"sparse", "skyline"}) {
        const ProgramRun run = Tarnvexo({"solve", "m.txt", "--solver", solver}, files);
        EXPECT_EQ(run.exitCode, ExitNumerical);
        EXPECT_NE(run.error.find("\nm.txt: error: the stiffness is not positive definite: "), std::string::npos)
            << run.error;
        EXPECT_NE(run.error.find("\n    cause:    four-node shell 1 gives way: its thickness 1e-13 is next to nothing "
                                 "beside 0.1 there\n"),
                  std::string::npos)
            << run.error;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(run.files, files) << solver;
    }
}

TEST(Program, ChecksTheExamples)
{
    for (const std::string name : {"wing", "elements", "midship", "jib"}) {
        const ProgramRun run = Tarnvexo({"check", Examples + name});
        EXPECT_EQ(run.exitCode, ExitGood) << run.output;
        EXPECT_EQ(run.error.find("[1/3]   read "), 0u) << run.error;
        EXPECT_NE(run.output.find("\n  verdict               ready to solve"), std::string::npos) << run.output;
    }
}

TEST(Program, TakesNoRuleThatIsNotThere)
{
    EXPECT_EQ(Tarnvexo({"check", Examples + "wing", "--rule", "wraping=off"}).exitCode, ExitUsage);
    EXPECT_EQ(Tarnvexo({"check", "--rules"}).exitCode, ExitGood);
    EXPECT_EQ(Tarnvexo({"check", "-"}).exitCode, ExitUsage);
}

// Whether an address space limit can be set for the program: the address sanitizer needs more than any limit leaves.
bool AddressesCanBeLimited()
{
#if defined(__SANITIZE_ADDRESS__)
    return false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
    return false;
#else
    return true;
#endif
#else
    return true;
#endif
}

// In a process that may have so many addresses, as a batch system sets it; ended after a minute.
ProgramRun RunWithin(int kilobytes, const std::string& arguments, const std::string& model)
{
    const std::string command =
        "ulimit -v " + std::to_string(kilobytes) + "; exec timeout 60 \"" TARNVEXO_PROGRAM "\" " + arguments;
    return RunProgram({.program = "/bin/sh", .arguments = {"-c", command}, .files = {{"model.txt", model}}});
}

ProgramRun SolveWithin(int kilobytes, const std::string& options, const std::string& model)
{
    return RunWithin(kilobytes, "solve model.txt --threads 2 --format none " + options, model);
}

// Room for the model and the libraries, but not for the factor.
TEST(Program, RefusesWhatMemoryDoesNotHoldBeforeTheWorkBegins)
{
    if (!AddressesCanBeLimited()) {
        GTEST_SKIP();
    }
    const ProgramRun run = SolveWithin(450000, "--factor memory", GeneratedText(StiffenedPlateModel(120000)));
    EXPECT_EQ(run.exitCode, ExitNumerical) << run.error;
    EXPECT_NE(run.error.find("model.txt: error: to be solved, the model needs "), std::string::npos) << run.error;
    EXPECT_NE(run.error.find("\n  most of it: the factor of its equations, "), std::string::npos) << run.error;
    EXPECT_NE(run.error.find("\n  expected: at most "), std::string::npos) << run.error;
    EXPECT_EQ(run.error.find("assemble"), std::string::npos) << run.error;
}

TEST(Program, KeepsTheFactorOnDiskWhereMemoryDoesNotHoldIt)
{
    if (!AddressesCanBeLimited()) {
        GTEST_SKIP();
    }
    const ProgramRun run = SolveWithin(450000, "", GeneratedText(StiffenedPlateModel(120000)));
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    EXPECT_NE(run.output.find("goes to a scratch file in ."), std::string::npos) << run.output;
    EXPECT_NE(run.output.find(", on disk in ."), std::string::npos) << run.output;
    EXPECT_EQ(run.files.size(), 1u) << "something stayed beside the model";
}

// A shell's limit: -S the one that a program may raise, -H that of its user.
ProgramRun SolveWithStack(const char* limits)
{
    const std::string command =
        std::string(limits) + "; exec \"" TARNVEXO_PROGRAM "\" solve " + Examples + "elements --format none -q";
    return RunProgram({.program = "/bin/sh", .arguments = {"-c", command}});
}

TEST(Program, RaisesTheLimitOfItsStackWhereItMay)
{
    const ProgramRun run = SolveWithStack("ulimit -S -s 100");
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
}

TEST(Program, RefusesAStackThatIsTooSmall)
{
    const ProgramRun run = SolveWithStack("ulimit -s 100");
    EXPECT_EQ(run.exitCode, ExitNumerical);
    EXPECT_EQ(run.error, "tarnvexo: error: its stack may have only 102 kB\n"
                         "  expected: 1.05 MB, or no limit\n"
                         "  to do:    raise the limit, in a shell by ulimit -s 8192, and run again\n");
}

TEST(Program, TellsWithoutSolvingThatTheFactorGoesToDisk)
{
    if (!AddressesCanBeLimited()) {
        GTEST_SKIP();
    }
    const ProgramRun run = RunWithin(450000, "info model.txt", GeneratedText(StiffenedPlateModel(120000)));
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    EXPECT_NE(run.output.find("on disk: memory is too small"), std::string::npos) << run.output;
    EXPECT_EQ(run.output.find("refuses"), std::string::npos) << run.output;
}

// The skyline, which auto takes for small models, keeps its factor in memory.
TEST(Program, TakesTheSparseEngineForASmallModelWhoseFactorIsWantedOnDisk)
{
    const ProgramRun run = Tarnvexo({"solve", Examples + "wing", "--factor", "disk", "--format", "none"});
    EXPECT_EQ(run.exitCode, ExitGood) << run.error;
    EXPECT_NE(run.output.find("multifrontal"), std::string::npos) << run.output;
    EXPECT_NE(run.output.find(", on disk in ."), std::string::npos) << run.output;
}

TEST(Program, SaysWhenTheDirectoryTakesNoScratchFile)
{
    const std::string model = GeneratedText(StiffenedPlateModel(4000));
    const ProgramRun run =
        RunProgram({.program = TARNVEXO_PROGRAM,
                    .arguments = {"solve", "model.txt", "--factor", "disk", "--format", "none", "-o", "not-there"},
                    .files = {{"model.txt", model}}});
    EXPECT_EQ(run.exitCode, ExitFile) << run.error;
    EXPECT_NE(run.error.find("not-there: error: the scratch file for the factor of the equations failed: "),
              std::string::npos)
        << run.error;
}

TEST(Program, KeepsNoFactorOfCholmodOnDisk)
{
    const ProgramRun run = Tarnvexo({"solve", Examples + "wing", "--solver", "cholmod", "--factor", "disk"});
    EXPECT_EQ(run.exitCode, ExitUsage) << run.error;
    EXPECT_NE(run.error.find("this solver cannot keep its factor on disk (CHOLMOD "), std::string::npos) << run.error;
}

// OpenBLAS waits for ever when it finds no room for a buffer.
TEST(Program, SolvesOrRefusesWhateverTheLimitOfMemory)
{
    if (!AddressesCanBeLimited()) {
        GTEST_SKIP();
    }
    const std::string model = GeneratedText(StiffenedPlateModel(30000));
    for (const std::string options : {"--solver cholmod", "--solver sparse"}) {
        for (int kilobytes = 200000; kilobytes <= 800000; kilobytes += 50000) {
            const int exitCode = SolveWithin(kilobytes, options, model).exitCode;
            EXPECT_TRUE(exitCode == ExitGood || exitCode == ExitBadModel || exitCode == ExitNumerical)
                << exitCode << " within " << kilobytes << " kB, " << options;
        }
    }
}

std::string UnfinishedName(const std::string& file, pid_t process)
{
    return file + "." + std::to_string(process) + ".unfinished";
}

// Starts the program in the current directory; its report goes nowhere, standard error into error.txt. When a file is
// named, its unfinished form is there already, as a pipe.
pid_t Start(const std::vector<std::string>& arguments, const std::string& pipedFile = {})
{
    std::vector<char*> words = {const_cast<char*>(TARNVEXO_PROGRAM)};
    for (const std::string& argument : arguments) { words.push_back(const_cast<char*>(argument.c_str())); }
    words.push_back(nullptr);
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        dup2(open("error.txt", O_WRONLY | O_CREAT | O_TRUNC, 0600), STDERR_FILENO);
        if (!pipedFile.empty()) {
            mkfifo(UnfinishedName(pipedFile, getpid()).c_str(), 0600);
        }
        execv(words[0], words.data());
        _exit(127);
    }
    return child;
}

int ExitCodeOf(pid_t child)
{
    int status = 0;
    while (waitpid(child, &status, 0) < 0) {}
    return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

bool AnythingUnfinished()
{
    for (const auto& entry : std::filesystem::directory_iterator(".")) {
        if (entry.path().string().find(".unfinished") != std::string::npos) {
            return true;
        }
    }
    return false;
}

// Interrupts the program in the midst of writing a file: that is a pipe, read no further than its first byte. Returns
// the exit code.
int InterruptWriting(const std::vector<std::string>& arguments, const std::string& file, int signal)
{
    const pid_t child = Start(arguments, file);
    const std::string pipe = UnfinishedName(file, child);
    int reader = -1;
    char byte = 0;
    while (reader < 0 || read(reader, &byte, 1) != 1) {
        int status = 0;
        if (waitpid(child, &status, WNOHANG) != 0) {
            ADD_FAILURE() << "the program ended before it wrote " << file;
            return -1;
        }
        if (reader < 0) {
            reader = open(pipe.c_str(), O_RDONLY | O_NONBLOCK);
        }
        usleep(1000);
    }
    kill(child, signal);
    const int exitCode = ExitCodeOf(child);
    close(reader);
    return exitCode;
}

TEST(Program, InterruptedWhileItWritesLeavesNothingUnfinished)
{
    for (const int signal : {SIGINT, SIGTERM}) {
        const TemporaryDirectory directory;
        WriteModelFile(StiffenedPlateModel(12000), "model.txt");
        EXPECT_EQ(InterruptWriting({"solve", "model.txt", "-q"}, "./Node_Dis.txt", signal), ExitInterrupted);
        EXPECT_FALSE(AnythingUnfinished());
        EXPECT_FALSE(std::filesystem::exists("Node_Dis.txt"));
        EXPECT_FALSE(std::filesystem::exists("structure.dxf")); // had been complete, but the run was not
        EXPECT_EQ(FileText("error.txt"), "\ninterrupted: no results were written\n");
    }
}

TEST(Program, InterruptedWhileItWritesAModelKeepsTheOldOne)
{
    const TemporaryDirectory directory;
    WriteModelFile(StiffenedPlateModel(12000), "model.txt");
    const std::string before = FileText("model.txt");
    for (const std::vector<std::string>& arguments :
         {std::vector<std::string>{"renumber", "model.txt", "-o", "model.txt"},
          std::vector<std::string>{"refine", "model.txt", "-k", "2", "-o", "model.txt"}}) {
        EXPECT_EQ(InterruptWriting(arguments, "model.txt", SIGINT), ExitInterrupted);
        EXPECT_FALSE(AnythingUnfinished());
        EXPECT_TRUE(FileText("model.txt") == before);
        EXPECT_EQ(FileText("error.txt"), "\ninterrupted: no results were written\n");
    }
}

// The report goes into a pipe when the result files have their names.
TEST(Program, InterruptedBehindTheResultFilesSaysThatTheyAreThere)
{
    const TemporaryDirectory directory;
    WriteModelFile(StiffenedPlateModel(3000), "model.txt");
    ASSERT_EQ(mkfifo("report.json", 0600), 0);
    const pid_t child = Start({"solve", "model.txt", "-q", "--json", "report.json"});
    while (!std::filesystem::exists("structure.dxf")) {
        ASSERT_EQ(waitpid(child, nullptr, WNOHANG), 0);
        usleep(1000);
    }
    kill(child, SIGINT); // nobody reads the pipe: the program is waiting for that
    EXPECT_EQ(ExitCodeOf(child), ExitInterrupted);
    EXPECT_EQ(FileText("error.txt"), "\ninterrupted: the files written so far are complete\n");
    EXPECT_FALSE(AnythingUnfinished());
}

// Without room for the new file the only copy stays.
TEST(Program, WritesModelsWholeOrNotAtAll)
{
    const std::string model = GeneratedText(StiffenedPlateModel(12000));
    for (const std::string command : {"renumber", "refine -k 2"}) {
        const ProgramRun run = RunProgram(
            {.program = "/bin/sh",
             .arguments = {"-c", "trap '' XFSZ; ulimit -f 20; exec \"" TARNVEXO_PROGRAM "\" " + command + " m -o m"},
             .files = {{"m", model}}});
        EXPECT_EQ(run.exitCode, ExitFile);
        EXPECT_EQ(run.error, "m: error: this file was not written: File too large\n"
                             "  expected: room for the file\n"
                             "  to do:    make room or name another place, then run again\n");
        EXPECT_EQ(run.files.size(), 1u);
        EXPECT_TRUE(run.files.at("m") == model);
    }
}

TEST(Program, RenumbersAModelInPlace)
{
    const std::string model = RandomModel(0, Supports::ThreeTwoOne).Text();
    const ProgramRun apart = Tarnvexo({"renumber", "m", "-o", "n"}, {{"m", model}});
    const ProgramRun inPlace = Tarnvexo({"renumber", "m", "-o", "m"}, {{"m", model}});
    EXPECT_EQ(inPlace.exitCode, ExitGood) << inPlace.error;
    EXPECT_EQ(inPlace.files.size(), 1u);
    EXPECT_EQ(inPlace.files.at("m"), apart.files.at("n"));
}

TEST(Program, RefusesToRefineBeyondWhatTheFileCounts)
{
    const ProgramRun run = Tarnvexo({"refine", Examples + "wing", "-k", "1000", "-o", "fine.txt"});
    EXPECT_EQ(run.exitCode, ExitBadModel) << run.error;
    EXPECT_NE(run.error.find(": error: refined by 1000, the model would have "), std::string::npos) << run.error;
    EXPECT_TRUE(run.files.empty());
}

// Whenever the signal comes, in reading, ordering, factorising or writing: the run is over with one code or the other.
TEST(Program, InterruptedAnywhereLeavesNothingUnfinished)
{
    const TemporaryDirectory directory;
    WriteModelFile(StiffenedPlateModel(30000), "model.txt");
    for (const int signal : {SIGINT, SIGTERM}) {
        for (int milliseconds = 2; milliseconds < 400; milliseconds *= 2) {
            const pid_t child = Start({"solve", "model.txt", "-q", "--json", "report.json"});
            usleep(1000u * static_cast<unsigned>(milliseconds));
            kill(child, signal);
            const int exitCode = ExitCodeOf(child);
            // Before main has set its handlers, the signal itself ends the process.
            EXPECT_TRUE(exitCode == ExitInterrupted || exitCode == ExitGood || exitCode == -signal)
                << exitCode << " after " << milliseconds << " ms";
            EXPECT_FALSE(AnythingUnfinished());
        }
    }
}

} // namespace
} // namespace tarnvexo
