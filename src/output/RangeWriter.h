// output/RangeWriter.h
// A long table of a result file, formatted by several threads. It is cut into ranges of records; every thread formats
// one range at a time into a buffer of its own and hands its text on when all ranges before it have been written. The
// bytes are those of one thread going through the table, whatever the number of threads.
//
//     WriteRanges(file, elements.size(), 256, [&](TextWriter& text, std::size_t begin, std::size_t end) {
//         for (std::size_t e = begin; e < end; ++e) { ... }
//     });
//
// Memory: one buffer per thread. A range whose text is longer than the buffer is right too; its thread then waits for
// its turn in the middle of it.
#pragma once

#include "core/TextWriter.h"
#include "output/TextFile.h"

#include <cstddef>
#include <functional>

namespace tarnvexo {

// Writes the records begin ... end - 1. Called by several threads at once.
using RangeText = std::function<void(TextWriter& text, std::size_t begin, std::size_t end)>;

// The table behind what has been written to the file; grain > 0 is the number of records of a range. A range that
// throws ends the table; the exception comes out here.
void WriteRanges(TextFile& file, std::size_t count, std::size_t grain, const RangeText& format);

} // namespace tarnvexo
