#include "input/SectionHeaders.h"

#include "input/FormatScanner.h"
#include "input/TextPlaces.h"

#include <algorithm>

namespace tarnvexo {

namespace {

// Bytes from "Number" to the key: longer than any header with its words in lines of their own.
constexpr std::size_t LongestHeader = 200;

bool IsKeyCharacter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

bool IsLetter(char c)
{
    return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z');
}

TableId TableOfKey(std::string_view key)
{
    const Table* const table =
        std::find_if(ModelTables, ModelTables + TableCount, [key](const Table& one) { return one.key == key; });
    return static_cast<TableId>(table - ModelTables);
}

// Each record of the table holds this once.
constexpr const char* RecordMarks[TableCount] = {"Mu=", "TK=", "Hw=", "Hw=", "R=", ":", "[",
                                                 "[",   "[",   ":",   "<",   ":",  ":", ":"};

} // namespace

SectionHeader NextHeader(std::string_view text, std::size_t position)
{
    for (std::size_t equals = text.find('=', position); equals != std::string_view::npos;
         equals = text.find('=', equals + 1)) {
        std::size_t keyEnd = equals;
        while (keyEnd > position && IsSpace(text[keyEnd - 1])) { --keyEnd; }
        std::size_t keyBegin = keyEnd;
        while (keyBegin > position && IsKeyCharacter(text[keyBegin - 1])) { --keyBegin; }
        const TableId table = TableOfKey(text.substr(keyBegin, keyEnd - keyBegin));
        if (table == TableCount || (keyBegin > 0 && IsLetter(text[keyBegin - 1]))) {
            continue;
        }
        const std::size_t from = std::max(position, keyBegin < LongestHeader ? 0 : keyBegin - LongestHeader);
        const std::string_view before = text.substr(from, keyBegin - from);
        const std::size_t number = before.rfind("Number");
        // From the position on: headers one behind the other in one long line must not make it be searched every time.
        const std::size_t lineFeed = text.substr(position, keyBegin - position).rfind('\n');
        const std::size_t lineBegin = lineFeed == std::string_view::npos ? position : position + lineFeed + 1;
        const bool isWritten = number != std::string_view::npos && before.find('=', number) == std::string_view::npos;
        return {table, isWritten ? from + number : BehindBlanks(text, lineBegin), equals + 1};
    }
    return {TableCount, text.size(), text.size()};
}

bool IsAtHeader(std::string_view text, std::size_t position)
{
    const std::size_t at = BehindSpace(text, position);
    // A key further away than a header is long is none of this place.
    const SectionHeader header = NextHeader(text.substr(0, std::min(text.size(), at + LongestHeader)), at);
    return header.IsThere() && header.begin == at;
}

bool BeginsRecord(std::string_view text, std::size_t lineBegin, TableId table)
{
    const LineSpan line = LineAround(text, lineBegin);
    std::size_t at = BehindBlanks(text, lineBegin);
    if (table == Materials || table == Thicknesses) {
        return at < line.end && text[at] == '#';
    }
    if (table == TSections || table == LSections || table == CSections) { // the line behind their label
        return at < line.end &&
               text.substr(BehindBlanks(text, NextLine(text, lineBegin))).starts_with(RecordMarks[table]);
    }
    if (at < line.end && (text[at] == '-' || text[at] == '+')) {
        ++at;
    }
    const std::size_t digits = at;
    while (at < line.end && text[at] >= '0' && text[at] <= '9') { ++at; }
    return at > digits && at < line.end && text[at] == (table == Forces ? '<' : ':');
}

long long CountRecords(std::string_view text, TableId table)
{
    const std::string_view mark = RecordMarks[table];
    long long count = 0;
    for (std::size_t at = text.find(mark); at != std::string_view::npos; at = text.find(mark, at + mark.size())) {
        ++count;
    }
    return count;
}

} // namespace tarnvexo
