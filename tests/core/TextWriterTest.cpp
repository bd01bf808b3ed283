#include "core/TextWriter.h"

#include <cmath>
#include <gtest/gtest.h>
#include <iomanip>
#include <limits>
#include <sstream>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

TEST(TextWriter, FieldsEqualThoseOfAnOutputStream)
{
    const double values[] = {0.0, -0.0, 1.0, -1.5, 123456.0, 1234567.0, 1e-5, 0.0001, -1.23456789e-300, std::nan("")};
    std::string text;
    std::ostringstream expected;
    {
        TextWriter writer([&](std::string_view piece) { text += piece; });
        for (const int width : {-3, 0, 1, 5, 12, 15, 40}) {
            for (const double value : values) {
                writer.Number(value, width).Text("|").Number(value).EndLine();
                expected << std::setw(width) << value << '|' << value << '\n';
            }
            for (const long long value : {0LL, -7LL, 1234567890123456789LL, std::numeric_limits<long long>::min()}) {
                writer.Integer(value, width).Text(",").Integer(value);
                expected << std::setw(width) << value << ',' << value;
            }
            writer.Text("SE", width).Text("", width).Text("longer than its width", width);
            expected << std::setw(width) << "SE" << std::setw(width) << "" << std::setw(width)
                     << "longer than its width";
        }
    }
    EXPECT_EQ(text, expected.str());
}

TEST(TextWriter, HandsOnTheSameTextWhateverItsCapacity)
{
    const auto write = [](std::size_t capacity) {
        std::string text;
        TextWriter writer([&](std::string_view piece) { text += piece; }, capacity);
        for (int i = 0; i < 200; ++i) {
            writer.Text("node ")
                .Integer(i, 9)
                .Number(i / 7.0, 15)
                .Text(std::string(static_cast<std::size_t>(i), '.'), 100)
                .EndLine();
        }
        writer.Flush();
        return text;
    };
    const std::string text = write(std::size_t(1) << 20);
    for (const std::size_t capacity :
         {std::size_t(0), std::size_t(1), std::size_t(33), std::size_t(100), std::size_t(4096)}) {
        EXPECT_EQ(write(capacity), text) << capacity;
    }
}

TEST(TextWriter, GathersTextUntilItsCapacityIsReached)
{
    std::vector<std::size_t> pieces;
    TextWriter writer([&](std::string_view piece) { pieces.push_back(piece.size()); }, 1000);
    for (int i = 0; i < 250; ++i) { writer.Text("0123456789"); }
    EXPECT_EQ(pieces, (std::vector<std::size_t>{1000, 1000}));
    writer.Flush();
    EXPECT_EQ(pieces, (std::vector<std::size_t>{1000, 1000, 500}));
    writer.Flush();
    EXPECT_EQ(pieces.size(), 3u) << "nothing to hand on";
}

TEST(TextWriter, HandsOnTheRestWhenDestroyed)
{
    std::string text;
    {
        TextWriter writer([&](std::string_view piece) { text += piece; });
        writer.Text("rest");
        EXPECT_EQ(text, "");
    }
    EXPECT_EQ(text, "rest");
}

} // namespace
} // namespace tarnvexo
