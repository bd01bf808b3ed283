// app/ModelLoading.h
// A model file of any name, read for the command line: faults come as RunFailure with a complete message.
#pragma once

#include "core/ModelStore.h"

#include <string>

namespace tarnvexo {

// Fills the model.
// Errors: throws RunFailure: a file that cannot be read (file error); another release, a fault of the model, or any
// place that does not match the format (bad model). The console run goes on where text does not match; its results of
// such a file are not what anybody wants.
void LoadModel(ModelStore& model, const std::string& fileName);

} // namespace tarnvexo
