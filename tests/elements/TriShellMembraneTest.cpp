#include "elements/TriShellMembrane.h"

#include "support/Eigenvalues.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>
#include <utility>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr int N = TriMembraneDofCount;
constexpr double E = 2.1e11, Mu = 0.3, T = 0.02;
constexpr double X[3] = {0.2, 2.3, 0.9}, Y[3] = {0.1, 0.6, 1.8};
const double G = E / (2.0 * (1.0 + Mu));
const double Gamma = 10.0 * G * T;
const double Area = 0.5 * ((X[1] - X[0]) * (Y[2] - Y[0]) - (X[2] - X[0]) * (Y[1] - Y[0]));

std::vector<double> Stiffness(const double x[3], const double y[3])
{
    std::vector<double> Km(N * N, -777.0);
    TriMembraneStiffness(x, y, E, Mu, T, reinterpret_cast<double(*)[N]>(Km.data()));
    return Km;
}

std::vector<double> LinearField(double ux, double uy, double vx, double vy, double rotation)
{
    std::vector<double> d;
    for (int i = 0; i < TriNodeCount; ++i) {
        d.insert(d.end(), {ux * X[i] + uy * Y[i], vx * X[i] + vy * Y[i], rotation});
    }
    return d;
}

TEST(TriMembrane, StiffnessIsSymmetric)
{
    const std::vector<double> Km = Stiffness(X, Y);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < i; ++j) { EXPECT_NEAR(Km[i * N + j], Km[j * N + i], 1e-15 * Km[0]); }
    }
}

TEST(TriMembrane, TranslationGivesNoForce)
{
    std::vector<double> d(N, 0.0);
    for (int i = 0; i < N; i += 3) { d[i] = 1.0; }
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
    for (int i = 0; i < N; i += 3) { std::swap(d[i], d[i + 1]); }
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
}

TEST(TriMembrane, RotationWithTheDrillingRotationGivesNoForce)
{
    const std::vector<double> d = LinearField(0.0, -0.7, 0.7, 0.0, 0.7);
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
}

TEST(TriMembrane, RotationWithTheOppositeDrillingRotationGivesForces)
{
    const std::vector<double> d = LinearField(0.0, -0.7, 0.7, 0.0, -0.7);
    EXPECT_GT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 0.1);
}

// b·d = −φ everywhere; the weights of the points add up to 27/48 + 3·25/48 = 2.125 instead of 1.
TEST(TriMembrane, RotationWithoutDrillingRotationIsResistedByTheDrillingTermAlone)
{
    const std::vector<double> d = LinearField(0.0, -0.7, 0.7, 0.0, 0.0);
    const double energy = 0.5 * Gamma * 0.7 * 0.7 * Area * 2.125;
    EXPECT_NEAR(StrainEnergy(Stiffness(X, Y).data(), d.data(), N), energy, 1e-13 * energy);
}

// Deliberate: +27/48 at the centroid (published: −27/48) and 25/48 at (0.6, 0.2, 0.2) and its permutations. The rows of
// θz show the sums of w·Li·Lj: 0.0625 + 25/48·0.44 and 0.0625 + 25/48·0.28 instead of 1/6 and 1/12.
TEST(TriMembrane, DrillingRowsCarryThePositiveCentroidWeight)
{
    const std::vector<double> Km = Stiffness(X, Y);
    for (int i = 0; i < TriNodeCount; ++i) {
        for (int j = 0; j < TriNodeCount; ++j) {
            const double sum = 0.5625 / 9.0 + 25.0 / 48.0 * (i == j ? 0.44 : 0.28);
            EXPECT_NEAR(Km[(3 * i + 2) * N + 3 * j + 2], Gamma * Area * sum, 1e-14 * Gamma * Area) << i << "," << j;
        }
    }
}

TEST(TriMembrane, ConstantStrainWithItsRotationHasTheEnergyOfTheStrain)
{
    const double ux = 1.0, uy = -0.4, vx = 0.9, vy = 0.3, gxy = uy + vx;
    const std::vector<double> d = LinearField(ux, uy, vx, vy, 0.5 * (vx - uy));
    const double energy =
        0.5 * T * Area * (E / (1.0 - Mu * Mu) * (ux * ux + vy * vy + 2.0 * Mu * ux * vy) + G * gxy * gxy);
    EXPECT_NEAR(StrainEnergy(Stiffness(X, Y).data(), d.data(), N), energy, 1e-13 * energy);
}

TEST(TriMembrane, OnlyThreeMotionsAreFreeOfForce)
{
    const std::vector<double> Km = Stiffness(X, Y);
    EXPECT_EQ(ZeroEigenvalues(Km.data(), N), 3);
    EXPECT_GT(SmallestResistance(Km.data(), N), 1e-3);
}

TEST(TriMembrane, CollapsedElementGivesNonFiniteEntries)
{
    const double x[3] = {0.0, 1.0, 2.0}, y[3] = {};
    EXPECT_FALSE(std::isfinite(Stiffness(x, y)[0]));
}

// (1/2A)·(y2 − y3, y3 − y1, y1 − y2) for εx and (1/2A)·(x3 − x2, x1 − x3, x2 − x1) for εy.
TEST(TriMembraneStrain, IsThatOfTheConstantStrainTriangle)
{
    double B[PlaneStrainCount][TriPlaneDofCount];
    TriMembraneStrain(EvaluateTri(X, Y), B);
    const double dx[3] = {Y[1] - Y[2], Y[2] - Y[0], Y[0] - Y[1]}, dy[3] = {X[2] - X[1], X[0] - X[2], X[1] - X[0]};
    for (int i = 0; i < TriNodeCount; ++i) {
        EXPECT_NEAR(B[EpsX][2 * i], dx[i] / (2.0 * Area), 1e-15);
        EXPECT_NEAR(B[EpsY][2 * i + 1], dy[i] / (2.0 * Area), 1e-15);
        EXPECT_NEAR(B[GammaXY][2 * i], dy[i] / (2.0 * Area), 1e-15);
        EXPECT_NEAR(B[GammaXY][2 * i + 1], dx[i] / (2.0 * Area), 1e-15);
        EXPECT_EQ(B[EpsX][2 * i + 1], 0.0);
        EXPECT_EQ(B[EpsY][2 * i], 0.0);
    }
}

} // namespace
} // namespace tarnvexo
