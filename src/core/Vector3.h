// core/Vector3.h
// Points and directions in space: three doubles x, y, z, with the few operations the element geometry needs.
#pragma once

#include <array>
#include <cmath>

namespace tarnvexo {

using Vector3 = std::array<double, 3>;

constexpr Vector3 operator+(const Vector3& a, const Vector3& b)
{
    return {a[0] + b[0], a[1] + b[1], a[2] + b[2]};
}
constexpr Vector3 operator-(const Vector3& a, const Vector3& b)
{
    return {a[0] - b[0], a[1] - b[1], a[2] - b[2]};
}
constexpr Vector3 operator-(const Vector3& a)
{
    return {-a[0], -a[1], -a[2]};
}
constexpr Vector3 operator*(double s, const Vector3& a)
{
    return {s * a[0], s * a[1], s * a[2]};
}
constexpr Vector3 operator/(const Vector3& a, double s)
{
    return {a[0] / s, a[1] / s, a[2] / s};
}

constexpr double Dot(const Vector3& a, const Vector3& b)
{
    return a[0] * b[0] + a[1] * b[1] + a[2] * b[2];
}

constexpr Vector3 Cross(const Vector3& a, const Vector3& b)
{
    return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}

inline double Length(const Vector3& a)
{
    return std::sqrt(Dot(a, a));
}

// a / |a|; a zero vector gives non-finite components.
inline Vector3 Normalised(const Vector3& a)
{
    return a / Length(a);
}

} // namespace tarnvexo
