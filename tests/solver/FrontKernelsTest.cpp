// Every kernel against plain loops, on every vector unit. Rows and columns begin anywhere that the header allows.
#include "solver/FrontKernels.h"

#include "support/FrontArrays.h"
#include "support/VectorUnits.h"

#include <algorithm>
#include <cfloat>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace tarnvexo {

// As GoogleTest prints it.
void PrintTo(const IndexRange& range, std::ostream* to)
{
    *to << range.begin << " ... " << range.end - 1;
}

namespace {

using namespace test;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

// Numbers of −1 ... 1, the same on every system.
class Numbers {
public:
    explicit Numbers(unsigned seed) : generator(seed) {}

    double operator()() { return generator() / 2147483648.0 - 1.0; }
    double Sign() { return generator() % 2 == 0 ? 1.0 : -1.0; }
    int Pick(int from, int to) { return from + static_cast<int>(generator() % static_cast<unsigned>(to - from + 1)); }

private:
    std::mt19937 generator;
};

std::vector<double> RandomSigns(int count, Numbers& numbers)
{
    std::vector<double> signs(static_cast<std::size_t>(count));
    for (double& sign : signs) { sign = numbers.Sign(); }
    return signs;
}

// A sum of `terms` products in any order, with or without rounding of the products.
double RoundOff(int terms, double sumOfSizes)
{
    return DBL_EPSILON * (terms + 2) * sumOfSizes;
}

struct ProductSizes {
    IndexRange k, rows, columns;
};

// C −= L·S·Lᵀ; C is a front of its own or the rest of L.
void ExpectProduct(const ProductSizes& sizes, bool areSigned, bool isInPlace, unsigned seed)
{
    const auto& [k, rows, columns] = sizes;
    Numbers numbers(seed);
    const int rowEnd = std::max(rows.end, WholeLines(columns.end));
    const int rowBegin = std::min(rows.begin, columns.begin / RowAlignment * RowAlignment);
    GuardedFront L({rowBegin, rowEnd}, {k.begin, isInPlace ? columns.end : k.end});
    L.Fill([&](int, int) { return numbers(); });
    GuardedFront ofItsOwn({rows.begin, rowEnd}, columns);
    ofItsOwn.Fill([&](int, int) { return numbers(); });
    GuardedFront& C = isInPlace ? L : ofItsOwn;
    const std::vector<double> signs = RandomSigns(k.end, numbers);
    SubtractProduct(L.Array(), k, areSigned ? signs.data() : nullptr, rows, columns, C.Array());
    for (int c = columns.begin; c < columns.end; ++c) {
        for (int r = std::max(c, rows.begin); r < rows.end; ++r) {
            long double expected = C.Before(r, c), size = std::fabs(C.Before(r, c));
            for (int p = k.begin; p < k.end; ++p) {
                const long double product = static_cast<long double>(L.Before(r, p)) * L.Before(c, p);
                expected -= areSigned ? signs[p] * product : product;
                size += std::fabs(product);
            }
            ASSERT_NEAR(C.At(r, c), static_cast<double>(expected), RoundOff(k.Size(), static_cast<double>(size)))
                << "row " << r << ", column " << c;
        }
    }
    EXPECT_EQ(C.Changed([&](int r, int c) {
        return r >= rows.begin && r < rows.end && c >= columns.begin && c < columns.end;
    }),
              0);
    if (!isInPlace) {
        EXPECT_EQ(L.Changed([](int, int) { return false; }), 0);
    }
}

constexpr ProductSizes Products[] = {
    {{0, 6}, {8, 16}, {6, 12}},       // one tile
    {{0, 6}, {0, 8}, {6, 12}},        // the diagonal in the middle of a line
    {{6, 18}, {24, 80}, {18, 42}},    // everything begins inside
    {{0, 66}, {64, 200}, {66, 72}},   // a tall piece
    {{0, 30}, {96, 120}, {30, 126}},  // rows end before the columns do
    {{12, 24}, {200, 264}, {24, 60}}, // far below the diagonal
    {{0, 186}, {184, 232}, {186, 198}}, {{0, 192}, {192, 224}, {192, 210}},
    {{0, 198}, {192, 232}, {198, 216}}, {{0, 390}, {384, 416}, {390, 402}}, // more columns than are taken at once
    {{0, 0}, {0, 16}, {0, 12}},                                             // no product at all
    {{0, 6}, {8, 8}, {6, 12}},                                              // no rows
    {{0, 6}, {8, 32}, {6, 6}},                                              // no columns
};

void ExpectAllProducts(bool isInPlace, unsigned seed)
{
    for (const ProductSizes& sizes : Products) {
        SCOPED_TRACE(testing::PrintToString(sizes.k) + " from " + testing::PrintToString(sizes.rows) + ", " +
                     testing::PrintToString(sizes.columns));
        for (const bool areSigned : {false, true}) { ExpectProduct(sizes, areSigned, isInPlace, seed++); }
    }
}

TEST(FrontKernels, SubtractTheProductOfARest)
{
    OnEveryVectorUnit([] { ExpectAllProducts(false, 1); });
}

TEST(FrontKernels, SubtractTheProductInsideTheSameArray)
{
    OnEveryVectorUnit([] { ExpectAllProducts(true, 100); });
}

TEST(FrontKernels, SubtractProductsOfAnySize)
{
    OnEveryVectorUnit([] {
        Numbers numbers(7);
        for (unsigned trial = 0; trial < 60; ++trial) {
            ProductSizes sizes;
            sizes.k.begin = 6 * numbers.Pick(0, 6);
            sizes.k.end = sizes.k.begin + 6 * numbers.Pick(1, 8);
            sizes.columns.begin = sizes.k.end + 6 * numbers.Pick(0, 4);
            sizes.columns.end = sizes.columns.begin + 6 * numbers.Pick(1, 6);
            sizes.rows.begin = RowAlignment * numbers.Pick(0, 12);
            sizes.rows.end = sizes.rows.begin + RowAlignment * numbers.Pick(0, 12);
            SCOPED_TRACE(testing::PrintToString(sizes.k) + " from " + testing::PrintToString(sizes.rows) + ", " +
                         testing::PrintToString(sizes.columns));
            ExpectProduct(sizes, trial % 2 == 0, trial % 3 == 0, trial);
        }
    });
}

// What a row beyond the diagonal block receives does not depend on how rows are shared between threads.
TEST(FrontKernels, GiveARowTheSameBitsInAnyRangeOfRows)
{
    OnEveryVectorUnit([] {
        constexpr IndexRange K = {0, 48}, Columns = {48, 96}, Rows = {96, 256};
        Numbers numbers(8);
        const std::vector<double> values = [&] {
            std::vector<double> random(96 * 256);
            for (double& value : random) { value = numbers(); }
            return random;
        }();
        const auto fill = [&](int r, int c) { return values[static_cast<std::size_t>(256 * c + r)]; };
        GuardedFront together({0, 256}, {0, 96});
        together.Fill(fill);
        SubtractProduct(together.Array(), K, nullptr, Rows, Columns, together.Array());
        for (const int piece : {8, 16, 24, 40, 104}) {
            GuardedFront pieces({0, 256}, {0, 96});
            pieces.Fill(fill);
            for (int begin = Rows.begin; begin < Rows.end; begin += piece) {
                SubtractProduct(pieces.Array(), K, nullptr, {begin, std::min(begin + piece, Rows.end)}, Columns,
                                pieces.Array());
            }
            int different = 0;
            for (int c = Columns.begin; c < Columns.end; ++c) {
                for (int r = Rows.begin; r < Rows.end; ++r) { different += pieces.At(r, c) != together.At(r, c); }
            }
            EXPECT_EQ(different, 0) << "pieces of " << piece;
        }
    });
}

// L·S·Lᵀ of the lower triangle of the columns with the rows below them, column by column; equations whose pivot is no
// usable number are left out.
struct PlainFactor {
    PlainFactor(GuardedFront& front, IndexRange columns, int rowEnd)
        : begin(columns.begin), height(rowEnd - columns.begin),
          L(static_cast<std::size_t>(columns.Size()) * static_cast<std::size_t>(height)), signs(columns.Size(), 1.0),
          pivots(columns.Size())
    {
        for (int j = columns.begin; j < columns.end; ++j) {
            for (int i = j; i < rowEnd; ++i) {
                long double sum = front.Before(i, j);
                for (int p = columns.begin; p < j; ++p) { sum -= At(i, p) * signs[p - begin] * At(j, p); }
                if (i == j) {
                    pivots[j - begin] = sum;
                }
                const long double pivot = pivots[j - begin];
                if (!std::isfinite(pivot) || pivot == 0.0L) {
                    At(i, j) = 0.0L; // the diagonal is set when the column is done
                    isComplete = false;
                    continue;
                }
                if (i == j) {
                    signs[j - begin] = pivot < 0.0L ? -1.0 : 1.0;
                    isComplete = isComplete && pivot > 0.0L;
                    At(i, j) = std::sqrt(std::fabs(pivot));
                } else {
                    At(i, j) = sum * signs[j - begin] / At(j, j);
                }
            }
        }
    }

    long double& At(int i, int j)
    {
        return L[static_cast<std::size_t>(j - begin) * static_cast<std::size_t>(height) +
                 static_cast<std::size_t>(i - begin)];
    }
    bool IsLeftOut(int j) const { return !std::isfinite(pivots[j - begin]) || pivots[j - begin] == 0.0L; }

    int begin, height;
    std::vector<long double> L;
    std::vector<double> signs;
    std::vector<long double> pivots;
    bool isComplete = true;
};

// A front whose diagonal outweighs its rows; `diagonal` makes another diagonal entry out of it.
void FillDominant(GuardedFront& front, IndexRange columns, unsigned seed, const auto& diagonal)
{
    Numbers numbers(seed);
    front.Fill([&](int r, int c) {
        const double value = numbers();
        return r == c ? diagonal(c, columns.Size() + 2.0 + value) : value;
    });
}

// Of a column that is as well conditioned as FillDominant makes it.
constexpr double FactorError = 1e-14;

void ExpectFactor(GuardedFront& front, IndexRange columns)
{
    constexpr double Untouched = 77.0;
    const int rowEnd = WholeLines(columns.end);
    std::vector<double> signs(static_cast<std::size_t>(columns.end) + 6, Untouched), pivots = signs;
    PlainFactor expected(front, columns, rowEnd);
    const bool isComplete = FactoriseDiagonal(front.Array(), columns, signs.data(), pivots.data());
    EXPECT_EQ(isComplete, expected.isComplete);
    for (int c = columns.begin; c < columns.end; ++c) {
        const double pivot = static_cast<double>(expected.pivots[c - columns.begin]);
        if (std::isfinite(pivot)) {
            EXPECT_NEAR(pivots[c], pivot, FactorError * std::fabs(pivot)) << "column " << c;
        } else {
            EXPECT_EQ(std::isnan(pivots[c]), std::isnan(pivot)) << "column " << c << ": " << pivots[c];
            EXPECT_FALSE(std::isfinite(pivots[c])) << "column " << c;
        }
        EXPECT_EQ(signs[c], expected.signs[c - columns.begin]) << "column " << c;
        if (expected.IsLeftOut(c)) {
            EXPECT_EQ(front.At(c, c), Infinity) << "column " << c;
        } else {
            const double diagonal = static_cast<double>(expected.At(c, c));
            EXPECT_NEAR(front.At(c, c), diagonal, FactorError * diagonal) << "column " << c;
        }
        for (int r = c + 1; r < rowEnd; ++r) {
            ASSERT_NEAR(front.At(r, c), static_cast<double>(expected.At(r, c)), FactorError)
                << "row " << r << ", column " << c;
        }
    }
    EXPECT_EQ(front.Changed([&](int r, int c) {
        return c >= columns.begin && c < columns.end && r >= columns.begin / RowAlignment * RowAlignment && r < rowEnd;
    }),
              0);
    for (int c = 0; c < columns.end + 6; ++c) {
        if (c < columns.begin || c >= columns.end) {
            EXPECT_EQ(signs[c], Untouched) << c;
            EXPECT_EQ(pivots[c], Untouched) << c;
        }
    }
}

constexpr IndexRange DiagonalBlocks[] = {{0, 6},  {0, 12}, {0, 18},  {0, 24},   {0, 90},   {0, 96},  {0, 102},
                                         {6, 12}, {6, 30}, {18, 60}, {96, 102}, {96, 192}, {42, 90}, {96, 168}};

// With rows above, below and beside the block, which stay as they are.
GuardedFront FrontAround(IndexRange columns)
{
    return GuardedFront({columns.begin / RowAlignment * RowAlignment, WholeLines(columns.end) + RowAlignment},
                        {columns.begin, columns.end + 6});
}

TEST(FrontKernels, FactoriseADiagonalBlock)
{
    OnEveryVectorUnit([] {
        unsigned seed = 1;
        for (const IndexRange& columns : DiagonalBlocks) {
            SCOPED_TRACE("columns " + testing::PrintToString(columns));
            GuardedFront front = FrontAround(columns);
            FillDominant(front, columns, seed++, [](int, double value) { return value; });
            ExpectFactor(front, columns);
        }
    });
}

TEST(FrontKernels, FactoriseADiagonalBlockWithPivotsOfBothSigns)
{
    OnEveryVectorUnit([] {
        unsigned seed = 1;
        for (const IndexRange& columns : DiagonalBlocks) {
            SCOPED_TRACE("columns " + testing::PrintToString(columns));
            GuardedFront front = FrontAround(columns);
            FillDominant(front, columns, seed++, [](int c, double value) { return c * 5 % 7 < 3 ? -value : value; });
            ExpectFactor(front, columns);
        }
    });
}

TEST(FrontKernels, TellThatOnePivotAmongMostIsNegative)
{
    OnEveryVectorUnit([] {
        for (int negative = 6; negative < 42; ++negative) {
            SCOPED_TRACE("column " + std::to_string(negative));
            GuardedFront front = FrontAround({6, 42});
            FillDominant(front, {6, 42}, 3, [&](int c, double value) { return c == negative ? -value : value; });
            ExpectFactor(front, {6, 42});
        }
    });
}

// One after the other is infinite or no number: its equation is left out, the others are those of the matrix without
// it.
TEST(FrontKernels, LeaveOutAPivotThatIsNoFiniteNumber)
{
    OnEveryVectorUnit([] {
        for (const double bad : {Infinity, -Infinity, NotANumber}) {
            for (int left = 6; left < 30; ++left) {
                SCOPED_TRACE("column " + std::to_string(left) + " has " + std::to_string(bad));
                GuardedFront front = FrontAround({6, 30});
                FillDominant(front, {6, 30}, 4, [&](int c, double value) {
                    return c == left ? bad : c % 5 == 0 ? -value : value;
                });
                ExpectFactor(front, {6, 30});
            }
        }
    });
}

// Row and diagonal of the equation are zero, its column below is not; of either sign, alone or several.
TEST(FrontKernels, LeaveOutAPivotThatIsZero)
{
    OnEveryVectorUnit([] {
        for (const double zero : {0.0, -0.0}) {
            for (int left = 6; left < 30; ++left) {
                SCOPED_TRACE("column " + std::to_string(left));
                const auto isLeftOut = [&](int c) { return c == left || c == left + 7 || c == left + 8; };
                Numbers numbers(5);
                GuardedFront front = FrontAround({6, 30});
                front.Fill([&](int r, int c) {
                    const double value = numbers();
                    if (isLeftOut(r)) {
                        return zero;
                    }
                    return r == c ? 30.0 + value : value;
                });
                ExpectFactor(front, {6, 30});
            }
        }
    });
}

// Second of two equal equations: 4 − 2·2 leaves exactly nothing.
TEST(FrontKernels, LeaveOutAnEquationThatIsThereTwice)
{
    OnEveryVectorUnit([] {
        for (const int first : {0, 3, 5, 7, 11}) {
            for (const int second : {12, 13, 17, 18, 23}) {
                GuardedFront front = FrontAround({0, 24});
                front.Fill([&](int r, int c) { return r == c || (r == second && c == first) ? 4.0 : 0.0; });
                std::vector<double> signs(24), pivots(24);
                EXPECT_FALSE(FactoriseDiagonal(front.Array(), {0, 24}, signs.data(), pivots.data()));
                for (int c = 0; c < 24; ++c) {
                    EXPECT_EQ(pivots[c], c == second ? 0.0 : 4.0) << c;
                    EXPECT_EQ(front.At(c, c), c == second ? Infinity : 2.0) << c;
                }
            }
        }
    });
}

void ExpectSolvedRows(IndexRange columns, IndexRange rows, const auto& diagonal, bool areAllPositive)
{
    GuardedFront front({columns.begin / RowAlignment * RowAlignment, rows.end + RowAlignment},
                       {columns.begin, columns.end + 6});
    FillDominant(front, columns, 9, diagonal);
    std::vector<double> signs(static_cast<std::size_t>(columns.end)), pivots = signs;
    PlainFactor expected(front, columns, rows.end);
    ASSERT_EQ(FactoriseDiagonal(front.Array(), columns, signs.data(), pivots.data()), areAllPositive);
    front.Fill([&](int r, int c) { return front.At(r, c); });
    SolveRows(front.Array(), columns, areAllPositive ? nullptr : signs.data(), rows);
    for (int c = columns.begin; c < columns.end; ++c) {
        for (int r = rows.begin; r < rows.end; ++r) {
            ASSERT_NEAR(front.At(r, c), static_cast<double>(expected.At(r, c)), FactorError)
                << "row " << r << ", column " << c;
        }
    }
    EXPECT_EQ(front.Changed([&](int r, int c) {
        return c >= columns.begin && c < columns.end && r >= rows.begin && r < rows.end;
    }),
              0);
}

TEST(FrontKernels, SolveRowsBelowADiagonalBlock)
{
    OnEveryVectorUnit([] {
        for (const IndexRange& columns : DiagonalBlocks) {
            const int below = WholeLines(columns.end);
            for (const IndexRange& rows : {IndexRange{below, below + 8}, IndexRange{below + 16, below + 56},
                                           IndexRange{below, below + 136}, IndexRange{below, below}}) {
                SCOPED_TRACE(testing::PrintToString(columns) + ", rows " + testing::PrintToString(rows));
                ExpectSolvedRows(
                    columns, rows, [](int, double value) { return value; }, true);
                ExpectSolvedRows(
                    columns, rows,
                    [&](int c, double value) { return c == columns.begin || c * 3 % 5 < 2 ? -value : value; }, false);
            }
        }
    });
}

// The column of an equation that is left out is zero below, too.
TEST(FrontKernels, SolveRowsBelowAnEquationThatIsLeftOut)
{
    OnEveryVectorUnit([] {
        for (int left = 6; left < 24; ++left) {
            SCOPED_TRACE("column " + std::to_string(left));
            ExpectSolvedRows(
                {6, 24}, {24, 64}, [&](int c, double value) { return c == left ? Infinity : value; }, false);
        }
    });
}

// Entry by entry, one addition each: the same bits. The child is stored from its block column `strip` on.
void ExpectAddedUpdate(const std::vector<int>& blockInParent, int childWidth, int strip, IndexRange columns,
                       int parentFirstColumn, int parentBlocks)
{
    const int blocks = static_cast<int>(blockInParent.size());
    const int fromEnd = childWidth + 6 * blocks;
    Numbers numbers(11);
    const int fromBegin = childWidth + 6 * strip;
    GuardedFront from({fromBegin / RowAlignment * RowAlignment, WholeLines(fromEnd)}, {fromBegin, fromEnd});
    from.Fill([&](int, int) { return numbers(); });
    GuardedFront to({parentFirstColumn / RowAlignment * RowAlignment, WholeLines(6 * parentBlocks)},
                    {parentFirstColumn, 6 * parentBlocks});
    to.Fill([&](int, int) { return numbers(); });
    AddUpdate(from.Array(), childWidth, blockInParent.data(), blocks, columns, to.Array());
    std::vector<char> isAdded(static_cast<std::size_t>(36 * parentBlocks * parentBlocks), 0);
    const auto at = [&](int r, int c) { return static_cast<std::size_t>(6 * parentBlocks * c + r); };
    for (int k = columns.begin; k < columns.end; ++k) {
        for (int i = k; i < blocks; ++i) {
            for (int v = 0; v < 6; ++v) {
                for (int u = 0; u < 6; ++u) {
                    const int r = 6 * blockInParent[i] + u, c = 6 * blockInParent[k] + v;
                    isAdded[at(r, c)] = 1;
                    if (r >= c) {
                        ASSERT_EQ(to.At(r, c),
                                  to.Before(r, c) + from.At(childWidth + 6 * i + u, childWidth + 6 * k + v))
                            << "row " << r << ", column " << c;
                    }
                }
            }
        }
    }
    EXPECT_EQ(to.Changed([&](int r, int c) { return r < 6 * parentBlocks && isAdded[at(r, c)] != 0; }), 0);
    EXPECT_EQ(from.Changed([](int, int) { return false; }), 0);
}

TEST(FrontKernels, AddWhatIsLeftOfAChild)
{
    OnEveryVectorUnit([] {
        const std::vector<int> alone = {0}, run = {0, 1, 2, 3, 4}, apart = {0, 2, 4, 6, 8},
                               mixed = {1, 2, 3, 7, 9, 10, 15};
        for (const int width : {6, 12, 18, 24, 96}) {
            ExpectAddedUpdate(alone, width, 0, {0, 1}, 0, 1);
            ExpectAddedUpdate(run, width, 0, {0, 5}, 0, 5);
            ExpectAddedUpdate(apart, width, 0, {0, 5}, 0, 10);
            ExpectAddedUpdate(mixed, width, 0, {0, 7}, 0, 16);
            ExpectAddedUpdate(mixed, width, 0, {0, 3}, 0, 16);  // the first columns only
            ExpectAddedUpdate(mixed, width, 0, {3, 7}, 42, 16); // the others, to a later part of the parent
            ExpectAddedUpdate(mixed, width, 3, {3, 7}, 42, 16); // from a later part of the child
            ExpectAddedUpdate(mixed, width, 2, {4, 6}, 0, 16);
            ExpectAddedUpdate(mixed, width, 0, {4, 4}, 0, 16); // nothing
        }
    });
}

TEST(FrontKernels, SubtractColumnsTimesAVector)
{
    OnEveryVectorUnit([] {
        Numbers numbers(12);
        for (int trial = 0; trial < 200; ++trial) {
            const int begin = 6 * numbers.Pick(0, 5);
            const IndexRange columns = {begin, begin + 6 * numbers.Pick(0, 8)};
            const int first = numbers.Pick(0, 60);
            const IndexRange rows = {first, first + numbers.Pick(0, 70)};
            SCOPED_TRACE(testing::PrintToString(columns) + ", rows " + testing::PrintToString(rows));
            GuardedFront L({0, WholeLines(rows.end)}, {0, columns.end});
            L.Fill([&](int, int) { return numbers(); });
            std::vector<double> x(static_cast<std::size_t>(columns.Size())), y(static_cast<std::size_t>(rows.end) + 8);
            for (double& value : x) { value = numbers(); }
            for (double& value : y) { value = numbers(); }
            const std::vector<double> before = y;
            SubtractColumns(L.Array(), columns, x.data(), rows, y.data());
            for (int r = 0; r < static_cast<int>(y.size()); ++r) {
                long double expected = before[r], size = std::fabs(before[r]);
                if (r >= rows.begin && r < rows.end) {
                    for (int c = columns.begin; c < columns.end; ++c) {
                        const long double product = static_cast<long double>(L.At(r, c)) * x[c - columns.begin];
                        expected -= product;
                        size += std::fabs(product);
                    }
                    ASSERT_NEAR(y[r], static_cast<double>(expected),
                                RoundOff(columns.Size(), static_cast<double>(size)));
                } else {
                    ASSERT_EQ(y[r], before[r]) << "row " << r;
                }
            }
            EXPECT_EQ(L.Changed([](int, int) { return false; }), 0);
        }
    });
}

TEST(FrontKernels, SubtractTheProductsOfColumnsWithAVector)
{
    OnEveryVectorUnit([] {
        Numbers numbers(13);
        for (int trial = 0; trial < 200; ++trial) {
            const int begin = 6 * numbers.Pick(0, 5);
            const IndexRange columns = {begin, begin + 6 * numbers.Pick(0, 8)};
            const int first = numbers.Pick(0, 60);
            const IndexRange rows = {first, first + numbers.Pick(0, 70)};
            SCOPED_TRACE(testing::PrintToString(columns) + ", rows " + testing::PrintToString(rows));
            GuardedFront L({0, WholeLines(rows.end)}, {0, columns.end});
            L.Fill([&](int, int) { return numbers(); });
            std::vector<double> x(static_cast<std::size_t>(columns.Size()) + 6), y(static_cast<std::size_t>(rows.end));
            for (double& value : x) { value = numbers(); }
            for (double& value : y) { value = numbers(); }
            const std::vector<double> before = x;
            SubtractColumnProducts(L.Array(), columns, rows, y.data(), x.data());
            for (int k = 0; k < static_cast<int>(x.size()); ++k) {
                if (k >= columns.Size()) {
                    ASSERT_EQ(x[k], before[k]) << "entry " << k;
                    continue;
                }
                long double expected = before[k], size = std::fabs(before[k]);
                for (int r = rows.begin; r < rows.end; ++r) {
                    const long double product = static_cast<long double>(L.At(r, columns.begin + k)) * y[r];
                    expected -= product;
                    size += std::fabs(product);
                }
                ASSERT_NEAR(x[k], static_cast<double>(expected), RoundOff(rows.Size(), static_cast<double>(size)));
            }
            EXPECT_EQ(L.Changed([](int, int) { return false; }), 0);
        }
    });
}

} // namespace
} // namespace tarnvexo
