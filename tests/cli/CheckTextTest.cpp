#include "cli/CheckText.h"

#include "cli/SampleReports.h"
#include "cli/TextPage.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>

namespace tarnvexo {
namespace {

using test::SampleCheckReport;

bool Contains(const std::string& text, const std::string& part)
{
    return text.find(part) != std::string::npos;
}

std::string CheckText(const CheckReport& report, bool verbose = false)
{
    return CheckReportText(report, UnitSystem::SI, verbose);
}

const char* const CheckGolden = R"(tarnvexo check wing/fem_solving.txt
  not ready: 2 errors

FINDINGS                            count     limit     worst
  error    unstiffened-load             2                      loads on nodes without elements
  warning  warping                      4        10   23.4567  quadrilaterals that are not flat
  note     free-edge                   44                      edges of one shell only

ERRORS: 2
  wing/fem_solving.txt: error: the structure has the mass 0, which cannot balance its loads
    expected: mass above zero
    to do:    give the materials of the model a Density above 0
  unstiffened-load: loads on nodes without elements: 2
    node 119        at (3, 3, 1)
    node 120        at (3, 3, 1.5)
    to do:    connect these nodes, or take their loads away

WARNINGS: 1
  warping: quadrilaterals that are not flat: 4
    measure:  largest angle between its halves along a diagonal, degrees; limit 10
    quad 31            23.4567  at (0.5, 1.5, 2.25)
    quad 30               21.5  at (1.5, 1.5, 2.25)
    quad 7               12.25  at (7.5, 0.5, 0)
    and 1 more; the worst 4 with --verbose
    to do:    refine the mesh there, or use triangles

CONNECTED PARTS: 2
  part 1: 118 nodes, 100 elements, from node 0 on; 6 directions restrained; no free rigid motion
  part 2: 2 nodes, 1 element, from node 118 on; 0 directions restrained; 6 free rigid motions; free
          to move and rotate in every way; around (0, 2, 2)

SUMMARY
  model                 120 nodes, 96 quadrilaterals, 4 triangles, 1 beam,
                        13 loads
  bounding box          (-0.5, 0, 0) to (11.5, 4, 2.25) m
  run                   0.05 s (read 0.01 s, check 0.03 s, balance 0.00 s),
                        31.2 MB
  errors                2: unstiffened-load, 1 message above
  warnings              1: warping
  notes                 1: free-edge
  verdict               not ready: 2 errors
)";

TEST(CheckText, OfTheSampleIsThis)
{
    EXPECT_EQ(CheckText(SampleCheckReport()), CheckGolden);
}

TEST(CheckText, SampleOfThePageIsWhatTheProgramPrints)
{
    std::ifstream file(TARNVEXO_SOURCE_DIR "/docs/command-line.md", std::ios::binary);
    const std::string page{std::istreambuf_iterator<char>(file), {}};
    EXPECT_TRUE(Contains(page, "<!-- sample: check report -->\n```\n" + CheckText(SampleCheckReport()) + "```\n"));
}

TEST(CheckText, IsVerboseWithAllOffendersThatAreKeptAndWithNotes)
{
    const std::string text = CheckText(SampleCheckReport(), true);
    EXPECT_TRUE(Contains(text, "\n    quad 9                10.5  at (9.5, 0.5, 0)\n    to do: ")) << text;
    EXPECT_TRUE(Contains(text, "\nNOTES: 1\n  free-edge: edges of one shell only: 44\n"
                               "    quad 0          at (-0.5, 0.5, 0), nodes 0 and 5\n    and 43 more\n"))
        << text;
}

TEST(CheckText, OfAModelWithoutFindingsIsShort)
{
    CheckReport report = SampleCheckReport();
    report.findings.clear();
    report.messages.clear();
    const std::string text = CheckText(report);
    EXPECT_TRUE(Contains(text, "  ready to solve\n\nFINDINGS: none\n\nCONNECTED PARTS: 2\n")) << text;
    EXPECT_TRUE(text.ends_with("  errors                none\n  warnings              none\n"
                               "  notes                 none\n  verdict               ready to solve\n"))
        << text;
}

// Warnings do not keep a model from being solved, but are to be seen before.
TEST(CheckText, WithWarningsAloneSaysReady)
{
    CheckReport report = SampleCheckReport();
    report.messages.clear();
    report.findings = {report.findings.front()};
    EXPECT_TRUE(Contains(CheckText(report), "\n  ready to solve; look at the 1 warning first\n"));
}

TEST(CheckText, OfAFileThatCannotBeReadHasItsMessagesAlone)
{
    CheckReport report;
    report.modelFile = "m.txt";
    report.messages = {{Severity::Error, "m.txt:3:7: error: a number is missing"}};
    EXPECT_EQ(CheckText(report).find("tarnvexo check m.txt\n  not ready: 1 error\n\nERRORS: 1\n"
                                     "  m.txt:3:7: error: a number is missing\n\nSUMMARY\n  run "),
              0u)
        << CheckText(report);
}

TEST(CheckText, CutsTheListOfParts)
{
    CheckReport report = SampleCheckReport();
    report.parts.resize(40);
    const std::string text = CheckText(report);
    EXPECT_TRUE(Contains(text, "CONNECTED PARTS: 40\n"));
    EXPECT_FALSE(Contains(text, "  part 13: "));
    EXPECT_TRUE(Contains(text, "\n  and 28 more parts\n"));
}

TEST(ModelChecks, OfOtherReportsTakeALinePerFinding)
{
    TextPage page;
    AddModelChecks(page, SampleCheckReport().findings);
    EXPECT_EQ(page.Result(),
              "MODEL CHECKS                        count     limit     worst\n"
              "  error    unstiffened-load             2                      loads on nodes without elements\n"
              "                                                               node 119 at (3, 3, 1)\n"
              "  warning  warping                      4        10   23.4567  quadrilaterals that are not flat\n"
              "                                                               quad 31 at (0.5, 1.5, 2.25)\n"
              "  note     free-edge                   44                      edges of one shell only\n"
              "                                                               quad 0 at (-0.5, 0.5, 0)\n");
    EXPECT_EQ(FindingsSummary(SampleCheckReport().findings), "1 error, 1 warning, 1 note, see MODEL CHECKS");
    EXPECT_EQ(FindingsSummary({}), "no errors, no warnings");
}

TEST(RuleTable, FitsAHundredColumns)
{
    const std::string table = RuleTableText(RuleBook());
    std::size_t begin = 0;
    for (std::size_t end; (end = table.find('\n', begin)) != std::string::npos; begin = end + 1) {
        EXPECT_LE(TextWidth(table.substr(begin, end - begin)), TextPage::Width);
    }
}

} // namespace
} // namespace tarnvexo
