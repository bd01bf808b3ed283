#include "input/FormatScanner.h"

#include <cassert>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>

namespace tarnvexo {

namespace {

// The character classes of the "C" locale, whatever locale the process runs in.
bool IsSpace(char c)
{
    return c == ' ' || (c >= '\t' && c <= '\r');
}
bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}
char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}
bool IsHexDigit(char c)
{
    return IsDigit(c) || (Lower(c) >= 'a' && Lower(c) <= 'f');
}

} // namespace

ScanResult FormatScanner::Scan(const char* format, const ScanTarget* targets)
{
    ScanResult result;
    for (const char* f = format; *f != '\0'; ++f) {
        if (IsSpace(*f)) {
            SkipSpace();
            continue;
        }
        if (*f != '%') {
            if (at == end || *at != *f) {
                result.expected = f;
                result.stoppedAt = Position();
                return result;
            }
            ++at;
            continue;
        }

        const char* conversion = f++;
        const ScanTarget& target = targets[result.stored];
        if (*f != 'c') {
            SkipSpace();
        }
        const std::size_t fieldBegin = Position();
        bool stored = false;
        if (*f == 'd') {
            assert(target.integer != nullptr);
            stored = ReadInteger(*target.integer);
        } else if (*f == 'l') {
            assert(f[1] == 'f' && target.number != nullptr);
            ++f;
            stored = ReadNumber(*target.number);
        } else {
            assert(*f == 'c' && target.character != nullptr);
            if (at != end) {
                *target.character = *at++;
                stored = true;
            }
        }
        if (!stored) {
            result.expected = conversion;
            result.stoppedAt = fieldBegin;
            return result;
        }
        result.fieldBegin[result.stored++] = fieldBegin;
    }
    return result;
}

bool FormatScanner::SkipLine()
{
    const void* lineFeed = at == end ? nullptr : std::memchr(at, '\n', BytesLeft());
    if (lineFeed == nullptr) {
        at = end;
        return false;
    }
    at = static_cast<const char*>(lineFeed) + 1;
    return true;
}

void FormatScanner::SkipSpace()
{
    while (at != end && IsSpace(*at)) { ++at; }
}

bool FormatScanner::ReadInteger(int& value)
{
    bool negative = false;
    if (at != end && (*at == '-' || *at == '+')) {
        negative = *at++ == '-';
    }
    const char* digits = at;
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    std::uint64_t magnitude = 0;
    bool clamped = false;
    for (; at != end && IsDigit(*at); ++at) {
        const std::uint64_t digit = std::uint64_t(*at - '0');
        clamped = clamped || magnitude > (largest - digit) / 10;
        if (!clamped) {
            magnitude = 10 * magnitude + digit;
        }
    }
    if (at == digits) {
        return false;
    }
    // Beyond 64 bits: 2^63 - 1 or -2^63, of which the low 32 bits are all ones or all zeros.
    const std::uint64_t wide = clamped ? largest + std::uint64_t(negative) : negative ? 0 - magnitude : magnitude;
    value = std::int32_t(std::uint32_t(wide));
    return true;
}

bool FormatScanner::ReadNumber(double& value)
{
    // Nearly every number of a model file: decimal digits with an optional fraction and exponent. What from_chars
    // leaves unread is also where fscanf stops, unless an "e" or "x" follows that did not become part of the number.
    const char* unsignedBegin = at != end && (*at == '-' || *at == '+') ? at + 1 : at;
    if (unsignedBegin != end && (IsDigit(*unsignedBegin) || *unsignedBegin == '.')) {
        double magnitude = 0.0;
        const auto [next, error] = std::from_chars(unsignedBegin, end, magnitude);
        const char after = next == end ? ' ' : Lower(*next);
        if (error == std::errc() && after != 'e' && after != 'x') {
            value = *at == '-' ? -magnitude : magnitude;
            at = next;
            return true;
        }
    }
    return ReadAnyNumber(value);
}

// Every other form: fscanf first gathers what looks like a number, character by character, then converts it.
bool FormatScanner::ReadAnyNumber(double& value)
{
    const char* numberBegin = at;
    if (at != end && (*at == '-' || *at == '+')) {
        ++at;
    }
    const char* unsignedBegin = at;
    if (at != end && Lower(*at) == 'n') {
        if (!TakeWord("nan")) {
            return false;
        }
    } else if (at != end && Lower(*at) == 'i') {
        if (!TakeWord("inf")) {
            return false;
        }
        if (at != end && Lower(*at) == 'i' && !TakeWord("inity")) {
            return false;
        }
    } else {
        bool hexadecimal = false, gotDigit = false, gotPoint = false, gotExponent = false;
        if (end - at >= 2 && at[0] == '0' && Lower(at[1]) == 'x') {
            hexadecimal = true;
            at += 2;
        }
        const char exponentLetter = hexadecimal ? 'p' : 'e';
        for (; at != end; ++at) {
            if (IsDigit(*at) || (hexadecimal && !gotExponent && IsHexDigit(*at))) {
                gotDigit = true;
            } else if (gotExponent && Lower(at[-1]) == exponentLetter && (*at == '-' || *at == '+')) {
                continue;
            } else if (gotDigit && !gotExponent && Lower(*at) == exponentLetter) {
                gotExponent = gotPoint = true;
            } else if (*at == '.' && !gotPoint) {
                gotPoint = true;
            } else {
                break;
            }
        }
        if (at == unsignedBegin || (hexadecimal && at == unsignedBegin + 2)) {
            return false;
        }
    }

    const std::string number(numberBegin, at);
    char* converted = nullptr;
    const double result = std::strtod(number.c_str(), &converted);
    if (converted == number.c_str()) {
        return false; // "." alone
    }
    value = result;
    return true;
}

// Consumes the letters of a word, and with them the first character that is not one of them. The word may be written in
// capitals.
bool FormatScanner::TakeWord(const char* word)
{
    for (const char* w = word; *w != '\0'; ++w) {
        if (at == end) {
            return false;
        }
        if (Lower(*at++) != *w) {
            return false;
        }
    }
    return true;
}

} // namespace tarnvexo
