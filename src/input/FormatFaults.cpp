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

} // namespace

TextFault MismatchFault(std::string_view text, const ScanResult& scan, std::size_t recordBegin,
                        const std::string& subject, const std::string& layout)
{
    const std::size_t at = scan.stoppedAt, before = BeforeSpace(text, at);
    const bool isConversion = scan.expected[0] == '%';
    if (at > 0 && text.substr(at).starts_with('.') && text[at - 1] >= '0' && text[at - 1] <= '9') {
        return {at, subject + ": a whole number is written with a decimal point", layout,
                "write it as the format has it"};
    }
    const bool isBehindLineEnd = isConversion && at != BehindSpace(text, recordBegin) &&
                                 text.substr(before, at - before).find('\n') != std::string_view::npos;
    const int matched = MatchedOfWord(scan);
    const std::string found = isBehindLineEnd ? "the end of the line"
                              : matched > 0   ? FoundWord(text, scan, matched)
                                              : FoundText(text, at);
    const std::string expected = matched > 0 ? ExpectedWord(scan, matched) : ExpectedText(scan.expected);
    return {isBehindLineEnd ? before : at, Joined({subject, ": found ", found, " where ", expected, " belongs"}),
            layout, "write it as the format has it"};
}

TextFault TextBehindFault(std::string_view text, std::size_t position, const std::string& subject)
{
    return {position, Joined({subject, " is followed by ", FoundText(text, position)}), "the end of the line",
            "take the text away, or correct what stands in front of it"};
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
