// checks/FindingText.h
// Words of details and summaries of findings.
#pragma once

#include "core/NumberText.h"
#include "core/Vector3.h"

#include <cstdint>
#include <string>

namespace tarnvexo {

// Six significant digits; a zero has no sign.
inline std::string ShortNumber(double value)
{
    char text[2 * NumberTextCapacity];
    return std::string(text, WriteNumber(text, value == 0.0 ? 0.0 : value));
}

// "1 shell", "12 shells".
inline std::string Counted(std::int64_t count, const std::string& noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

// "(1, 2.5, 0)".
inline std::string PlaceText(const Vector3& place)
{
    return "(" + ShortNumber(place[0]) + ", " + ShortNumber(place[1]) + ", " + ShortNumber(place[2]) + ")";
}

} // namespace tarnvexo
