// core/Base64.h
// Bytes as text (RFC 4648, with padding), for files that hold nothing else.
#pragma once

#include <string>
#include <string_view>

namespace tarnvexo {

std::string Base64(std::string_view bytes);

} // namespace tarnvexo
