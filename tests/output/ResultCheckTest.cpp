#include "output/ResultCheck.h"

#include <gtest/gtest.h>
#include <limits>

namespace tarnvexo {
namespace {

constexpr double Nan = std::numeric_limits<double>::quiet_NaN();

// Three nodes, two quadrilaterals, one beam, all results zero.
ModelStore FiniteResults()
{
    ModelStore model;
    model.NPOIN = 3;
    model.GlobalDisplacement.assign(3 * DofsPerNode, 0.0);
    model.QuadElements.resize(2);
    model.BeamStressRecords.resize(1);
    model.BeamStressRecords[0].displacements.assign(DofsPerNode, 0.0);
    return model;
}

TEST(ResultCheck, IsSilentWhenAllResultsAreFinite)
{
    EXPECT_EQ(ResultWarning(FiniteResults()), "");
    EXPECT_EQ(ResultWarning(ModelStore()), "");
}

TEST(ResultCheck, CountsNodesAndElementsAndNamesTheFirst)
{
    ModelStore model = FiniteResults();
    model.GlobalDisplacement[DofsPerNode + RX] = Nan;
    model.GlobalDisplacement[2 * DofsPerNode] = std::numeric_limits<double>::infinity();
    model.QuadElements[1].positiveFace[QuadNodeCount - 1][StressCount - 1] = Nan;
    model.BeamStressRecords[0].displacements[RZ] = Nan;
    const std::string warning = ResultWarning(model);
    EXPECT_NE(warning.find("at 2 of 3 nodes (first 1), 1 of 2 four-node shells (first 1), 1 of 1 beams (first 0)\n"),
              std::string::npos)
        << warning;
}

} // namespace
} // namespace tarnvexo
