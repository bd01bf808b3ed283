#include "platform/DirectoryLock.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <windows.h>

namespace tarnvexo::platform {

DirectoryLock::DirectoryLock(const std::string& directory)
{
    const std::string path = directory + "\\tarnvexo.lock";
    const int bytes = static_cast<int>(path.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, path.data(), bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, path.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    constexpr DWORD notShared = 0;
    const HANDLE file = CreateFileW(wide.c_str(), GENERIC_WRITE, notShared, nullptr, OPEN_ALWAYS,
                                    FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    if (file != INVALID_HANDLE_VALUE) {
        handle = file;
        state = LockState::Held;
    } else if (GetLastError() == ERROR_SHARING_VIOLATION) {
        state = LockState::Occupied;
    }
}

DirectoryLock::~DirectoryLock()
{
    if (handle != nullptr) {
        CloseHandle(handle);
    }
}

} // namespace tarnvexo::platform
