#include "input/ScanDiagnostics.h"

#include <algorithm>

namespace tarnvexo {

namespace {

constexpr std::size_t LongestQuote = 40;    // of what stood in the file, in a warning
constexpr std::size_t LongestExcerpt = 100; // of the file's line, under an error

std::string Printable(std::string_view bytes)
{
    std::string shown(bytes);
    for (char& c : shown) {
        if (c == '\t') {
            c = ' ';
        } else if (c < ' ' || c > '~') {
            c = '?';
        }
    }
    return shown;
}

// The line that holds a position, without its line end.
struct LineSpan {
    std::size_t begin;
    std::size_t end;
};

LineSpan LineAround(std::string_view text, std::size_t position)
{
    const std::size_t lineFeedBefore = position == 0 ? std::string_view::npos : text.rfind('\n', position - 1);
    const std::size_t begin = lineFeedBefore == std::string_view::npos ? 0 : lineFeedBefore + 1;
    std::size_t end = std::min(text.find('\n', position), text.size());
    if (end > position && text[end - 1] == '\r') {
        --end;
    }
    return {begin, end};
}

std::string PlacePrefix(const NamedText& source, std::size_t position)
{
    const TextPlace place = PlaceInText(source.text, position);
    return Joined({source.fileName, ":", std::to_string(place.line), ":", std::to_string(place.column), ": "});
}

// What a format asks for at the place where a scan stopped.
std::string Expected(const char* format)
{
    if (format[0] == '%') {
        return format[1] == 'd' ? "an integer" : format[1] == 'c' ? "the end of the label line" : "a number";
    }
    std::string_view literal = format;
    literal = literal.substr(0, literal.find_first_of("%\n"));
    literal = literal.substr(0, literal.find_last_not_of(' ') + 1);
    return Joined({"\"", literal, "\""});
}

std::string Found(std::string_view text, std::size_t position)
{
    if (position == text.size()) {
        return "the end of the file";
    }
    if (text[position] == '\n' || text[position] == '\r') {
        return "the end of the line";
    }
    const std::string_view rest = text.substr(position, LineAround(text, position).end - position);
    return Joined({"\"", Printable(rest.substr(0, LongestQuote)), rest.size() > LongestQuote ? "...\"" : "\""});
}

bool BelongsToNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '+' || c == '-';
}

} // namespace

std::string Joined(std::initializer_list<std::string_view> parts)
{
    std::string joined;
    for (const std::string_view part : parts) { joined += part; }
    return joined;
}

TextPlace PlaceInText(std::string_view text, std::size_t position)
{
    const std::string_view before = text.substr(0, position);
    const std::size_t lineFeeds = std::size_t(std::count(before.begin(), before.end(), '\n'));
    return {1 + lineFeeds, 1 + position - LineAround(text, position).begin};
}

std::string NameOf(const RecordName& record)
{
    return record.number < 0 ? record.kind : Joined({record.kind, " ", std::to_string(record.number)});
}

std::string ScanWarning(const NamedText& source, const ScanResult& scan, const RecordName& record)
{
    return Joined({PlacePrefix(source, scan.stoppedAt), "warning: ", NameOf(record), ": expected ",
                   Expected(scan.expected), ", found ", Found(source.text, scan.stoppedAt), "\n"});
}

std::string FaultMessage(const NamedText& source, const ModelFault& fault)
{
    const std::string_view text = source.text;
    const LineSpan line = LineAround(text, fault.position);

    // Of a very long line only the part around the fault.
    const std::size_t column = fault.position - line.begin;
    const std::size_t excerptBegin = column < LongestExcerpt / 2 ? line.begin : fault.position - LongestExcerpt / 2;
    const std::size_t excerptLength =
        std::min(LongestExcerpt, line.end > excerptBegin ? line.end - excerptBegin : std::size_t(0));

    std::size_t markEnd = fault.position;
    while (markEnd < line.end && BelongsToNumber(text[markEnd])) { ++markEnd; }
    const std::size_t tildes = markEnd > fault.position ? markEnd - fault.position - 1 : 0;
    const std::string mark =
        std::string(fault.position - excerptBegin, ' ') + "^" + std::string(std::min(tildes, LongestExcerpt / 2), '~');

    const std::string lineNumber = std::to_string(PlaceInText(text, fault.position).line);
    const std::string lineNumberBlank(lineNumber.size(), ' ');
    return Joined({PlacePrefix(source, fault.position), "error: ", fault.what, "\n",                   //
                   "  ", lineNumber, " | ", Printable(text.substr(excerptBegin, excerptLength)), "\n", //
                   "  ", lineNumberBlank, " | ", mark, "\n",                                           //
                   "  expected: ", fault.expected, "\n",                                               //
                   "  to do:    ", fault.toDo});
}

void ScanWarnings::Add(const NamedText& source, const ScanResult& scan, const RecordName& record)
{
    if (count < ShownWarnings) {
        shown += ScanWarning(source, scan, record);
    }
    ++count;
}

std::string ScanWarnings::Lines(const NamedText& source) const
{
    if (count <= ShownWarnings) {
        return shown;
    }
    return Joined({shown, source.fileName, ": warning: ", std::to_string(count - ShownWarnings),
                   " more places did not match and are not shown\n"});
}

} // namespace tarnvexo
