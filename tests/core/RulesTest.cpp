#include "core/Rules.h"

#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <set>
#include <string>

namespace tarnvexo {
namespace {

std::string PageText(const char* page)
{
    std::ifstream file(std::string(TARNVEXO_SOURCE_DIR "/docs/") + page);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

TEST(Rules, StandInTheOrderOfTheirNumbersUnderNamesOfTheirOwn)
{
    std::set<std::string> names;
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const Rule& rule = RuleOf(static_cast<RuleId>(i));
        EXPECT_EQ(static_cast<std::size_t>(rule.id), i) << rule.name;
        EXPECT_TRUE(names.insert(rule.name).second) << rule.name;
    }
}

TEST(Rules, AreAllExplainedInTheManual)
{
    const std::string pages = PageText("checks.md") + PageText("formats/model-file.md");
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const std::string name = RuleOf(static_cast<RuleId>(i)).name;
        EXPECT_NE(pages.find("`" + name + "`"), std::string::npos) << name;
    }
}

} // namespace
} // namespace tarnvexo
