#include "solver/SolutionCheck.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

const std::vector<double> UnitStiffness(2 * DofsPerNode, 1.0);

// Two nodes whose factor holds only pivots of 1.
ModelStore UnitPivots()
{
    ModelStore model;
    model.NPOIN = 2;
    model.EquationCount = 2 * DofsPerNode;
    model.GlobalStiffness.assign(model.EquationCount, 1.0);
    for (int j = 0; j < model.EquationCount; ++j) { model.DiagonalAddress.push_back(j); }
    return model;
}

TEST(SolutionCheck, IsSilentWhenAllPivotsArePositive)
{
    EXPECT_EQ(PivotWarning(UnitPivots(), UnitStiffness, "m.txt"), "");
    EXPECT_EQ(PivotWarning(ModelStore(), {}, "m.txt"), "");
}

TEST(SolutionCheck, NamesNodeAndDirectionOfTheFirstPivotThatIsNotPositive)
{
    ModelStore model = UnitPivots();
    model.GlobalStiffness[DofsPerNode + RY] = 0.0;
    model.GlobalStiffness[DofsPerNode + RZ] = -2.0;
    const std::string warning = PivotWarning(model, UnitStiffness, "m.txt");
    EXPECT_NE(
        warning.find(
            "m.txt: warning: node 1, direction ry: pivot 0 in the solution, where the stiffness is 1 (2 of 12 pivots"),
        std::string::npos)
        << warning;
}

// A free direction leaves round-off of either sign.
TEST(SolutionCheck, CountsAPivotThatIsOnlyRoundOffOfTheStiffness)
{
    ModelStore model = UnitPivots();
    model.GlobalStiffness[DZ] = 1e-12;
    EXPECT_NE(PivotWarning(model, UnitStiffness, "m.txt").find("node 0, direction dz"), std::string::npos);
    model.GlobalStiffness[DZ] = 1e-8;
    EXPECT_EQ(PivotWarning(model, UnitStiffness, "m.txt"), "");
}

TEST(SolutionCheck, CountsAPivotThatIsNotANumber)
{
    ModelStore model = UnitPivots();
    model.GlobalStiffness[DX] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(PivotWarning(model, UnitStiffness, "m.txt").find("(1 of 12"), std::string::npos);
}

} // namespace
} // namespace tarnvexo
