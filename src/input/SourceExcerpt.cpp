#include "input/SourceExcerpt.h"

#include "input/TextPlaces.h"

#include <algorithm>
#include <cstdint>

namespace tarnvexo {

namespace {

constexpr std::size_t LongestExcerpt = 100; // bytes of the file's line

bool IsContinuation(char c)
{
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

struct Character {
    std::uint32_t code = 0;
    std::size_t size = 0; // bytes; 0: not UTF-8
};

// The first character of a text that is not empty.
Character FirstCharacter(std::string_view text)
{
    const auto lead = static_cast<unsigned char>(text[0]);
    if (lead < 0x80) {
        return {lead, 1};
    }
    const std::size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
    if (lead < 0xC2 || lead > 0xF4 || text.size() < size) {
        return {};
    }
    std::uint32_t code = lead & (0x7Fu >> size);
    for (std::size_t i = 1; i < size; ++i) {
        if (!IsContinuation(text[i])) {
            return {};
        }
        code = code << 6 | (static_cast<unsigned char>(text[i]) & 0x3Fu);
    }
    constexpr std::uint32_t smallest[] = {0, 0, 0x80, 0x800, 0x10000}; // of so many bytes
    const bool surrogate = code >= 0xD800 && code <= 0xDFFF;
    return code < smallest[size] || code > 0x10FFFF || surrogate ? Character() : Character{code, size};
}

bool IsUtf8(std::string_view text)
{
    while (!text.empty()) {
        const std::size_t size = FirstCharacter(text).size;
        if (size == 0) {
            return false;
        }
        text.remove_prefix(size);
    }
    return true;
}

struct CodeRange {
    std::uint32_t first, last;
};

template <std::size_t Count> bool IsIn(std::uint32_t code, const CodeRange (&ranges)[Count])
{
    return std::any_of(ranges, ranges + Count,
                       [code](const CodeRange& range) { return code >= range.first && code <= range.last; });
}

// Two columns wide in a terminal: Unicode Standard Annex 11, classes W and F, in whole blocks.
constexpr CodeRange WideCharacters[] = {{0x1100, 0x115F},  {0x2E80, 0x303E}, {0x3041, 0x4DBF},   {0x4E00, 0xA4CF},
                                        {0xA960, 0xA97C},  {0xAC00, 0xD7A3}, {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},
                                        {0xFF00, 0xFF60},  {0xFFE0, 0xFFE6}, {0x1F300, 0x1F64F}, {0x1F900, 0x1F9FF},
                                        {0x20000, 0x3FFFD}};
// Marks above and below the character in front of them.
constexpr CodeRange CombiningCharacters[] = {{0x0300, 0x036F}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF},
                                             {0x20D0, 0x20FF}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}};
// Controls, invisible characters, directions of writing: a terminal would not show the line as it stands in the file.
constexpr CodeRange UnshownCharacters[] = {{0x00, 0x1F},     {0x7F, 0x9F},     {0xAD, 0xAD},
                                           {0x61C, 0x61C},   {0x200B, 0x200F}, {0x2028, 0x202E},
                                           {0x2060, 0x206F}, {0xFEFF, 0xFEFF}, {0xFFF0, 0xFFFB}};

// Appends what is shown of a text; the columns that it takes.
std::size_t Show(std::string_view text, bool utf8, std::string& shown)
{
    std::size_t columns = 0;
    while (!text.empty()) {
        const Character character = utf8 ? FirstCharacter(text) : Character{0, 1};
        const std::uint32_t code = utf8 ? character.code : static_cast<unsigned char>(text[0]);
        if (code == '\t') {
            shown += ' ';
        } else if (IsIn(code, UnshownCharacters) || (!utf8 && code >= 0x80)) {
            shown += '?';
        } else {
            shown += text.substr(0, character.size);
        }
        columns += IsIn(code, CombiningCharacters) ? 0 : IsIn(code, WideCharacters) ? 2 : 1;
        text.remove_prefix(character.size);
    }
    return columns;
}

bool BelongsToNumber(char c)
{
    return (c >= '0' && c <= '9') || c == '+' || c == '-';
}

} // namespace

SourceExcerpt ExcerptAround(std::string_view text, std::size_t position)
{
    const LineSpan line = LineAround(text, position);
    const bool isShort = line.end <= line.begin + LongestExcerpt || position < line.begin + LongestExcerpt / 2;
    std::size_t begin = isShort ? line.begin : position - LongestExcerpt / 2;
    std::size_t end = std::max(position, std::min(line.end, begin + LongestExcerpt));
    // The part begins and ends with whole characters, if it is UTF-8 (of which no character has more bytes than 4).
    std::size_t wholeBegin = begin, wholeEnd = end;
    while (wholeBegin < position && wholeBegin < begin + 4 && IsContinuation(text[wholeBegin])) { ++wholeBegin; }
    while (wholeEnd < line.end && wholeEnd < end + 4 && IsContinuation(text[wholeEnd])) { ++wholeEnd; }
    const std::string_view before = text.substr(wholeBegin, position - wholeBegin);
    const std::string_view after = text.substr(position, wholeEnd - position);
    const bool utf8 = IsUtf8(before) && IsUtf8(after);
    if (utf8) {
        begin = wholeBegin;
        end = wholeEnd;
    }

    SourceExcerpt excerpt;
    const std::size_t columns = Show(text.substr(begin, position - begin), utf8, excerpt.line);
    Show(text.substr(position, end - position), utf8, excerpt.line);

    std::size_t markEnd = position;
    while (markEnd < line.end && BelongsToNumber(text[markEnd])) { ++markEnd; }
    const std::size_t tildes = markEnd > position ? markEnd - position - 1 : 0;
    excerpt.mark = std::string(columns, ' ') + "^" + std::string(std::min(tildes, LongestExcerpt / 2), '~');
    return excerpt;
}

} // namespace tarnvexo
