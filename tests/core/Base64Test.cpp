#include "core/Base64.h"

#include <gtest/gtest.h>

namespace tarnvexo {
namespace {

// RFC 4648, section 10.
TEST(Base64, IsThatOfTheStandard)
{
    EXPECT_EQ(Base64(""), "");
    EXPECT_EQ(Base64("f"), "Zg==");
    EXPECT_EQ(Base64("fo"), "Zm8=");
    EXPECT_EQ(Base64("foo"), "Zm9v");
    EXPECT_EQ(Base64("foob"), "Zm9vYg==");
    EXPECT_EQ(Base64("fooba"), "Zm9vYmE=");
    EXPECT_EQ(Base64("foobar"), "Zm9vYmFy");
}

TEST(Base64, TakesBytesOfAnyValue)
{
    EXPECT_EQ(Base64(std::string_view("\0\xFF\xFE", 3)), "AP/+");
}

} // namespace
} // namespace tarnvexo
