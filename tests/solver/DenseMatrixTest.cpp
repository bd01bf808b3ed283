#include "solver/DenseMatrix.h"

#include <gtest/gtest.h>
#include <vector>

namespace tarnvexo {
namespace {

using Values = std::vector<double>;

constexpr double Untouched = -777.0;

TEST(MatTranspose, ExchangesRowsAndColumns)
{
    const Values in = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0}; // 2 x 3
    Values out(6, Untouched);
    MatTranspose(out.data(), in.data(), 2, 3);
    EXPECT_EQ(out, (Values{1.0, 4.0, 2.0, 5.0, 3.0, 6.0}));
}

TEST(MatTranspose, OfARowIsAColumnWithTheSameValuesInOrder)
{
    const Values row = {3.0, -1.0, 4.0, 1.5};
    Values column(4, Untouched);
    MatTranspose(column.data(), row.data(), 1, 4);
    EXPECT_EQ(column, row);
}

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

TEST(MatAdd, AddsEntryByEntry)
{
    const Values A = {1.0, 2.0, 3.0}, B = {10.0, -20.0, 30.0};
    Values out(3, Untouched);
    MatAdd(out.data(), A.data(), B.data(), 3, 1);
    EXPECT_EQ(out, (Values{11.0, -18.0, 33.0}));
}

TEST(MatAdd, MayAddInPlace)
{
    Values sum = {1.0, 2.0};
    const Values more = {0.5, 0.25};
    MatAdd(sum.data(), sum.data(), more.data(), 1, 2);
    EXPECT_EQ(sum, (Values{1.5, 2.25}));
}

TEST(MatScale, MultipliesEveryEntry)
{
    const Values in = {1.0, -2.0, 0.0, 4.0};
    Values out(4, Untouched);
    MatScale(out.data(), in.data(), -0.5, 2, 2);
    EXPECT_EQ(out, (Values{-0.5, 1.0, -0.0, -2.0}));
}

TEST(DenseMatrix, NoRowsOrNoColumnsWriteNothing)
{
    const Values in(4, 1.0);
    Values out(4, Untouched);
    MatTranspose(out.data(), in.data(), 0, 2);
    MatTranspose(out.data(), in.data(), 2, 0);
    MatMultiply(out.data(), in.data(), in.data(), 0, 2, 2);
    MatMultiply(out.data(), in.data(), in.data(), 2, 2, 0);
    MatAdd(out.data(), in.data(), in.data(), 0, 2);
    MatAdd(out.data(), in.data(), in.data(), 2, 0);
    MatScale(out.data(), in.data(), 3.0, 0, 2);
    MatScale(out.data(), in.data(), 3.0, 2, 0);
    EXPECT_EQ(out, Values(4, Untouched));
}

// B = (1 2 / 3 4 / 5 6), D = diag(1, 10, 100): Bᵀ·D·B by hand.
TEST(TripleProduct, IsTransposeTimesMatrixTimesFactor)
{
    const Values B = {1.0, 2.0, 3.0, 4.0, 5.0, 6.0};
    const Values D = {1.0, 0.0, 0.0, 0.0, 10.0, 0.0, 0.0, 0.0, 100.0};
    Values out(4, Untouched);
    TripleProduct<3, 2>(out.data(), B.data(), D.data());
    EXPECT_EQ(out, (Values{2591.0, 3122.0, 3122.0, 3764.0}));
}

// (Bᵀ·D)·B with D unsymmetric tells which factor comes first: Bᵀ·D·B, not B·D·Bᵀ and not Bᵀ·Dᵀ·B.
TEST(TripleProduct, KeepsTheOrderOfTheFactors)
{
    const Values B = {1.0, 2.0, 0.0, 1.0};
    const Values D = {0.0, 1.0, 0.0, 0.0};
    Values out(4, Untouched);
    TripleProduct<2, 2>(out.data(), B.data(), D.data());
    EXPECT_EQ(out, (Values{0.0, 1.0, 0.0, 2.0}));
}

} // namespace
} // namespace tarnvexo
