#include "cli/Quantities.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

TEST(DurationText, TakesTheUnitThatReadsBest)
{
    EXPECT_EQ(DurationText(0.0), "0.00 s");
    EXPECT_EQ(DurationText(2.314), "2.31 s");
    EXPECT_EQ(DurationText(42.04), "42.0 s");
    EXPECT_EQ(DurationText(59.97), "1 min 00 s");
    EXPECT_EQ(DurationText(245.2), "4 min 05 s");
    EXPECT_EQ(DurationText(3599.7), "1 h 00 min");
    EXPECT_EQ(DurationText(7620.0), "2 h 07 min");
    EXPECT_EQ(DurationText(3600.0 * 999), "999 h 00 min");
    EXPECT_EQ(DurationText(3600.0 * 1000), "42 days");
}

TEST(EstimateText, PretendsNoDecimals)
{
    EXPECT_EQ(EstimateText(0.3), "less than 1 s");
    EXPECT_EQ(EstimateText(3.4), "about 3 s");
    EXPECT_EQ(EstimateText(74.0), "about 1 min 14 s");
}

TEST(SizeTexts, HaveThreeDigits)
{
    EXPECT_EQ(MemoryText(0.0123), "12.3 MB");
    EXPECT_EQ(MemoryText(0.412), "412 MB");
    EXPECT_EQ(MemoryText(123.4), "123 GB");
    EXPECT_EQ(MemoryText(0.9996), FileSizeText(999600000));
    EXPECT_EQ(FileSizeText(1), "1 byte");
    EXPECT_EQ(FileSizeText(999), "999 bytes");
    EXPECT_EQ(FileSizeText(12345), "12.3 kB");
    EXPECT_EQ(FileSizeText(999600), "1.00 MB");
    EXPECT_EQ(FileSizeText(3210000000u), "3.21 GB");
}

TEST(NumberText, HasSixDigitsAndNoSignOfZero)
{
    EXPECT_EQ(NumberText(1.0 / 3.0), "0.333333");
    EXPECT_EQ(NumberText(-0.0), "0");
}

TEST(UnitTexts, KnowStandardGravity)
{
    EXPECT_DOUBLE_EQ(TextsOfUnits(UnitSystem::SI).standardGravity, 9.80665);
    EXPECT_DOUBLE_EQ(TextsOfUnits(UnitSystem::MillimetreTonneSecond).standardGravity, 9806.65);
    EXPECT_EQ(TextsOfUnits(UnitSystem::Unnamed).standardGravity, 0.0);
}

} // namespace
} // namespace tarnvexo
