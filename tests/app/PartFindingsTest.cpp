#include "app/PartFindings.h"

#include "app/LoadBalance.h"
#include "app/ModelFindings.h"
#include "support/MixedStructure.h"
#include "support/ModelText.h"
#include "support/SmallModels.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

// Plates of one element in a row, `gap` apart along x; plate p has the nodes 4p ... 4p + 3.
ModelText Row(int count, double gap)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.01);
    for (int p = 0; p < count; ++p) {
        const double x = (1.0 + gap) * p;
        for (const auto& [dx, y] : {std::pair(0.0, 0.0), {1.0, 0.0}, {1.0, 1.0}, {0.0, 1.0}}) {
            text.Node(x + dx, y, 2.0);
        }
        text.Quad({4 * p, 4 * p + 1, 4 * p + 2, 4 * p + 3});
    }
    return text;
}

BalancedLoads Balanced(const ModelText& text, const RuleBook& rules = {}, BalanceKind kind = BalanceKind::Exact)
{
    ModelStore model = StoreOf(text);
    model.EquationCount = DofsPerNode * model.NPOIN;
    MoveOriginToCentroid(model);
    return BalanceModelLoads(model, "model.txt", kind, rules);
}

// What solve says when it refuses.
std::string FaultOf(const BalancedLoads& loads)
{
    return FindingsFault(loads.findings, "model.txt");
}

RuleBook FloatingPartsAre(Severity severity)
{
    RuleBook rules;
    rules.SetSeverity(RuleId::FloatingPart, severity);
    return rules;
}

TEST(PartFindings, AreNoneWhereEveryPartIsFreeAndBalanced)
{
    ModelText text = Row(3, 0.5);
    for (int p = 0; p < 3; ++p) {
        text.Force(4 * p, {-100.0, 0.0, 0.0, 0.0, 0.0, 0.0});
        text.Force(4 * p + 1, {100.0, 0.0, 0.0, 0.0, 0.0, 0.0});
    }
    EXPECT_TRUE(Balanced(text).findings.empty());
}

TEST(PartFindings, NameEveryFloatingPartWithItsPlaceInTheModelFile)
{
    ModelText text = Row(3, 0.5);
    text.Restrain(4);
    const BalancedLoads loads = Balanced(text);
    ASSERT_EQ(loads.findings.size(), 1u);
    EXPECT_EQ(loads.findings[0].rule, RuleId::FloatingPart);
    EXPECT_EQ(loads.findings[0].severity, Severity::Error);
    EXPECT_EQ(loads.findings[0].count, 2);
    ASSERT_EQ(loads.findings[0].worst.size(), 2u);
    EXPECT_EQ(loads.findings[0].worst[0].number, 1);
    EXPECT_EQ(loads.findings[0].worst[1].number, 3);
    EXPECT_EQ(loads.findings[0].worst[1].place, (Vector3{3.5, 0.5, 2.0}));
    EXPECT_FALSE(FaultOf(loads).empty());
}

TEST(PartFindings, SayWhatTheSupportsOfAPartLeaveFree)
{
    ModelText text = Row(2, 0.5);
    text.Restrain(0);
    text.Restrain(4, {1, 1, 1, 0, 0, 0});
    text.Restrain(5, {1, 1, 1, 0, 0, 0});
    const std::string fault = FaultOf(Balanced(text));
    EXPECT_NE(fault.find("; free to rotate about the axis through (2, 0, 2) along x; nearest"), std::string::npos)
        << fault;
}

TEST(PartFindings, AreNoneForAPartOnAHingeThatIsTheOnlySupportedOne)
{
    ModelText text = Row(2, 0.5);
    text.Restrain(4, {1, 1, 1, 0, 0, 0});
    const BalancedLoads loads = Balanced(text);
    ASSERT_EQ(loads.findings.size(), 1u); // the other part floats beside it; this one has no supported neighbour
    EXPECT_EQ(loads.findings[0].count, 1);
    EXPECT_EQ(loads.findings[0].worst[0].number, 1);
}

TEST(PartFindings, CountNodesThatWereNotMerged)
{
    ModelText text = Row(2, 0.0);
    text.Restrain(0);
    const std::string fault = FaultOf(Balanced(text));
    EXPECT_NE(
        fault.find("; 2 nodes at the place of nodes of other parts, not merged, the closest node 4 with node 1 of "
                   "part 1"),
        std::string::npos)
        << fault;
}

TEST(PartFindings, KeepTheWorstTenAndCountTheOthers)
{
    ModelText text = Row(14, 0.5);
    text.Restrain(0);
    const std::string fault = FaultOf(Balanced(text));
    EXPECT_NE(fault.find("error: parts that are free while another one is supported: 13 [floating-part]\n"),
              std::string::npos)
        << fault;
    EXPECT_NE(fault.find(" part 11 at ("), std::string::npos) << fault;
    EXPECT_EQ(fault.find(" part 12 at ("), std::string::npos) << fault;
    EXPECT_NE(fault.find("\n            and 3 more\n"), std::string::npos) << fault;
}

// Lowered by the user the run goes on: to the balance of the part's loads.
TEST(PartFindings, LetTheRunGoOnWhereTheUserLoweredThem)
{
    ModelText text = Row(2, 0.5);
    text.Restrain(0);
    const BalancedLoads warned = Balanced(text, FloatingPartsAre(Severity::Warning));
    EXPECT_EQ(FaultOf(warned), "");
    ASSERT_EQ(warned.findings.size(), 1u);
    EXPECT_EQ(warned.findings[0].severity, Severity::Warning);
    EXPECT_TRUE(Balanced(text, FloatingPartsAre(Severity::Off)).findings.empty());

    text.Force(4, {0.0, 0.0, 500.0, 0.0, 0.0, 0.0});
    const BalancedLoads pushed = Balanced(text, FloatingPartsAre(Severity::Warning));
    EXPECT_NE(FaultOf(pushed).find("[unbalanced-part]\n  there:    part 2 at (2, 0.5, 2), "), std::string::npos)
        << FaultOf(pushed);
    // As an error the floating part is told once.
    EXPECT_EQ(Balanced(text).findings.size(), 1u);
}

TEST(PartFindings, TellPartsWithMoreSupportsThanHoldThem)
{
    ModelText text = Row(1, 0.5);
    text.Restrain(0);
    text.Restrain(1, {0, 0, 1, 0, 0, 0});
    EXPECT_TRUE(Balanced(text).findings.empty()) << "without loads nothing is balanced";
    text.Force(2, {0.0, 0.0, 500.0, 0.0, 0.0, 0.0});
    const BalancedLoads loads = Balanced(text);
    ASSERT_EQ(loads.findings.size(), 1u);
    EXPECT_EQ(loads.findings[0].rule, RuleId::SupportsInBalance);
    EXPECT_EQ(loads.findings[0].severity, Severity::Warning);
    EXPECT_EQ(loads.findings[0].worst[0].detail, "7 directions restrained where 6 hold it");
}

TEST(PartFindings, AreWarningsInTheClassicBalance)
{
    ModelText text = Row(2, 0.5);
    text.Restrain(0);
    const BalancedLoads loads = Balanced(text, RulesForSolving({}, BalanceKind::Classic), BalanceKind::Classic);
    EXPECT_EQ(FaultOf(loads), "");
    ASSERT_EQ(loads.findings.size(), 1u);
    EXPECT_EQ(loads.findings[0].severity, Severity::Warning);
}

} // namespace
} // namespace tarnvexo
