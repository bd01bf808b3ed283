#include "core/NumberText.h"

#include <bit>
#include <charconv>
#include <cstdint>
#include <cstring>

namespace tarnvexo {

namespace {

__extension__ using Integer128 = unsigned __int128;

constexpr int SignificantDigits = 6;
constexpr std::uint64_t DigitsBegin = 100000; // six digits as an integer: from DigitsBegin to DigitsEnd - 1
constexpr std::uint64_t DigitsEnd = 1000000;

constexpr int FractionBits = 52; // of a double
constexpr int ExponentBias = 1023;

// Decimal exponents whose six digits are found below by integer arithmetic without any rounding error: at the lower end
// 5^27 still fits 64 bits, at the upper end the integer part of the value does. All others are left to the library.
constexpr int LowestExponent = -22;
constexpr int HighestExponent = 17;

// 10^i for i = LowestExponent .. HighestExponent + 1, nearest doubles.
constexpr double PowersOfTen[] = {1e-22, 1e-21, 1e-20, 1e-19, 1e-18, 1e-17, 1e-16, 1e-15, 1e-14, 1e-13, 1e-12,
                                  1e-11, 1e-10, 1e-9,  1e-8,  1e-7,  1e-6,  1e-5,  1e-4,  1e-3,  1e-2,  1e-1,
                                  1e0,   1e1,   1e2,   1e3,   1e4,   1e5,   1e6,   1e7,   1e8,   1e9,   1e10,
                                  1e11,  1e12,  1e13,  1e14,  1e15,  1e16,  1e17,  1e18};

struct IntegerPowers {
    std::uint64_t of5[SignificantDigits - LowestExponent] = {1};
    std::uint64_t of10[HighestExponent - SignificantDigits + 2] = {1};

    constexpr IntegerPowers()
    {
        for (int i = 1; i < SignificantDigits - LowestExponent; ++i) { of5[i] = of5[i - 1] * 5; }
        for (int i = 1; i < HighestExponent - SignificantDigits + 2; ++i) { of10[i] = of10[i - 1] * 10; }
    }
};
constexpr IntegerPowers Powers;

// "00" "01" ... "99"
struct DigitPairs {
    char text[200] = {};

    constexpr DigitPairs()
    {
        for (int i = 0; i < 100; ++i) {
            text[2 * i] = static_cast<char>('0' + i / 10);
            text[2 * i + 1] = static_cast<char>('0' + i % 10);
        }
    }
};
constexpr DigitPairs Pairs;

// value / 10^(exponent - 5), rounded to the nearest integer, ties to even, for PowersOfTen[exponent] <= value:
// from DigitsBegin to DigitsEnd, DigitsEnd when the rounding carries into a seventh digit.
std::uint64_t LeadingDigits(double value, int exponent)
{
    const int scale = SignificantDigits - 1 - exponent;
    if (scale >= 0) {
        // value·10^scale = mantissa·5^scale / 2^shift; the product has at most 53 + 63 bits, so it is exact.
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const std::uint64_t mantissa = (bits & ((std::uint64_t(1) << FractionBits) - 1)) | std::uint64_t(1)
                                                                                               << FractionBits;
        const int shift = FractionBits + ExponentBias - static_cast<int>(bits >> FractionBits) - scale;
        const Integer128 product = Integer128(mantissa) * Powers.of5[scale];
        const auto digits = static_cast<std::uint64_t>(product >> shift);
        const Integer128 remainder = product - (Integer128(digits) << shift);
        const Integer128 half = Integer128(1) << (shift - 1);
        return digits + (remainder > half || (remainder == half && digits % 2 == 1));
    }
    // Integer part by integer division; the fraction behind it only decides what would be a tie.
    const auto whole = static_cast<std::uint64_t>(value);
    const bool hasFraction = static_cast<double>(whole) != value;
    const std::uint64_t divisor = Powers.of10[-scale];
    const std::uint64_t digits = whole / divisor;
    const std::uint64_t remainder = whole % divisor;
    const std::uint64_t half = divisor / 2;
    return digits + (remainder > half || (remainder == half && (hasFraction || digits % 2 == 1)));
}

// d1.d2d3d4d5d6 · 10^exponent in general notation: no trailing zeros, a power of ten below 10^-4 and from 10^6 on.
char* WriteDigits(char* out, std::uint64_t digits, int exponent)
{
    char text[SignificantDigits];
    std::memcpy(text, Pairs.text + 2 * (digits / 10000), 2);
    std::memcpy(text + 2, Pairs.text + 2 * (digits / 100 % 100), 2);
    std::memcpy(text + 4, Pairs.text + 2 * (digits % 100), 2);
    int count = SignificantDigits;
    while (text[count - 1] == '0') { --count; }

    if (exponent < -4 || exponent >= SignificantDigits) {
        *out++ = text[0];
        if (count > 1) {
            *out++ = '.';
            std::memcpy(out, text + 1, SignificantDigits - 1);
            out += count - 1;
        }
        *out++ = 'e';
        *out++ = exponent < 0 ? '-' : '+';
        std::memcpy(out, Pairs.text + 2 * (exponent < 0 ? -exponent : exponent), 2);
        return out + 2;
    }
    if (exponent < 0) {
        std::memcpy(out, "0.000", 5);
        out += 1 - exponent;
        std::memcpy(out, text, SignificantDigits);
        return out + count;
    }
    const int wholeDigits = exponent + 1;
    std::memcpy(out, text, SignificantDigits);
    if (count <= wholeDigits) {
        return out + wholeDigits;
    }
    out[wholeDigits] = '.';
    std::memcpy(out + wholeDigits + 1, text + wholeDigits, static_cast<std::size_t>(count - wholeDigits));
    return out + count + 1;
}

} // namespace

char* WriteNumber(char* out, double value)
{
    const double magnitude = value < 0.0 ? -value : value;
    if (!(magnitude >= PowersOfTen[0] && magnitude < PowersOfTen[HighestExponent + 1 - LowestExponent])) {
        if (std::bit_cast<std::uint64_t>(value) == 0) {
            *out++ = '0';
            return out;
        }
        return std::to_chars(out, out + NumberTextCapacity, value, std::chars_format::general, SignificantDigits).ptr;
    }
    if (value < 0.0) {
        *out++ = '-';
    }

    // floor(log10(2^e)) from the binary exponent e is the decimal exponent or one less: 78913 / 2^18 is log10(2) to
    // eight digits. Where the table's power of ten is rounded down, a value equal to it counts as 10^i although it is a
    // little less; its six digits round up to 10^i all the same.
    const int binaryExponent = static_cast<int>(std::bit_cast<std::uint64_t>(magnitude) >> FractionBits) - ExponentBias;
    int exponent = (binaryExponent * 78913) >> 18;
    exponent += magnitude >= PowersOfTen[exponent + 1 - LowestExponent];

    std::uint64_t digits = LeadingDigits(magnitude, exponent);
    if (digits >= DigitsEnd) {
        digits = DigitsBegin;
        ++exponent;
    }
    return WriteDigits(out, digits, exponent);
}

char* WriteInteger(char* out, long long value)
{
    return std::to_chars(out, out + NumberTextCapacity, value).ptr;
}

} // namespace tarnvexo
