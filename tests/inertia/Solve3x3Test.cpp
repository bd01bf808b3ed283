#include "inertia/Solve3x3.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

Vector3 Product(const Matrix3& a, const Vector3& x)
{
    Vector3 b = {};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { b[i] += a[i][j] * x[j]; }
    }
    return b;
}

TEST(Solve3x3, FindsAKnownSolution)
{
    const Matrix3 a = {{{4.0, -1.0, 0.5}, {2.0, 7.0, -3.0}, {1.0, 0.25, -6.0}}};
    const Vector3 known = {1.5, -2.0, 0.75};
    const Vector3 x = Solve3x3(a, Product(a, known));
    for (int i = 0; i < 3; ++i) { EXPECT_NEAR(x[i], known[i], 1e-15 * 7.0); }
}

// The largest entry stands in every place once, so every exchange of rows and columns happens and is undone.
TEST(Solve3x3, FindsItForEveryOrderOfRowsAndColumns)
{
    const Matrix3 a = {{{9.0, 2.0, 1.0}, {0.5, 5.0, -3.0}, {1.0, -0.5, 2.0}}};
    const Vector3 known = {1.5, -2.0, 0.75};
    std::array<int, 3> rows = {0, 1, 2};
    do {
        std::array<int, 3> columns = {0, 1, 2};
        do {
            Matrix3 permuted;
            Vector3 unknowns;
            for (int i = 0; i < 3; ++i) {
                for (int j = 0; j < 3; ++j) { permuted[i][j] = a[rows[i]][columns[j]]; }
                unknowns[i] = known[columns[i]];
            }
            const Vector3 x = Solve3x3(permuted, Product(permuted, unknowns));
            for (int i = 0; i < 3; ++i) { EXPECT_NEAR(x[i], unknowns[i], 1e-15 * 9.0); }
        } while (std::next_permutation(columns.begin(), columns.end()));
    } while (std::next_permutation(rows.begin(), rows.end()));
}

TEST(Solve3x3, ZerosOnTheDiagonalDoNotMatter)
{
    const Matrix3 a = {{{0.0, 2.0, 0.0}, {0.0, 0.0, 4.0}, {8.0, 0.0, 0.0}}};
    EXPECT_EQ(Solve3x3(a, {6.0, 20.0, -8.0}), (Vector3{-1.0, 3.0, 5.0}));
}

// x + 1e20·y = 1e20 + 1, x + y = 2. Exchanging rows alone would take the 1 in the first column as pivot and lose x.
TEST(Solve3x3, TakesTheLargestEntryOfTheWholeMatrixAsPivot)
{
    const Matrix3 a = {{{1.0, 1e20, 0.0}, {1.0, 1.0, 0.0}, {0.0, 0.0, 1.0}}};
    EXPECT_EQ(Solve3x3(a, {1e20 + 1.0, 2.0, 1.0}), (Vector3{1.0, 1.0, 1.0}));
}

// x + y = 1, x + y = 2, 0.5·z = 3: the unknown whose column is not taken as pivot is left with 1/0.
TEST(Solve3x3, TakesTheFirstOfEquallyLargeEntriesRowByRow)
{
    const Vector3 x = Solve3x3({{{1.0, 1.0, 0.0}, {1.0, 1.0, 0.0}, {0.0, 0.0, 0.5}}}, {1.0, 2.0, 3.0});
    EXPECT_EQ(x[1], INFINITY);
    EXPECT_TRUE(std::isnan(x[0])); // 0·∞ on the way back
}

TEST(Solve3x3, TakesTheLargestMagnitudeWhateverItsSign)
{
    const Matrix3 a = {{{1.0, 2.0, 0.0}, {-8.0, 1.0, 0.0}, {0.0, 0.0, -4.0}}};
    const Vector3 known = {3.0, -1.0, 2.0};
    const Vector3 x = Solve3x3(a, Product(a, known));
    for (int i = 0; i < 3; ++i) { EXPECT_NEAR(x[i], known[i], 1e-15 * 8.0); }
}

TEST(Solve3x3, MatrixOfZerosGivesNonFiniteNumbers)
{
    for (const double value : Solve3x3({}, {1.0, 2.0, 3.0})) { EXPECT_FALSE(std::isfinite(value)); }
}

} // namespace
} // namespace tarnvexo
