// app/ModelLoading.h
// A model file of any name, read strictly for the command line: faults come as RunFailure with complete messages.
#pragma once

#include "core/ModelStore.h"
#include "core/Rules.h"
#include "input/StrictReader.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Fills the model and says what is wrong with its text. The model may be used when the reading is usable.
// Errors: throws RunFailure (file error) for a file that cannot be read.
StrictReading TryLoadModel(ModelStore& model, const std::string& fileName, const RuleBook& rules);

// Fills the model; the warnings of the reading, complete messages.
// Errors: throws RunFailure for a file that cannot be read (file error) and, with the messages of all errors, for one
// that is not as the format has it or breaks a rule that is an error (bad model).
std::vector<std::string> LoadModel(ModelStore& model, const std::string& fileName, const RuleBook& rules = RuleBook());

} // namespace tarnvexo
