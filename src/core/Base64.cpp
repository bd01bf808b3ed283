#include "core/Base64.h"

#include <cstddef>
#include <cstdint>

namespace tarnvexo {

std::string Base64(std::string_view bytes)
{
    constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    std::string text((bytes.size() + 2) / 3 * 4, '=');
    std::size_t at = 0;
    for (std::size_t i = 0; i < bytes.size(); i += 3) {
        const std::size_t count = bytes.size() - i < 3 ? bytes.size() - i : 3;
        std::uint32_t three = 0; // bytes, those that are missing as 0
        for (std::size_t k = 0; k < 3; ++k) {
            three = three << 8 | (k < count ? static_cast<unsigned char>(bytes[i + k]) : 0u);
        }
        for (std::size_t k = 0; k <= count; ++k) { text[at + k] = digits[three >> (18 - 6 * k) & 63]; }
        at += 4;
    }
    return text;
}

} // namespace tarnvexo
