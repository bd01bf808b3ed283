#include "elements/ShellTransform.h"

#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

const Frame Lambda = SkewFrame();

TEST(ShellTransform, LocalCoordinatesAreProductsWithTheAxesFromTheGlobalOrigin)
{
    const auto tri = MakeTri({{{5.0, 1.0, -2.0}, {7.0, 1.5, 0.0}, {5.5, 3.0, 1.0}}}, 1.0, 0.0, 1.0);
    double x[3], y[3];
    LocalShellCoordinates(tri, x, y);
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(x[i], Dot(tri.axes[0], tri.coordinates[i]));
        EXPECT_EQ(y[i], Dot(tri.axes[1], tri.coordinates[i]));
    }
    EXPECT_GT(std::fabs(x[0]), 1.0); // node 1 is not the origin
}

TEST(ShellTransform, VectorToGlobalCarriesLocalComponentsAlongTheAxes)
{
    double local[18], global[18];
    for (int i = 0; i < 18; ++i) { local[i] = std::sin(i + 1.0); }
    VectorToGlobal<3>(Lambda.data(), local, global);
    for (int block = 0; block < 18; block += 3) {
        const Vector3 expected = FromFrame(Lambda, {local[block], local[block + 1], local[block + 2]});
        for (int k = 0; k < 3; ++k) { EXPECT_NEAR(global[block + k], expected[k], 1e-15); }
    }
}

TEST(ShellTransform, VectorToLocalUndoesVectorToGlobal)
{
    double local[18], global[18], back[18];
    for (int i = 0; i < 18; ++i) { local[i] = std::sin(i + 1.0); }
    VectorToGlobal<3>(Lambda.data(), local, global);
    VectorToLocal<3>(Lambda.data(), global, back);
    for (int i = 0; i < 18; ++i) { EXPECT_NEAR(back[i], local[i], 1e-15); }
}

TEST(ShellTransform, MatrixToGlobalKeepsTheEnergyOfEveryMotion)
{
    std::vector<double> K(18 * 18), global;
    for (int i = 0; i < 18; ++i) {
        for (int j = 0; j <= i; ++j) { K[i * 18 + j] = K[j * 18 + i] = std::cos(i + 2.0 * j) + (i == j ? 20.0 : 0.0); }
    }
    double d[18], turned[18];
    for (int i = 0; i < 18; ++i) { d[i] = std::sin(i + 1.0); }
    VectorToGlobal<3>(Lambda.data(), d, turned);
    global = K;
    MatrixToGlobal<3>(Lambda.data(), global.data());
    const double energy = StrainEnergy(K.data(), d, 18);
    EXPECT_NEAR(StrainEnergy(global.data(), turned, 18), energy, 1e-14 * energy);
}

TEST(ShellTransform, MembraneGoesToUVAndRotationZAndPlateToWAndRotationsXY)
{
    double Km[81], Kb[81], K[18 * 18];
    for (int i = 0; i < 81; ++i) {
        Km[i] = 1.0 + i;
        Kb[i] = 1000.0 + i;
    }
    JoinMembraneAndPlate<3>(Km, Kb, K);
    const int membrane[9] = {0, 1, 5, 6, 7, 11, 12, 13, 17}, plate[9] = {2, 3, 4, 8, 9, 10, 14, 15, 16};
    double expected[18 * 18] = {};
    for (int i = 0; i < 9; ++i) {
        for (int j = 0; j < 9; ++j) {
            expected[membrane[i] * 18 + membrane[j]] = Km[i * 9 + j];
            expected[plate[i] * 18 + plate[j]] = Kb[i * 9 + j];
        }
    }
    for (int i = 0; i < 18 * 18; ++i) { EXPECT_EQ(K[i], expected[i]) << i / 18 << "," << i % 18; }
}

} // namespace
} // namespace tarnvexo
