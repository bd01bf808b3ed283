// cli/ModelFiles.h
// What the commands refine and renumber print about a model before and after.
#pragma once

#include "core/ModelStore.h"

#include <cstdint>
#include <string>

namespace tarnvexo {

// What a model costs a direct solver.
struct ModelSize {
    std::int64_t nodes = 0;
    std::int64_t elements = 0;
    std::int64_t equations = 0;
    std::int64_t skylineEntries = 0; // of the console run's matrix
};

// Lays out the skyline of the model for it.
ModelSize SizeOfModel(ModelStore& store);

// Table with the columns "before" and "after", and the file that was written.
std::string SizeChangeText(const ModelSize& before, const ModelSize& after, const std::string& writtenFile);

} // namespace tarnvexo
