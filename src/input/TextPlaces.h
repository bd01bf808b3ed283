// input/TextPlaces.h
// Places of a model text that readers and messages go by: lines, and what stands before and behind white space.
// Positions count bytes from 0; the size of the text is one, too.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tarnvexo {

// A line of a text, without its line end.
struct LineSpan {
    std::size_t begin;
    std::size_t end;
};

// The line that holds a position.
LineSpan LineAround(std::string_view text, std::size_t position);

// Where the line behind the one that holds a position begins; the end of the text where there is none.
std::size_t NextLine(std::string_view text, std::size_t position);

// The first position from this one on that is not white space.
std::size_t BehindSpace(std::string_view text, std::size_t position);

// The same, but no further than the end of the line.
std::size_t BehindBlanks(std::string_view text, std::size_t position);

// Behind the last character in front of a position that is not white space.
std::size_t BeforeSpace(std::string_view text, std::size_t position);

// True when no more than white space stands in front of a position in its line, and none at it.
bool IsFirstOfLine(std::string_view text, std::size_t position);

// The number at a position goes on behind a comma, as in 0,012.
bool HasDecimalComma(std::string_view text, std::size_t position);

// The number that stands at a position, as it is written, or the first characters of it.
std::string WrittenNumber(std::string_view text, std::size_t position);

} // namespace tarnvexo
