#include "input/SourceExcerpt.h"

#include <gtest/gtest.h>
#include <string>

namespace tarnvexo {
namespace {

TEST(SourceExcerpt, StandsUnderTheFaultBehindWideCharactersAndTabs)
{
    const std::string text = "a\n\t框架é:12x\nb";
    const SourceExcerpt excerpt = ExcerptAround(text, text.find("12"));
    EXPECT_EQ(excerpt.line, " 框架é:12x");
    EXPECT_EQ(excerpt.mark, "       ^~"); // 1 + 2 + 2 + 1 + 1 columns
}

TEST(SourceExcerpt, ShowsBytesThatAreNotUtf8AndControlsAsQuestionMarks)
{
    const std::string gbk = "\xBF\xF2:1"; // two bytes, one character
    EXPECT_EQ(ExcerptAround(gbk, 3).line, "??:1");
    EXPECT_EQ(ExcerptAround(gbk, 3).mark, "   ^");
    EXPECT_EQ(ExcerptAround("\x1B[31m1", 0).line, "?[31m1");
}

TEST(SourceExcerpt, ShowsOfALongLineThePartAroundTheFaultInWholeCharacters)
{
    std::string text;
    for (int i = 0; i < 200; ++i) { text += "框"; }
    const SourceExcerpt excerpt = ExcerptAround(text + "!" + text, text.size());
    const std::size_t fault = excerpt.line.find('!');
    ASSERT_NE(fault, std::string::npos);
    EXPECT_EQ(fault % 3, 0u);
    EXPECT_LE(excerpt.line.size(), 106u);
    EXPECT_EQ(excerpt.mark.size(), fault / 3 * 2 + 1);
}

} // namespace
} // namespace tarnvexo
