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

// 10^scale = significand·2^exponent, the significand cut off to 64 bits, its highest bit set.
struct BinaryPower {
    std::uint64_t significand;
    int exponent;
};

// By exponent - LowestExponent: 10^(5 - exponent), which brings a value of that decimal exponent to six digits before
// the point.
struct ScalingPowers {
    BinaryPower of[HighestExponent - LowestExponent + 1] = {};

    constexpr ScalingPowers()
    {
        for (int exponent = LowestExponent; exponent <= HighestExponent; ++exponent) {
            const int scale = SignificantDigits - 1 - exponent;
            // 5^scale, or the 128 highest bits of 2^127 / 5^-scale
            Integer128 five = scale >= 0 ? Integer128(1) : Integer128(1) << 127;
            for (int i = 0; i < scale; ++i) { five *= 5; }
            for (int i = 0; i > scale; --i) { five /= 5; }
            int binary = scale >= 0 ? scale : scale - 127;
            for (; five >> 64 != 0; five >>= 1) { ++binary; }
            for (; five >> 63 == 0; five <<= 1) { --binary; }
            of[exponent - LowestExponent] = {static_cast<std::uint64_t>(five), binary};
        }
    }
};
constexpr ScalingPowers Scaling;

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

constexpr std::uint64_t MantissaOf(std::uint64_t bits)
{
    return (bits & ((std::uint64_t(1) << FractionBits) - 1)) | std::uint64_t(1) << FractionBits;
}

// value / 10^(exponent - 5), rounded to the nearest integer, ties to even, for PowersOfTen[exponent] <= value:
// from DigitsBegin to DigitsEnd, DigitsEnd when the rounding carries into a seventh digit.
std::uint64_t LeadingDigitsExactly(double value, int exponent)
{
    const int scale = SignificantDigits - 1 - exponent;
    if (scale >= 0) {
        // value·10^scale = mantissa·5^scale / 2^shift; the product has at most 53 + 63 bits, so it is exact.
        const auto bits = std::bit_cast<std::uint64_t>(value);
        const std::uint64_t mantissa = MantissaOf(bits);
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

// The same from one product of two 64-bit numbers. It is cut off by less than two units of its last place, which
// leaves the rounding open only for values that close to a tie.
std::uint64_t LeadingDigits(double value, int exponent)
{
    const auto bits = std::bit_cast<std::uint64_t>(value);
    const int binaryExponent = static_cast<int>(bits >> FractionBits) - ExponentBias;
    const std::uint64_t significand = MantissaOf(bits) << (63 - FractionBits); // value = significand·2^(binary - 63)
    const BinaryPower& power = Scaling.of[exponent - LowestExponent];
    const auto product = static_cast<std::uint64_t>((Integer128(significand) * power.significand) >> 64);
    const int shift = -(binaryExponent - 63 + power.exponent + 64); // value·10^scale = product / 2^shift
    const std::uint64_t fraction = product & ((std::uint64_t(1) << shift) - 1);
    const std::uint64_t half = std::uint64_t(1) << (shift - 1);
    if (fraction - (half - 1) <= 1) {
        return LeadingDigitsExactly(value, exponent);
    }
    return (product >> shift) + (fraction > half);
}

// How six digits stand in general notation: a power of ten below 10^-4 and from 10^6 on.
//     0.000123457   lead 5 ("0.000"), no point among the digits
//     123.457       whole 3
//     1.23457e-05   whole 1, tail "e-05"
struct Layout {
    std::uint8_t lead;  // characters of "0.000" before the first digit
    std::uint8_t whole; // digits before the point; all of them where there is no point among them
    std::uint8_t least; // digits written even if they are zeros
    std::uint8_t tail;  // characters behind the digits
    char tailText[4];
};

struct Layouts {
    // By exponent - LowestExponent; one more, since rounding may carry into the next.
    Layout of[HighestExponent - LowestExponent + 2] = {};

    constexpr Layouts()
    {
        for (int exponent = LowestExponent; exponent <= HighestExponent + 1; ++exponent) {
            Layout& layout = of[exponent - LowestExponent];
            const int size = exponent < 0 ? -exponent : exponent;
            if (exponent < -4 || exponent >= SignificantDigits) {
                layout = {0,
                          1,
                          1,
                          4,
                          {'e', exponent < 0 ? '-' : '+', static_cast<char>('0' + size / 10),
                           static_cast<char>('0' + size % 10)}};
            } else if (exponent < 0) {
                layout = {static_cast<std::uint8_t>(1 + size), SignificantDigits, 1, 0, {}};
            } else {
                layout = {0, static_cast<std::uint8_t>(exponent + 1), static_cast<std::uint8_t>(exponent + 1), 0, {}};
            }
        }
    }
};
constexpr Layouts LayoutTable;

// Six digits as characters, the first in the lowest byte.
std::uint64_t DigitCharacters(std::uint64_t digits)
{
    static_assert(std::endian::native == std::endian::little, "the first character is the lowest byte");
    const auto pair = [](std::uint64_t value) {
        std::uint16_t characters;
        std::memcpy(&characters, Pairs.text + 2 * value, sizeof characters);
        return std::uint64_t(characters);
    };
    return pair(digits / 10000) | pair(digits / 100 % 100) << 16 | pair(digits % 100) << 32;
}

void WriteEight(char* out, std::uint64_t characters)
{
    std::memcpy(out, &characters, sizeof characters);
}

// `count` blanks; up to 16 characters are written in any case.
void WriteBlanks(char* out, int count)
{
    constexpr std::uint64_t blanks = 0x2020202020202020u;
    WriteEight(out, blanks);
    WriteEight(out + 8, blanks);
    if (count > 16) {
        std::memset(out + 16, ' ', static_cast<std::size_t>(count - 16));
    }
}

// Moves a text of `length` characters at out to the right end of a field, blanks in front. Returns the field's end.
char* AlignRight(char* out, int length, int width)
{
    if (length >= width) {
        return out + length;
    }
    std::memmove(out + (width - length), out, static_cast<std::size_t>(length));
    std::memset(out, ' ', static_cast<std::size_t>(width - length));
    return out + width;
}

// Values beyond the range of the tables.
char* WriteRareNumber(char* out, double value, int width)
{
    const auto end = std::to_chars(out, out + NumberTextCapacity, value, std::chars_format::general, SignificantDigits);
    return AlignRight(out, static_cast<int>(end.ptr - out), width);
}

} // namespace

// Every store below has a fixed size, whatever the number; the characters that are too many are overwritten by what
// follows. Numbers of mixed kinds then cost no mispredicted branch.
char* WriteNumber(char* out, double value, int width)
{
    const double magnitude = value < 0.0 ? -value : value;
    if (!(magnitude >= PowersOfTen[0] && magnitude < PowersOfTen[HighestExponent + 1 - LowestExponent])) {
        if (std::bit_cast<std::uint64_t>(value) == 0) {
            const int blanks = width > 1 ? width - 1 : 0;
            WriteBlanks(out, blanks);
            out[blanks] = '0';
            return out + blanks + 1;
        }
        return WriteRareNumber(out, value, width);
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

    constexpr std::uint64_t zeroCharacters = 0x303030303030u;
    const std::uint64_t characters = DigitCharacters(digits);
    const int significant = 8 - std::countl_zero(characters ^ zeroCharacters) / 8; // without trailing zeros
    const Layout& layout = LayoutTable.of[exponent - LowestExponent];
    const int written = significant > layout.least ? significant : layout.least;
    const int digitsEnd = layout.lead + written + (significant > layout.whole);
    const int negative = value < 0.0;
    const int length = negative + digitsEnd + layout.tail;

    const int blanks = width > length ? width - length : 0;
    WriteBlanks(out, blanks);
    out += blanks;
    *out = '-';
    out += negative;
    std::memcpy(out, "0.000000", 8);
    const int pointAt = 8 * layout.whole; // in bits
    const std::uint64_t wholeMask = (std::uint64_t(1) << pointAt) - 1;
    WriteEight(out + layout.lead,
               (characters & wholeMask) | std::uint64_t('.') << pointAt | (characters & ~wholeMask) << 8);
    std::memcpy(out + digitsEnd, layout.tailText, sizeof layout.tailText);
    return out + digitsEnd + layout.tail;
}

char* WriteInteger(char* out, long long value, int width)
{
    const char* const end = std::to_chars(out, out + NumberTextCapacity, value).ptr;
    return AlignRight(out, static_cast<int>(end - out), width);
}

} // namespace tarnvexo
