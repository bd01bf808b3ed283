#include "cli/TextPage.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(TextPage, AlignsByCharactersNotByBytes)
{
    TextPage page;
    page.Row("Σ|F|", {"1"}, "N·m");
    page.Row("sum", {"1"}, "N");
    EXPECT_EQ(page.Result(),
              "  Σ|F|" + std::string(27 + 13, ' ') + "1  N·m\n" + "  sum" + std::string(28 + 13, ' ') + "1  N\n");
}

TEST(TextPage, BreaksLongTextsAtBlanksAndIndentsTheRest)
{
    TextPage page;
    page.Paragraph("  part 1: ", std::string(60, 'a') + " " + std::string(29, 'b') + " " + std::string(5, 'c'));
    EXPECT_EQ(page.Result(), "  part 1: " + std::string(60, 'a') + " " + std::string(29, 'b') + "\n          ccccc\n");
}

TEST(TextPage, LeavesAWordWholeThatIsLongerThanALine)
{
    TextPage page;
    page.Paragraph("  ", "a " + std::string(120, 'b') + " c");
    EXPECT_EQ(page.Result(), "  a\n  " + std::string(120, 'b') + "\n  c\n");
}

TEST(TextPage, KeepsTheLinesAndIndentsOfATextOfSeveralLines)
{
    TextPage page;
    page.Paragraph("  ", "a: warning: b\n  expected: c");
    EXPECT_EQ(page.Result(), "  a: warning: b\n    expected: c\n");
}

TEST(TextPage, BreaksALongSummaryLineBehindCommasOutsideBrackets)
{
    TextPage page;
    page.SummaryLine("mass", "98.91 kg, centre of gravity (5.5, 2, 0.400481)");
    page.SummaryLine("largest", std::string(31, '1') + " N, beam 2 at (-0.06, -0.006, -0.1)");
    page.SummaryLine("result files", "6 written, in " + std::string(50, 'a') + " b");
    EXPECT_EQ(page.Result(), "  mass                  98.91 kg, centre of gravity (5.5, 2, 0.400481)\n"
                             "  largest               1111111111111111111111111111111 N,\n"
                             "                        beam 2 at (-0.06, -0.006, -0.1)\n"
                             "  result files          6 written,\n"
                             "                        in aaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaaa b\n");
}

TEST(TextPage, SeparatesSectionsByABlankLine)
{
    TextPage page;
    page.Heading("A");
    page.Line("a");
    page.Heading("B");
    EXPECT_EQ(page.Result(), "A\n  a\n\nB\n");
}

} // namespace
} // namespace tarnvexo
