// input/PlainScan.h
// The fast lane of input/FormatScanner: records as programs write them, without blanks, with short plain numbers. The
// format is taken apart by the compiler; a field is read eight characters at a time.
//
// MatchPlainly either matches the whole format exactly as FormatScanner::Scan would, or gives up at the first thing out
// of the ordinary: a blank, a sign "+", an exponent, an integer of more than seven digits, a number whose digits do not
// fit in a double, another character than the format's, the end of the text near by. The caller then scans the record
// from its beginning by the general rules. Destinations written until then hold what the general scan stores there too.
//
// Eight digits at once: the method of D. Lemire, "Quickly parsing eight digits" (2018), with the digits behind the
// first other character shifted out.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <limits>
#include <type_traits>

namespace tarnvexo::plain {

constexpr int ChunkSize = 8;

// Characters that a field may look at: sign, 7 digits, point, two chunks of decimals and what follows them.
constexpr std::size_t FieldReach = 1 + 7 + 1 + 2 * ChunkSize + ChunkSize;

// Most bytes that a scan with the format looks at, but for white space at its end.
constexpr std::size_t Reach(const char* format)
{
    std::size_t reach = 0;
    for (const char* f = format; *f != '\0'; ++f) { reach += *f == '%' ? FieldReach : 1; }
    return reach;
}

// The decimal digits at the beginning of eight characters.
struct DigitRun {
    int count;           // 0 ... 8
    std::uint64_t value; // of these digits as one number
};

inline DigitRun LeadingDigits(const char* at)
{
    static_assert(std::endian::native == std::endian::little, "the first character is the lowest byte");
    std::uint64_t chunk;
    std::memcpy(&chunk, at, ChunkSize);
    chunk ^= 0x3030303030303030u; // a digit becomes its value, every other character 10 or more
    // High bit of each byte that is 10 or more. A carry spoils bytes behind the first of these only.
    const std::uint64_t others = ((chunk + 0x7676767676767676u) | chunk) & 0x8080808080808080u;
    const int count = std::countr_zero(others) / 8;
    // Zeros in front of the digits, what stood behind them shifted out.
    const std::uint64_t digits = count == 0 ? 0 : chunk << (8 * (ChunkSize - count));
    const std::uint64_t pairs = digits * 10 + (digits >> 8);                                     // in every other byte
    const std::uint64_t value = ((pairs & 0x000000FF000000FFu) * 0x000F424000000064u +           // 10^6, 10^2
                                 ((pairs >> 16) & 0x000000FF000000FFu) * 0x0000271000000001u) >> // 10^4, 1
                                32;
    return {count, value};
}

inline bool TakeMinus(const char*& at)
{
    const bool minus = *at == '-';
    at += minus;
    return minus;
}

inline bool ReadField(const char*& at, int& value)
{
    const bool negative = TakeMinus(at);
    const DigitRun digits = LeadingDigits(at);
    if (digits.count == 0 || digits.count == ChunkSize) {
        return false;
    }
    at += digits.count;
    value = negative ? -static_cast<int>(digits.value) : static_cast<int>(digits.value);
    return true;
}

// m / 10^k with both exact in a double: one operation, rounded once, as the library rounds.
inline bool ReadField(const char*& at, double& value)
{
    static constexpr std::uint64_t integerPowers[ChunkSize + 1] = {1,      10,      100,      1000,     10000,
                                                                   100000, 1000000, 10000000, 100000000};
    static constexpr double powers[2 * ChunkSize] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
    constexpr std::uint64_t largestExact = std::uint64_t(1) << std::numeric_limits<double>::digits;
    constexpr int mostDigits = 18; // any 64-bit integer has room for so many

    const bool negative = TakeMinus(at);
    const DigitRun whole = LeadingDigits(at);
    if (whole.count == ChunkSize) {
        return false;
    }
    at += whole.count;
    std::uint64_t m = whole.value;
    int decimals = 0;
    if (*at == '.') {
        ++at;
        const DigitRun first = LeadingDigits(at);
        m = m * integerPowers[first.count] + first.value;
        decimals = first.count;
        if (first.count == ChunkSize) {
            const DigitRun second = LeadingDigits(at + ChunkSize);
            if (second.count == ChunkSize) {
                return false;
            }
            m = m * integerPowers[second.count] + second.value;
            decimals += second.count;
        }
        at += decimals;
    }
    const int digits = whole.count + decimals;
    const char next = static_cast<char>(*at | 0x20); // in lower case
    if (digits == 0 || digits > mostDigits || m > largestExact || next == 'e' || next == 'x') {
        return false;
    }
    const double magnitude = static_cast<double>(m) / powers[decimals];
    value = negative ? -magnitude : magnitude;
    return true;
}

template <const auto& Format, std::size_t F, class... Destinations>
bool MatchFrom(const char* begin, const char*& at, std::size_t* fieldBegin, Destinations&... destinations);

// Format[F] is the "%" of a conversion.
template <const auto& Format, std::size_t F, class Destination, class... Others>
bool MatchConversion(const char* begin, const char*& at, std::size_t* fieldBegin, Destination& destination,
                     Others&... others)
{
    constexpr bool number = Format[F + 1] == 'l';
    static_assert(number || Format[F + 1] == 'd');
    static_assert(std::is_same_v<Destination, std::conditional_t<number, double, int>>);
    *fieldBegin = static_cast<std::size_t>(at - begin);
    return ReadField(at, destination) && MatchFrom<Format, F + (number ? 3 : 2)>(begin, at, fieldBegin + 1, others...);
}

// The format from its character F on.
template <const auto& Format, std::size_t F, class... Destinations>
bool MatchFrom(const char* begin, const char*& at, std::size_t* fieldBegin, Destinations&... destinations)
{
    if constexpr (Format[F] == '%') {
        return MatchConversion<Format, F>(begin, at, fieldBegin, destinations...);
    } else if constexpr (Format[F] == '\0' || Format[F] == '\n' || Format[F] == ' ') {
        static_assert(Format[F] == '\0' || Format[F + 1] == '\0', "white space only at the end of the format");
        static_assert(sizeof...(Destinations) == 0);
        return true;
    } else {
        return *at++ == Format[F] && MatchFrom<Format, F + 1>(begin, at, fieldBegin, destinations...);
    }
}

// Matches the format, up to white space at its end, to the text at `at`, of which Reach(Format) bytes can be read.
//   begin        of the whole text
//   fieldBegin   out, position of each field from `begin`
//   at           behind what matched; anywhere when false is returned
template <const auto& Format, class... Destinations>
bool MatchPlainly(const char* begin, const char*& at, std::size_t* fieldBegin, Destinations&... destinations)
{
    return MatchFrom<Format, 0>(begin, at, fieldBegin, destinations...);
}

} // namespace tarnvexo::plain
