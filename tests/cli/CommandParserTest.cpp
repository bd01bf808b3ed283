#include "cli/CommandParser.h"

#include "solver/SparseEngine.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace tarnvexo {
namespace {

Command Parse(const std::vector<std::string>& arguments)
{
    return ParseCommandLine(arguments, [] { return std::string("tarnvexo 1.2.3\n"); });
}

SolveCommand ParseSolve(const std::vector<std::string>& arguments)
{
    const Command command = Parse(arguments);
    if (const auto* message = std::get_if<MessageCommand>(&command)) {
        ADD_FAILURE() << message->error;
        return {};
    }
    return std::get<SolveCommand>(command);
}

MessageCommand ParseMessage(const std::vector<std::string>& arguments)
{
    const Command command = Parse(arguments);
    const auto* message = std::get_if<MessageCommand>(&command);
    EXPECT_NE(message, nullptr);
    return message != nullptr ? *message : MessageCommand();
}

// Standard error of a command line that must be refused.
std::string Fault(const std::vector<std::string>& arguments)
{
    const MessageCommand message = ParseMessage(arguments);
    EXPECT_EQ(message.exitCode, ExitUsage);
    EXPECT_EQ(message.output, "");
    return message.error;
}

TEST(SolveArguments, HaveTheseDefaults)
{
    const SolveCommand command = ParseSolve({"solve", "wing.txt"});
    EXPECT_EQ(command.solve.modelFile, "wing.txt");
    EXPECT_EQ(command.solve.outputDirectory, ".");
    EXPECT_EQ(command.solve.solver, SolverKind::Automatic);
    EXPECT_EQ(command.solve.balance, BalanceKind::Exact);
    EXPECT_EQ(command.solve.displacements, DisplacementKind::MassOrthogonal);
    EXPECT_EQ(command.solve.formats, (ResultFormats{ResultFormat::Text}));
    EXPECT_EQ(command.threads, 0);
    EXPECT_EQ(command.units, UnitSystem::Unnamed);
    EXPECT_EQ(command.jsonFile, "");
    EXPECT_FALSE(command.quiet);
}

TEST(SolveArguments, ReachEveryOption)
{
    const SolveCommand command =
        ParseSolve({"solve", "-o", "run", "--threads=3", "--solver", "skyline", "--balance", "classic",
                    "--displacements", "held", "--units", "mm-t-s", "--format", "none", "--json", "-", "-q", "wing"});
    EXPECT_EQ(command.solve.modelFile, "wing");
    EXPECT_EQ(command.solve.outputDirectory, "run");
    EXPECT_EQ(command.solve.solver, SolverKind::Skyline);
    EXPECT_EQ(command.solve.balance, BalanceKind::Classic);
    EXPECT_EQ(command.solve.displacements, DisplacementKind::Held);
    EXPECT_EQ(command.solve.formats, ResultFormats{});
    EXPECT_EQ(command.threads, 3);
    EXPECT_EQ(command.units, UnitSystem::MillimetreTonneSecond);
    EXPECT_EQ(command.jsonFile, "-");
    EXPECT_TRUE(command.quiet);
}

TEST(SolveArguments, GivenTwiceCountAsGivenLast)
{
    EXPECT_EQ(ParseSolve({"solve", "m", "--threads", "2", "--threads", "5"}).threads, 5);
}

TEST(SolveArguments, TakeChoicesInAnyCase)
{
    EXPECT_EQ(ParseSolve({"solve", "m", "--units", "si"}).units, UnitSystem::SI);
    EXPECT_EQ(ParseSolve({"solve", "m", "--solver", "Sparse"}).solve.solver, SolverKind::Sparse);
}

TEST(SolveArguments, TakeFormatsSeveralTimesOrWithCommas)
{
    EXPECT_EQ(ParseSolve({"solve", "m", "--format", "text,text"}).solve.formats, (ResultFormats{ResultFormat::Text}));
    EXPECT_EQ(ParseSolve({"solve", "m", "--format", "vtu,GLTF", "--format", "csv,json"}).solve.formats,
              (ResultFormats{ResultFormat::Vtu, ResultFormat::Gltf, ResultFormat::Csv, ResultFormat::Json}));
    EXPECT_EQ(ParseSolve({"solve", "--format", "none", "--format", "none", "m"}).solve.formats, ResultFormats{});
    EXPECT_EQ(Fault({"solve", "m", "--format", "text", "--format", "none"}),
              "tarnvexo solve: error: --format cannot be \"none\" together with another format\n"
              "  expected: none alone, or the formats that are wanted\n"
              "  to do:    see tarnvexo solve --help\n");
}

TEST(SolveArguments, MayNameAModelLikeACommandOrAnOption)
{
    EXPECT_EQ(ParseSolve({"solve", "info"}).solve.modelFile, "info");
    EXPECT_EQ(ParseSolve({"solve", "--", "-odd"}).solve.modelFile, "-odd");
}

TEST(InfoArguments, AreModelUnitsJsonAndQuiet)
{
    const auto command = std::get<InfoCommand>(Parse({"info", "m", "--units", "SI", "--json", "a.json", "--quiet"}));
    EXPECT_EQ(command.info.modelFile, "m");
    EXPECT_EQ(command.units, UnitSystem::SI);
    EXPECT_EQ(command.jsonFile, "a.json");
    EXPECT_TRUE(command.quiet);
}

TEST(CheckArguments, AreModelRulesUnitsJsonQuietAndVerbose)
{
    const auto command = std::get<CheckCommand>(
        Parse({"check", "m", "--units", "SI", "--json", "a.json", "-q", "-v", "--rule", "warping=5"}));
    EXPECT_EQ(command.check.modelFile, "m");
    EXPECT_EQ(command.check.rules.LimitOf(RuleId::Warping), 5.0);
    EXPECT_EQ(command.units, UnitSystem::SI);
    EXPECT_EQ(command.jsonFile, "a.json");
    EXPECT_TRUE(command.quiet);
    EXPECT_TRUE(command.verbose);
}

TEST(RuleArguments, ReachSolveInfoAndCheckAlike)
{
    const std::vector<std::string> options = {"m", "--rule", "warping=error,free-edge=off", "--rule", "warping=7"};
    const auto arguments = [&](const char* command) {
        std::vector<std::string> all = {command};
        all.insert(all.end(), options.begin(), options.end());
        return all;
    };
    for (const RuleBook& rules : {std::get<SolveCommand>(Parse(arguments("solve"))).solve.rules,
                                  std::get<InfoCommand>(Parse(arguments("info"))).info.rules,
                                  std::get<CheckCommand>(Parse(arguments("check"))).check.rules}) {
        EXPECT_EQ(rules.SeverityOf(RuleId::Warping), Severity::Error);
        EXPECT_EQ(rules.LimitOf(RuleId::Warping), 7.0);
        EXPECT_FALSE(rules.IsOn(RuleId::FreeEdge));
    }
}

TEST(RuleArguments, ListAllRulesAsTheyAreSetWithoutAModel)
{
    for (const char* command : {"solve", "info", "check"}) {
        const MessageCommand message = ParseMessage({command, "--rules", "--rule", "warping=off,warping=7"});
        EXPECT_EQ(message.exitCode, ExitGood);
        EXPECT_EQ(message.error, "");
        EXPECT_NE(message.output.find("\n  off      warping                      7  "), std::string::npos)
            << message.output;
        for (std::size_t i = 0; i < RuleCount; ++i) {
            EXPECT_NE(message.output.find(" " + std::string(RuleOf(static_cast<RuleId>(i)).name) + " "),
                      std::string::npos);
        }
    }
    EXPECT_EQ(Fault({"--rules"}).find("tarnvexo: error: there is no option \"--rules\" without a command\n"), 0u);
}

TEST(RuleArguments, ThatCannotBeAreFaultsOfUsage)
{
    EXPECT_EQ(Fault({"check", "m", "--rule", "wraping=off"}),
              "tarnvexo check: error: --rule: there is no rule \"wraping\"\n"
              "  expected: a name that tarnvexo check --rules lists\n"
              "  did you mean: warping\n"
              "  to do:    see tarnvexo check --help\n");
}

TEST(RefineArguments, AreModelPartsOutputAndNoRenumber)
{
    const auto command = std::get<RefineCommand>(Parse({"refine", "m", "-k", "3", "-o", "fine.txt"}));
    EXPECT_EQ(command.model, "m");
    EXPECT_EQ(command.k, 3);
    EXPECT_EQ(command.outputFile, "fine.txt");
    EXPECT_TRUE(command.renumber);
    EXPECT_FALSE(std::get<RefineCommand>(Parse({"refine", "m", "-k3", "-o", "f", "--no-renumber"})).renumber);
}

TEST(RenumberArguments, AreModelAndOutput)
{
    const auto command = std::get<RenumberCommand>(Parse({"renumber", "-o", "new.txt", "m"}));
    EXPECT_EQ(command.model, "m");
    EXPECT_EQ(command.outputFile, "new.txt");
}

TEST(ViewArguments, HaveTheseDefaults)
{
    const auto command = std::get<ViewCommand>(Parse({"view"}));
    EXPECT_EQ(command.result, ".");
    EXPECT_EQ(command.modelFile, "");
    EXPECT_EQ(command.outputFile, "");
    EXPECT_EQ(command.view, "");
    EXPECT_TRUE(command.open);
    EXPECT_FALSE(command.quiet);
    EXPECT_FALSE(command.alwaysFile);
    EXPECT_TRUE(command.tell);
}

TEST(ViewArguments, ReachEveryOption)
{
    const auto command = std::get<ViewCommand>(
        Parse({"view", "run", "--model", "wing", "--out", "p.html", "--no-open", "--view", "field=U&view=top", "-q"}));
    EXPECT_EQ(command.result, "run");
    EXPECT_EQ(command.modelFile, "wing");
    EXPECT_EQ(command.outputFile, "p.html");
    EXPECT_EQ(command.view, "field=U&view=top");
    EXPECT_FALSE(command.open);
    EXPECT_TRUE(command.quiet);
}

TEST(PictureArguments, BecomeTheStateInThePagesAddress)
{
    EXPECT_NE(Fault({"picture", "--out", "a.jpg"}).find("expected: a name that ends in .png"), std::string::npos);
    const auto usual = std::get<PictureCommand>(Parse({"picture", "--out", "a.png"}));
    EXPECT_EQ(usual.result, ".");
    EXPECT_EQ(usual.outputFile, "a.png");
    EXPECT_EQ(usual.state, "field=SE&face=larger&view=iso&deformed=5%25");
    EXPECT_EQ(usual.width, 1600);
    EXPECT_EQ(usual.height, 1000);
    const auto other = std::get<PictureCommand>(Parse(
        {"picture", "run",     "--out",      "a.png", "--field", "txy",     "--face",      "viewed",  "--view", "TOP",
         "--size",  "640x480", "--deformed", "true",  "--dark",  "--state", "#edges=mesh", "--model", "wing",   "-q"}));
    EXPECT_EQ(other.result, "run");
    EXPECT_EQ(other.modelFile, "wing");
    EXPECT_EQ(other.state, "field=TXY&face=viewed&view=top&deformed=true&dark=1&edges=mesh");
    EXPECT_NE(std::get<PictureCommand>(Parse({"picture", "--out", "a.png", "--deformed", "1e+3"}))
                  .state.find("&deformed=1e%2B3"),
              std::string::npos);
    EXPECT_EQ(other.width, 640);
    EXPECT_EQ(other.height, 480);
    EXPECT_TRUE(other.quiet);
}

TEST(PictureArguments, ThatCannotBeAreFaultsOfUsage)
{
    for (const char* size : {"1600", "x", "1600x", "x1000", "15x1000", "1600x8193", "1600x1000x3", "1600X1000"}) {
        EXPECT_NE(Fault({"picture", "--out", "a.png", "--size", size}).find("expected: width and height"),
                  std::string::npos)
            << size;
    }
    for (const char* deformed : {"much", "5%%", "-1", "%", "nan", "5 %"}) {
        EXPECT_NE(Fault({"picture", "--out", "a.png", "--deformed", deformed}).find("expected: 5% or another share"),
                  std::string::npos)
            << deformed;
    }
    EXPECT_NE(Fault({"picture", "--out", "a.png", "--field", "SEE"}).find("did you mean: SE"), std::string::npos);
    EXPECT_NE(Fault({"picture", "run"}).find("--out FILE is missing"), std::string::npos);
    EXPECT_NE(Fault({"picture", "run", "run2", "--out", "a.png"}).find("expected: one RESULT"), std::string::npos);
    EXPECT_NE(Fault({"view", "--rules"}).find("there is no option"), std::string::npos);
}

TEST(UsageFault, NamesTheCommandThatWasMeant)
{
    EXPECT_EQ(Fault({"sovle", "m"}), "tarnvexo: error: there is no command \"sovle\"\n"
                                     "  expected: solve, info, check, refine, renumber, view, picture\n"
                                     "  did you mean: solve\n"
                                     "  to do:    see tarnvexo --help\n");
    EXPECT_EQ(Fault({"xyzzy"}), "tarnvexo: error: there is no command \"xyzzy\"\n"
                                "  expected: solve, info, check, refine, renumber, view, picture\n"
                                "  to do:    see tarnvexo --help\n");
    EXPECT_EQ(Fault({""}).find("tarnvexo: error: a command is missing\n"), 0u);
}

TEST(UsageFault, NamesTheOptionThatWasMeant)
{
    const std::string solveOptions =
        "  expected: --help --output --format --balance --displacements --solver --factor --threads "
        "--rule --rules --report --units --json --quiet\n";
    EXPECT_EQ(Fault({"solve", "m", "--thread", "4"}), "tarnvexo solve: error: there is no option \"--thread\"\n" +
                                                          solveOptions +
                                                          "  did you mean: --threads\n"
                                                          "  to do:    see tarnvexo solve --help\n");
    EXPECT_NE(Fault({"solve", "-treads", "x"}).find("did you mean"), std::string::npos);
    EXPECT_EQ(Fault({"--fast", "x"}), "tarnvexo: error: there is no option \"--fast\"\n"
                                      "  expected: --help --version\n"
                                      "  to do:    see tarnvexo --help\n");
}

TEST(UsageFault, SaysWhatIsMissing)
{
    EXPECT_EQ(Fault({"solve"}), "tarnvexo solve: error: MODEL is missing\n"
                                "  expected: model file, or a directory with fem_solving.txt in it\n"
                                "  to do:    see tarnvexo solve --help\n");
    EXPECT_EQ(Fault({"refine", "m", "-o", "x"}), "tarnvexo refine: error: -k N is missing\n"
                                                 "  expected: parts of every edge, from 2 on\n"
                                                 "  to do:    see tarnvexo refine --help\n");
    EXPECT_EQ(Fault({"renumber", "m"}).find("tarnvexo renumber: error: --output OUT is missing\n"), 0u);
    EXPECT_EQ(Fault({"solve", "m", "--threads"}), "tarnvexo solve: error: --threads needs a value\n"
                                                  "  expected: --threads N\n"
                                                  "  to do:    see tarnvexo solve --help\n");
}

TEST(UsageFault, ShowsTheValueThatCannotBe)
{
    for (const char* threads : {"many", "0", "1025", "2x", "99999999999", "1.5"}) {
        EXPECT_EQ(Fault({"solve", "m", "--threads", threads}),
                  std::string("tarnvexo solve: error: --threads cannot be \"") + threads +
                      "\"\n  expected: a whole number from 1 to 1024\n  to do:    see tarnvexo solve --help\n");
    }
    EXPECT_EQ(Fault({"refine", "m", "-o", "x", "-k", "1"}).find("tarnvexo refine: error: -k cannot be \"1\"\n"), 0u);
}

TEST(UsageFault, OffersTheSolversThatThisProgramHas)
{
    EXPECT_EQ(Fault({"solve", "m", "--solver", "sparce"}),
              std::string("tarnvexo solve: error: --solver cannot be \"sparce\"\n  expected: auto or sparse or ") +
                  (HasCholmod() ? "cholmod or " : "") +
                  "skyline\n"
                  "  did you mean: sparse\n"
                  "  to do:    see tarnvexo solve --help\n");
    EXPECT_EQ(ParseMessage({"solve", "--help"}).output.find("cholmod") != std::string::npos, HasCholmod());
}

TEST(SolveArguments, TakeASolverThatOtherProgramsHave)
{
    EXPECT_EQ(ParseSolve({"solve", "m", "--solver", "cholmod"}).solve.solver, SolverKind::Cholmod);
}

TEST(UsageFault, RefusesASecondModel)
{
    EXPECT_EQ(Fault({"solve", "a", "b"}), "tarnvexo solve: error: \"b\" is one argument too many\n"
                                          "  expected: one MODEL, and options\n"
                                          "  to do:    see tarnvexo solve --help\n");
}

TEST(Help, OfEveryCommandHasExamplesAndFitsTheTerminal)
{
    const std::vector<std::vector<std::string>> commands = {
        {"--help"},           {"solve", "--help"},    {"info", "-h"},     {"check", "-h"},
        {"refine", "--help"}, {"renumber", "--help"}, {"view", "--help"}, {"picture", "-h"}};
    for (const auto& arguments : commands) {
        const MessageCommand help = ParseMessage(arguments);
        EXPECT_EQ(help.exitCode, ExitGood);
        EXPECT_NE(help.output.find("\nUsage: tarnvexo "), std::string::npos);
        EXPECT_NE(help.output.find("\nExamples:\n"), std::string::npos);
        std::size_t lineBegin = 0;
        for (std::size_t end; (end = help.output.find('\n', lineBegin)) != std::string::npos; lineBegin = end + 1) {
            EXPECT_LE(end - lineBegin, 100u) << help.output.substr(lineBegin, end - lineBegin);
        }
    }
}

TEST(Help, IsAskedForAsACommandToo)
{
    EXPECT_EQ(ParseMessage({"help"}).output, ParseMessage({"--help"}).output);
    EXPECT_EQ(ParseMessage({"help", "check"}).output, ParseMessage({"check", "--help"}).output);
    EXPECT_EQ(Fault({"help", "chekc"}).find("tarnvexo: error: there is no command \"chekc\"\n"), 0u);
}

TEST(Help, StandsInThePageOfTheCommandLine)
{
    std::ifstream file(TARNVEXO_SOURCE_DIR "/docs/command-line.md", std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    for (const std::string command : {"solve", "info", "check", "refine", "renumber", "view", "picture"}) {
        if (command == "solve" && !HasCholmod()) {
            continue; // the page is about a program with all solvers
        }
        const std::string help = ParseMessage({command, "--help"}).output;
        EXPECT_NE(page.find("```\n" + help + "```\n"), std::string::npos) << help;
    }
}

TEST(Version, IsTheTextGiven)
{
    const MessageCommand message = ParseMessage({"--version"});
    EXPECT_EQ(message.output, "tarnvexo 1.2.3\n");
    EXPECT_EQ(message.exitCode, ExitGood);
}

// It names the engines, and to do so loads them.
TEST(Version, IsAskedForOnlyWhenItIsPrinted)
{
    int asked = 0;
    const auto versionText = [&] {
        ++asked;
        return std::string("tarnvexo 1.2.3\n");
    };
    ParseCommandLine({"solve", "model.txt"}, versionText);
    ParseCommandLine({"--help"}, versionText);
    EXPECT_EQ(asked, 0);
    ParseCommandLine({"--version"}, versionText);
    EXPECT_EQ(asked, 1);
}

} // namespace
} // namespace tarnvexo
