#include "solver/FrontElimination.h"

#include "core/LargeArray.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <ostream>
#include <random>
#include <string>
#include <vector>

namespace tarnvexo {

// As GoogleTest prints it.
void PrintTo(const FrontSize& size, std::ostream* to)
{
    *to << size.width << " columns of " << size.height << " rows";
}

namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
constexpr double Untouched = 77.0;

enum class Pivots { Positive, OfBothSigns, LastNegative };

// A dense symmetric front, lower triangle column by column, whose diagonal outweighs its rows.
struct DenseFront {
    DenseFront(const FrontSize& size, Pivots kind, unsigned seed)
        : size(size), values(static_cast<std::size_t>(size.height) * static_cast<std::size_t>(size.height))
    {
        std::mt19937 generator(seed);
        for (int c = 0; c < size.height; ++c) {
            for (int r = c; r < size.height; ++r) { At(r, c) = generator() / 2147483648.0 - 1.0; }
            const bool isNegative =
                kind == Pivots::OfBothSigns ? c * 5 % 7 < 3 : kind == Pivots::LastNegative && c == size.width - 1;
            At(c, c) = isNegative ? -size.height - 2.0 : size.height + 2.0;
        }
    }

    long double& At(int row, int column)
    {
        return values[static_cast<std::size_t>(column) * static_cast<std::size_t>(size.height) +
                      static_cast<std::size_t>(row)];
    }
    double At(int row, int column) const { return static_cast<double>(const_cast<DenseFront&>(*this).At(row, column)); }

    FrontSize size;
    std::vector<long double> values;
};

// The same front as the engine keeps it, and what becomes of it. All that is not the lower triangle is no number: it
// must not reach the result.
struct StoredFront {
    explicit StoredFront(const DenseFront& dense)
        : size(dense.size), panel(PanelEntries(size)), update(UpdateEntries(size)),
          L(PanelAt(panel.Data(), size)), U{update.Data(), size},
          signs(static_cast<std::size_t>(size.width) + 1, Untouched), pivots(signs)
    {
        std::fill_n(panel.Data(), panel.Size(), NotANumber);
        std::fill_n(update.Data(), update.Size(), NotANumber);
        for (int c = 0; c < size.height; ++c) {
            for (int r = c; r < size.height; ++r) { *At(r, c) = dense.At(r, c); }
        }
    }

    double* At(int row, int column) const
    {
        return (column < size.width ? L : U.Strip((column - size.width) / StripColumns)).At(row, column);
    }

    void Eliminate(int members)
    {
        RunCrew(members, [&](CrewMember& member) {
            EliminateFront(member, size, L, U, signs.data(), pivots.data(), isPositive);
        });
    }

    FrontSize size;
    LargeArray panel, update;
    FrontArray L;
    FrontUpdate U;
    std::vector<double> signs, pivots;
    unsigned char isPositive = 9;
};

// L·S·Lᵀ of the first columns, column by column, in place.
void EliminatePlainly(DenseFront& front, std::vector<double>& pivots)
{
    for (int k = 0; k < front.size.width; ++k) {
        const long double pivot = front.At(k, k);
        const long double sign = pivot < 0.0L ? -1.0L : 1.0L, diagonal = std::sqrt(std::fabs(pivot));
        pivots.push_back(static_cast<double>(pivot));
        front.At(k, k) = diagonal;
        for (int r = k + 1; r < front.size.height; ++r) { front.At(r, k) *= sign / diagonal; }
        for (int c = k + 1; c < front.size.height; ++c) {
            const long double factor = sign * front.At(c, k);
            for (int r = c; r < front.size.height; ++r) { front.At(r, c) -= front.At(r, k) * factor; }
        }
    }
}

// Of numbers up to 1, subtracted and added some hundred times from a diagonal of some hundred.
constexpr double FrontError = 1e-12;

void ExpectElimination(const FrontSize& size, Pivots kind, int members)
{
    SCOPED_TRACE(testing::PrintToString(size) + ", crew of " + std::to_string(members));
    DenseFront expected(size, kind, static_cast<unsigned>(size.width + size.height));
    StoredFront front(expected);
    front.Eliminate(members);
    std::vector<double> pivots;
    EliminatePlainly(expected, pivots);
    double largest = 0.0;
    for (int c = 0; c < size.height; ++c) {
        for (int r = c; r < size.height; ++r) {
            const double difference = std::fabs(*front.At(r, c) - expected.At(r, c));
            largest = difference <= largest ? largest : difference; // what is no number stays
        }
    }
    EXPECT_LT(largest, FrontError);
    for (int c = 0; c < size.width; ++c) {
        ASSERT_NEAR(front.pivots[c], pivots[c], 1e-14 * std::fabs(pivots[c])) << "column " << c;
        ASSERT_EQ(front.signs[c], pivots[c] < 0.0 ? -1.0 : 1.0) << "column " << c;
    }
    EXPECT_EQ(front.isPositive, kind == Pivots::Positive ? 1 : 0);
    EXPECT_EQ(front.signs.back(), Untouched);
    EXPECT_EQ(front.pivots.back(), Untouched);
}

// Widths and heights around whole lines, blocks and pieces.
constexpr FrontSize Sizes[] = {{6, 6},     {6, 12},    {6, 90},    {6, 702},   {12, 18},   {18, 24},   {24, 24},
                               {48, 102},  {90, 96},   {96, 96},   {96, 102},  {96, 300},  {102, 102}, {102, 108},
                               {186, 192}, {192, 192}, {192, 390}, {198, 204}, {300, 300}, {300, 606}};

TEST(FrontElimination, EqualsDenseCholesky)
{
    for (const FrontSize& size : Sizes) { ExpectElimination(size, Pivots::Positive, 1); }
}

TEST(FrontElimination, EqualsDenseEliminationWithPivotsOfBothSigns)
{
    for (const FrontSize& size : Sizes) { ExpectElimination(size, Pivots::OfBothSigns, 2); }
}

// Blocks before it were taken off without signs.
TEST(FrontElimination, NoticesANegativePivotInTheLastColumn)
{
    for (const FrontSize& size : {FrontSize{6, 12}, FrontSize{96, 102}, FrontSize{102, 300}, FrontSize{300, 306}}) {
        ExpectElimination(size, Pivots::LastNegative, 2);
    }
}

// Each of the columns in turn has a zero in its place and nothing before it: the others are as without it.
TEST(FrontElimination, LeavesOutAnEquationWithoutPivot)
{
    constexpr FrontSize Size = {108, 132};
    for (const int left : {0, 5, 6, 50, 95, 96, 101, 107}) {
        SCOPED_TRACE("equation " + std::to_string(left));
        DenseFront dense(Size, Pivots::OfBothSigns, 4);
        for (int c = 0; c <= left; ++c) { dense.At(left, c) = 0.0; }
        StoredFront front(dense);
        front.Eliminate(2);
        EXPECT_EQ(front.isPositive, 0);
        EXPECT_EQ(front.pivots[left], 0.0);
        EXPECT_EQ(*front.At(left, left), Infinity);
        for (int r = left + 1; r < Size.height; ++r) { dense.At(r, left) = 0.0; }
        dense.At(left, left) = 1.0; // stands alone
        std::vector<double> pivots;
        EliminatePlainly(dense, pivots);
        double largest = 0.0;
        for (int c = 0; c < Size.height; ++c) {
            for (int r = c; r < Size.height; ++r) {
                const double difference = r == left && c == left ? 0.0 : std::fabs(*front.At(r, c) - dense.At(r, c));
                largest = difference <= largest ? largest : difference;
            }
        }
        EXPECT_LT(largest, FrontError);
    }
}

// Fronts of several blocks of columns and several pieces of rows.
TEST(FrontElimination, GivesTheSameBitsForAnyCrew)
{
    for (const FrontSize& size : {FrontSize{6, 402}, FrontSize{96, 606}, FrontSize{198, 696}, FrontSize{300, 300}}) {
        for (const Pivots kind : {Pivots::Positive, Pivots::OfBothSigns}) {
            const DenseFront dense(size, kind, 2);
            StoredFront alone(dense);
            alone.Eliminate(1);
            for (const int members : {2, 3, 8}) {
                SCOPED_TRACE(testing::PrintToString(size) + ", crew of " + std::to_string(members));
                StoredFront shared(dense);
                shared.Eliminate(members);
                int different = 0;
                for (int c = 0; c < size.height; ++c) {
                    different += std::memcmp(shared.At(c, c), alone.At(c, c),
                                             sizeof(double) * static_cast<std::size_t>(size.height - c)) != 0;
                }
                EXPECT_EQ(different, 0) << "columns";
                EXPECT_EQ(shared.signs, alone.signs);
                EXPECT_EQ(shared.pivots, alone.pivots);
                EXPECT_EQ(shared.isPositive, alone.isPositive);
            }
        }
    }
}

// Every part of a front with all rows from its first diagonal entry down, one behind the other.
TEST(FrontElimination, StoresColumnsOnWholeCacheLines)
{
    for (int width = 6; width <= 600; width += 18) {
        for (const int below : {0, 6, 12, 90, 192, 252, 600}) {
            SCOPED_TRACE(testing::PrintToString(FrontSize{width, width + below}));
            const FrontSize size = {width, width + below};
            const auto expectPart = [&](const FrontArray& part, int column) {
                EXPECT_EQ(part.stride % RowAlignment, 0);
                EXPECT_EQ(part.firstRow, column / RowAlignment * RowAlignment);
                EXPECT_EQ(part.firstColumn, column);
                EXPECT_GE(part.stride, size.height - part.firstRow);
                if (part.stride > 256) { // an even number of lines would fall into the same places of the caches
                    EXPECT_EQ(part.stride / RowAlignment % 2, 1);
                }
            };
            std::vector<double> panel(PanelEntries(size)), update(UpdateEntries(size));
            const FrontArray L = PanelAt(panel.data(), size);
            expectPart(L, 0);
            EXPECT_EQ(PanelEntries(size), static_cast<std::size_t>(L.stride * width));
            const FrontUpdate U = {update.data(), size};
            std::size_t entries = 0;
            for (int strip = 0, column = width; strip < U.Strips(); ++strip, column += StripColumns) {
                const FrontArray part = U.Strip(strip);
                expectPart(part, column);
                EXPECT_EQ(part.values - update.data(), static_cast<std::ptrdiff_t>(entries));
                entries += static_cast<std::size_t>(part.stride * std::min(StripColumns, size.height - column));
            }
            EXPECT_EQ(UpdateEntries(size), entries);
        }
    }
}

} // namespace
} // namespace tarnvexo
