#include "cli/Quantities.h"

#include "core/NumberText.h"

#include <cmath>
#include <cstdio>

namespace tarnvexo {

namespace {

// One format and one value.
std::string Formatted(const char* format, double value)
{
    char text[64];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

// "1.23 MB": three significant digits and a unit.
std::string ThreeDigits(double value, const char* unit)
{
    const int decimals = value < 9.995 ? 2 : value < 99.95 ? 1 : 0;
    char text[64];
    std::snprintf(text, sizeof text, "%.*f %s", decimals, value, unit);
    return text;
}

// Decimal multiples: 1 kB = 1000 bytes.
std::string SizeText(double bytes)
{
    return bytes < 999.5e3   ? ThreeDigits(bytes / 1e3, "kB")
           : bytes < 999.5e6 ? ThreeDigits(bytes / 1e6, "MB")
                             : ThreeDigits(bytes / 1e9, "GB");
}

} // namespace

const UnitTexts& TextsOfUnits(UnitSystem units)
{
    static constexpr UnitTexts unnamed = {"", "", "", "", "", "", "", "", "", "rad/time²", "", 0.0};
    static constexpr UnitTexts si = {"SI",  "N, m, kg", "m",    "Pa",     "kg",    "N",
                                     "N·m", "J",        "m/s²", "rad/s²", "kg·m²", 9.80665};
    static constexpr UnitTexts mmTonneSecond = {"mm-t-s", "N, mm, t", "mm",    "MPa",    "t",     "N",
                                                "N·mm",   "mJ",       "mm/s²", "rad/s²", "t·mm²", 9806.65};
    switch (units) {
    case UnitSystem::SI:
        return si;
    case UnitSystem::MillimetreTonneSecond:
        return mmTonneSecond;
    case UnitSystem::Unnamed:
        break;
    }
    return unnamed;
}

std::string NumberText(double value)
{
    char text[NumberTextCapacity];
    return std::string(text, WriteNumber(text, value == 0.0 ? 0.0 : value));
}

std::string DurationText(double seconds)
{
    if (!(seconds < 59.95)) {
        const double minutes = std::floor((seconds + 0.5) / 60.0);
        if (!(minutes < 60.0)) {
            const double hours = std::floor((seconds + 30.0) / 3600.0);
            if (!(hours < 1000.0)) {
                return Formatted("%.0f days", hours / 24.0);
            }
            return Formatted("%.0f h ", hours) +
                   Formatted("%02.0f min", std::floor((seconds + 30.0 - 3600.0 * hours) / 60.0));
        }
        return Formatted("%.0f min ", minutes) + Formatted("%02.0f s", std::floor(seconds + 0.5 - 60.0 * minutes));
    }
    return Formatted(seconds < 9.995 ? "%.2f s" : "%.1f s", seconds);
}

std::string EstimateText(double seconds)
{
    if (seconds < 1.0) {
        return "less than 1 s";
    }
    return "about " + (seconds < 59.5 ? Formatted("%.0f s", seconds) : DurationText(seconds));
}

std::string MemoryText(double gigabytes)
{
    return SizeText(gigabytes * 1e9);
}

std::string FileSizeText(std::uint64_t bytes)
{
    return bytes < 1000 ? CountText(static_cast<std::int64_t>(bytes), "byte") : SizeText(static_cast<double>(bytes));
}

std::string CountText(std::int64_t count, const char* noun)
{
    return std::to_string(count) + " " + noun + (count == 1 ? "" : "s");
}

} // namespace tarnvexo
