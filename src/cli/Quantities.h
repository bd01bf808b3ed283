// cli/Quantities.h
// Numbers with their units as people read them, shared by report, progress display and summaries.
#pragma once

#include <cstdint>
#include <string>

namespace tarnvexo {

// The units that the user says the model is in. Nothing is converted: the name adds unit texts and accelerations in g.
enum class UnitSystem { Unnamed, SI, MillimetreTonneSecond };

struct UnitTexts {
    const char* name;   // as on the command line
    const char* system; // as in checks/UnitSystems.h
    const char* length;
    const char* stress;
    const char* mass;
    const char* force;
    const char* moment;
    const char* energy;
    const char* acceleration;
    const char* angularAcceleration;
    const char* inertia;
    double standardGravity; // in the system's unit of acceleration; 0: not known
};
const UnitTexts& TextsOfUnits(UnitSystem units);

// Six significant digits, as in the result files; a zero has no sign.
std::string NumberText(double value);

// 0.42 s, 12.3 s, 4 min 05 s, 2 h 07 min
std::string DurationText(double seconds);

// An estimate: "about 3 s", "about 4 min 05 s", "less than 1 s"
std::string EstimateText(double seconds);

// 412 MB, 1.20 GB; decimal multiples, as of files: 1 GB = 1e9 bytes
std::string MemoryText(double gigabytes);

// 812 bytes, 12.4 kB, 3.21 MB; decimal multiples
std::string FileSizeText(std::uint64_t bytes);

// 1 node, 2 nodes
std::string CountText(std::int64_t count, const char* noun);

} // namespace tarnvexo
