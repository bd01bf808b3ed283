#include "input/ScanDiagnostics.h"

#include "input/SourceExcerpt.h"
#include "input/TextPlaces.h"

#include <algorithm>

namespace tarnvexo {

namespace {

constexpr std::size_t LongestQuote = 40; // of what stood in the file, in a warning

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

std::string PlacePrefix(const NamedText& source, std::size_t position)
{
    const TextPlace place = PlaceInText(source.text, position);
    return Joined({source.fileName, ":", std::to_string(place.line), ":", std::to_string(place.column), ": "});
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
    return {1 + lineFeeds, 1 + position - LineAround(before, position).begin};
}

std::string NameOf(const RecordName& record)
{
    return record.number < 0 ? record.kind : Joined({record.kind, " ", std::to_string(record.number)});
}

std::string ExpectedText(const char* format)
{
    if (format[0] == '%') {
        return format[1] == 'd' ? "an integer" : format[1] == 'c' ? "the end of the label line" : "a number";
    }
    std::string_view literal = format;
    literal = literal.substr(0, literal.find_first_of("%\n"));
    literal = literal.substr(0, literal.find_last_not_of(' ') + 1);
    return Joined({"\"", literal, "\""});
}

std::string FoundText(std::string_view text, std::size_t position)
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

std::string ScanWarning(const NamedText& source, const ScanResult& scan, const RecordName& record)
{
    return Joined({PlacePrefix(source, scan.stoppedAt), "warning: ", NameOf(record), ": expected ",
                   ExpectedText(scan.expected), ", found ", FoundText(source.text, scan.stoppedAt), "\n"});
}

std::string FaultMessage(const NamedText& source, const TextFault& fault, const char* severity)
{
    const SourceExcerpt excerpt = ExcerptAround(source.text, fault.position);
    const std::string lineNumber = std::to_string(PlaceInText(source.text, fault.position).line);
    const std::string blank(lineNumber.size(), ' ');
    const std::string place = PlacePrefix(source, fault.position);
    return Joined({place,          severity,       ": ",  fault.what,   "\n", //
                   "  ",           lineNumber,     " | ", excerpt.line, "\n", //
                   "  ",           blank,          " | ", excerpt.mark, "\n", //
                   "  expected: ", fault.expected, "\n",                      //
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
