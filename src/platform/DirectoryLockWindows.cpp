#include "platform/DirectoryLock.h"
#include "platform/WindowsText.h"

namespace tarnvexo::platform {

DirectoryLock::DirectoryLock(const std::string& directory)
{
    constexpr DWORD notShared = 0;
    const HANDLE file = CreateFileW(Wide(directory + "\\tarnvexo.lock").c_str(), GENERIC_WRITE, notShared, nullptr,
                                    OPEN_ALWAYS, FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
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
