#include "checks/ModelChecks.h"
#include "core/Parallel.h"
#include "input/StrictReader.h"
#include "refine/GeneratedModels.h"
#include "support/SmallModels.h"

#include <cmath>
#include <filesystem>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace tarnvexo {
namespace {

using test::ModelText;
using test::StoreOf;

constexpr int Thin = 0, Thick = 1, Medium = 2;    // thicknesses
constexpr int Steel = 0, Light = 1, Massless = 2; // materials

// A plate of 3 x 2 squares, nodes 0 ... 11 line by line from y = 0 upwards.
ModelText Plate()
{
    ModelText model;
    model.Material(2.1e11, 0.3, 7850.0);
    model.Material(2.1e11, 0.3, 500.0);
    model.Material(2.1e11, 0.3, 0.0);
    model.Thickness(0.010);
    model.Thickness(0.060);
    model.Thickness(0.045);
    model.TSection(0.1, 0.01, 0.0, 0.0);
    for (int i = 0; i < 12; ++i) { model.Node(i % 4, i / 4, 0.0); }
    return model;
}

// Its squares; the one with number `other` is made of another material and thickness.
void AddSquares(ModelText& model, int other = -1, int material = Steel, int thickness = Thin)
{
    for (int i = 0; i < 6; ++i) {
        const int n = i / 3 * 4 + i % 3;
        model.Quad({n, n + 1, n + 5, n + 4}, i == other ? material : Steel, i == other ? thickness : Thin);
    }
}

std::vector<Finding> FindingsOf(const ModelStore& model, const RuleBook& rules = {})
{
    std::vector<Finding> findings;
    CheckConnections(model, rules, findings);
    return findings;
}

std::vector<Finding> FindingsOf(const ModelText& model)
{
    return FindingsOf(StoreOf(model));
}

// nullptr: the rule found nothing.
const Finding* Of(RuleId rule, const std::vector<Finding>& findings)
{
    for (const Finding& finding : findings) {
        if (finding.rule == rule) {
            return &finding;
        }
    }
    return nullptr;
}

std::string TextOf(const std::vector<Finding>& findings)
{
    std::string text;
    for (const Finding& finding : findings) {
        text +=
            std::string(RuleOf(finding.rule).name) + " " + std::to_string(finding.count) + " " + finding.summary + "\n";
        for (const Offender& one : finding.worst) {
            text += std::string("  ") + one.kind + " " + std::to_string(one.number) + " " +
                    test::NumberText(one.value) + " " + test::NumberText(one.place[0]) + " " +
                    test::NumberText(one.place[1]) + " " + test::NumberText(one.place[2]) + " " + one.detail + "\n";
        }
    }
    return text;
}

// A model that every rule finds something in: a plate whose second square is thick, its third heavy and turned, its
// fourth doubled, with a finer strip below and, apart, a copy of a part of it.
ModelText Faulty()
{
    ModelText model = Plate();
    model.Quad({0, 1, 5, 4});
    model.Quad({1, 2, 6, 5}, Steel, Thick);
    model.Quad({2, 6, 7, 3}, Light);
    model.Quad({4, 5, 9, 8});
    model.Quad({5, 6, 10, 9});
    model.Quad({6, 7, 11, 10});
    model.Quad({9, 8, 4, 5});
    const int below = model.Node(0.0, -1.0, 0.0), half = model.Node(0.5, 0.0, 0.0), corner = model.Node(1.0, -1.0, 0.0);
    model.Tri({0, below, half});
    model.Tri({below, corner, half});
    model.Tri({corner, 1, half});
    const int a = model.Node(3.0, 0.0, 0.0), b = model.Node(4.0, 0.0, 0.0), c = model.Node(3.0, 1.0, 0.0);
    model.Tri({a, b, c});
    return model;
}

// Places moved by a rotation and a factor.
ModelStore Moved(ModelStore model, double factor)
{
    for (Vector3& X : model.NodeCoordinates) {
        const Vector3 e1 = {0.6, 0.48, 0.64}, e2 = {-0.8, 0.36, 0.48}, e3 = {0.0, -0.8, 0.6};
        X = factor * (X[0] * e1 + X[1] * e2 + X[2] * e3);
    }
    return model;
}

TEST(ConnectionChecks, SoundPlateHasFreeEdgesAndNothingElse)
{
    ModelText model = Plate();
    AddSquares(model);
    const std::vector<Finding> findings = FindingsOf(model);
    ASSERT_EQ(findings.size(), 1u) << TextOf(findings);
    EXPECT_EQ(findings[0].rule, RuleId::FreeEdge);
    EXPECT_EQ(findings[0].severity, Severity::Note);
    EXPECT_EQ(findings[0].count, 10);
    EXPECT_EQ(findings[0].summary, "10 long in all");
}

TEST(ConnectionChecks, ClosedBoxHasNoFinding)
{
    ModelText model = Plate();
    for (int i = 0; i < 8; ++i) { model.Node(i & 1, i >> 1 & 1, 5.0 + (i >> 2)); }
    for (const std::array<int, 4>& side :
         {std::array{0, 2, 3, 1}, {4, 5, 7, 6}, {0, 1, 5, 4}, {2, 6, 7, 3}, {0, 4, 6, 2}, {1, 3, 7, 5}}) {
        model.Quad({12 + side[0], 12 + side[1], 12 + side[2], 12 + side[3]});
    }
    EXPECT_TRUE(FindingsOf(model).empty());
}

TEST(ConnectionChecks, FreeEdgeIsToldWithItsLengthAndTheBeamAlongIt)
{
    ModelText model = Plate();
    model.Quad({0, 1, 5, 4});
    model.Quad({1, 2, 6, 5});
    const int end = model.Node(3.5, 1.0, 0.0);
    model.Tri({2, end, 6});
    model.Beam({6, end}, {0.0, 0.0, 1.0}, 0, TSection, 0);
    const std::vector<Finding> findings = FindingsOf(model);
    const Finding* finding = Of(RuleId::FreeEdge, findings);
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->count, 7);
    EXPECT_EQ(finding->summary, "8.30278 long in all, 1 of them along beams"); // 5 + 3/2 + √(1 + 9/4)
    EXPECT_STREQ(finding->worst[0].kind, "tri");
    EXPECT_EQ(finding->worst[0].detail, "between nodes 2 and 12, 1.80278 long");
    EXPECT_EQ(finding->worst[1].detail, "between nodes 6 and 12, 1.5 long, along a beam");
    EXPECT_EQ(finding->worst[1].place, (Vector3{2.75, 1.0, 0.0}));
}

TEST(ConnectionChecks, DuplicateShellIsToldOnceAndNotAsAFold)
{
    ModelText model = Plate();
    AddSquares(model);
    model.Quad({5, 4, 0, 1});
    const std::vector<Finding> findings = FindingsOf(model);
    ASSERT_EQ(findings.size(), 2u) << TextOf(findings);
    EXPECT_EQ(findings[0].rule, RuleId::DuplicateElement);
    EXPECT_EQ(findings[0].count, 1);
    EXPECT_EQ(findings[0].worst[0].number, 6);
    EXPECT_EQ(findings[0].worst[0].detail, "on the nodes of quad 0");
    EXPECT_EQ(findings[1].rule, RuleId::FreeEdge);
    EXPECT_EQ(findings[1].count, 10);
}

TEST(ConnectionChecks, OpposedShellIsToldWithItsNeighboursAndPatch)
{
    ModelText model = Plate();
    for (const std::array<int, 4>& nodes :
         {std::array{0, 1, 5, 4}, {1, 5, 6, 2}, {2, 3, 7, 6}, {4, 5, 9, 8}, {5, 6, 10, 9}, {6, 7, 11, 10}}) {
        model.Quad(nodes);
    }
    const std::vector<Finding> findings = FindingsOf(model);
    const Finding* finding = Of(RuleId::OpposedNormals, findings);
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->count, 3);
    EXPECT_EQ(finding->summary,
              "2 patches of one orientation, the smallest of 1 shell: quad 1; to turn in all: 1 shell");
    for (const Offender& offender : finding->worst) { EXPECT_EQ(offender.number, 1); }
    EXPECT_EQ(finding->worst[0].detail, "against quad 0 between nodes 1 and 5, in a patch of 1 shell");
}

TEST(ConnectionChecks, ThicknessJumpIsToldAboveTheLimit)
{
    ModelText thick = Plate(), medium = Plate();
    AddSquares(thick, 1, Steel, Thick);
    AddSquares(medium, 1, Steel, Medium);
    const std::vector<Finding> findings = FindingsOf(thick);
    const Finding* finding = Of(RuleId::ThicknessJump, findings);
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->count, 3);
    EXPECT_DOUBLE_EQ(finding->worst[0].value, 6.0);
    EXPECT_EQ(finding->worst[0].detail, "thickness 0.01 beside 0.06 of quad 1");
    EXPECT_EQ(Of(RuleId::ThicknessJump, FindingsOf(medium)), nullptr);
}

TEST(ConnectionChecks, DensityJumpIsToldAndAMasslessNeighbourIsTheLargest)
{
    ModelText light = Plate(), massless = Plate(), allMassless = Plate();
    AddSquares(light, 0, Light);
    AddSquares(massless, 0, Massless);
    allMassless.Quad({0, 1, 5, 4}, Massless);
    allMassless.Quad({1, 2, 6, 5}, Massless);
    const std::vector<Finding> findings = FindingsOf(light);
    const Finding* finding = Of(RuleId::DensityJump, findings);
    ASSERT_NE(finding, nullptr);
    EXPECT_EQ(finding->count, 2);
    EXPECT_DOUBLE_EQ(finding->worst[0].value, 15.7);
    EXPECT_EQ(finding->worst[0].detail, "density 500 beside 7850 of quad 1");
    EXPECT_EQ(Of(RuleId::DensityJump, FindingsOf(massless))->worst[0].value, std::numeric_limits<double>::infinity());
    EXPECT_EQ(Of(RuleId::DensityJump, FindingsOf(allMassless)), nullptr);
}

// A web as thick as that on the plate: three shells meet, and thicknesses of a junction are not compared.
TEST(ConnectionChecks, JunctionHasNoJump)
{
    ModelText model = Plate();
    AddSquares(model);
    const int top = model.Node(1.0, 0.5, 1.0);
    model.Tri({1, 5, top}, Light, Thick);
    const std::vector<Finding> findings = FindingsOf(model);
    EXPECT_EQ(Of(RuleId::ThicknessJump, findings), nullptr);
    EXPECT_EQ(Of(RuleId::DensityJump, findings), nullptr);
}

TEST(ConnectionChecks, PartsAreToldSmallestFirstAndCoincidentNodesBetweenThemFirst)
{
    const std::vector<Finding> findings = FindingsOf(Faulty());
    const Finding* parts = Of(RuleId::DisconnectedParts, findings);
    ASSERT_NE(parts, nullptr);
    EXPECT_EQ(parts->count, 2);
    EXPECT_EQ(parts->worst[0].number, 2);
    EXPECT_EQ(parts->worst[0].detail.substr(0, 14), "3 nodes, 1 tri");
    EXPECT_EQ(parts->worst[0].place, (Vector3{3.5, 0.5, 0.0}));

    const Finding* coincident = Of(RuleId::CoincidentNodes, findings);
    ASSERT_NE(coincident, nullptr);
    EXPECT_EQ(coincident->count, 2);
    EXPECT_EQ(coincident->summary, "2 of them between different parts");
    EXPECT_EQ(coincident->worst[0].number, 15);
    EXPECT_EQ(coincident->worst[0].detail, "at node 3 of part 1, this one of part 2");
}

TEST(ConnectionChecks, TJunctionIsToldWithTheShellAndItsEdge)
{
    const std::vector<Finding> findings = FindingsOf(Faulty());
    const Finding* junctions = Of(RuleId::TJunction, findings);
    ASSERT_NE(junctions, nullptr);
    EXPECT_EQ(junctions->count, 1);
    EXPECT_EQ(junctions->worst[0].number, 13);
    EXPECT_EQ(junctions->worst[0].detail, "on quad 0 between nodes 0 and 1 of the same part");
}

TEST(ConnectionChecks, TJunctionInsideAFaceIsToldWithTheShell)
{
    ModelText text = Plate();
    AddSquares(text);
    const int foot = text.Node(0.4, 0.3, 0.0), top = text.Node(0.4, 0.3, 2.0);
    text.Beam({foot, top}, {1.0, 0.0, 0.0}, 0, 0, 0);
    const std::vector<Finding> findings = FindingsOf(text);
    const Finding* junctions = Of(RuleId::TJunction, findings);
    ASSERT_NE(junctions, nullptr);
    EXPECT_EQ(junctions->count, 1);
    EXPECT_EQ(junctions->worst[0].number, foot);
    EXPECT_EQ(junctions->worst[0].detail, "inside quad 0 of part 1, this one of part 2");
    EXPECT_EQ(junctions->summary, "1 of them between different parts");
}

TEST(ConnectionChecks, FindingsDoNotDependOnSizeAndDirectionOfTheModel)
{
    const ModelStore model = StoreOf(Faulty());
    const std::vector<Finding> plain = FindingsOf(model);
    ASSERT_EQ(plain.size(), 8u) << TextOf(plain);
    for (const double factor : {1e-6, 1.0, 1e7}) {
        const std::vector<Finding> moved = FindingsOf(Moved(model, factor));
        ASSERT_EQ(moved.size(), plain.size()) << factor;
        for (std::size_t f = 0; f < plain.size(); ++f) {
            EXPECT_EQ(moved[f].rule, plain[f].rule) << factor;
            EXPECT_EQ(moved[f].count, plain[f].count) << factor << " " << RuleOf(plain[f].rule).name;
        }
    }
}

TEST(ConnectionChecks, RuleThatIsOffIsNotToldAndTheOthersAre)
{
    const ModelStore model = StoreOf(Faulty());
    const std::vector<Finding> all = FindingsOf(model);
    for (const Finding& finding : all) {
        RuleBook rules;
        rules.SetSeverity(finding.rule, Severity::Off);
        const std::vector<Finding> rest = FindingsOf(model, rules);
        EXPECT_EQ(rest.size(), all.size() - 1) << RuleOf(finding.rule).name;
        EXPECT_EQ(Of(finding.rule, rest), nullptr) << RuleOf(finding.rule).name;
    }
}

TEST(ConnectionChecks, FindingsAreTheSameForAnyNumberOfThreads)
{
    ModelStore barrel = BarrelModel(60000);
    // Faults all over it: pairs of quads turned, thickened and moved.
    barrel.Thicknesses.push_back(100.0 * barrel.Thicknesses[0]);
    for (std::size_t e = 0; e < barrel.QuadConnectivity.size(); e += 97) {
        std::swap(barrel.QuadConnectivity[e][1], barrel.QuadConnectivity[e][3]);
        barrel.QuadProperties[e].thickness = static_cast<int>(barrel.Thicknesses.size()) - 1;
    }
    for (std::size_t n = 0; n + 1 < barrel.NodeCoordinates.size(); n += 211) {
        barrel.NodeCoordinates[n] = barrel.NodeCoordinates[(7 * n + 5) % barrel.NodeCoordinates.size()];
    }
    std::string one;
    for (const int threads : {1, 2, 3}) {
        SetThreadCount(threads);
        const std::string text = TextOf(FindingsOf(barrel));
        one = threads == 1 ? text : one;
        EXPECT_EQ(text, one) << threads;
    }
    SetThreadCount(0);
    EXPECT_NE(one.find("coincident-nodes"), std::string::npos);
    EXPECT_NE(one.find("opposed-normals"), std::string::npos);
}

TEST(ConnectionChecks, EmptyModelHasNoFinding)
{
    EXPECT_TRUE(FindingsOf(ModelStore()).empty());
}

// Structures that are in one piece and meshed with care: no rule but those of plates' ends and orientation speaks.
TEST(ConnectionChecks, GeneratedStructuresAreConnected)
{
    for (const ModelStore& model : {StiffenedPlateModel(6000), BoxGirderModel(6000), ShipHoldModel(6000),
                                    BarrelModel(6000), BeamLatticeModel(6000)}) {
        for (const Finding& finding : FindingsOf(model)) {
            EXPECT_TRUE(finding.rule == RuleId::FreeEdge || finding.rule == RuleId::ThicknessJump) << TextOf({finding});
        }
    }
}

TEST(ConnectionChecks, CasesAndExamplesHaveNoError)
{
    int models = 0;
    for (const char* folder : {"/tests/cases", "/examples"}) {
        for (const auto& entry : std::filesystem::directory_iterator(TARNVEXO_SOURCE_DIR + std::string(folder))) {
            ModelStore model;
            const std::string file = (entry.path() / "fem_solving.txt").string();
            if (!entry.is_directory() || !ReadModelFileStrictly(model, file.c_str(), RuleBook())) {
                continue;
            }
            for (const Finding& finding : FindingsOf(model)) {
                EXPECT_NE(finding.severity, Severity::Error) << file << "\n" << TextOf({finding});
                EXPECT_TRUE(finding.rule == RuleId::FreeEdge || finding.rule == RuleId::OpposedNormals)
                    << file << "\n"
                    << TextOf({finding});
            }
            ++models;
        }
    }
    EXPECT_GE(models, 14);
}

} // namespace
} // namespace tarnvexo
