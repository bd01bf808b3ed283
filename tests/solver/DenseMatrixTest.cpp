#include "solver/DenseMatrix.h"

#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using Values = std::vector<double>;

constexpr double Untouched = -777.0;

TEST(MatMultiply, MultipliesRowsByColumns)
{
    const Values A = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};                                 // 2 x 3
    const Values B = {1.0, 0.0, 2.0, -1.0, 3.0, 1.0, 0.0, 4.0, 1.0, 1.0, 2.0, -2.0}; // 3 x 4
    Values out(8, Untouched);
    MatMultiply(out.data(), A.data(), B.data(), 2, 3, 4);
    EXPECT_EQ(out, (Values{10.0, 5.0, 8.0, 1.0, 25.0, 11.0, 20.0, 4.0}));
}

// 1e16 + 1 is 1e16: summed forwards 1e16 + 1 − 1e16 + 1 gives 1; backwards 0; in pairs that cancel 2.
TEST(MatMultiply, AddsTheTermsInIncreasingOrder)
{
    const Values A = {1e16, 1.0, -1e16, 1.0};
    const Values B = {1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0, 1.0}; // 4 x 2
    Values out(2, Untouched);
    MatMultiply(out.data(), A.data(), B.data(), 1, 4, 2);
    EXPECT_EQ(out, (Values{1.0, 1.0}));
}

TEST(MatMultiply, ClearsTheOutputBeforeAnEmptySum)
{
    Values out(6, Untouched);
    const double none = 0.0;
    MatMultiply(out.data(), &none, &none, 2, 0, 3);
    EXPECT_EQ(out, Values(6, 0.0));
}

TEST(MatMultiply, NoRowsOrNoColumnsWriteNothing)
{
    const Values in(4, 1.0);
    Values out(4, Untouched);
    MatMultiply(out.data(), in.data(), in.data(), 0, 2, 2);
    MatMultiply(out.data(), in.data(), in.data(), 2, 2, 0);
    EXPECT_EQ(out, Values(4, Untouched));
}

TEST(MirrorUpperTriangle, OverwritesTheEntriesBelowTheDiagonal)
{
    double K[3][3] = {{1.0, 2.0, 3.0}, {Untouched, 4.0, 5.0}, {Untouched, Untouched, 6.0}};
    const double expected[3][3] = {{1.0, 2.0, 3.0}, {2.0, 4.0, 5.0}, {3.0, 5.0, 6.0}};
    MirrorUpperTriangle(K);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { EXPECT_EQ(K[i][j], expected[i][j]); }
    }
}

} // namespace
} // namespace tarnvexo
