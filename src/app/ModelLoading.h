// app/ModelLoading.h
// A model file of any name, read for the command line: faults come as RunFailure with a complete message.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// Fills the model. Returns warnings about text that did not match the format, each with its line end.
// Errors: throws RunFailure: a file that cannot be read (file error), another release or a fault of the model (bad
// model).
std::string LoadModel(ModelStore& model, const std::string& fileName);

} // namespace tarnvexo
