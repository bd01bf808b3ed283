// input/FormatScanner.h
// Formatted scanning of a text in memory with the rules of the C library's fscanf, at a fraction of its cost.
//
// A format is read from left to right:
//   white space   matches any run of white space, also none, line ends included
//   %d            white space, then a decimal integer                         -> int
//   %lf           white space, then a number in any form of the C library     -> double
//   %c            the next character, whatever it is                          -> char
//   anything else must stand in the text exactly
// A scan stops at the first thing that does not match. Destinations reached before keep what they got, the others keep
// what they had, and the next scan goes on where this one stopped.
//
// Where it stops (as glibc does it): a wrong literal character stays unread; white space skipped before a number stays
// skipped; characters that could begin a number are consumed greedily, so "+" in "+x", "0x" in "0xg" and the whole of
// "nax" are gone although no number came of them. "1e" and "1e+" are complete numbers (1). An integer beyond 64 bits is
// clamped to them, then cut to its low 32 bits. Of "nan(...)" only "nan" is read.
// Equality with fscanf, value for value and position for position, is tested on generated inputs.
#pragma once

#include "input/PlainScan.h"

#include <cstddef>
#include <string_view>

namespace tarnvexo {

// Conversions that one format may hold.
constexpr int MaxScanFields = 10;

// White space of the "C" locale, whatever locale the process runs in.
constexpr bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}

// The first character behind white space, or the end.
inline const char* SkipSpace(const char* at, const char* end)
{
    while (at != end && IsSpace(*at)) { ++at; }
    return at;
}

struct ScanResult {
    const char* expected = nullptr; // where in the format the scan stopped; nullptr: the whole format matched
    std::size_t stoppedAt = 0;      // position in the text of what did not match
    int matchedLiteral = 0;         // characters right in front of both, of the same literal, that did
    int stored = 0;                 // destinations that got a value
    // The last of these that is not what the text says: an integer beyond int, an unfinished number as "1e+"; -1: none.
    int oddField = -1;
    std::size_t fieldBegin[MaxScanFields]; // position in the text of each stored value

    bool Matched() const { return expected == nullptr; }
};

class FormatScanner {
public:
    // The text is not copied and must outlive the scanner. It may hold any bytes.
    explicit FormatScanner(std::string_view text) : begin(text.data()), at(text.data()), end(text.data() + text.size())
    {
    }

    // One scan. The destinations (int, double or char) must fit the conversions of the format in number and type.
    template <class... Destinations> ScanResult Scan(const char* format, Destinations&... destinations)
    {
        static_assert(sizeof...(Destinations) <= MaxScanFields);
        const ScanTarget targets[sizeof...(Destinations) + 1] = {ScanTarget(destinations)..., ScanTarget()};
        return Scan(format, targets);
    }

    // The same scan, faster, with a format that the compiler knows: Scan<formats::Node>(label, x, y, z). For formats
    // with conversions to int and double and with white space nowhere but at their end.
    template <const auto& Format, class... Destinations> ScanResult Scan(Destinations&... destinations)
    {
        static_assert(sizeof...(Destinations) <= MaxScanFields);
        if (BytesLeft() >= plain::Reach(Format)) {
            ScanResult result;
            const char* ahead = at;
            if (plain::MatchPlainly<Format>(begin, ahead, result.fieldBegin, destinations...)) {
                result.stored = int(sizeof...(Destinations));
                at = EndsWithSpace(Format) ? SkipSpace(ahead, end) : ahead;
                return result;
            }
        }
        return Scan(Format, destinations...);
    }

    // Consumes through the next line feed, as "%c" repeated until it has read one. False: the text ended before.
    bool SkipLine();

    // Goes on at a position of the text.
    void Seek(std::size_t position) { at = begin + position; }

    std::size_t Position() const { return std::size_t(at - begin); }
    std::size_t BytesLeft() const { return std::size_t(end - at); }
    std::string_view Text() const { return {begin, std::size_t(end - begin)}; }

private:
    // A destination and the conversion that it fits: 'd', 'l' or 'c'.
    struct ScanTarget {
        ScanTarget() = default;
        explicit ScanTarget(int& value) : destination(&value), conversion('d') {}
        explicit ScanTarget(double& value) : destination(&value), conversion('l') {}
        explicit ScanTarget(char& value) : destination(&value), conversion('c') {}

        void* destination = nullptr;
        char conversion = '\0';
    };

    ScanResult Scan(const char* format, const ScanTarget* targets);

    template <std::size_t Size> static constexpr bool EndsWithSpace(const char (&format)[Size])
    {
        return Size > 1 && IsSpace(format[Size - 2]);
    }

    const char* begin;
    const char* at;
    const char* end;
};

} // namespace tarnvexo
