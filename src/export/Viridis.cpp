#include "export/Viridis.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr double Levels = 255.0;
constexpr int Colours[][3] = {{68, 1, 84},    {72, 24, 106},  {71, 45, 123},  {66, 64, 134},  {59, 82, 139},
                              {51, 99, 141},  {44, 114, 142}, {38, 130, 142}, {33, 145, 140}, {31, 160, 136},
                              {40, 174, 128}, {63, 188, 115}, {94, 201, 98},  {132, 212, 75}, {173, 220, 48},
                              {216, 226, 25}, {253, 231, 37}};
constexpr int Steps = static_cast<int>(sizeof Colours / sizeof Colours[0]) - 1;

} // namespace

std::array<double, 3> ViridisColour(double share)
{
    const double place = std::clamp(share, 0.0, 1.0) * Steps;
    const int step = std::min(static_cast<int>(place), Steps - 1);
    std::array<double, 3> colour;
    for (std::size_t k = 0; k < 3; ++k) {
        const double from = Colours[step][k], to = Colours[step + 1][k];
        colour[k] = (from + (to - from) * (place - step)) / Levels;
    }
    return colour;
}

double LinearIntensity(double sRgb)
{
    return sRgb <= 0.04045 ? sRgb / 12.92 : std::pow((sRgb + 0.055) / 1.055, 2.4);
}

} // namespace tarnvexo
