#include "input/FormatScanner.h"

#include "core/ModelFileFormats.h"

#include <cmath>
#include <cstddef>
#include <gtest/gtest.h>
#include <limits>
#include <string>
#include <utility>

namespace tarnvexo {
namespace {

struct NumberForm {
    const char* text;
    bool stored;
    double value;
    std::size_t position;
};

TEST(FormatScanner, ConsumesOfANumberWhatTheLibraryConsumes)
{
    const double infinity = std::numeric_limits<double>::infinity();
    const NumberForm forms[] = {
        {"1.5,", true, 1.5, 3},
        {" \n-.5]", true, -0.5, 5},
        {"+7.", true, 7.0, 3},
        {"1e", true, 1.0, 2},
        {"1e+]", true, 1.0, 3},
        {"1e5.3", true, 1e5, 3},
        {"1.5.2", true, 1.5, 3},
        {"0x1.8p1,", true, 3.0, 7},
        {"0x1p", true, 1.0, 4},
        {"0x.,", true, 0.0, 3},
        {"0xg", false, 0.0, 2},
        {"0x", false, 0.0, 2},
        {".", false, 0.0, 1},
        {"+.x", false, 0.0, 2},
        {"+x", false, 0.0, 1},
        {"-", false, 0.0, 1},
        {"e5", false, 0.0, 0},
        {"inf,", true, infinity, 3},
        {"-Infinity", true, -infinity, 9},
        {"infinite", false, 0.0, 8},
        {"in", false, 0.0, 2},
        {"inx", false, 0.0, 3},
        {"nax", false, 0.0, 3},
        {"1e400", true, infinity, 5},
        {"4.9e-324", true, 4.9e-324, 8},
        {"", false, 0.0, 0},
        {"  ", false, 0.0, 2},
    };
    for (const NumberForm& form : forms) {
        FormatScanner scanner(form.text);
        double value = 0.0;
        const ScanResult result = scanner.Scan("%lf", value);
        EXPECT_EQ(result.Matched(), form.stored) << form.text;
        EXPECT_EQ(value, form.value) << form.text;
        EXPECT_EQ(scanner.Position(), form.position) << form.text;
    }
}

TEST(FormatScanner, ReadsOnlyTheLettersOfANanWithCharacters)
{
    FormatScanner scanner("nan(12),");
    double value = 0.0;
    EXPECT_TRUE(scanner.Scan("%lf", value).Matched());
    EXPECT_TRUE(std::isnan(value));
    EXPECT_EQ(scanner.Position(), 3u);
}

TEST(FormatScanner, ClampsIntegersTo64BitsAndKeepsTheLow32)
{
    const std::pair<const char*, int> forms[] = {{"2147483648", std::numeric_limits<int>::min()},
                                                 {"4294967297", 1},
                                                 {"-4294967297", -1},
                                                 {"9223372036854775807", -1},
                                                 {"9223372036854775808", -1},
                                                 {"-9223372036854775809", 0},
                                                 {"99999999999999999999", -1},
                                                 {"-99999999999999999999", 0}};
    for (const auto& [text, expected] : forms) {
        FormatScanner scanner(text);
        int value = 5;
        EXPECT_TRUE(scanner.Scan("%d", value).Matched()) << text;
        EXPECT_EQ(value, expected) << text;
    }
}

TEST(FormatScanner, LeavesAWrongLiteralUnreadAndKeepsTheRemainingDestinations)
{
    FormatScanner scanner("4:1.5;2.5");
    int label = 0;
    double x = -1, y = -2, z = -3;
    const ScanResult result = scanner.Scan(formats::Node, label, x, y, z);
    EXPECT_FALSE(result.Matched());
    EXPECT_EQ(*result.expected, ',');
    EXPECT_EQ(result.stoppedAt, 5u);
    EXPECT_EQ(scanner.Position(), 5u);
    EXPECT_EQ(result.stored, 2);
    EXPECT_EQ(label, 4);
    EXPECT_EQ(x, 1.5);
    EXPECT_EQ(y, -2);
    EXPECT_EQ(z, -3);
}

TEST(FormatScanner, TellsWhereEachStoredValueBegan)
{
    FormatScanner scanner("4: 1.5,\n 2.5,3");
    int label = 0;
    double x = 0, y = 0, z = 0;
    const ScanResult result = scanner.Scan(formats::Node, label, x, y, z);
    ASSERT_EQ(result.stored, 4);
    EXPECT_EQ(result.fieldBegin[0], 0u);
    EXPECT_EQ(result.fieldBegin[1], 3u);
    EXPECT_EQ(result.fieldBegin[2], 9u);
    EXPECT_EQ(result.fieldBegin[3], 13u);
}

TEST(FormatScanner, AllowsWhiteSpaceOnlyWhereTheFormatOrANumberAllowsIt)
{
    const std::pair<const char*, bool> forms[] = {{"1: \n2,\t3, 4\n", true}, {"1 :2,3,4", false}, {"1:2 ,3,4", false}};
    for (const auto& [text, matches] : forms) {
        FormatScanner scanner(text);
        int label = 0;
        double x = 0, y = 0, z = 0;
        EXPECT_EQ(scanner.Scan(formats::Node, label, x, y, z).Matched(), matches) << text;
    }
}

TEST(FormatScanner, ReadsZeroBytesAsAnyOtherCharacter)
{
    const std::string text("1\0002", 3);
    FormatScanner scanner(text);
    int first = 0, second = 0;
    char zero = 'x';
    EXPECT_TRUE(scanner.Scan("%d%c%d", first, zero, second).Matched());
    EXPECT_EQ(first, 1);
    EXPECT_EQ(zero, '\0');
    EXPECT_EQ(second, 2);
}

} // namespace
} // namespace tarnvexo
