#include "cli/RuleSettings.h"

#include "cli/UsageFault.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

UsageFault FaultOf(const std::string& text)
{
    RuleBook rules;
    try {
        ApplyRuleSettings({text}, rules);
    } catch (const UsageFault& fault) {
        return fault;
    }
    ADD_FAILURE() << text << " was accepted";
    return {};
}

TEST(RuleSettings, AWordIsASeverityAndANumberALimit)
{
    RuleBook rules;
    ApplyRuleSettings({"warping=error,aspect-ratio=25.5", "free-edge=off", "t-junction=2e-3"}, rules);
    EXPECT_EQ(rules.SeverityOf(RuleId::Warping), Severity::Error);
    EXPECT_EQ(rules.LimitOf(RuleId::Warping), RuleOf(RuleId::Warping).limit);
    EXPECT_EQ(rules.LimitOf(RuleId::AspectRatio), 25.5);
    EXPECT_EQ(rules.SeverityOf(RuleId::AspectRatio), RuleOf(RuleId::AspectRatio).severity);
    EXPECT_FALSE(rules.IsOn(RuleId::FreeEdge));
    EXPECT_EQ(rules.LimitOf(RuleId::TJunction), 2e-3);
}

TEST(RuleSettings, TheLastOneCounts)
{
    RuleBook rules;
    ApplyRuleSettings({"warping=3", "warping=4,warping=off,warping=note"}, rules);
    EXPECT_EQ(rules.LimitOf(RuleId::Warping), 4.0);
    EXPECT_EQ(rules.SeverityOf(RuleId::Warping), Severity::Note);
}

TEST(RuleSettings, ALimitIsAboveZero)
{
    for (const char* limit : {"0", "-1", "-0", "nan", "inf", "1e999"}) {
        EXPECT_NE(FaultOf(std::string("warping=") + limit).what.find("warping"), std::string::npos) << limit;
    }
    EXPECT_EQ(FaultOf("warping=-1").what, "--rule: the limit of \"warping\" cannot be -1");
    EXPECT_EQ(FaultOf("warping=-1").expected,
              "a number above 0 (" + std::string(RuleOf(RuleId::Warping).measure) + ")");
}

TEST(RuleSettings, ALimitNeedsARuleThatHasOne)
{
    EXPECT_EQ(FaultOf("free-edge=3").what, "--rule: \"free-edge\" has no limit that could be 3");
}

TEST(RuleSettings, NamesWhatWasMeant)
{
    EXPECT_EQ(FaultOf("aspect-ration=20").meant, "aspect-ratio");
    EXPECT_EQ(FaultOf("warping=warn").meant, "warning");
    EXPECT_EQ(FaultOf("warping").expected, "NAME=off|note|warning|error, or NAME=LIMIT");
    EXPECT_EQ(FaultOf("warping=").what, "--rule: \"warping\" cannot be \"\"");
}

TEST(RuleSettings, TheTextOfTheFileIsAnErrorAlways)
{
    for (const char* severity : {"off", "note", "warning"}) {
        EXPECT_EQ(FaultOf(std::string("format=") + severity).what,
                  std::string("--rule: \"format\" cannot be \"") + severity + "\"");
    }
    RuleBook rules;
    ApplyRuleSettings({"format=error"}, rules);
    EXPECT_EQ(rules.SeverityOf(RuleId::Format), Severity::Error);
}

} // namespace
} // namespace tarnvexo
