#include "inertia/SymmetricEigen.h"

#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

// Vᵀ·diag(values)·V, rows of V the vectors, and V·Vᵀ = I.
template <int N> void ExpectDecomposition(const SquareMatrix<N>& a, double tolerance)
{
    const SymmetricEigen<N> eigen = SolveSymmetricEigen<N>(a);
    for (int i = 0; i < N; ++i) {
        for (int j = 0; j < N; ++j) {
            double entry = 0.0, product = 0.0;
            for (int k = 0; k < N; ++k) {
                entry += eigen.values[k] * eigen.vectors[k][i] * eigen.vectors[k][j];
                product += eigen.vectors[i][k] * eigen.vectors[j][k];
            }
            EXPECT_NEAR(entry, a[i][j], tolerance) << i << "," << j;
            EXPECT_NEAR(product, i == j ? 1.0 : 0.0, 1e-14) << i << "," << j;
        }
        EXPECT_LE(eigen.values[i > 0 ? i - 1 : 0], eigen.values[i]);
    }
}

TEST(SymmetricEigen, OfTwoByTwoIsThatOfTheQuadraticEquation)
{
    const SymmetricEigen<2> eigen = SolveSymmetricEigen<2>({{{2.0, 2.0}, {2.0, 5.0}}});
    EXPECT_NEAR(eigen.values[0], 1.0, 1e-15 * 6.0); // λ² − 7·λ + 6
    EXPECT_NEAR(eigen.values[1], 6.0, 1e-15 * 6.0);
    EXPECT_NEAR(eigen.vectors[1][1] / eigen.vectors[1][0], 2.0, 1e-14);
}

TEST(SymmetricEigen, GivesTheMatrixBack)
{
    ExpectDecomposition<3>({{{4.0, -1.0, 0.5}, {-1.0, 3.0, 2.0}, {0.5, 2.0, -1.0}}}, 1e-14 * 4.0);
    SquareMatrix<6> a;
    for (int i = 0; i < 6; ++i) {
        for (int j = 0; j < 6; ++j) { a[i][j] = std::cos(1.0 + i * j) + (i == j ? i : 0.0); }
    }
    ExpectDecomposition<6>(a, 1e-14 * 10.0);
}

TEST(SymmetricEigen, OfRankOneHasVanishingEigenvalues)
{
    const double v[3] = {1.0, -2.0, 3.0};
    SquareMatrix<3> a;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { a[i][j] = v[i] * v[j]; }
    }
    const SymmetricEigen<3> eigen = SolveSymmetricEigen<3>(a);
    EXPECT_NEAR(eigen.values[0], 0.0, 1e-14 * 14.0);
    EXPECT_NEAR(eigen.values[1], 0.0, 1e-14 * 14.0);
    EXPECT_NEAR(eigen.values[2], 14.0, 1e-14 * 14.0);
}

// Round-off beside equal eigenvalues turns nothing.
TEST(SymmetricEigen, OfEqualEigenvaluesKeepsTheAxes)
{
    const SymmetricEigen<3> eigen = SolveSymmetricEigen<3>({{{2.0, 1e-15, 0.0}, {1e-15, 2.0, 0.0}, {0.0, 0.0, 1.0}}});
    const SquareMatrix<3> axes = {{{0.0, 0.0, 1.0}, {1.0, 0.0, 0.0}, {0.0, 1.0, 0.0}}};
    EXPECT_EQ(eigen.vectors, axes);
    const SymmetricEigen<3> zero = SolveSymmetricEigen<3>({});
    EXPECT_EQ(zero.values, (std::array<double, 3>{}));
}

TEST(SymmetricEigen, OfEntriesThatAreNotNumbersEnds)
{
    const double nan = std::nan("");
    const SymmetricEigen<3> eigen = SolveSymmetricEigen<3>({{{nan, nan, nan}, {nan, nan, nan}, {nan, nan, nan}}});
    EXPECT_TRUE(std::isnan(eigen.values[0]));
}

} // namespace
} // namespace tarnvexo
