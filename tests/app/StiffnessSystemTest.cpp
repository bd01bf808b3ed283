#include "app/StiffnessSystem.h"

#include "app/AssemblyDriver.h"
#include "app/FreeParts.h"
#include "app/SparseAssembly.h"
#include "refine/GeneratedModels.h"
#include "refine/NodeRenumbering.h"
#include "solver/BandOrdering.h"
#include "support/Eigenvalues.h"
#include "support/NodeGraphs.h"
#include "support/RandomModels.h"
#include "support/SmallModels.h"
#include "support/SolveSteps.h"

#include <cmath>
#include <gtest/gtest.h>
#include <numeric>

namespace tarnvexo {
namespace {

using namespace test;

// Folded cantilever of two columns of cells, clamped at x = 0, with a force at its end. The outer half is thinner and
// softer by the ratios.
ModelText Cantilever(double thicknessRatio, double modulusRatio)
{
    constexpr int columns = 8;
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Material(2.1e11 / modulusRatio, 0.3, 7850.0);
    text.Thickness(0.1);
    text.Thickness(0.1 / thicknessRatio);
    for (int i = 0; i <= columns; ++i) {
        for (int j = 0; j < 3; ++j) { text.Node(0.5 * i, 0.5 * j, 0.05 * (i % 2)); }
    }
    for (int i = 0; i < columns; ++i) {
        const int half = i < columns / 2 ? 0 : 1;
        for (int j = 0; j < 2; ++j) { text.Quad({3 * i + j, 3 * i + 3 + j, 3 * i + 4 + j, 3 * i + 1 + j}, half, half); }
    }
    for (int j = 0; j < 3; ++j) { text.Restrain(j); }
    text.Force(3 * columns + 1, {10.0, 20.0, 30.0, 0.0, 0.0, 0.0});
    return text;
}

class StiffnessSystems : public testing::TestWithParam<SolverKind> {
protected:
    struct Run {
        SolverReport report;
        std::vector<double> displacements;
        double strainEnergy = 0.0;
        double externalWork = 0.0;
    };

    // Without inertia relief.
    static Run Solve(const ModelText& text)
    {
        ModelStore model = StoreOf(text);
        model.EquationCount = DofsPerNode * model.NPOIN;
        AssembleLoads(model);
        StiffnessSystem system(model, GetParam());
        system.Order();
        system.Analyse("model.txt");
        system.Assemble();
        system.Factorise(FindFreeParts(model).isHeld, "model.txt");
        Run run;
        run.displacements = system.Solve(model.GLOAD);
        run.report = system.Report();
        run.strainEnergy = system.StrainEnergy();
        run.externalWork =
            0.5 * std::inner_product(model.GLOAD.begin(), model.GLOAD.end(), run.displacements.begin(), 0.0);
        return run;
    }

    static std::string FailureOf(const ModelText& text)
    {
        try {
            Solve(text);
        } catch (const RunFailure& failure) {
            EXPECT_EQ(failure.exitCode, ExitNumerical);
            return failure.what();
        }
        ADD_FAILURE() << "nothing was refused";
        return "";
    }
};

INSTANTIATE_TEST_SUITE_P(All, StiffnessSystems,
                         testing::Values(SolverKind::Sparse, SolverKind::Cholmod, SolverKind::Skyline),
                         [](const auto& info) -> std::string {
                             return info.param == SolverKind::Sparse    ? "Sparse"
                                    : info.param == SolverKind::Cholmod ? "Cholmod"
                                                                        : "Skyline";
                         });

// Halves with thicknesses 1 : 10⁴ (bending stiffness 1 : 10¹²) and moduli 1 : 10⁶. The foil, folded and 10⁹ times
// stiffer in its plane than in bending, costs up to twelve digits in any order, which refinement gives back.
TEST_P(StiffnessSystems, LeaveNoResidualWhateverTheStiffnesses)
{
    struct Case {
        double thicknesses, moduli, energyError;
    };
    for (const Case& c : {Case{1.0, 1.0, 1e-10}, {1.0, 1e6, 1e-10}, {1e4, 1.0, 1e-12}, {1e4, 1e6, 1e-12}}) {
        const Run run = Solve(Cantilever(c.thicknesses, c.moduli));
        EXPECT_LT(run.report.relativeResidual, 1e-15) << c.thicknesses << ", " << c.moduli;
        EXPECT_NEAR(run.strainEnergy, run.externalWork, c.energyError * run.externalWork)
            << c.thicknesses << ", " << c.moduli;
    }
}

// A strip clamped at one end moves as a rigid body nearly everywhere. Elimination from the free end meets no small
// pivot; the loads tell.
TEST_P(StiffnessSystems, RefineALongStripHoweverItIsOrdered)
{
    constexpr int columns = 100;
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Thickness(0.001);
    for (int i = 0; i <= columns; ++i) {
        for (int j = 0; j < 2; ++j) { text.Node(0.5 * i, 0.5 * j, 0.0); }
    }
    for (int i = 0; i < columns; ++i) { text.Quad({2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1}); }
    text.Restrain(0);
    text.Restrain(1);
    text.Force(2 * columns, {1.0, 2.0, 3.0, 0.0, 0.0, 0.0});
    const Run run = Solve(text);
    EXPECT_GE(run.report.refinementSteps, 1);
    ASSERT_TRUE(run.report.displacementError && run.report.displacementErrorBefore);
    EXPECT_GT(*run.report.displacementErrorBefore, 1e-8);
    EXPECT_LE(*run.report.displacementError, 1e-13);
    EXPECT_NEAR(run.strainEnergy, run.externalWork, 1e-11 * run.externalWork);
}

TEST_P(StiffnessSystems, MakeNoCorrectionWhereNothingIsLost)
{
    const Run run = Solve(OneOfEachKind());
    EXPECT_EQ(run.report.refinementSteps, 0);
    EXPECT_FALSE(run.report.displacementError);
    EXPECT_EQ(run.report.relativeResidual, run.report.residualBeforeRefinement);
    EXPECT_LT(run.report.relativeResidual, 1e-15);
}

TEST_P(StiffnessSystems, DoAsMuchWorkInsideAsOutside)
{
    for (unsigned seed = 0; seed < 9; ++seed) {
        const Run run = Solve(RandomModel(seed, Supports::ThreeTwoOne));
        EXPECT_NEAR(run.strainEnergy, run.externalWork, 1e-11 * run.externalWork) << "seed " << seed;
    }
}

// The matrix scaled to a unit diagonal has a condition of at least the estimate.
TEST_P(StiffnessSystems, EstimateTheConditionFromBelow)
{
    for (const unsigned seed : {2u, 5u, 8u}) { // frames, of less than a hundred equations
        const ModelText text = RandomModel(seed, Supports::ThreeTwoOne);
        const ModelStore model = StoreOf(text);
        const EliminationOrder order = NaturalOrder(model.NPOIN);
        BlockMatrix matrix;
        matrix.pattern = LowerPattern(BuildNodeGraph(model), order);
        AssembleBlockMatrix(model, order, matrix);
        EliminateEquations(matrix, FindFreeParts(model).isHeld);
        std::vector<double> K = DenseOf(matrix);
        const std::vector<double> diagonal = DiagonalOf(matrix);
        const std::size_t n = diagonal.size();
        for (std::size_t i = 0; i < n; ++i) {
            for (std::size_t j = 0; j < n; ++j) { K[i * n + j] /= std::sqrt(diagonal[i] * diagonal[j]); }
        }
        const std::vector<double> eigenvalues = SymmetricEigenvalues(K.data(), static_cast<int>(n));
        const double condition = eigenvalues.back() / eigenvalues.front();
        const SolverReport report = Solve(text).report;
        EXPECT_LE(report.conditionEstimate, condition) << "seed " << seed;
        EXPECT_GT(report.conditionEstimate, 1.0);
        EXPECT_NEAR(report.conditionEstimate * report.smallestPivotRatio, 1.0, 1e-14);
    }
}

// The middle plate of three in a row pulls where it should push.
TEST_P(StiffnessSystems, NameNodeAndElementsWhereTheStiffnessIsNotPositive)
{
    ModelText text;
    text.Material(2.1e11, 0.3, 7850.0);
    text.Material(-2.1e11, 0.3, 7850.0);
    text.Thickness(0.01);
    for (int i = 0; i < 5; ++i) {
        text.Node(i, 0.0, 0.0);
        text.Node(i, 1.0, 0.0);
    }
    for (int i = 0; i < 4; ++i) { text.Quad({2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1}, i == 3 ? 1 : 0); }
    text.Restrain(0);
    text.Restrain(1);
    const std::string failure = FailureOf(text);
    EXPECT_EQ(failure.find("model.txt: error: the stiffness is not positive definite: "), 0u) << failure;
    EXPECT_NE(failure.find("\n    attached: four-node shell 3\n"), std::string::npos) << failure;
    EXPECT_NE(failure.find("\n    cause:    four-node shell 3 gives energy away: "), std::string::npos) << failure;
    EXPECT_EQ(failure.find("cause:    four-node shell 2"), std::string::npos) << failure;
    EXPECT_NE(failure.find("\n  expected: every node held by elements"), std::string::npos) << failure;
    EXPECT_NE(failure.find("\n  to do:    "), std::string::npos) << failure;
}

TEST_P(StiffnessSystems, NameANodeWhoseStiffnessIsNotANumber)
{
    ModelText text = OneOfEachKind();
    const int far = text.Node(4.0, 0.0, 0.0);
    text.Tri({4, far, far}); // no area
    const std::string failure = FailureOf(text);
    EXPECT_EQ(failure.find("model.txt: error: the stiffness is not positive definite at node "), 0u) << failure;
    EXPECT_NE(failure.find("three-node shells "), std::string::npos) << failure;
}

TEST_P(StiffnessSystems, HoldNodesWithoutElements)
{
    ModelText text = OneOfEachKind();
    const int loose = text.Node(7.0, 7.0, 7.0);
    text.Force(loose, {1.0, 2.0, 3.0, 0.0, 0.0, 0.0});
    const Run run = Solve(text);
    for (int k = 0; k < DofsPerNode; ++k) { EXPECT_EQ(run.displacements[DofsPerNode * loose + k], 0.0); }
    EXPECT_GT(run.strainEnergy, 0.0);
}

TEST_P(StiffnessSystems, SolveAModelOfLooseNodesOnly)
{
    ModelText text;
    text.Node(0.0, 0.0, 0.0);
    EXPECT_EQ(Solve(text).displacements, std::vector<double>(6, 0.0));
    text.Node(1.0, 0.0, 0.0);
    EXPECT_EQ(Solve(text).displacements, std::vector<double>(12, 0.0));
}

TEST(StiffnessSystem, TakesTheSkylineForSmallModelsUnlessAskedOtherwise)
{
    const ModelStore small = StoreOf(OneOfEachKind());
    ModelStore large = StiffenedPlateModel(2 * FewEquations);
    EXPECT_NE(StiffnessSystem(small, SolverKind::Automatic).Report().engine.find("skyline"), std::string::npos);
    EXPECT_NE(StiffnessSystem(small, SolverKind::Sparse).Report().engine.find("multifrontal"), std::string::npos);
    EXPECT_NE(StiffnessSystem(small, SolverKind::Cholmod).Report().engine.find("CHOLMOD"), std::string::npos);
    EXPECT_NE(StiffnessSystem(large, SolverKind::Automatic).Report().engine.find("multifrontal"), std::string::npos);
    EXPECT_NE(StiffnessSystem(large, SolverKind::Skyline).Report().engine.find("skyline"), std::string::npos);
}

// Numbers dealt at random: the skyline that the engine stores is that of its own order, not the file's.
TEST(StiffnessSystem, OrdersTheSkylineByItself)
{
    ModelStore model = BoxGirderModel(3000);
    PermuteNodes(model, RandomOrder(model.NPOIN, 1).nodeAt);
    StiffnessSystem system(model, SolverKind::Skyline);
    system.Order();
    system.Analyse("model.txt");
    const std::vector<int> asNumbered = NaturalOrder(model.NPOIN).nodeAt;
    EXPECT_LT(system.Size().entries, 0.3 * SkylineCostWith(BuildNodeGraph(model), asNumbered).entries);
    EXPECT_EQ(system.Report().ordering, "reverse Cuthill-McKee on nodes");
}

} // namespace
} // namespace tarnvexo
