// platform/FilePath.h
// Names of files as this program has them, UTF-8, and as std::filesystem takes them: on Windows a std::string would be
// read in another character set there. Back by path.string(), which is UTF-8 everywhere.
#pragma once

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

namespace tarnvexo::platform {

inline std::filesystem::path PathOf(std::string_view name)
{
    return std::filesystem::path(std::u8string(name.begin(), name.end()));
}

// Reason of a failed file operation where only one program at a time may have a file open, as is usual on Windows.
constexpr const char* FileIsOpenElsewhere = "another program has this file open";

// The reason of a failed file operation in the words of the C library. The system's own are in the user's language and
// character set on Windows.
inline std::string ReasonOf(const std::error_code& error)
{
    return error.default_error_condition().message();
}

// The same for errno behind a call of the C library on a file.
inline std::string ReasonOfFile(int errorNumber)
{
    return errorNumber == EBUSY ? FileIsOpenElsewhere : std::strerror(errorNumber);
}

} // namespace tarnvexo::platform
