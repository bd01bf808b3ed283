// cli/ModelFiles.h
// Model files as the commands refine and renumber take and give them, and the few lines they print about it.
#pragma once

#include "core/ModelStore.h"

#include <cstdint>
#include <string>

namespace tarnvexo {

// Reads the model that MODEL means (cli/CommandFiles). Places that did not match are told on standard error.
// Throws RunFailure: ExitFile when the file cannot be read, ExitBadModel when it cannot be a model.
void LoadModelTellingWarnings(const std::string& model, ModelStore& store);

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
