#include "checks/Finding.h"

#include <gtest/gtest.h>
#include <string>
#include <utility>

namespace tarnvexo {
namespace {

TEST(Rules, EveryRuleIsFoundByItsName)
{
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const Rule& rule = RuleOf(static_cast<RuleId>(i));
        EXPECT_EQ(RuleNamed(rule.name), &rule) << rule.name;
    }
    EXPECT_EQ(RuleNamed("no-such-rule"), nullptr);
}

TEST(Rules, LimitHasAMeasureAndOnlyALimit)
{
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const Rule& rule = RuleOf(static_cast<RuleId>(i));
        EXPECT_EQ(rule.limit == NoLimit, std::string(rule.measure).empty()) << rule.name;
    }
}

TEST(FindingCollector, CountsAllAndKeepsTheWorstInOrder)
{
    FindingCollector collector(RuleId::AspectRatio, RuleBook());
    for (int e = 0; e < 100; ++e) {
        const double badness = (e * 37) % 100; // every number once
        if (collector.Adds(badness)) {
            collector.Keep({"quad", e, badness, {}, ""}, badness);
        }
    }
    std::vector<Finding> findings;
    collector.AppendTo(findings);
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_EQ(findings[0].count, 100);
    ASSERT_EQ(findings[0].worst.size(), WorstKept);
    for (std::size_t k = 0; k < WorstKept; ++k) { EXPECT_EQ(findings[0].worst[k].value, 99.0 - double(k)); }
}

TEST(FindingCollector, EqualOffendersStayInTheirOrder)
{
    FindingCollector collector(RuleId::FreeEdge, RuleBook());
    for (int e = 0; e < 30; ++e) {
        if (collector.Adds(0.0)) {
            collector.Keep({"quad", e, 0.0, {}, ""}, 0.0);
        }
    }
    std::vector<Finding> findings;
    collector.AppendTo(findings);
    ASSERT_EQ(findings.size(), 1u);
    for (std::size_t k = 0; k < WorstKept; ++k) { EXPECT_EQ(findings[0].worst[k].number, static_cast<int>(k)); }
}

TEST(FindingCollector, MergedRangesGiveTheFindingOfOneCollector)
{
    const auto badness = [](int e) { return static_cast<double>((e * 37) % 20); }; // many equal ones
    FindingCollector whole(RuleId::AspectRatio, RuleBook()), merged(RuleId::AspectRatio, RuleBook());
    for (int range = 0; range < 4; ++range) {
        FindingCollector part(RuleId::AspectRatio, RuleBook());
        for (int e = 25 * range; e < 25 * (range + 1); ++e) {
            for (FindingCollector* collector : {&whole, &part}) {
                if (collector->Adds(badness(e))) {
                    collector->Keep({"quad", e, badness(e), {}, ""}, badness(e));
                }
            }
        }
        merged.Merge(std::move(part));
    }
    std::vector<Finding> expected, found;
    whole.AppendTo(expected);
    merged.AppendTo(found);
    ASSERT_EQ(found.size(), 1u);
    EXPECT_EQ(found[0].count, expected[0].count);
    ASSERT_EQ(found[0].worst.size(), expected[0].worst.size());
    for (std::size_t k = 0; k < WorstKept; ++k) { EXPECT_EQ(found[0].worst[k].number, expected[0].worst[k].number); }
}

TEST(FindingCollector, RuleThatIsOffGivesNoFinding)
{
    RuleBook rules;
    rules.SetSeverity(RuleId::AspectRatio, Severity::Off);
    FindingCollector collector(RuleId::AspectRatio, rules);
    if (collector.Adds(20.0)) {
        collector.Keep({"quad", 0, 20.0, {}, ""}, 20.0);
    }
    std::vector<Finding> findings;
    collector.AppendTo(findings);
    EXPECT_TRUE(findings.empty());
}

} // namespace
} // namespace tarnvexo
