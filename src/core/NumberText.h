// core/NumberText.h
// Numbers as text, as a default std::ostream writes them: general notation with six significant digits (printf "%g"),
// "inf", "-inf", "nan", "-nan", "-0" included. Rounding is that of the exact binary value, ties to the even digit.
// No locale: the decimal point is always ".".
#pragma once

#include <cstddef>

namespace tarnvexo {

// Room that a number needs at most: "-1.23457e-308" and "-9223372036854775808" with some to spare.
constexpr std::size_t NumberTextCapacity = 32;

// Writes the text at out, right-aligned in a field of `width` characters and never cut, and returns the position behind
// its last character; no terminating zero. Characters up to out + width + NumberTextCapacity may be overwritten.
char* WriteNumber(char* out, double value, int width = 0);
char* WriteInteger(char* out, long long value, int width = 0);

} // namespace tarnvexo
