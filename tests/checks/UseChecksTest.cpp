#include "checks/ModelChecks.h"
#include "support/CheckedModels.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

const std::vector<RuleId> None;

// A square plate of side 1 with a force on its last node and a support on its first one.
ModelStore LoadedPlate()
{
    ModelStore model = QuadModel({{{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}}});
    model.NodalForces.push_back({3, {0.0, 0.0, 5.0, 0.0, 0.0, 0.0}});
    model.Restraints.push_back({{1, 1, 1, 0, 0, 0}, 0});
    return model;
}

std::vector<Finding> UseOf(const ModelStore& model)
{
    std::vector<Finding> findings;
    CheckUse(model, RuleBook(), findings);
    return findings;
}

// Only this rule found something, so often.
void ExpectOnly(const std::vector<Finding>& findings, RuleId rule, int count)
{
    ASSERT_EQ(findings.size(), 1u);
    EXPECT_STREQ(RuleOf(findings[0].rule).name, RuleOf(rule).name);
    EXPECT_EQ(findings[0].count, count);
}

TEST(UseChecks, LoadedPlateGivesNoFinding)
{
    EXPECT_EQ(RulesOf(UseOf(LoadedPlate())), None);
}

TEST(UseChecks, BeamEndWithoutAnythingIsLoose)
{
    ModelStore model = LoadedPlate();
    const int tip = AddNode(model, {2, 1, 0});
    AddBeam(model, {2, tip});
    const std::vector<Finding> findings = UseOf(model);
    ExpectOnly(findings, RuleId::LooseBeamEnd, 1);
    EXPECT_EQ(findings[0].worst[0].detail, "end at node 4");
    EXPECT_EQ(findings[0].worst[0].place, (Vector3{2, 1, 0}));
}

TEST(UseChecks, BeamEndWithASupportALoadOrAnotherElementIsNotLoose)
{
    ModelStore model = LoadedPlate();
    const int supported = AddNode(model, {2, 1, 0}), loaded = AddNode(model, {2, 2, 0}),
              met = AddNode(model, {2, 3, 0});
    AddBeam(model, {2, supported});
    AddBeam(model, {2, loaded});
    AddBeam(model, {2, met});
    AddBeam(model, {1, met});
    model.Restraints.push_back({{0, 0, 1, 0, 0, 0}, supported});
    model.NodalForces.push_back({loaded, {0.0, 0.0, 0.0, 0.0, 0.0, 1.0}});
    EXPECT_EQ(RulesOf(UseOf(model)), None);
}

TEST(UseChecks, SupportWithoutFlagsAndForceOfZeroDoNotHoldABeamEnd)
{
    ModelStore model = LoadedPlate();
    AddBeam(model, {2, AddNode(model, {2, 1, 0})});
    model.Restraints.push_back({{0, 0, 0, 0, 2, 0}, 4}); // 2 does not restrain
    model.NodalForces.push_back({4, {}});
    ExpectOnly(UseOf(model), RuleId::LooseBeamEnd, 1);
}

TEST(UseChecks, NodeWithoutElementsIsToldOnceByWhatStandsOnIt)
{
    ModelStore model = LoadedPlate();
    AddNode(model, {5, 0, 0});
    ExpectOnly(UseOf(model), RuleId::UnusedNode, 1);
    model.Restraints.push_back({{1, 0, 0, 0, 0, 0}, 4});
    ExpectOnly(UseOf(model), RuleId::UnstiffenedSupport, 1);
    model.NodalForces.push_back({4, {0.0, -1.0, 0.0, 0.0, 0.0, 0.0}});
    ExpectOnly(UseOf(model), RuleId::UnstiffenedLoad, 1);
}

TEST(UseChecks, LargestLoadOnNodesWithoutElementsComesFirst)
{
    ModelStore model = LoadedPlate();
    for (int i = 0; i < 3; ++i) { AddNode(model, {5.0 + i, 0, 0}); }
    model.NodalForces.push_back({4, {1.0}});
    model.NodalForces.push_back({5, {0.0, -7.0}});
    model.NodalForces.push_back({6, {}});
    const std::vector<Finding> findings = UseOf(model);
    const Finding* loads = FindingOf(findings, RuleId::UnstiffenedLoad);
    ASSERT_NE(loads, nullptr);
    EXPECT_EQ(loads->count, 2);
    EXPECT_EQ(loads->worst[0].number, 5);
    ASSERT_NE(FindingOf(findings, RuleId::UnusedNode), nullptr); // the force on node 6 is none
}

TEST(UseChecks, ModelWithLoadsOfZeroHasNoLoad)
{
    ModelStore model = LoadedPlate();
    model.NodalForces[0] = {3, {}};
    model.QuadDistributedLoads.push_back({0, {}});
    ExpectOnly(UseOf(model), RuleId::NoLoad, 1);
    model.QuadDistributedLoads.push_back({0, {0.0, 0.0, 1.0}});
    EXPECT_EQ(RulesOf(UseOf(model)), None);
}

TEST(UseChecks, LineLoadIsALoad)
{
    ModelStore model = LoadedPlate();
    model.NodalForces.clear();
    AddBeam(model, {1, 2});
    model.BeamDistributedLoads.push_back({0, 0.0, 3.0});
    EXPECT_EQ(RulesOf(UseOf(model)), None);
}

// The one offender of MixedUnits.
Offender MixedIn(const ModelStore& model)
{
    const std::vector<Finding> findings = UseOf(model);
    const Finding* mixed = FindingOf(findings, RuleId::MixedUnits);
    return mixed != nullptr && mixed->count == 1 ? mixed->worst[0] : Offender{"none or several", -1, 0.0, {}, ""};
}

TEST(UnitChecks, MixtureInOneMaterialIsToldWithWhatIsExpected)
{
    ModelStore model = LoadedPlate();
    model.Materials[0].Density = 7.85e-9;
    const Offender mixed = MixedIn(model);
    EXPECT_STREQ(mixed.kind, "material");
    EXPECT_EQ(mixed.number, 0);
    EXPECT_EQ(mixed.detail, "E=2.1e+11 is steel in N, m, kg, Density=7.85e-09 is in N, mm, t: "
                            "expected Density=7850 or E=210000");
}

TEST(UnitChecks, MaterialOfAnotherSystemThanMostElementsIsTold)
{
    ModelStore model = LoadedPlate();
    model.Materials.push_back({7e4, 0.3, 2.7e-9});
    AddTri(model, {0, 1, 2}, 1);
    AddTri(model, {0, 2, 3}, 0);
    const Offender mixed = MixedIn(model);
    EXPECT_EQ(mixed.number, 1);
    EXPECT_EQ(mixed.detail, "E=70000 and Density=2.7e-09 are in N, mm, t, most elements in N, m, kg");
}

TEST(UnitChecks, MaterialThatNoElementUsesIsNotJudged)
{
    ModelStore model = LoadedPlate();
    model.Materials.push_back({7e4, 0.3, 2.7e-9});
    model.Materials.push_back({7e4, 0.3, 2700.0});
    EXPECT_EQ(RulesOf(UseOf(model)), None);
}

TEST(UnitChecks, MaterialMadeStiffOnPurposeIsNotTold)
{
    ModelStore model = LoadedPlate();
    model.Materials[0] = {2.1e5, 0.3, 7.85e-9};
    model.Materials.push_back({2.1e8, 0.3, 7.85e-9}); // a thousand times stiffer; alone, it is kN, m with N, mm, t
    AddTri(model, {0, 1, 2}, 1);
    EXPECT_EQ(RulesOf(UseOf(model)), None);
    model.Materials[1].E = 210.0; // softer: GPa beside MPa
    EXPECT_EQ(MixedIn(model).number, 1);
}

TEST(UnitChecks, ThicknessBeyondTheSizeOfTheModelIsTold)
{
    ModelStore model = LoadedPlate(); // its diagonal is 1.414
    model.Thicknesses[0] = 1.41;
    EXPECT_EQ(RulesOf(UseOf(model)), None);
    model.Thicknesses[0] = 1.42;
    EXPECT_STREQ(MixedIn(model).kind, "thickness");
    model.Thicknesses[0] = 1.42e-7;
    EXPECT_EQ(RulesOf(UseOf(model)), None);
    model.Thicknesses[0] = 1.41e-7;
    EXPECT_STREQ(MixedIn(model).kind, "thickness");
}

TEST(UnitChecks, SectionLargerThanTheModelIsTold)
{
    ModelStore model = LoadedPlate();
    AddBeam(model, {1, 2});
    model.CBeamSections[0] = {50.0, 4.0}; // mm in a model in m
    const Offender mixed = MixedIn(model);
    EXPECT_STREQ(mixed.kind, "beam");
    EXPECT_EQ(mixed.detail, "section of size 100 in a model of size 1.41421");
}

TEST(UnitChecks, ModelOfKilometresInTheUnitsOfItsMaterialsIsTold)
{
    ModelStore model = QuadModel({{{0, 0, 0}, {12000, 0, 0}, {12000, 9000, 0}, {0, 9000, 0}}}); // 12 m by 9 m in mm
    model.Thicknesses[0] = 10.0;
    model.NodalForces.push_back({3, {0.0, 0.0, 5.0}});
    EXPECT_EQ(MixedIn(model).detail, "in N, m, kg, as it is, the model is 15 km large");
    model.Materials[0] = {2.1e5, 0.3, 7.85e-9};
    EXPECT_EQ(RulesOf(UseOf(model)), None);
}

TEST(UnitChecks, BeamOfAnUnknownSectionTypeIsLeftAlone)
{
    ModelStore model = LoadedPlate();
    AddBeam(model, {1, 2}, 99);
    model.BeamSectionRefs[0] = {7, 99, 0.0, false};
    EXPECT_EQ(RulesOf(UseOf(model)), None);
}

} // namespace
} // namespace tarnvexo
