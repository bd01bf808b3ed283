// input/StrictReader.h
// Reads the model file and takes nothing for granted: every place that is not as core/ModelFileFormats.h has it is an
// error with line, column and what to do, and so are indices outside their tables, numbers that are none, and values
// that no material or section has. Behind a fault the reading goes on at the next record or section, so that one fault
// gives one message and several faults are told in one run.
//
// The grammar and the scans are those of input/ModelFileReader; where this reader finds nothing, both fill the same
// store. A byte-order mark of UTF-8 is skipped.
#pragma once

#include "core/ModelStore.h"
#include "core/Rules.h"
#include "input/SourceDiagnostics.h"

#include <optional>
#include <string_view>

namespace tarnvexo {

// Fills the model from a text in memory. The model may be used when the reading is usable. Severities are those of the
// rules, but for RuleId::Format, which is always an error. Cost: one pass over the text.
StrictReading ReadModelStrictly(ModelStore& model, std::string_view text, const char* fileName, const RuleBook& rules);

// The same from a file, a pipe or a device. Without value: it cannot be read, errno tells why; ETIMEDOUT: nothing has
// come from it for SilenceSeconds. Of what has no end only so much is read as shows that it is no model.
constexpr int SilenceSeconds = 8;
std::optional<StrictReading> ReadModelFileStrictly(ModelStore& model, const char* fileName, const RuleBook& rules);

} // namespace tarnvexo
