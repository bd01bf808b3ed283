// solver/SkylineMemory.h
// Whether a skyline can be addressed and held, and its allocation.
#pragma once

#include "core/ModelStore.h"

#include <cstdint>

namespace tarnvexo {

// 8 bytes / 2^30
constexpr double GigabytesPerEntry = 1.0 / (1 << 27);

// GlobalStiffness with `entries` zeros, and SkylineSize.
// Errors: more entries than 32-bit addresses reach, or than memory holds, end the run with a diagnostic that tells
// entries and gigabytes; modelName is the file it speaks of.
void AllocateSkyline(ModelStore& model, std::int64_t entries, const char* modelName);

} // namespace tarnvexo
