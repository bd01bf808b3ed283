#include "app/ModelFindings.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(ModelFindings, FaultNamesAllErrorsWithTheirWorstOffenders)
{
    Finding thin{RuleId::ZeroArea, Severity::Error, 1e-8, 5, {}};
    thin.worst = {{"quad", 17, 0.0, {1, 2, 3}, "nodes 4 and 5"},
                  {"tri", 2, 1e-12, {0, -0.0, 0.5}, ""},
                  {"tri", 3, 2e-12, {0, 0, 1}, ""},
                  {"tri", 4, 3e-12, {0, 0, 2}, ""}};
    Finding material{RuleId::MaterialValue, Severity::Error, NoLimit, 1, {}};
    material.worst = {{"material", 1, 0.0, {}, "E=-1"}};
    const Finding warped{RuleId::Warping, Severity::Warning, 10.0, 9, {}};
    EXPECT_EQ(FindingsFault({material, thin, warped}, "m.txt"),
              "m.txt: error: materials with values that no material has: 1 [material-value]\n"
              "  there:    material 1, E=-1\n"
              "  expected: none\n"
              "  to do:    " +
                  std::string(RuleOf(RuleId::MaterialValue).toDo) +
                  "\n"
                  "m.txt: error: " +
                  RuleOf(RuleId::ZeroArea).finding +
                  ": 5 [zero-area]\n"
                  "  there:    quad 17 at (1, 2, 3): 0, nodes 4 and 5\n"
                  "            tri 2 at (0, 0, 0.5): 1e-12\n"
                  "            tri 3 at (0, 0, 1): 2e-12\n"
                  "            and 2 more\n"
                  "  expected: none beyond the limit 1e-08 (" +
                  RuleOf(RuleId::ZeroArea).measure +
                  ")\n"
                  "  to do:    " +
                  RuleOf(RuleId::ZeroArea).toDo);
    EXPECT_EQ(FindingsFault({warped}, "m.txt"), "");
}

TEST(ModelFindings, ElementsWithoutStiffnessAreUnsoundUnlessTheUserLowersTheRule)
{
    const Finding warped{RuleId::Warping, Severity::Error, 10.0, 9, {}};
    EXPECT_TRUE(HaveSoundElements({warped}));
    EXPECT_FALSE(HaveSoundElements({warped, {RuleId::ZeroArea, Severity::Error, 1e-8, 1, {}}}));
    EXPECT_TRUE(HaveSoundElements({{RuleId::ZeroArea, Severity::Warning, 1e-8, 1, {}}}));
}

TEST(RulesForSolving, LeaveNotesOut)
{
    const RuleBook rules = RulesForSolving(RuleBook(), BalanceKind::Exact);
    for (std::size_t i = 0; i < RuleCount; ++i) {
        const Severity severity = RuleOf(static_cast<RuleId>(i)).severity;
        EXPECT_EQ(rules.SeverityOf(static_cast<RuleId>(i)), severity == Severity::Note ? Severity::Off : severity);
    }
}

TEST(RulesForSolving, LowerUnstiffenedLoadsForTheClassicBalanceUnlessTheUserSetsThem)
{
    const auto severity = [](const RuleBook& rules, BalanceKind kind) {
        return RulesForSolving(rules, kind).SeverityOf(RuleId::UnstiffenedLoad);
    };
    EXPECT_EQ(severity(RuleBook(), BalanceKind::Exact), Severity::Error);
    EXPECT_EQ(severity(RuleBook(), BalanceKind::Classic), Severity::Warning);
    RuleBook set;
    set.SetSeverity(RuleId::UnstiffenedLoad, Severity::Error);
    EXPECT_EQ(severity(set, BalanceKind::Classic), Severity::Error);
}

} // namespace
} // namespace tarnvexo
