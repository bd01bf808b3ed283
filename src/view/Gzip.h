// view/Gzip.h
// gzip (RFC 1952) of texts in memory.
#pragma once

#include <string>
#include <string_view>

namespace tarnvexo {

std::string GzipCompressed(std::string_view bytes);

// Errors: throws std::runtime_error for what is no whole gzip text.
std::string GzipDecompressed(std::string_view compressed);

} // namespace tarnvexo
