// view/Gzip.h
// gzip (RFC 1952) and Base64 (RFC 4648) of texts in memory.
#pragma once

#include <string>
#include <string_view>

namespace tarnvexo {

std::string GzipCompressed(std::string_view bytes);

// Errors: throws std::runtime_error for what is no whole gzip text.
std::string GzipDecompressed(std::string_view compressed);

// One line, padded with "=".
std::string Base64(std::string_view bytes);

} // namespace tarnvexo
