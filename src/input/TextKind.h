// input/TextKind.h
// What a file is that is no model text at all, told once and before anything of it is read.
#pragma once

#include "input/ScanDiagnostics.h"

#include <cstddef>
#include <string_view>

namespace tarnvexo {

// The fault of an empty file, of UTF-16 and of bytes that are no text; `what` is empty for anything else.
TextFault FaultOfTextKind(std::string_view text);

// Of a stream, in bytes: some three million nodes. It has no size to be judged by beforehand; files may be longer.
constexpr std::size_t LongestStream = std::size_t(1) << 28;

// Whether what has been read so far of a stream may become a model text: it begins as one, holds no zero bytes, and is
// no longer than LongestStream. Looks at the new bytes only.
bool MayBeModelText(std::string_view text, std::size_t newBytes);

} // namespace tarnvexo
