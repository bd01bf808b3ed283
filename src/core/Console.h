// core/Console.h
// Standard output of the program. Texts are UTF-8 here and leave as the platform writes them (GBK bytes, see
// platform/Platform.h). All console text goes through one buffer, so that it keeps its order.
#pragma once

#include "core/TextWriter.h"

namespace tarnvexo {

// The console as a stream of formatted text. Buffered: end a message with EndConsoleLine, or call FlushConsole.
TextWriter& Console();

// A line end, and everything written so far leaves the program.
void EndConsoleLine();
void FlushConsole();

// Formatted text as printf makes it. Stays in the buffer until the next flush.
[[gnu::format(printf, 1, 2)]] void PrintConsole(const char* format, ...);

// Text and a line end, flushed.
void PrintConsoleLine(const char* text);

} // namespace tarnvexo
