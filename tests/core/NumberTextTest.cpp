#include "core/NumberText.h"

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <sstream>
#include <string>

namespace tarnvexo {
namespace {

constexpr double Infinity = std::numeric_limits<double>::infinity();

std::string NumberText(double value)
{
    char text[NumberTextCapacity];
    return std::string(text, WriteNumber(text, value));
}

// Compares the text of many values with that of one std::ostringstream, in batches.
class StreamComparison {
public:
    void Add(double value)
    {
        batch[used++] = value;
        if (used == BatchSize) {
            CompareBatch();
        }
    }

    // Value, its opposite, and both for `count` neighbours on either side.
    void AddWithNeighbours(double value, int count)
    {
        double below = value;
        double above = value;
        Add(value);
        Add(-value);
        for (int i = 0; i < count; ++i) {
            below = std::nextafter(below, 0.0);
            above = std::nextafter(above, Infinity);
            for (const double neighbour : {below, above, -below, -above}) { Add(neighbour); }
        }
    }

    // Number of values compared so far.
    long long Finish()
    {
        CompareBatch();
        return compared;
    }

private:
    static constexpr int BatchSize = 4096;

    // The sign of a nan is shown here as the GNU C library shows it; others leave it out.
    static void Show(std::ostream& out, double value)
    {
        if (std::isnan(value)) {
            out << (std::signbit(value) ? "-nan" : "nan");
        } else {
            out << value;
        }
    }

    void CompareBatch()
    {
        stream.str("");
        std::string text(BatchSize * (NumberTextCapacity + 1), '\0');
        char* end = text.data();
        for (int i = 0; i < used; ++i) {
            Show(stream, batch[i]);
            stream << '\n';
            end = WriteNumber(end, batch[i]);
            *end++ = '\n';
        }
        text.resize(static_cast<std::size_t>(end - text.data()));
        if (text != stream.view()) {
            ReportDifferences();
        }
        compared += used;
        used = 0;
    }

    void ReportDifferences()
    {
        for (int i = 0; i < used && !testing::Test::HasFailure(); ++i) {
            std::ostringstream one;
            Show(one, batch[i]);
            char exact[64];
            std::snprintf(exact, sizeof exact, "%.40g", batch[i]);
            EXPECT_EQ(NumberText(batch[i]), one.str()) << exact;
        }
        EXPECT_TRUE(testing::Test::HasFailure()) << "the batch differs, but none of its values does";
    }

    double batch[BatchSize];
    int used = 0;
    long long compared = 0;
    std::ostringstream stream;
};

TEST(NumberText, EqualsAnOutputStreamForSpecialValues)
{
    EXPECT_EQ(NumberText(0.0), "0");
    EXPECT_EQ(NumberText(-0.0), "-0");
    EXPECT_EQ(NumberText(Infinity), "inf");
    EXPECT_EQ(NumberText(-Infinity), "-inf");
    EXPECT_EQ(NumberText(std::numeric_limits<double>::quiet_NaN()), "nan");
    EXPECT_EQ(NumberText(-std::numeric_limits<double>::quiet_NaN()), "-nan");
    EXPECT_EQ(NumberText(std::numeric_limits<double>::denorm_min()), "4.94066e-324");
    EXPECT_EQ(NumberText(std::numeric_limits<double>::max()), "1.79769e+308");
    EXPECT_EQ(NumberText(-std::numeric_limits<double>::min()), "-2.22507e-308");
}

TEST(NumberText, ChangesNotationWhereAnOutputStreamDoes)
{
    EXPECT_EQ(NumberText(999999.0), "999999");
    EXPECT_EQ(NumberText(999999.4), "999999");
    EXPECT_EQ(NumberText(999999.5), "1e+06");
    EXPECT_EQ(NumberText(1000000.0), "1e+06");
    EXPECT_EQ(NumberText(0.0001), "0.0001");
    EXPECT_EQ(NumberText(0.00009999995), "0.0001");
    EXPECT_EQ(NumberText(0.0000999999), "9.99999e-05");
}

TEST(NumberText, RoundsTiesToTheEvenDigit)
{
    EXPECT_EQ(NumberText(100000.5), "100000");
    EXPECT_EQ(NumberText(100001.5), "100002");
    EXPECT_EQ(NumberText(1000005.0), "1e+06");
    EXPECT_EQ(NumberText(1000015.0), "1.00002e+06");
    EXPECT_EQ(NumberText(1000.125), "1000.12");
    EXPECT_EQ(NumberText(1000.375), "1000.38");
    EXPECT_EQ(NumberText(1000005.0000001), "1.00001e+06");
}

// Of ten million values one in so many: streams are slow on Windows, and all is under the sanitizers.
#if defined(_WIN32) || defined(__SANITIZE_ADDRESS__)
constexpr int Share = 11;
#else
constexpr int Share = 1;
#endif

TEST(NumberText, EqualsAnOutputStreamOnMillionsOfValuesOfAllMagnitudes)
{
    StreamComparison comparison;
    std::mt19937_64 random(20260718);
    const auto randomInteger = [&](long long from, long long to) {
        return std::uniform_int_distribution<long long>(from, to)(random);
    };

    // Random bit patterns: every exponent, NaN included.
    for (int i = 0; i < 2'000'000 / Share; ++i) { comparison.Add(std::bit_cast<double>(random())); }
    // Magnitudes that results have.
    for (int i = 0; i < 2'000'000 / Share; ++i) {
        const double magnitude = std::pow(10.0, std::uniform_real_distribution<double>(-25.0, 20.0)(random));
        comparison.Add(random() % 2 == 0 ? magnitude : -magnitude);
    }
    // Decimals of one to nine digits, as model files have them.
    char decimal[64];
    for (int i = 0; i < 1'000'000 / Share; ++i) {
        const long long digits = randomInteger(0, static_cast<long long>(std::pow(10.0, randomInteger(1, 9))));
        const auto exponent = i % 2 == 0 ? randomInteger(-12, 6) : randomInteger(-330, 308);
        std::snprintf(decimal, sizeof decimal, "%llde%lld", digits, exponent);
        comparison.Add(std::strtod(decimal, nullptr));
    }
    // Six digits and a half: the nearest doubles to a tie.
    for (int i = 0; i < 150'000 / Share; ++i) {
        const auto exponent = i % 2 == 0 ? randomInteger(-30, 20) : randomInteger(-325, 300);
        std::snprintf(decimal, sizeof decimal, "%lld5e%lld", randomInteger(100000, 999999), exponent);
        comparison.AddWithNeighbours(std::strtod(decimal, nullptr), 3);
    }
    // Seven digits that end in 5 and are exact in binary, t·5^q / 10^q = t / 2^q: true ties, and their neighbours.
    for (int i = 0; i < 150'000 / Share; ++i) {
        const long long power = randomInteger(1, 9);
        const auto fives = static_cast<long long>(std::pow(5.0, power));
        const long long odd = randomInteger(1'000'000 / fives, 9'999'999 / fives) | 1;
        comparison.AddWithNeighbours(std::ldexp(static_cast<double>(odd), -static_cast<int>(power)), 1);
    }
    // The same above 10^6: integers (10n + 5)·10^k.
    for (int i = 0; i < 150'000 / Share; ++i) {
        const double tie = static_cast<double>(randomInteger(100000, 999999) * 10 + 5);
        comparison.AddWithNeighbours(tie * std::pow(10.0, randomInteger(0, 16)), 1);
    }
    // Powers of ten and their neighbours.
    for (int exponent = -323; exponent <= 308; ++exponent) {
        std::snprintf(decimal, sizeof decimal, "1e%d", exponent);
        comparison.AddWithNeighbours(std::strtod(decimal, nullptr), 250 / Share);
    }
    // Denormals.
    for (int i = 0; i < 500'000 / Share; ++i) {
        comparison.Add(std::bit_cast<double>(random() >> (12 + random() % 52)));
    }
    // Integers.
    for (long long i = -100'000; i < 1'100'000; i += Share) { comparison.Add(static_cast<double>(i)); }
    for (int i = 0; i < 300'000 / Share; ++i) {
        comparison.Add(static_cast<double>(static_cast<std::int64_t>(random()) >> (random() % 63)));
    }
    for (const double value : {0.0, -0.0, Infinity, -Infinity, std::nan(""), -std::nan("")}) { comparison.Add(value); }
    EXPECT_GE(comparison.Finish(), 10'000'000 / Share);
}

TEST(NumberText, WritesIntegersInFull)
{
    for (const long long value :
         {0LL, 7LL, -10LL, std::numeric_limits<long long>::max(), std::numeric_limits<long long>::min()}) {
        char text[NumberTextCapacity];
        EXPECT_EQ(std::string(text, WriteInteger(text, value)), std::to_string(value));
    }
}

} // namespace
} // namespace tarnvexo
