#include "input/TextPlaces.h"

#include "input/FormatScanner.h"

#include <algorithm>

namespace tarnvexo {

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

std::size_t NextLine(std::string_view text, std::size_t position)
{
    const std::size_t lineFeed = text.find('\n', position);
    return lineFeed == std::string_view::npos ? text.size() : lineFeed + 1;
}

std::size_t BehindSpace(std::string_view text, std::size_t position)
{
    const char* const end = text.data() + text.size();
    return static_cast<std::size_t>(SkipSpace(text.data() + std::min(position, text.size()), end) - text.data());
}

std::size_t BehindBlanks(std::string_view text, std::size_t position)
{
    while (position < text.size() && IsSpace(text[position]) && text[position] != '\n') { ++position; }
    return position;
}

std::size_t BeforeSpace(std::string_view text, std::size_t position)
{
    while (position > 0 && IsSpace(text[position - 1])) { --position; }
    return position;
}

bool IsFirstOfLine(std::string_view text, std::size_t position)
{
    std::size_t begin = position;
    while (begin > 0 && IsSpace(text[begin - 1]) && text[begin - 1] != '\n') { --begin; }
    const bool isBehindBlanks = begin == 0 || text[begin - 1] == '\n';
    return isBehindBlanks && (position == text.size() || !IsSpace(text[position]));
}

bool HasDecimalComma(std::string_view text, std::size_t position)
{
    const std::size_t end = text.find_first_not_of("+-0123456789", position);
    return end != std::string_view::npos && end + 1 < text.size() && text[end] == ',' && text[end + 1] >= '0' &&
           text[end + 1] <= '9';
}

std::string WrittenNumber(std::string_view text, std::size_t position)
{
    constexpr std::size_t longest = 40;
    const std::string_view number = text.substr(position, longest);
    return std::string(number.substr(0, number.find_first_of(",:;<>[]= \t\r\n")));
}

} // namespace tarnvexo
