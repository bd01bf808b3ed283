#include "input/FormatScanner.h"

#include <cassert>
#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <iterator>
#include <limits>
#include <string>

namespace tarnvexo {

namespace {

// The text still to be read. The procedures below take away from its front what they consume.
struct Rest {
    const char* at;
    const char* end;

    bool Empty() const { return at == end; }
};

// The character classes of the "C" locale, whatever locale the process runs in.
bool IsDigit(char c)
{
    return unsigned(c) - '0' < 10;
}
char Lower(char c)
{
    return c >= 'A' && c <= 'Z' ? char(c - 'A' + 'a') : c;
}
bool IsHexDigit(char c)
{
    return IsDigit(c) || (Lower(c) >= 'a' && Lower(c) <= 'f');
}

// True when there was a sign and it was a minus.
bool TakeSign(Rest& text)
{
    if (text.Empty() || (*text.at != '-' && *text.at != '+')) {
        return false;
    }
    return *text.at++ == '-';
}

// Decimal digits that any 64-bit integer has room for.
constexpr std::ptrdiff_t RoomyDigits = 18;

// Appends at most `most` digits to a number.
void TakeDigits(Rest& text, std::ptrdiff_t most, std::uint64_t& number)
{
    const char* stop = text.end - text.at > most ? text.at + most : text.end;
    for (; text.at != stop && IsDigit(*text.at); ++text.at) { number = 10 * number + std::uint64_t(*text.at - '0'); }
}

bool AtDigit(const Rest& text)
{
    return !text.Empty() && IsDigit(*text.at);
}

// `odd`: set when the value is not what the text says.
bool ReadInteger(Rest& text, int& value, bool& odd)
{
    const bool negative = TakeSign(text);
    const char* digits = text.at;
    std::uint64_t magnitude = 0;
    TakeDigits(text, RoomyDigits, magnitude);
    if (text.at == digits) {
        return false;
    }
    // Beyond 64 bits: clamped to 2^63 - 1 or -2^63, of which the low 32 bits are all ones or all zeros.
    constexpr std::uint64_t largest = std::numeric_limits<std::int64_t>::max();
    bool clamped = false;
    for (; AtDigit(text); ++text.at) {
        const std::uint64_t digit = std::uint64_t(*text.at - '0');
        clamped = clamped || magnitude > (largest - digit) / 10;
        magnitude = clamped ? largest + std::uint64_t(negative) : 10 * magnitude + digit;
    }
    value = std::int32_t(std::uint32_t(negative ? 0 - magnitude : magnitude));
    odd = odd || magnitude > std::uint64_t(std::numeric_limits<int>::max()) + std::uint64_t(negative);
    return true;
}

// What fscanf makes part of a number it takes for one: more than decimal digits and a point have been written.
bool ContinuesNumber(const Rest& text)
{
    return !text.Empty() && (Lower(*text.at) == 'e' || Lower(*text.at) == 'x');
}

// A plain decimal number, digits with or without a point, whose digits fit in a double: m / 10^k is then one exact
// operation on two exact numbers, rounded once as the library rounds. False, and nothing consumed: not such a number.
bool ReadPlainNumber(Rest& text, double& value)
{
    static constexpr double powersOfTen[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                             1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};
    static_assert(std::size(powersOfTen) == RoomyDigits + 1);
    constexpr std::uint64_t largestExact = std::uint64_t(1) << std::numeric_limits<double>::digits;

    Rest ahead = text;
    const bool negative = TakeSign(ahead);
    const char* begin = ahead.at;
    std::uint64_t m = 0;
    TakeDigits(ahead, RoomyDigits, m);
    std::ptrdiff_t digits = ahead.at - begin, decimals = 0;
    if (!ahead.Empty() && *ahead.at == '.') {
        const char* decimalsBegin = ++ahead.at;
        TakeDigits(ahead, RoomyDigits - digits, m);
        decimals = ahead.at - decimalsBegin;
        digits += decimals;
    }
    if (digits == 0 || m > largestExact || AtDigit(ahead) || ContinuesNumber(ahead)) {
        return false;
    }
    const double magnitude = double(m) / powersOfTen[decimals];
    value = negative ? -magnitude : magnitude;
    text = ahead;
    return true;
}

// Any decimal number within the range of a double. What from_chars leaves unread is also where fscanf stops, unless an
// "e" or "x" follows that did not become part of the number. False, and nothing consumed: not such a number.
bool ReadDecimalNumber(Rest& text, double& value)
{
    Rest ahead = text;
    const bool negative = TakeSign(ahead);
    if (ahead.Empty() || (!IsDigit(*ahead.at) && *ahead.at != '.')) {
        return false;
    }
    double magnitude = 0.0;
    const auto [next, error] = std::from_chars(ahead.at, ahead.end, magnitude);
    ahead.at = next;
    if (error != std::errc() || ContinuesNumber(ahead)) {
        return false;
    }
    value = negative ? -magnitude : magnitude;
    text = ahead;
    return true;
}

// Consumes the letters of a word, and with them the first character that is not one of them. The word may be written in
// capitals.
bool TakeWord(Rest& text, const char* word)
{
    for (const char* w = word; *w != '\0'; ++w) {
        if (text.Empty() || Lower(*text.at++) != *w) {
            return false;
        }
    }
    return true;
}

// Consumes what looks like a decimal or hexadecimal number, character by character, whether it is complete or not.
bool TakeNumberCharacters(Rest& text)
{
    bool hexadecimal = false, gotDigit = false, gotPoint = false, gotExponent = false;
    if (text.end - text.at >= 2 && text.at[0] == '0' && Lower(text.at[1]) == 'x') {
        hexadecimal = true;
        text.at += 2;
    }
    const char exponentLetter = hexadecimal ? 'p' : 'e';
    const char* begin = text.at;
    for (; !text.Empty(); ++text.at) {
        const char c = *text.at;
        if (IsDigit(c) || (hexadecimal && !gotExponent && IsHexDigit(c))) {
            gotDigit = true;
        } else if (gotExponent && Lower(text.at[-1]) == exponentLetter && (c == '-' || c == '+')) {
            continue;
        } else if (gotDigit && !gotExponent && Lower(c) == exponentLetter) {
            gotExponent = gotPoint = true;
        } else if (c == '.' && !gotPoint) {
            gotPoint = true;
        } else {
            break;
        }
    }
    return text.at != begin;
}

// Every form of a number: fscanf first gathers what looks like one, then converts it.
bool ReadAnyNumber(Rest& text, double& value, bool& odd)
{
    const char* begin = text.at;
    TakeSign(text);
    const char first = text.Empty() ? '\0' : Lower(*text.at);
    if (first == 'n') {
        if (!TakeWord(text, "nan")) {
            return false;
        }
    } else if (first == 'i') {
        if (!TakeWord(text, "inf")) {
            return false;
        }
        if (!text.Empty() && Lower(*text.at) == 'i' && !TakeWord(text, "inity")) {
            return false;
        }
    } else if (!TakeNumberCharacters(text)) {
        return false;
    }

    const std::string number(begin, text.at);
    char* converted = nullptr;
    const double result = std::strtod(number.c_str(), &converted);
    if (converted == number.c_str()) {
        return false; // "." alone
    }
    value = result;
    odd = odd || converted != number.c_str() + number.size();
    return true;
}

bool ReadNumber(Rest& text, double& value, bool& odd)
{
    return ReadPlainNumber(text, value) || ReadDecimalNumber(text, value) || ReadAnyNumber(text, value, odd);
}

} // namespace

ScanResult FormatScanner::Scan(const char* format, const ScanTarget* targets)
{
    ScanResult result;
    Rest text = {at, end};
    const char* literal = format; // behind the last conversion or white space
    for (const char* f = format; *f != '\0'; ++f) {
        if (*f == '%') {
            const char* conversion = f++;
            const ScanTarget& target = targets[result.stored];
            assert(target.conversion == *f);
            if (*f != 'c') {
                text.at = SkipSpace(text.at, text.end);
            }
            const char* fieldBegin = text.at;
            bool stored = false, odd = false;
            if (*f == 'd') {
                stored = ReadInteger(text, *static_cast<int*>(target.destination), odd);
            } else if (*f == 'l') {
                stored = ReadNumber(text, *static_cast<double*>(target.destination), odd);
                ++f; // the "f" of "%lf"
            } else if (!text.Empty()) {
                *static_cast<char*>(target.destination) = *text.at++;
                stored = true;
            }
            if (!stored) {
                result.expected = conversion;
                result.stoppedAt = std::size_t(fieldBegin - begin);
                break;
            }
            if (odd) {
                result.oddField = result.stored;
            }
            result.fieldBegin[result.stored++] = std::size_t(fieldBegin - begin);
            literal = f + 1;
        } else if (IsSpace(*f)) {
            text.at = SkipSpace(text.at, text.end);
            literal = f + 1;
        } else if (!text.Empty() && *text.at == *f) {
            ++text.at;
        } else {
            result.expected = f;
            result.stoppedAt = std::size_t(text.at - begin);
            result.matchedLiteral = int(f - literal);
            break;
        }
    }
    at = text.at;
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

} // namespace tarnvexo
