#include "elements/QuadShellMembrane.h"

#include "support/Eigenvalues.h"
#include "support/ElementTools.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr int N = QuadMembraneDofCount;
constexpr double E = 2.1e11, Mu = 0.3, T = 0.02;
constexpr double X[4] = {0.0, 2.1, 1.7, -0.3}, Y[4] = {0.0, 0.2, 1.4, 1.1};
const double G = E / (2.0 * (1.0 + Mu));
const double Gamma = 10.0 * G * T;

double AreaOf(const double x[4], const double y[4])
{
    return 0.5 * std::fabs((x[2] - x[0]) * (y[3] - y[1]) - (x[3] - x[1]) * (y[2] - y[0]));
}

std::vector<double> Stiffness(const double x[4], const double y[4], double modulus = E)
{
    std::vector<double> Km(N * N, -777.0);
    QuadMembraneStiffness(x, y, modulus, Mu, T, reinterpret_cast<double(*)[N]>(Km.data()));
    return Km;
}

// u = ux·x + uy·y, v = vx·x + vy·y at every node, with the same θz.
std::vector<double> LinearField(double ux, double uy, double vx, double vy, double rotation)
{
    std::vector<double> d;
    for (int i = 0; i < QuadNodeCount; ++i) {
        d.insert(d.end(), {ux * X[i] + uy * Y[i], vx * X[i] + vy * Y[i], rotation});
    }
    return d;
}

// The bilinear plane-stress square of textbooks: eight numbers, the same for every size.
TEST(QuadMembrane, OfASquareIsTheTextbookMatrixAndTheDrillingTerm)
{
    const double nu = Mu;
    const double k[8] = {0.5 - nu / 6,    0.125 + nu / 8,  -0.25 - nu / 12, -0.125 + 3 * nu / 8,
                         -0.25 + nu / 12, -0.125 - nu / 8, nu / 6,          0.125 - 3 * nu / 8};
    const int row[8][8] = {{0, 1, 2, 3, 4, 5, 6, 7}, {1, 0, 7, 6, 5, 4, 3, 2}, {2, 7, 0, 5, 6, 3, 4, 1},
                           {3, 6, 5, 0, 7, 2, 1, 4}, {4, 5, 6, 7, 0, 1, 2, 3}, {5, 4, 3, 2, 1, 0, 7, 6},
                           {6, 3, 4, 1, 2, 7, 0, 5}, {7, 2, 1, 4, 3, 6, 5, 0}};
    const double a = 1.3, x[4] = {0.4, 1.7, 1.7, 0.4}, y[4] = {-0.5, -0.5, 0.8, 0.8};
    std::vector<double> expected(N * N, 0.0);
    for (int i = 0; i < 8; ++i) {
        for (int j = 0; j < 8; ++j) {
            expected[(i / 2 * 3 + i % 2) * N + j / 2 * 3 + j % 2] = E * T / (1 - nu * nu) * k[row[i][j]];
        }
    }
    // γ·∫bᵀ·b dA, b = (½·∂N/∂y, −½·∂N/∂x, N), from the integrals of products of linear functions over −1 ... 1.
    const double sx[4] = {-1, 1, 1, -1}, sy[4] = {-1, -1, 1, 1};
    for (int i = 0; i < 4; ++i) {
        for (int j = 0; j < 4; ++j) {
            const double alongX = 1.0 + sx[i] * sx[j] / 3.0, alongY = 1.0 + sy[i] * sy[j] / 3.0; // ½∫(1+siξ)(1+sjξ)dξ
            const double dxdx = sx[i] * sx[j] / 4.0 * alongY, dydy = sy[i] * sy[j] / 4.0 * alongX;
            const double dydx = sy[i] * sx[j] / 4.0;                                     // ∂Ni/∂y·∂Nj/∂x
            const double ndx = sx[j] / 8.0 * alongY * a, ndy = sy[j] / 8.0 * alongX * a; // Ni·∂Nj/∂x
            const double dxn = sx[i] / 8.0 * alongY * a, dyn = sy[i] / 8.0 * alongX * a;
            double* block = &expected[3 * i * N + 3 * j];
            block[0] += Gamma * 0.25 * dydy;
            block[1] -= Gamma * 0.25 * dydx;
            block[2] += Gamma * 0.5 * dyn;
            block[N] -= Gamma * 0.25 * (sx[i] * sy[j] / 4.0);
            block[N + 1] += Gamma * 0.25 * dxdx;
            block[N + 2] -= Gamma * 0.5 * dxn;
            block[2 * N] += Gamma * 0.5 * ndy;
            block[2 * N + 1] -= Gamma * 0.5 * ndx;
            block[2 * N + 2] += Gamma * a * a / 16.0 * alongX * alongY;
        }
    }
    const std::vector<double> Km = Stiffness(x, y);
    EXPECT_LT(LargestDifference(expected.data(), Km.data(), N * N), 1e-14);
}

TEST(QuadMembrane, StiffnessIsSymmetric)
{
    const std::vector<double> Km = Stiffness(X, Y);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < i; ++j) { EXPECT_NEAR(Km[i * N + j], Km[j * N + i], 1e-15 * Km[0]); }
    }
}

TEST(QuadMembrane, TranslationGivesNoForce)
{
    std::vector<double> d(N, 0.0);
    for (int i = 0; i < N; i += 3) { d[i] = 1.0; }
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
    for (int i = 0; i < N; i += 3) { std::swap(d[i], d[i + 1]); }
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
}

TEST(QuadMembrane, RotationWithTheDrillingRotationGivesNoForce)
{
    const std::vector<double> d = LinearField(0.0, -0.7, 0.7, 0.0, 0.7);
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
}

TEST(QuadMembrane, RotationWithTheOppositeDrillingRotationGivesForces)
{
    const std::vector<double> d = LinearField(0.0, -0.7, 0.7, 0.0, -0.7);
    EXPECT_GT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 0.1);
}

// b·d = −φ everywhere: the energy is ½·γ·φ²·A.
TEST(QuadMembrane, RotationWithoutDrillingRotationIsResistedByTheDrillingTermAlone)
{
    const std::vector<double> d = LinearField(0.0, -0.7, 0.7, 0.0, 0.0);
    const double energy = 0.5 * Gamma * 0.7 * 0.7 * AreaOf(X, Y);
    EXPECT_NEAR(StrainEnergy(Stiffness(X, Y).data(), d.data(), N), energy, 1e-13 * energy);
}

// θz = the rotation of the membrane: nothing but ½·t·A·εᵀ·D·ε is left.
TEST(QuadMembrane, ConstantStrainWithItsRotationHasTheEnergyOfTheStrain)
{
    const double ux = 1.0, uy = -0.4, vx = 0.9, vy = 0.3;
    const std::vector<double> d = LinearField(ux, uy, vx, vy, 0.5 * (vx - uy));
    const double gxy = uy + vx;
    const double energy =
        0.5 * T * AreaOf(X, Y) * (E / (1.0 - Mu * Mu) * (ux * ux + vy * vy + 2.0 * Mu * ux * vy) + G * gxy * gxy);
    EXPECT_NEAR(StrainEnergy(Stiffness(X, Y).data(), d.data(), N), energy, 1e-13 * energy);
}

// θz = ξ·η alone on a square: ∫(ξη)² dA = A/9. A rule of one point would see nothing.
TEST(QuadMembrane, DrillingTermIsIntegratedInFull)
{
    const double x[4] = {0.0, 2.0, 2.0, 0.0}, y[4] = {0.0, 0.0, 2.0, 2.0};
    const double d[N] = {0, 0, 1, 0, 0, -1, 0, 0, 1, 0, 0, -1};
    const double energy = 0.5 * Gamma * 4.0 / 9.0;
    EXPECT_NEAR(StrainEnergy(Stiffness(x, y).data(), d, N), energy, 1e-14 * energy);
}

TEST(QuadMembrane, OnlyThreeMotionsAreFreeOfForce)
{
    const std::vector<double> Km = Stiffness(X, Y);
    EXPECT_EQ(ZeroEigenvalues(Km.data(), N), 3);
    EXPECT_GT(SmallestResistance(Km.data(), N), 1e-3);
}

// Nodes 1, 4, 3, 2 of the same element: det J < 0, yet the integrals count the area as positive.
TEST(QuadMembrane, ClockwiseNodesHaveTheSameStiffness)
{
    const int order[4] = {0, 3, 2, 1};
    double x[4], y[4];
    for (int i = 0; i < 4; ++i) {
        x[i] = X[order[i]];
        y[i] = Y[order[i]];
    }
    const std::vector<double> Km = Stiffness(X, Y), clockwise = Stiffness(x, y);
    std::vector<double> sorted(N * N);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < N; ++j) {
            sorted[(3 * order[i / 3] + i % 3) * N + 3 * order[j / 3] + j % 3] = clockwise[i * N + j];
        }
    }
    EXPECT_LT(LargestDifference(Km.data(), sorted.data(), N * N), 1e-14);
}

TEST(QuadMembrane, MovingTheElementKeepsItsStiffness)
{
    double x[4], y[4];
    for (int i = 0; i < 4; ++i) {
        x[i] = X[i] + 13.0;
        y[i] = Y[i] - 8.0;
    }
    EXPECT_LT(LargestDifference(Stiffness(X, Y).data(), Stiffness(x, y).data(), N * N), 1e-13);
}

TEST(QuadMembrane, WithoutModulusIsZero)
{
    EXPECT_EQ(Stiffness(X, Y, 0.0), std::vector<double>(N * N, 0.0));
}

TEST(QuadMembrane, CollapsedElementGivesNonFiniteEntries)
{
    const double x[4] = {0.0, 1.0, 2.0, 3.0}, y[4] = {};
    EXPECT_FALSE(std::isfinite(Stiffness(x, y)[0]));
}

TEST(QuadMembraneStrain, OfALinearFieldIsItsGradient)
{
    double B[PlaneStrainCount][QuadPlaneDofCount];
    QuadMembraneStrain(EvaluateQuad(X, Y, 0.37, -0.61), B);
    const double expected[3] = {1.0, 0.3, 0.5}; // ux, vy, uy + vx
    for (int row = 0; row < PlaneStrainCount; ++row) {
        double strain = 0.0;
        for (int i = 0; i < QuadNodeCount; ++i) {
            strain += B[row][2 * i] * (X[i] - 0.4 * Y[i]) + B[row][2 * i + 1] * (0.9 * X[i] + 0.3 * Y[i]);
        }
        EXPECT_NEAR(strain, expected[row], 1e-14) << row;
    }
}

} // namespace
} // namespace tarnvexo
