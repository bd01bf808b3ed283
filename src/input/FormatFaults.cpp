#include "input/FormatFaults.h"

#include "input/TextPlaces.h"

namespace tarnvexo {

namespace {

constexpr std::string_view Separators = ",;<>[] \t\r\n";

bool IsWordCharacter(char c)
{
    return Separators.find(c) == std::string_view::npos;
}

// Characters right in front of the fault that begin its word as the format has it.
int MatchedOfWord(const ScanResult& scan)
{
    int matched = 0;
    while (matched < scan.matchedLiteral && IsWordCharacter(scan.expected[-1 - matched])) { ++matched; }
    return matched;
}

// The word of the format whose first characters match.
std::string ExpectedWord(const ScanResult& scan, int matched)
{
    const std::string_view literal = scan.expected - matched;
    return Joined({"\"", literal.substr(0, literal.find_first_of(" %\n")), "\""});
}

// What the text has in its place, with what follows in the same word.
std::string FoundWord(std::string_view text, const ScanResult& scan, int matched)
{
    const std::size_t begin = scan.stoppedAt - static_cast<std::size_t>(matched);
    const std::string_view rest = text.substr(scan.stoppedAt);
    const bool endsLine = rest.starts_with('\n') || rest.starts_with('\r');
    const std::size_t end = endsLine ? scan.stoppedAt : text.find_first_of(Separators, scan.stoppedAt + 1);
    return FoundText(text.substr(0, end), begin);
}

bool IsDigit(char c)
{
    return c >= '0' && c <= '9';
}

bool IsBehindDigit(std::string_view text, std::size_t position)
{
    return position > 0 && IsDigit(text[position - 1]);
}

// The digits in front of a position are those behind a decimal point.
bool IsBehindDecimals(std::string_view text, std::size_t position)
{
    while (IsBehindDigit(text, position)) { --position; }
    return position > 0 && text[position - 1] == '.';
}

// What mends the text at a position, where users of other formats write it so; else `advice`.
std::string AdviceFor(std::string_view text, std::size_t position, const char* advice)
{
    const std::string_view rest = text.substr(position);
    if (IsBehindDigit(text, position) && rest.size() > 1 && rest[0] == ',' && IsDigit(rest[1])) {
        return "write a point as the decimal mark, if the comma is to be one";
    }
    const bool isRemark =
        rest.starts_with("//") || (!rest.empty() && std::string_view("#!$*;%").find(rest[0]) != std::string_view::npos);
    if (isRemark && IsFirstOfLine(text, position)) {
        return "take the line away, if it is a remark: the format has none";
    }
    return advice;
}

} // namespace

TextFault MismatchFault(std::string_view text, const ScanResult& scan, std::size_t recordBegin,
                        const std::string& subject, const std::string& layout)
{
    const std::size_t at = scan.stoppedAt, before = BeforeSpace(text, at);
    const bool isConversion = scan.expected[0] == '%';
    if (IsBehindDigit(text, at) && text.substr(at).starts_with('.')) {
        const char* const fault = IsBehindDecimals(text, at) ? ": a number is written with two decimal points"
                                                             : ": a whole number is written with a decimal point";
        return {at, subject + fault, layout, "write it as the format has it"};
    }
    const bool isBehindLineEnd = isConversion && at != BehindSpace(text, recordBegin) &&
                                 text.substr(before, at - before).find('\n') != std::string_view::npos;
    const int matched = MatchedOfWord(scan);
    const std::string found = isBehindLineEnd ? "the end of the line"
                              : matched > 0   ? FoundWord(text, scan, matched)
                                              : FoundText(text, at);
    const std::string expected = matched > 0 ? ExpectedWord(scan, matched) : ExpectedText(scan.expected);
    return {isBehindLineEnd ? before : at, Joined({subject, ": found ", found, " where ", expected, " belongs"}),
            layout, AdviceFor(text, at, "write it as the format has it")};
}

TextFault TextBehindFault(std::string_view text, std::size_t position, const std::string& subject)
{
    return {position, Joined({subject, " is followed by ", FoundText(text, position)}), "the end of the line",
            AdviceFor(text, position, "take the text away, or correct what stands in front of it")};
}

TextFault CountFault(const Table& table, long long records)
{
    const std::string count = std::to_string(table.count), found = std::to_string(records);
    std::string expected = Joined({table.key, "=", found});
    if (table.count >= 0) {
        expected = Joined({expected, ", or ", count, " records"});
    }
    const char* const follow = records == 1 ? " record follows" : " records follow";
    return {table.countPosition, Joined({table.key, "=", count, ", but ", found, " ", table.record, follow}), expected,
            Joined({"correct ", table.key, ", or the records behind it"})};
}

TextFault EndFault(std::string_view text, const std::string& where, const std::string& expected)
{
    return {BeforeSpace(text, text.size()), "the file ends " + where, expected,
            "write the file again if it was cut off, or complete it"};
}

} // namespace tarnvexo
