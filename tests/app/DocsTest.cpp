// The documentation is true: its examples are what the program writes, its links and the files it names are there.
//
// An example is a fenced block behind one of these comments (docs/formats/):
//   <!-- example: fem_solving.txt -->                                 the model that is run
//   <!-- example: Node_Dis.txt, from line 7, noise below 1e-26 -->    lines of a result file; "console" is standard
//   output
//   <!-- example: nodes.csv, from line 1 -->                          lines of a file of `solve --format vtu,csv`
//   <!-- standard error, from line 1, noise below 1e-9 -->            lines of standard error
//   <!-- standard error when line 22 is "3:0;1,0" -->                 how standard error begins with that line changed
// Numbers agree within two units of the sixth digit; numbers below the noise on both sides agree always.
#include "support/ProgramRun.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

const std::filesystem::path SourceDirectory = TARNVEXO_SOURCE_DIR;

std::string ReadText(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return text.str();
}

std::vector<std::string> SplitLines(const std::string& text)
{
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        if (line.ends_with('\r')) {
            line.pop_back();
        }
        lines.push_back(line);
    }
    return lines;
}

std::string JoinLines(const std::vector<std::string>& lines)
{
    std::string text;
    for (const std::string& line : lines) { text += line + "\n"; }
    return text;
}

std::vector<std::filesystem::path> Pages()
{
    std::vector<std::filesystem::path> pages = {SourceDirectory / "README.md", SourceDirectory / "CHANGELOG.md"};
    for (const auto& entry : std::filesystem::recursive_directory_iterator(SourceDirectory / "docs")) {
        if (entry.path().extension() == ".md") {
            pages.push_back(entry.path());
        }
    }
    std::sort(pages.begin(), pages.end());
    return pages;
}

struct Block {
    std::string comment; // "example: Node_Dis.txt", "standard error when line 22 is ..."
    std::vector<std::string> lines;
    std::string place; // page:line
};

// Fenced blocks of a page whose line before is one of the comments above.
std::vector<Block> ExampleBlocks(const std::filesystem::path& page)
{
    const std::regex comment("<!-- ((?:example|standard error).*) -->");
    const std::vector<std::string> lines = SplitLines(ReadText(page));
    std::vector<Block> blocks;
    for (std::size_t i = 0; i + 1 < lines.size(); ++i) {
        std::smatch match;
        if (!std::regex_match(lines[i], match, comment)) {
            continue;
        }
        Block block;
        block.comment = match[1];
        block.place = page.string() + ":" + std::to_string(i + 1);
        EXPECT_EQ(lines[i + 1], "```") << block.place;
        for (i += 2; i < lines.size() && lines[i] != "```"; ++i) { block.lines.push_back(lines[i]); }
        EXPECT_FALSE(block.lines.empty()) << block.place;
        blocks.push_back(block);
    }
    return blocks;
}

std::vector<Block> AllExampleBlocks()
{
    std::vector<Block> all;
    for (const auto& page : Pages()) {
        const std::vector<Block> blocks = ExampleBlocks(page);
        all.insert(all.end(), blocks.begin(), blocks.end());
    }
    return all;
}

std::vector<std::string> ExampleModel()
{
    for (const Block& block : ExampleBlocks(SourceDirectory / "docs/formats/model-file.md")) {
        if (block.comment == "example: fem_solving.txt") {
            return block.lines;
        }
    }
    ADD_FAILURE() << "docs/formats/model-file.md has no example model";
    return {};
}

test::ProgramRun RunModel(const std::vector<std::string>& model, const std::vector<std::string>& arguments = {})
{
    return test::RunProgram(
        {.program = TARNVEXO_PROGRAM, .arguments = arguments, .files = {{"fem_solving.txt", JoinLines(model)}}});
}

// A line cut at its numbers. Blanks before a number only line it up, so they count as one.
struct CutLine {
    std::vector<std::string> texts;
    std::vector<double> numbers;
};

CutLine CutAtNumbers(const std::string& line)
{
    static const std::regex number("[-+]?[0-9]+(?:\\.[0-9]+)?(?:e[-+][0-9]+)?");
    CutLine cut;
    std::size_t textBegin = 0;
    for (std::sregex_iterator match(line.begin(), line.end(), number), none; match != none; ++match) {
        const std::string text = line.substr(textBegin, std::size_t(match->position()) - textBegin);
        cut.texts.push_back(std::regex_replace(text, std::regex(" +"), " "));
        cut.numbers.push_back(std::strtod(match->str().c_str(), nullptr));
        textBegin = std::size_t(match->position() + match->length());
    }
    cut.texts.push_back(line.substr(textBegin));
    return cut;
}

bool SameNumber(double documented, double written, double noise)
{
    const double larger = std::max(std::fabs(documented), std::fabs(written));
    if (larger < noise || documented == written) {
        return true;
    }
    const double sixthDigit = std::pow(10.0, std::floor(std::log10(larger)) - 5);
    return std::fabs(documented - written) <= 2.000001 * sixthDigit;
}

void ExpectSameLines(const Block& block, const std::vector<std::string>& written, std::size_t fromLine, double noise)
{
    ASSERT_LE(fromLine - 1 + block.lines.size(), written.size()) << block.place;
    for (std::size_t i = 0; i < block.lines.size(); ++i) {
        const std::string& line = written[fromLine - 1 + i];
        const CutLine expected = CutAtNumbers(block.lines[i]);
        const CutLine found = CutAtNumbers(line);
        bool same = expected.texts == found.texts;
        for (std::size_t k = 0; same && k < expected.numbers.size(); ++k) {
            same = SameNumber(expected.numbers[k], found.numbers[k], noise);
        }
        EXPECT_TRUE(same) << block.place << ", line " << i + 1 << " of the block\n  documented: " << block.lines[i]
                          << "\n  written:    " << line;
    }
}

// What a comment says of a block.
struct Source {
    std::string file; // empty: standard error
    std::size_t fromLine = 1;
    double noise = 0.0;
};

Source SourceOfBlock(const Block& block)
{
    static const std::regex form(
        "(?:example: ([^,]+)|standard error)(?:, from line ([0-9]+))?(?:, noise below ([-0-9.e]+))?");
    std::smatch match;
    Source source;
    EXPECT_TRUE(std::regex_match(block.comment, match, form)) << block.place << ": " << block.comment;
    source.file = match[1];
    if (match[2].matched) {
        source.fromLine = std::stoul(match[2]);
    }
    if (match[3].matched) {
        source.noise = std::stod(match[3]);
    }
    return source;
}

std::string TextOfSource(const test::ProgramRun& run, const Source& source)
{
    if (source.file.empty()) {
        return run.error;
    }
    if (source.file == "console") {
        return test::GbkToUtf8(run.output);
    }
    const auto file = run.files.find(source.file);
    return file == run.files.end() ? "" : file->second;
}

const std::string ChangedLine = "standard error when line ";

TEST(Docs, ResultExamplesAreWhatTheProgramWrites)
{
    test::ProgramRun run = RunModel(ExampleModel());
    ASSERT_EQ(run.exitCode, 0) << run.error;
    test::ProgramRun openFormats = RunModel(ExampleModel(), {"solve", ".", "--format", "vtu,csv", "--quiet"});
    ASSERT_EQ(openFormats.exitCode, 0) << openFormats.error;
    run.files.merge(openFormats.files);
    int compared = 0;
    for (const Block& block : AllExampleBlocks()) {
        if (block.comment.starts_with(ChangedLine)) {
            continue;
        }
        const Source source = SourceOfBlock(block);
        const std::string text = TextOfSource(run, source);
        ExpectSameLines(block, SplitLines(text), source.fromLine, source.noise);
        ++compared;
    }
    EXPECT_GE(compared, 12);
}

TEST(Docs, EveryResultFileHasAnExample)
{
    std::string named;
    for (const Block& block : AllExampleBlocks()) { named += block.comment + "\n"; }
    for (const char* file :
         {"fem_solving.txt", "console", "Node_Dis.txt", "Shell element node stress.txt",
          "Shell element average node stress.txt", "Tarn+Vexo_AverageStrs.txt", "structure.dxf", "deformation.dxf",
          "results.vtm", "nodes.csv", "quads.csv", "beams.csv", "reactions.csv"}) {
        EXPECT_NE(named.find(std::string("example: ") + file), std::string::npos) << file;
    }
}

TEST(Docs, DiagnosticsOfDamagedModelsAreWhatTheProgramWrites)
{
    const std::regex form("standard error when line ([0-9]+) is \"(.*)\"");
    int compared = 0;
    for (const Block& block : AllExampleBlocks()) {
        std::smatch match;
        if (!std::regex_match(block.comment, match, form)) {
            continue;
        }
        std::vector<std::string> model = ExampleModel();
        const std::size_t line = std::stoul(match[1]);
        ASSERT_LE(line, model.size()) << block.place;
        model[line - 1] = match[2];
        ExpectSameLines(block, SplitLines(RunModel(model).error), 1, 0.0);
        ++compared;
    }
    EXPECT_GE(compared, 2); // a warning and an error
}

TEST(Docs, LinksPointToFilesThatExist)
{
    const std::regex link("\\]\\(([^)#]+)(?:#[^)]*)?\\)");
    for (const auto& page : Pages()) {
        const std::string text = ReadText(page);
        for (std::sregex_iterator match(text.begin(), text.end(), link), none; match != none; ++match) {
            const std::string target = (*match)[1];
            if (!target.starts_with("http")) {
                EXPECT_TRUE(std::filesystem::exists(page.parent_path() / target)) << page << " links to " << target;
            }
        }
    }
}

// A heading's anchor: lower case, blanks as hyphens, punctuation left out.
std::string AnchorOfHeading(const std::string& heading)
{
    std::string anchor;
    for (char c : heading) {
        if (c == ' ') {
            anchor += '-';
        } else if (std::isalnum(static_cast<unsigned char>(c)) || c == '-' || c == '_' || (c & 0x80) != 0) {
            anchor += char(std::tolower(static_cast<unsigned char>(c)));
        }
    }
    return anchor;
}

TEST(Docs, LinksWithinPagesPointToHeadingsThatExist)
{
    const std::regex link("\\]\\(([^)#]*)#([^)]+)\\)");
    for (const auto& page : Pages()) {
        const std::string text = ReadText(page);
        for (std::sregex_iterator match(text.begin(), text.end(), link), none; match != none; ++match) {
            const std::string file = (*match)[1];
            if (file.starts_with("http")) {
                continue;
            }
            std::vector<std::string> anchors;
            for (const std::string& line : SplitLines(ReadText(file.empty() ? page : page.parent_path() / file))) {
                if (line.starts_with("#")) {
                    anchors.push_back(AnchorOfHeading(line.substr(line.find_first_not_of("# "))));
                }
            }
            EXPECT_NE(std::find(anchors.begin(), anchors.end(), (*match)[2].str()), anchors.end())
                << page << " links to " << match->str();
        }
    }
}

TEST(Docs, SourceFilesNamedInThePagesExist)
{
    const std::regex name("`((?:src|tests|tools|bench|docs|examples)/[A-Za-z0-9_./]+)`");
    for (const auto& page : Pages()) {
        const std::string text = ReadText(page);
        for (std::sregex_iterator match(text.begin(), text.end(), name), none; match != none; ++match) {
            const std::string file = (*match)[1];
            EXPECT_TRUE(std::filesystem::exists(SourceDirectory / file)) << page << " names " << file;
        }
    }
}

} // namespace
} // namespace tarnvexo
