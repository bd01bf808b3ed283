#include "export/Viridis.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

// Colours of the published map, between those that the table holds.
TEST(Viridis, IsThePublishedMap)
{
    const struct {
        double share;
        int red, green, blue;
    } published[] = {{0.0, 68, 1, 84},    {0.1, 72, 37, 118},  {0.3, 53, 95, 141},
                     {0.7, 68, 191, 112}, {0.9, 189, 223, 38}, {1.0, 253, 231, 37}};
    for (const auto& [share, red, green, blue] : published) {
        const auto colour = ViridisColour(share);
        EXPECT_NEAR(colour[0] * 255, red, 3.0) << share;
        EXPECT_NEAR(colour[1] * 255, green, 3.0) << share;
        EXPECT_NEAR(colour[2] * 255, blue, 3.0) << share;
    }
}

TEST(Viridis, EndsWithItsLastColours)
{
    EXPECT_EQ(ViridisColour(-1.0), ViridisColour(0.0));
    EXPECT_EQ(ViridisColour(2.0), ViridisColour(1.0));
}

TEST(LinearIntensity, IsThatOfTheStandard)
{
    EXPECT_EQ(LinearIntensity(0.0), 0.0);
    EXPECT_NEAR(LinearIntensity(0.5), 0.2140411, 1e-7);
    EXPECT_NEAR(LinearIntensity(1.0), 1.0, 1e-15);
    EXPECT_NEAR(LinearIntensity(0.04045), LinearIntensity(0.0404501), 1e-6); // the two pieces meet
}

} // namespace
} // namespace tarnvexo
