// checks/Angles.h
// Angles between vectors, in degrees, as the measures of shape tell them.
#pragma once

#include "core/Vector3.h"

#include <cmath>
#include <numbers>

namespace tarnvexo {

constexpr double DegreesPerRadian = 180.0 / std::numbers::pi;

// 0 to 180, exact to rounding for small angles too; 0 if one of them is zero.
inline double AngleBetween(const Vector3& a, const Vector3& b)
{
    return DegreesPerRadian * std::atan2(Length(Cross(a, b)), Dot(a, b));
}

} // namespace tarnvexo
