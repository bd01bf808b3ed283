#include "elements/ShellTransform.h"

#include "elements/ShellTransform-inl.h"
#include "support/ElementTools.h"

#include <cmath>
#include <cstring>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

using namespace test;

const Frame Lambda = SkewFrame();

// Symmetric matrices without two equal entries.
void FillParts(double Km[9][9], double Kb[9][9])
{
    for (int i = 0; i < 9; ++i) {
        for (int j = i; j < 9; ++j) {
            Km[i][j] = Km[j][i] = 1.0 + 9 * i + j;
            Kb[i][j] = Kb[j][i] = 1000.0 + 9 * i + j;
        }
    }
}

// The local matrix of a triangle, u, v, w, θx, θy, θz of each node.
void Join(const double Km[9][9], const double Kb[9][9], double K[18][18])
{
    const int membrane[9] = {0, 1, 5, 6, 7, 11, 12, 13, 17}, plate[9] = {2, 3, 4, 8, 9, 10, 14, 15, 16};
    for (int i = 0; i < 18; ++i) {
        for (int j = 0; j < 18; ++j) { K[i][j] = 0.0; }
    }
    for (int i = 0; i < 9; ++i) {
        for (int j = 0; j < 9; ++j) {
            K[membrane[i]][membrane[j]] = Km[i][j];
            K[plate[i]][plate[j]] = Kb[i][j];
        }
    }
}

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
    double K[18][18], global[18][18];
    for (int i = 0; i < 18; ++i) {
        for (int j = 0; j <= i; ++j) { K[i][j] = K[j][i] = std::cos(i + 2.0 * j) + (i == j ? 20.0 : 0.0); }
    }
    double d[18], turned[18];
    for (int i = 0; i < 18; ++i) { d[i] = std::sin(i + 1.0); }
    VectorToGlobal<3>(Lambda.data(), d, turned);
    std::memcpy(global, K, sizeof K);
    MatrixToGlobal<3>(Lambda.data(), global);
    const double energy = StrainEnergy(&K[0][0], d, 18);
    EXPECT_NEAR(StrainEnergy(&global[0][0], turned, 18), energy, 1e-14 * energy);
}

// Rows u, v, θz of the membrane and w, θx, θy of the plate among the six of a node.
TEST(ShellToGlobal, MembraneGoesToUVAndRotationZAndPlateToWAndRotationsXY)
{
    const double identity[3][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}};
    double Km[9][9], Kb[9][9], K[18][18], expected[18][18];
    FillParts(Km, Kb);
    HWY_NAMESPACE::ShellToGlobal<double, 3>(identity, Km, Kb, K);
    Join(Km, Kb, expected);
    for (int i = 0; i < 18; ++i) {
        for (int j = i; j < 18; ++j) { EXPECT_EQ(K[i][j], expected[i][j]) << i << "," << j; }
    }
}

TEST(ShellToGlobal, IsTheFullProductWithTheZerosLeftOut)
{
    double lambda[3][3], Km[9][9], Kb[9][9], K[18][18], expected[18][18];
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { lambda[i][j] = Lambda[i][j]; }
    }
    FillParts(Km, Kb);
    HWY_NAMESPACE::ShellToGlobal<double, 3>(lambda, Km, Kb, K);
    Join(Km, Kb, expected);
    MatrixToGlobal<3>(Lambda.data(), expected);
    for (int i = 0; i < 18; ++i) {
        for (int j = i; j < 18; ++j) { EXPECT_EQ(K[i][j], expected[i][j]) << i << "," << j; }
    }
}

} // namespace
} // namespace tarnvexo
