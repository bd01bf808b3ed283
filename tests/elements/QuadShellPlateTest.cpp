#include "elements/QuadShellPlate.h"

#include "support/Eigenvalues.h"
#include "support/ElementTools.h"

#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

constexpr int N = QuadPlateDofCount;
constexpr double E = 2.1e11, Mu = 0.3, T = 0.2;
constexpr double X[4] = {0.0, 2.1, 1.7, -0.3}, Y[4] = {0.0, 0.2, 1.4, 1.1};
constexpr double ParallelogramX[4] = {0.1, 2.0, 2.6, 0.7}, ParallelogramY[4] = {0.2, 0.5, 1.9, 1.6};

std::vector<double> Stiffness(const double x[4], const double y[4], double thickness = T)
{
    std::vector<double> Kb(N * N, -777.0);
    QuadPlateStiffness(x, y, E, Mu, thickness, reinterpret_cast<double(*)[N]>(Kb.data()));
    return Kb;
}

// w, θx, θy at every node from functions of (x, y).
template <class W, class RX_, class RY_>
std::vector<double> Field(const double x[4], const double y[4], W w, RX_ rotationX, RY_ rotationY)
{
    std::vector<double> d;
    for (int i = 0; i < QuadNodeCount; ++i) {
        d.insert(d.end(), {w(x[i], y[i]), rotationX(x[i], y[i]), rotationY(x[i], y[i])});
    }
    return d;
}

// w = ½·(kx·x² + ky·y²) + kxy·x·y with the rotations of its normal, θx = ∂w/∂y, θy = −∂w/∂x.
std::vector<double> Quadratic(const double x[4], const double y[4], double kx, double ky, double kxy)
{
    return Field(
        x, y, [=](double a, double b) { return 0.5 * (kx * a * a + ky * b * b) + kxy * a * b; },
        [=](double a, double b) { return ky * b + kxy * a; }, [=](double a, double b) { return -kx * a - kxy * b; });
}

struct Shear {
    double xz, yz, terms; // terms: what cancels when there is no shear
};
Shear ShearAt(const double x[4], const double y[4], double xi, double eta, const std::vector<double>& d)
{
    double Bs[PlateShearCount][N];
    QuadPlateShear(x, y, xi, eta, EvaluateQuad(x, y, xi, eta).detJ, Bs);
    Shear shear = {};
    for (int j = 0; j < N; ++j) {
        shear.xz += Bs[GammaXZ][j] * d[j];
        shear.yz += Bs[GammaYZ][j] * d[j];
        shear.terms += std::fabs(Bs[GammaXZ][j] * d[j]) + std::fabs(Bs[GammaYZ][j] * d[j]);
    }
    return shear;
}

double AreaOf(const double x[4], const double y[4])
{
    return 0.5 * std::fabs((x[2] - x[0]) * (y[3] - y[1]) - (x[3] - x[1]) * (y[2] - y[0]));
}

TEST(QuadPlate, StiffnessIsSymmetric)
{
    const std::vector<double> Kb = Stiffness(X, Y);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < i; ++j) { EXPECT_NEAR(Kb[i * N + j], Kb[j * N + i], 1e-15 * Kb[0]); }
    }
}

// w = a + b·x + c·y, θx = c, θy = −b.
TEST(QuadPlate, RigidMotionGivesNoForce)
{
    const double a = 0.7, b = -0.4, c = 1.3;
    const auto d = Field(
        X, Y, [=](double x, double y) { return a + b * x + c * y; }, [=](double, double) { return c; },
        [=](double, double) { return -b; });
    EXPECT_LT(UnbalancedForce(Stiffness(X, Y).data(), d.data(), N), 1e-15);
}

TEST(QuadPlate, RigidMotionWithARotationTheWrongWayGivesForces)
{
    const double a = 0.7, b = -0.4, c = 1.3;
    const auto w = [=](double x, double y) { return a + b * x + c * y; };
    const auto d1 = Field(
        X, Y, w, [=](double, double) { return c; }, [=](double, double) { return b; });
    const auto d2 = Field(
        X, Y, w, [=](double, double) { return -c; }, [=](double, double) { return -b; });
    EXPECT_GT(UnbalancedForce(Stiffness(X, Y).data(), d1.data(), N), 0.1);
    EXPECT_GT(UnbalancedForce(Stiffness(X, Y).data(), d2.data(), N), 0.1);
}

TEST(QuadPlate, RigidMotionHasNoAssumedShearStrain)
{
    const auto d = Field(
        X, Y, [](double x, double y) { return 0.7 - 0.4 * x + 1.3 * y; }, [](double, double) { return 1.3; },
        [](double, double) { return 0.4; });
    const Shear shear = ShearAt(X, Y, 0.31, -0.72, d);
    EXPECT_NEAR(shear.xz, 0.0, 1e-15 * shear.terms);
    EXPECT_NEAR(shear.yz, 0.0, 1e-15 * shear.terms);
}

TEST(QuadPlate, OnlyThreeMotionsAreFreeOfForce)
{
    const std::vector<double> Kb = Stiffness(X, Y);
    EXPECT_EQ(ZeroEigenvalues(Kb.data(), N), 3);
    EXPECT_GT(SmallestResistance(Kb.data(), N), 1e-4);
}

// Along an edge w is quadratic and the rotation linear, so the mean rotation of the ends is the mean slope.
TEST(QuadPlate, ConstantCurvatureHasNoAssumedShearStrain)
{
    const auto d = Quadratic(X, Y, 1.0, -0.6, 0.8);
    const Shear shear = ShearAt(X, Y, 0.31, -0.72, d);
    EXPECT_NEAR(shear.xz, 0.0, 1e-15 * shear.terms);
    EXPECT_NEAR(shear.yz, 0.0, 1e-15 * shear.terms);
}

// κx = ∂θy/∂x = −∂²w/∂x², κy = −∂θx/∂y = −∂²w/∂y², κxy = ∂θy/∂y − ∂θx/∂x = −2·∂²w/∂x∂y.
TEST(QuadPlate, ConstantCurvatureIsExactEverywhere)
{
    const double kx = 1.0, ky = -0.6, kxy = 0.8;
    const auto d = Quadratic(X, Y, kx, ky, kxy);
    double Bb[CurvatureCount][N];
    QuadPlateCurvature(EvaluateQuad(X, Y, 0.31, -0.72), Bb);
    const double expected[3] = {-kx, -ky, -2.0 * kxy};
    for (int row = 0; row < CurvatureCount; ++row) {
        double kappa = 0.0;
        for (int j = 0; j < N; ++j) { kappa += Bb[row][j] * d[j]; }
        EXPECT_NEAR(kappa, expected[row], 1e-14) << row;
    }
}

// ½·A·κᵀ·Db·κ and nothing from shear, thick or thin.
TEST(QuadPlate, ConstantCurvatureHasTheEnergyOfBendingAloneForAnyThickness)
{
    const double kx = 1.0, ky = -0.6, kxy = 0.8;
    const auto d = Quadratic(X, Y, kx, ky, kxy);
    for (double thickness : {0.5, 0.02}) {
        const double D = E * thickness * thickness * thickness / (12.0 * (1.0 - Mu * Mu));
        const double energy =
            0.5 * AreaOf(X, Y) * D * (kx * kx + ky * ky + 2.0 * Mu * kx * ky + (1.0 - Mu) / 2.0 * 4.0 * kxy * kxy);
        const double shearScale = E * thickness * AreaOf(X, Y); // of the shear terms that cancel
        EXPECT_NEAR(StrainEnergy(Stiffness(X, Y, thickness).data(), d.data(), N), energy, 1e-14 * shearScale);
    }
}

// Sides a and b along x and y: the strains of the edge midpoints, interpolated linearly across.
TEST(QuadPlateShear, OfARectangleInterpolatesTheEdgeStrains)
{
    const double a = 2.0, b = 0.8, x[4] = {0.3, 2.3, 2.3, 0.3}, y[4] = {-0.1, -0.1, 0.7, 0.7};
    const double w[4] = {0.1, 0.5, -0.3, 0.8}, rx[4] = {0.2, -0.7, 0.4, 0.9}, ry[4] = {-0.6, 0.3, 1.1, 0.5};
    std::vector<double> d;
    for (int i = 0; i < 4; ++i) { d.insert(d.end(), {w[i], rx[i], ry[i]}); }
    const double lower = (w[1] - w[0]) / a + 0.5 * (ry[0] + ry[1]); // ∂w/∂x + θy on edge 1–2
    const double upper = (w[2] - w[3]) / a + 0.5 * (ry[2] + ry[3]);
    const double left = (w[3] - w[0]) / b - 0.5 * (rx[0] + rx[3]); // ∂w/∂y − θx on edge 1–4
    const double right = (w[2] - w[1]) / b - 0.5 * (rx[1] + rx[2]);
    for (const double xi : {-1.0, 0.25, 1.0}) {
        for (const double eta : {-1.0, -0.4, 1.0}) {
            const Shear shear = ShearAt(x, y, xi, eta, d);
            EXPECT_NEAR(shear.xz, 0.5 * ((1 - eta) * lower + (1 + eta) * upper), 1e-15 * shear.terms);
            EXPECT_NEAR(shear.yz, 0.5 * ((1 - xi) * left + (1 + xi) * right), 1e-15 * shear.terms);
        }
    }
}

// w = 0, θx = −γyz, θy = γxz.
std::vector<double> ConstantShear(const double x[4], const double y[4], double xz, double yz)
{
    return Field(
        x, y, [](double, double) { return 0.0; }, [=](double, double) { return -yz; },
        [=](double, double) { return xz; });
}

TEST(QuadPlateShear, ConstantShearIsExactOnAParallelogram)
{
    const auto d = ConstantShear(ParallelogramX, ParallelogramY, 0.7, -1.1);
    for (const double xi : {-0.9, 0.0, 0.6}) {
        const Shear shear = ShearAt(ParallelogramX, ParallelogramY, xi, 0.45, d);
        EXPECT_NEAR(shear.xz, 0.7, 1e-14);
        EXPECT_NEAR(shear.yz, -1.1, 1e-14);
    }
}

TEST(QuadPlateShear, ConstantShearOnAParallelogramHasItsEnergy)
{
    const auto d = ConstantShear(ParallelogramX, ParallelogramY, 0.7, -1.1);
    const double k = E * T / (2.0 * (1.0 + Mu)) * 5.0 / 6.0;
    const double energy = 0.5 * k * (0.7 * 0.7 + 1.1 * 1.1) * AreaOf(ParallelogramX, ParallelogramY);
    EXPECT_NEAR(StrainEnergy(Stiffness(ParallelogramX, ParallelogramY).data(), d.data(), N), energy, 1e-13 * energy);
}

TEST(QuadPlateShear, ConstantShearIsExactInTheMiddleOfAnyQuadrilateral)
{
    const Shear shear = ShearAt(X, Y, 0.0, 0.0, ConstantShear(X, Y, 0.7, -1.1));
    EXPECT_NEAR(shear.xz, 0.7, 1e-14);
    EXPECT_NEAR(shear.yz, -1.1, 1e-14);
}

// Deliberate: the directions of the strains are those of the midlines all over the element, only the lengths of the
// base vectors belong to the point, and |gη| goes with γξ. Off the middle of a distorted element that is not the exact
// strain.
TEST(QuadPlateShear, DirectionsAreThoseOfTheMidlinesAndLengthsThoseOfThePoint)
{
    const double xi = 0.6, eta = -0.5;
    const auto d = Field(
        X, Y, [](double x, double y) { return 0.3 * x * y - 0.2 * y; }, [](double x, double y) { return x - 0.4 * y; },
        [](double x, double y) { return 0.5 + 0.7 * x * y; });
    const double mx[4] = {(X[3] + X[0]) / 2, (X[1] + X[2]) / 2, (X[0] + X[1]) / 2, (X[2] + X[3]) / 2};
    const double my[4] = {(Y[3] + Y[0]) / 2, (Y[1] + Y[2]) / 2, (Y[0] + Y[1]) / 2, (Y[2] + Y[3]) / 2};
    const double alpha = std::atan2(my[1] - my[0], mx[1] - mx[0]), beta = std::atan2(my[3] - my[2], mx[3] - mx[2]);
    const QuadPoint point = EvaluateQuad(X, Y, xi, eta);
    double gXi[2] = {}, gEta[2] = {};
    for (int i = 0; i < 4; ++i) {
        gXi[0] += point.dNdxi[i] * X[i];
        gXi[1] += point.dNdxi[i] * Y[i];
        gEta[0] += point.dNdeta[i] * X[i];
        gEta[1] += point.dNdeta[i] * Y[i];
    }
    const double lengthXi = std::hypot(gXi[0], gXi[1]), lengthEta = std::hypot(gEta[0], gEta[1]);
    const auto edge = [&](int i, int j) {
        return (d[3 * j] - d[3 * i]) / 2 + (X[j] - X[i]) * (d[3 * i + 2] + d[3 * j + 2]) / 4 -
               (Y[j] - Y[i]) * (d[3 * i + 1] + d[3 * j + 1]) / 4;
    };
    const double gammaXi = lengthEta / (2 * point.detJ) * ((1 - eta) * edge(0, 1) + (1 + eta) * edge(3, 2));
    const double gammaEta = lengthXi / (2 * point.detJ) * ((1 - xi) * edge(0, 3) + (1 + xi) * edge(1, 2));
    const Shear shear = ShearAt(X, Y, xi, eta, d);
    EXPECT_NEAR(shear.xz, gammaXi * std::sin(beta) - gammaEta * std::sin(alpha), 1e-14 * shear.terms);
    EXPECT_NEAR(shear.yz, -gammaXi * std::cos(beta) + gammaEta * std::cos(alpha), 1e-14 * shear.terms);
    EXPECT_GT(std::fabs(ShearAt(X, Y, xi, eta, ConstantShear(X, Y, 0.7, -1.1)).xz - 0.7), 1e-3);
}

TEST(QuadPlate, ClockwiseNodesHaveTheSameStiffness)
{
    const int order[4] = {0, 3, 2, 1};
    double x[4], y[4];
    for (int i = 0; i < 4; ++i) {
        x[i] = X[order[i]];
        y[i] = Y[order[i]];
    }
    const std::vector<double> Kb = Stiffness(X, Y), clockwise = Stiffness(x, y);
    std::vector<double> sorted(N * N);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < N; ++j) {
            sorted[(3 * order[i / 3] + i % 3) * N + 3 * order[j / 3] + j % 3] = clockwise[i * N + j];
        }
    }
    EXPECT_LT(LargestDifference(Kb.data(), sorted.data(), N * N), 1e-13);
}

// A strip of eight elements, a thousandth of its length thick: F·L³/(3·E·I). Linear shear would give a few thousandths.
TEST(QuadPlate, ThinCantileverDoesNotLock)
{
    constexpr int count = 8;
    const double length = 10.0, width = 1.0, thickness = 0.01, force = 1.0;
    ShellMesh strip;
    for (int i = 0; i <= count; ++i) {
        strip.nodes.push_back({i * length / count, 0.0, 0.0});
        strip.nodes.push_back({i * length / count, width, 0.0});
    }
    for (int i = 0; i < count; ++i) { strip.quads.push_back({2 * i, 2 * i + 2, 2 * i + 3, 2 * i + 1}); }
    DenseSystem system = MeshSystem(strip, E, 0.0, thickness);
    system.Clamp(0);
    system.Clamp(1);
    system.AddForce(2 * count, DZ, 0.5 * force);
    system.AddForce(2 * count + 1, DZ, 0.5 * force);
    const double beam = force * length * length * length / (3.0 * E * width * thickness * thickness * thickness / 12.0);
    EXPECT_NEAR(system.Solve()[DofsPerNode * 2 * count + DZ], beam, 0.005 * beam);
}

TEST(QuadPlate, CollapsedElementGivesNonFiniteEntries)
{
    const double x[4] = {0.0, 1.0, 2.0, 3.0}, y[4] = {};
    EXPECT_FALSE(std::isfinite(Stiffness(x, y)[0]));
}

} // namespace
} // namespace tarnvexo
