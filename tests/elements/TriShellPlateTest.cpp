#include "elements/TriShellPlate.h"

#include "support/Eigenvalues.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr int N = TriPlateDofCount;
constexpr double E = 2.1e11, Mu = 0.3, T = 0.2;
constexpr double X[3] = {0.2, 2.3, 0.9}, Y[3] = {0.1, 0.6, 1.8};
const double Area = 0.5 * ((X[1] - X[0]) * (Y[2] - Y[0]) - (X[2] - X[0]) * (Y[1] - Y[0]));

std::vector<double> Stiffness(const double x[3], const double y[3], double thickness = T)
{
    std::vector<double> Kb(N * N, -777.0);
    TriPlateStiffness(x, y, E, Mu, thickness, reinterpret_cast<double(*)[N]>(Kb.data()));
    return Kb;
}

// w = a + b·x + c·y + ½·(kx·x² + ky·y²) + kxy·x·y with θx = ∂w/∂y, θy = −∂w/∂x.
std::vector<double> Quadratic(double a, double b, double c, double kx, double ky, double kxy)
{
    std::vector<double> d;
    for (int i = 0; i < TriNodeCount; ++i) {
        const double x = X[i], y = Y[i];
        d.insert(d.end(), {a + b * x + c * y + 0.5 * (kx * x * x + ky * y * y) + kxy * x * y, c + ky * y + kxy * x,
                           -b - kx * x - kxy * y});
    }
    return d;
}

TEST(TriPlate, StiffnessIsSymmetric)
{
    const std::vector<double> Kb = Stiffness(X, Y);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < i; ++j) { EXPECT_NEAR(Kb[i * N + j], Kb[j * N + i], 1e-15 * Kb[0]); }
    }
}

TEST(TriPlate, RigidMotionGivesNoForce)
{
    const auto d = Quadratic(0.7, -0.4, 1.3, 0.0, 0.0, 0.0);
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-14);
}

TEST(TriPlate, RigidMotionWithARotationTheWrongWayGivesForces)
{
    for (const int rotation : {PlateRX, PlateRY}) {
        auto d = Quadratic(0.7, -0.4, 1.3, 0.0, 0.0, 0.0);
        for (int i = 0; i < TriNodeCount; ++i) { d[3 * i + rotation] *= -1.0; }
        EXPECT_GT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 0.1);
    }
}

TEST(TriPlate, OnlyThreeMotionsAreFreeOfForce)
{
    const std::vector<double> Kb = Stiffness(X, Y);
    EXPECT_EQ(ZeroEigenvalues(Kb.data(), N), 3);
    EXPECT_GT(SmallestResistance(Kb.data(), N), 1e-4);
}

TEST(TriPlate, ConstantCurvatureIsExactEverywhere)
{
    const double kx = 1.0, ky = -0.6, kxy = 0.8, L[3] = {0.5, 0.2, 0.3};
    const auto d = Quadratic(0.0, 0.0, 0.0, kx, ky, kxy);
    double Bb[CurvatureCount][N];
    TriPlateCurvature(X, Y, L, Bb);
    const double expected[3] = {-kx, -ky, -2.0 * kxy};
    for (int row = 0; row < CurvatureCount; ++row) {
        double kappa = 0.0;
        for (int j = 0; j < N; ++j) { kappa += Bb[row][j] * d[j]; }
        EXPECT_NEAR(kappa, expected[row], 1e-14) << row;
    }
}

TEST(TriPlate, ConstantCurvatureHasTheEnergyOfBending)
{
    const double kx = 1.0, ky = -0.6, kxy = 0.8;
    const double D = E * T * T * T / (12.0 * (1.0 - Mu * Mu));
    const double energy =
        0.5 * Area * D * (kx * kx + ky * ky + 2.0 * Mu * kx * ky + (1.0 - Mu) / 2.0 * 4.0 * kxy * kxy);
    EXPECT_NEAR(StrainEnergy(Stiffness(X, Y).data(), Quadratic(0.0, 0.0, 0.0, kx, ky, kxy).data(), N), energy,
                1e-13 * energy);
}

// The curvature matrix as its authors print it: rotations βx = Hx·d, βy = Hy·d as functions of ξ = L2, η = L3, with
// coefficients of the sides 4 (2–3), 5 (3–1), 6 (1–2).
void PublishedCurvature(const double x[3], const double y[3], double xi, double eta, double B[3][9])
{
    double P[7], t[7], q[7], r[7];
    const int side[3][2] = {{1, 2}, {2, 0}, {0, 1}};
    for (int k = 4; k <= 6; ++k) {
        const double xij = x[side[k - 4][0]] - x[side[k - 4][1]], yij = y[side[k - 4][0]] - y[side[k - 4][1]];
        const double ll = xij * xij + yij * yij;
        P[k] = -6.0 * xij / ll;
        t[k] = -6.0 * yij / ll;
        q[k] = 3.0 * xij * yij / ll;
        r[k] = 3.0 * yij * yij / ll;
    }
    const double hxXi[9] = {P[6] * (1 - 2 * xi) + (P[5] - P[6]) * eta,
                            q[6] * (1 - 2 * xi) - (q[5] + q[6]) * eta,
                            -4 + 6 * (xi + eta) + r[6] * (1 - 2 * xi) - eta * (r[5] + r[6]),
                            -P[6] * (1 - 2 * xi) + eta * (P[4] + P[6]),
                            q[6] * (1 - 2 * xi) - eta * (q[6] - q[4]),
                            -2 + 6 * xi + r[6] * (1 - 2 * xi) + eta * (r[4] - r[6]),
                            -eta * (P[5] + P[4]),
                            eta * (q[4] - q[5]),
                            -eta * (r[5] - r[4])};
    const double hyXi[9] = {t[6] * (1 - 2 * xi) + eta * (t[5] - t[6]),
                            1 + r[6] * (1 - 2 * xi) - eta * (r[5] + r[6]),
                            -q[6] * (1 - 2 * xi) + eta * (q[5] + q[6]),
                            -t[6] * (1 - 2 * xi) + eta * (t[4] + t[6]),
                            -1 + r[6] * (1 - 2 * xi) + eta * (r[4] - r[6]),
                            -q[6] * (1 - 2 * xi) - eta * (q[4] - q[6]),
                            -eta * (t[4] + t[5]),
                            eta * (r[4] - r[5]),
                            -eta * (q[4] - q[5])};
    const double hxEta[9] = {-P[5] * (1 - 2 * eta) - xi * (P[6] - P[5]),
                             q[5] * (1 - 2 * eta) - xi * (q[5] + q[6]),
                             -4 + 6 * (xi + eta) + r[5] * (1 - 2 * eta) - xi * (r[5] + r[6]),
                             xi * (P[4] + P[6]),
                             xi * (q[4] - q[6]),
                             -xi * (r[6] - r[4]),
                             P[5] * (1 - 2 * eta) - xi * (P[4] + P[5]),
                             q[5] * (1 - 2 * eta) + xi * (q[4] - q[5]),
                             -2 + 6 * eta + r[5] * (1 - 2 * eta) + xi * (r[4] - r[5])};
    const double hyEta[9] = {-t[5] * (1 - 2 * eta) - xi * (t[6] - t[5]),
                             1 + r[5] * (1 - 2 * eta) - xi * (r[5] + r[6]),
                             -q[5] * (1 - 2 * eta) + xi * (q[5] + q[6]),
                             xi * (t[4] + t[6]),
                             xi * (r[4] - r[6]),
                             -xi * (q[4] - q[6]),
                             t[5] * (1 - 2 * eta) - xi * (t[4] + t[5]),
                             -1 + r[5] * (1 - 2 * eta) + xi * (r[4] - r[5]),
                             -q[5] * (1 - 2 * eta) - xi * (q[4] - q[5])};
    const double x31 = x[2] - x[0], y31 = y[2] - y[0], x12 = x[0] - x[1], y12 = y[0] - y[1];
    const double twoA = x31 * y12 - x12 * y31;
    for (int j = 0; j < 9; ++j) {
        B[0][j] = (y31 * hxXi[j] + y12 * hxEta[j]) / twoA;
        B[1][j] = (-x31 * hyXi[j] - x12 * hyEta[j]) / twoA;
        B[2][j] = (-x31 * hxXi[j] - x12 * hxEta[j] + y31 * hyXi[j] + y12 * hyEta[j]) / twoA;
    }
}

TEST(TriPlateCurvature, IsThatOfTheDiscreteKirchhoffTriangle)
{
    const double points[4][3] = {{1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}, {0.0, 0.0, 1.0}, {0.5, 0.2, 0.3}};
    for (const double(&L)[3] : points) {
        double Bb[CurvatureCount][N], published[3][9];
        TriPlateCurvature(X, Y, L, Bb);
        PublishedCurvature(X, Y, L[1], L[2], published);
        EXPECT_LT(LargestDifference(&published[0][0], &Bb[0][0], 3 * N), 1e-14);
    }
}

// Against a rule of seven points, exact to the fifth degree.
TEST(TriPlate, MidsideRuleIntegratesTheEnergyExactly)
{
    const double a = (6.0 - std::sqrt(15.0)) / 21.0, b = (6.0 + std::sqrt(15.0)) / 21.0;
    const double wa = (155.0 - std::sqrt(15.0)) / 1200.0, wb = (155.0 + std::sqrt(15.0)) / 1200.0;
    const double points[7][4] = {{1.0 / 3.0, 1.0 / 3.0, 1.0 / 3.0, 0.225},
                                 {a, a, 1 - 2 * a, wa},
                                 {a, 1 - 2 * a, a, wa},
                                 {1 - 2 * a, a, a, wa},
                                 {b, b, 1 - 2 * b, wb},
                                 {b, 1 - 2 * b, b, wb},
                                 {1 - 2 * b, b, b, wb}};
    double D[3][3];
    PlateRigidity(E, Mu, T, D);
    std::vector<double> exact(N * N, 0.0);
    for (const double(&point)[4] : points) {
        double Bb[CurvatureCount][N];
        TriPlateCurvature(X, Y, point, Bb);
        for (int i = 0; i < N; ++i) {
            for (int j = 0; j < N; ++j) {
                for (int k = 0; k < 3; ++k) {
                    for (int l = 0; l < 3; ++l) { exact[i * N + j] += Area * point[3] * Bb[k][i] * D[k][l] * Bb[l][j]; }
                }
            }
        }
    }
    EXPECT_LT(LargestDifference(exact.data(), Stiffness(X, Y).data(), N * N), 1e-14);
}

// No transverse shear: the stiffness is proportional to t³.
TEST(TriPlate, StiffnessGrowsWithTheCubeOfTheThickness)
{
    std::vector<double> thick = Stiffness(X, Y, 2.0 * T);
    for (double& entry : thick) { entry /= 8.0; }
    EXPECT_LT(LargestDifference(Stiffness(X, Y).data(), thick.data(), N * N), 1e-15);
}

TEST(TriPlate, CollapsedElementGivesNonFiniteEntries)
{
    const double x[3] = {0.0, 1.0, 2.0}, y[3] = {};
    EXPECT_FALSE(std::isfinite(Stiffness(x, y)[0]));
}

} // namespace
} // namespace tarnvexo
