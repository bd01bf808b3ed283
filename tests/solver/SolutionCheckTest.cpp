#include "solver/SolutionCheck.h"

#include <gtest/gtest.h>
#include <limits>

namespace tarnvexo {
namespace {

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
    EXPECT_EQ(PivotWarning(UnitPivots()), "");
    EXPECT_EQ(PivotWarning(ModelStore()), "");
}

TEST(SolutionCheck, NamesNodeAndDirectionOfTheFirstPivotThatIsNotPositive)
{
    ModelStore model = UnitPivots();
    model.GlobalStiffness[DofsPerNode + RY] = 0.0;
    model.GlobalStiffness[DofsPerNode + RZ] = -2.0;
    const std::string warning = PivotWarning(model);
    EXPECT_NE(warning.find("node 1, direction ry: pivot 0 in the solution (2 of 12 pivots are not positive)"),
              std::string::npos)
        << warning;
}

TEST(SolutionCheck, CountsAPivotThatIsNotANumber)
{
    ModelStore model = UnitPivots();
    model.GlobalStiffness[DX] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(PivotWarning(model).find("(1 of 12"), std::string::npos);
}

} // namespace
} // namespace tarnvexo
