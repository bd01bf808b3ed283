#include "elements/Elasticity.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr double E = 2.1e11, Mu = 0.3, T = 0.02;

// σx = E·εx when the sides are free to contract, εy = −ν·εx.
TEST(PlaneStressMatrix, UniaxialStressContractsTheSidesByPoisson)
{
    double D[3][3];
    PlaneStressMatrix(E, Mu, D);
    const double strain[3] = {1.0, -Mu, 0.0};
    for (int i = 0; i < 3; ++i) {
        const double stress = D[i][0] * strain[0] + D[i][1] * strain[1] + D[i][2] * strain[2];
        EXPECT_NEAR(stress, i == EpsX ? E : 0.0, 1e-15 * E) << i;
    }
}

TEST(PlaneStressMatrix, ShearStressIsShearModulusTimesShearStrain)
{
    double D[3][3];
    PlaneStressMatrix(E, Mu, D);
    EXPECT_NEAR(D[GammaXY][GammaXY], E / 2.6, 1e-15 * E);
    EXPECT_EQ(D[GammaXY][EpsX], 0.0);
    EXPECT_EQ(D[EpsY][GammaXY], 0.0);
}

TEST(PlateRigidity, IsPlaneStressTimesTheMomentOfInertiaOfTheThickness)
{
    double D[3][3], Db[3][3];
    PlaneStressMatrix(E, Mu, D);
    PlateRigidity(E, Mu, T, Db);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { EXPECT_NEAR(Db[i][j], D[i][j] * T * T * T / 12.0, 1e-15 * Db[0][0]); }
    }
}

TEST(PlateShearRigidity, IsFiveSixthsOfShearModulusTimesThickness)
{
    const double expected = 5.0 / 6.0 * E / 2.6 * T;
    EXPECT_NEAR(PlateShearRigidity(E, Mu, T), expected, 1e-15 * expected);
}

TEST(DrillingPenalty, IsTenTimesShearModulusTimesThickness)
{
    const double expected = 10.0 * E / 2.6 * T;
    EXPECT_NEAR(DrillingPenalty(E, Mu, T), expected, 1e-15 * expected);
}

} // namespace
} // namespace tarnvexo
