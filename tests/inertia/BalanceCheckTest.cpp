#include "inertia/BalanceCheck.h"

#include <gtest/gtest.h>
#include <limits>

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
    EXPECT_EQ(BalanceWarning(model, SizesOfLoads(model)), "");
}

// Equal forces on equal masses balance away node by node; only the loads before tell that what is left is round-off.
TEST(BalanceCheck, IsSilentWhenAllLoadsBalanceAway)
{
    EXPECT_EQ(BalanceWarning(TwoNodes(1e-16, 1e-16), {2.0, 2.0}), "");
    EXPECT_NE(BalanceWarning(TwoNodes(1e-16, 1e-16), {0.0, 0.0}), "");
}

TEST(BalanceCheck, NamesTheMomentThatRemains)
{
    const ModelStore model = TwoNodes(5.0, -5.0);
    const std::string warning = BalanceWarning(model, SizesOfLoads(model));
    EXPECT_NE(warning.find("force 0, 0, 0; moment about the centroid 0, 0, -10\n"), std::string::npos) << warning;
}

TEST(BalanceCheck, ReportsAResultantThatIsNotANumber)
{
    ModelStore model = TwoNodes(5.0, 5.0);
    model.GLOAD[DofsPerNode + RZ] = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(BalanceWarning(model, SizesOfLoads(model)), "");
}

} // namespace
} // namespace tarnvexo
