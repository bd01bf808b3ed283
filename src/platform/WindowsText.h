// platform/WindowsText.h
// Texts and errors between this program, which has UTF-8, and Windows, which has UTF-16. For the …Windows.cpp of this
// folder.
#pragma once

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <cerrno>
#include <string>
#include <string_view>
#include <system_error>
#include <windows.h>

namespace tarnvexo::platform {

inline std::wstring Wide(std::string_view text)
{
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

// Bytes of a code page; a character that it lacks becomes "?".
inline std::string Narrow(std::wstring_view wide, UINT codePage)
{
    const int units = static_cast<int>(wide.size());
    std::string text(
        static_cast<std::size_t>(WideCharToMultiByte(codePage, 0, wide.data(), units, nullptr, 0, nullptr, nullptr)),
        '\0');
    WideCharToMultiByte(codePage, 0, wide.data(), units, text.data(), static_cast<int>(text.size()), nullptr, nullptr);
    return text;
}

inline std::string Utf8(std::wstring_view wide)
{
    return Narrow(wide, CP_UTF8);
}

// The words of the C library where it has some, so that they are the same on every system; otherwise those of Windows.
inline std::string ReasonOfSystemError(DWORD number)
{
    const std::error_condition condition =
        std::error_code(static_cast<int>(number), std::system_category()).default_error_condition();
    if (condition.category() == std::generic_category()) {
        return condition.message();
    }
    wchar_t text[512];
    DWORD size = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, number, 0, text,
                                sizeof text / sizeof text[0], nullptr);
    while (size > 0 && (text[size - 1] == L'\n' || text[size - 1] == L'\r' || text[size - 1] == L'.')) { --size; }
    return size > 0 ? Utf8({text, size}) : "system error " + std::to_string(number);
}

// The same as errno.
inline int ErrorNumberOf(DWORD number)
{
    const std::error_condition condition =
        std::error_code(static_cast<int>(number), std::system_category()).default_error_condition();
    return condition.category() == std::generic_category() ? condition.value() : EIO;
}

} // namespace tarnvexo::platform
