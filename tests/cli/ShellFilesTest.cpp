// Man page and completions know every option of every command, and work.
#include "cli/CommandParser.h"
#include "support/ProgramRun.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <regex>
#include <set>

namespace tarnvexo {
namespace {

const std::string SourceDirectory = TARNVEXO_SOURCE_DIR;
const std::vector<std::string> Commands = {"solve", "info", "check", "refine", "renumber", "view", "picture"};

std::string FileText(const std::string& name)
{
    std::ifstream file(SourceDirectory + "/" + name, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

// "-o" and "--output" of the lines "  -o,--output DIR   ..." of a help text.
std::set<std::string> OptionsOfHelp(const std::vector<std::string>& arguments)
{
    const std::string help = std::get<MessageCommand>(ParseCommandLine(arguments, [] { return std::string(); })).output;
    const std::regex optionLine("\n  (-[-a-z]+)(?:,(-[-a-z]+))?");
    std::set<std::string> options;
    for (std::sregex_iterator match(help.begin(), help.end(), optionLine), none; match != none; ++match) {
        options.insert((*match)[1]);
        if ((*match)[2].matched) {
            options.insert((*match)[2]);
        }
    }
    EXPECT_GE(options.size(), 2u) << help;
    return options;
}

std::set<std::string> AllOptions()
{
    std::set<std::string> all = OptionsOfHelp({"--help"});
    for (const std::string& command : Commands) { all.merge(OptionsOfHelp({command, "--help"})); }
    return all;
}

// As a word of its own: "--output", not a part of "--output-x".
bool HasWord(const std::string& text, const std::string& word)
{
    const std::string edge = "[^-A-Za-z]";
    return std::regex_search(" " + text + " ", std::regex(edge + word + edge));
}

TEST(ManPage, HasEveryOptionAndCommand)
{
    const std::string page = std::regex_replace(FileText("docs/man/tarnvexo.1"), std::regex(R"(\\-)"), "-");
    for (const std::string& option : AllOptions()) { EXPECT_TRUE(HasWord(page, option)) << option; }
    for (const std::string& command : Commands) { EXPECT_TRUE(HasWord(page, "tarnvexo " + command)) << command; }
    for (const char* code : {"0", "1", "2", "3", "4", "130"}) {
        EXPECT_NE(page.find(std::string(".B ") + code + "\n"), std::string::npos) << code;
    }
}

TEST(ManPage, IsFormattedWithoutWarnings)
{
    if (std::system("groff --version >/dev/null 2>&1") != 0) {
        GTEST_SKIP() << "groff is not installed";
    }
    const test::ProgramRun run = test::RunProgram(
        {.program = "/bin/sh",
         .arguments = {"-c", "groff -man -ww -Tutf8 '" + SourceDirectory + "/docs/man/tarnvexo.1' >page.txt"}});
    EXPECT_EQ(run.exitCode, 0);
    EXPECT_EQ(run.error, "");
    EXPECT_GT(run.files.at("page.txt").size(), 4000u);
}

TEST(Completions, HaveEveryOption)
{
    for (const char* file : {"completions/tarnvexo.bash", "completions/_tarnvexo"}) {
        const std::string text = FileText(file);
        for (const std::string& option : AllOptions()) { EXPECT_TRUE(HasWord(text, option)) << option << ", " << file; }
    }
}

// What bash offers for the last of the words, sorted, with blanks between.
std::string BashOffers(const std::string& words)
{
    const std::string script = "PATH='" + std::filesystem::path(TARNVEXO_PROGRAM).parent_path().string() +
                               "':$PATH\n"
                               "source '" +
                               SourceDirectory + "/completions/tarnvexo.bash'\n" + "COMP_WORDS=(tarnvexo " + words +
                               ")\n" +
                               "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
                               "_tarnvexo\n"
                               "printf '%s\\n' \"${COMPREPLY[@]}\" | LC_ALL=C sort | tr '\\n' ' '\n";
    const test::ProgramRun run = test::RunProgram({.program = "/bin/bash",
                                                   .arguments = {"--noprofile", "--norc", "-c", script},
                                                   .files = {{"wing.txt", ""}, {"window one.txt", ""}}});
    EXPECT_EQ(run.error, "");
    EXPECT_EQ(run.exitCode, 0);
    return run.output;
}

TEST(BashCompletion, OffersCommandsOptionsValuesAndFiles)
{
    if (!std::filesystem::exists("/bin/bash")) {
        GTEST_SKIP() << "bash is not installed";
    }
    EXPECT_EQ(BashOffers("re"), "refine renumber ");
    EXPECT_EQ(BashOffers("solve --s"), "--solver ");
    EXPECT_EQ(BashOffers("solve --solver s"), "skyline sparse ");
    EXPECT_EQ(BashOffers("solve --solver = sp"), "sparse ");
    EXPECT_EQ(BashOffers("check --rule wa"), "warping= ");
    EXPECT_EQ(BashOffers("check --rule warping ="), "error note off warning ");
    EXPECT_EQ(BashOffers("check --rule warping = no"), "note ");
    EXPECT_EQ(BashOffers("help ch"), "check ");
    EXPECT_EQ(BashOffers("solve --balance ''"), "classic exact ");
    EXPECT_EQ(BashOffers("picture --view t"), "top ");
    EXPECT_EQ(BashOffers("picture --face l"), "larger ");
    EXPECT_EQ(BashOffers("solve w"), "window one.txt wing.txt ");
    EXPECT_EQ(BashOffers("info wing.txt --json wi"), "window one.txt wing.txt ");
}

TEST(BashCompletion, OffersEveryCommandItsOwnLongOptions)
{
    if (!std::filesystem::exists("/bin/bash")) {
        GTEST_SKIP() << "bash is not installed";
    }
    for (const std::string& command : Commands) {
        std::string expected;
        for (const std::string& option : OptionsOfHelp({command, "--help"})) {
            expected += option.starts_with("--") ? option + " " : "";
        }
        EXPECT_EQ(BashOffers(command + " --"), expected) << command;
    }
}

} // namespace
} // namespace tarnvexo
