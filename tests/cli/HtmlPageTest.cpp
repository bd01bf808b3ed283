#include "cli/HtmlPage.h"

#include "cli/ReportText.h"
#include "cli/SampleReports.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

// Every element that is opened is closed, in the right order.
void ExpectNested(const std::string& html)
{
    const std::vector<std::string> alone = {"meta", "img", "!doctype"};
    std::vector<std::string> open;
    const std::regex tag("<(/?)([!a-z0-9]+)[^>]*>");
    for (std::sregex_iterator it(html.begin(), html.end(), tag), end; it != end; ++it) {
        const std::string name = (*it)[2];
        if (std::find(alone.begin(), alone.end(), name) != alone.end()) {
            continue;
        }
        if ((*it)[1].length() == 0) {
            open.push_back(name);
        } else {
            ASSERT_FALSE(open.empty()) << name;
            ASSERT_EQ(open.back(), name);
            open.pop_back();
        }
    }
    EXPECT_TRUE(open.empty());
}

TEST(HtmlText, EscapesWhatHtmlMeansAndReplacesWhatIsNoUtf8)
{
    EXPECT_EQ(HtmlText("a<b> & \"c\" \u5e73\xC3"), "a&lt;b&gt; &amp; &quot;c&quot; \u5e73\uFFFD");
    EXPECT_EQ(HtmlText("\xFF\xC0\xAF"), "\uFFFD\uFFFD\uFFFD");
}

TEST(HtmlPage, KeepsRowsOfOneTableTogether)
{
    HtmlPage page("run");
    page.Heading("MASS");
    page.ColumnTitles({"x", "y"});
    page.Row("centre", {"1", "2"}, "m");
    page.Row("size", 3.5);
    page.Paragraph("  why: ", "because\nof that");
    const std::string html = page.Result();
    ExpectNested(html);
    EXPECT_NE(html.find("<h2>MASS</h2>\n<table>\n<tr class=\"titles\"><th></th><td>x</td><td>y</td></tr>\n"
                        "<tr><th>centre</th><td>1</td><td>2</td><td class=\"remark\" colspan=\"6\">m</td></tr>\n"
                        "<tr><th>size</th><td>3.5</td></tr>\n</table>\n<p class=\"aligned\""),
              std::string::npos)
        << html;
}

TEST(HtmlPage, HasAPictureWithinItself)
{
    HtmlPage page("run");
    page.Picture("stress \"SE\"", "\x89PNG");
    const std::string html = page.Result();
    ExpectNested(html);
    EXPECT_NE(html.find("<img alt=\"stress &quot;SE&quot;\" src=\"data:image/png;base64,iVBORw==\">"),
              std::string::npos);
}

// All that the text says stands in the page: the words of every line of it.
TEST(SolveReportHtml, SaysWhatTheTextSays)
{
    const SolveReport report = test::SampleSolveReport();
    const std::string html = SolveReportHtml(report, UnitSystem::SI, {{"deformed", "png"}});
    ExpectNested(html);
    EXPECT_NE(html.find("<figcaption>deformed</figcaption>"), std::string::npos);
    for (const std::string word :
         {"MODEL", "MASS", "SUPPORT REACTIONS", "RESULT CHECKS", "TIME AND MEMORY", "verdict"}) {
        EXPECT_NE(html.find(word), std::string::npos) << word;
    }
    const std::string text = SolveReportText(report, UnitSystem::SI);
    const std::regex number("[-+]?[0-9]+\\.[0-9]+(e[-+][0-9]+)?");
    for (std::sregex_iterator it(text.begin(), text.end(), number), end; it != end; ++it) {
        EXPECT_NE(html.find(it->str()), std::string::npos) << it->str();
    }
}

} // namespace
} // namespace tarnvexo
