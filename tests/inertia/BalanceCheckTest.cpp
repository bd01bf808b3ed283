#include "inertia/BalanceCheck.h"

#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace tarnvexo {
namespace {

// Two nodes on the x axis, one unit left and right of the origin, with these forces along y.
ModelStore TwoNodes(double left, double right)
{
    ModelStore model;
    model.NPOIN = 2;
    model.NodeCoordinates = {{-1.0, 0.0, 0.0}, {1.0, 0.0, 0.0}};
    model.GLOAD.assign(2 * DofsPerNode, 0.0);
    model.GLOAD[DY] = left;
    model.GLOAD[DofsPerNode + DY] = right;
    return model;
}

TEST(BalanceCheck, SizesCountForcesAndMomentsWithoutDirection)
{
    ModelStore model = TwoNodes(3.0, -4.0);
    model.GLOAD[RZ] = -2.0;
    const LoadSizes sizes = SizesOfLoads(model);
    EXPECT_DOUBLE_EQ(sizes.forces, 7.0);
    EXPECT_DOUBLE_EQ(sizes.moments, 3.0 + 4.0 + 2.0);
}

TEST(BalanceCheck, IsSilentWhenWhatRemainsIsRoundOffOfTheLoads)
{
    ModelStore model = TwoNodes(5.0, -5.0 + 1e-12);
    model.GLOAD[RZ] = 10.0;
    EXPECT_EQ(BalanceWarning(model, SizesOfLoads(model), "m.txt"), "");
}

// Equal forces on equal masses balance away node by node; only the loads before tell that what is left is round-off.
TEST(BalanceCheck, IsSilentWhenAllLoadsBalanceAway)
{
    EXPECT_EQ(BalanceWarning(TwoNodes(1e-16, 1e-16), {2.0, 2.0}, "m.txt"), "");
    EXPECT_NE(BalanceWarning(TwoNodes(1e-16, 1e-16), {0.0, 0.0}, "m.txt"), "");
}

TEST(BalanceCheck, NamesTheMomentThatRemains)
{
    const ModelStore model = TwoNodes(5.0, -5.0);
    const std::string warning = BalanceWarning(model, SizesOfLoads(model), "m.txt");
    EXPECT_NE(warning.find("force 0, 0, 0; moment about the centroid 0, 0, -10\n"), std::string::npos) << warning;
}

TEST(BalanceCheck, ReportsAResultantThatIsNotANumber)
{
    ModelStore model = TwoNodes(5.0, 5.0);
    model.GLOAD[DofsPerNode + RZ] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(
        BalanceWarning(model, SizesOfLoads(model), "m.txt").find("m.txt: warning: the balanced loads are not numbers"),
        0u);
}

TEST(SupportCheck, WarnsWhenSupportsHoldMoreThanARigidBody)
{
    ModelStore model = TwoNodes(5.0, -5.0);
    model.Restraints = {{{1, 1, 1, 1, 1, 1}, 0}};
    EXPECT_EQ(SupportWarning(model, SizesOfLoads(model), "m.txt"), "");
    model.Restraints.push_back({{2, 1, 0, 0, 0, 0}, 1}); // a flag other than 1 restrains nothing
    EXPECT_NE(SupportWarning(model, SizesOfLoads(model), "m.txt").find("7 directions are restrained"),
              std::string::npos);
    EXPECT_EQ(SupportWarning(model, {}, "m.txt"), "") << "without loads nothing can come out wrong";
}

} // namespace
} // namespace tarnvexo
