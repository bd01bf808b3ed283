#include "solver/FrontCost.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

constexpr FrontSize Sizes[] = {{0, 0}, {6, 6}, {6, 12}, {12, 12}, {6, 600}, {96, 102}, {300, 300}, {594, 600}};

// A column of h entries costs a root, h − 1 divisions and h·(h − 1)/2 products of two operations: h² in all.
TEST(FrontCost, CountsTheSquaresOfTheColumnHeights)
{
    for (const FrontSize& front : Sizes) {
        double sum = 0.0;
        for (int c = 0; c < front.width; ++c) { sum += double(front.height - c) * (front.height - c); }
        EXPECT_DOUBLE_EQ(OperationsOf(front), sum) << front.width << " of " << front.height;
    }
}

// One and a half million rows: the sum is no longer held by an int.
TEST(FrontCost, CountsTheOperationsOfLargeFronts)
{
    const double h = 1500000.0;
    EXPECT_NEAR(OperationsOf({6, 1500000}), 6.0 * h * h - 30.0 * h + 55.0, 1e-9 * h * h);
}

TEST(FrontCost, OfTwoHalvesInTurnIsTheSameNumberOfOperations)
{
    EXPECT_DOUBLE_EQ(OperationsOf({96, 300}) + OperationsOf({48, 204}), OperationsOf({144, 300}));
}

TEST(FrontCost, TakesLongerForMoreColumnsAndMoreRows)
{
    for (const FrontSize& front : Sizes) {
        EXPECT_GT(SecondsOf(front), 0.0);
        EXPECT_GT(SecondsOf({front.width, front.height + 6}), SecondsOf(front));
        EXPECT_GT(SecondsOf({front.width + 6, front.height + 6}), SecondsOf(front));
    }
}

TEST(FrontCost, TakesNoTimeToAddWhatARootLeaves)
{
    EXPECT_EQ(SecondsToAdd({300, 300}), 0.0);
    EXPECT_GT(SecondsToAdd({6, 12}), 0.0);
    EXPECT_GT(SecondsToAdd({6, 18}), SecondsToAdd({6, 12}));
}

// What the amalgamation of fronts rests upon: small fronts in a chain gain by being one, while a leaf whose column
// would grow by a thousand rows does not.
TEST(FrontCost, FavoursOneSmallFrontAndTwoOfVeryDifferentHeight)
{
    const auto apart = [](const FrontSize& child, const FrontSize& parent) {
        return SecondsOf(child) + SecondsToAdd(child) + SecondsOf(parent);
    };
    EXPECT_LT(SecondsOf({12, 12}), apart({6, 12}, {6, 6}));
    EXPECT_GT(SecondsOf({1206, 1206}), apart({6, 12}, {1200, 1200}));
}

} // namespace
} // namespace tarnvexo
