#include "platform/DirectoryLock.h"
#include "platform/FilePath.h"
#include "platform/WindowsFiles.h"

namespace tarnvexo::platform {

// Its last handle takes the file away; until then, and while a scanner looks into it, there is no opening it.
DirectoryLock::DirectoryLock(const std::string& directory)
{
    constexpr DWORD notShared = 0;
    constexpr DWORD patience = 200; // milliseconds
    const std::string lock = (PathOf(directory) / "tarnvexo.lock").string();
    const DWORD error = Persistently(
        [&] {
            const HANDLE file = CreateFileW(Wide(lock).c_str(), GENERIC_WRITE, notShared, nullptr, OPEN_ALWAYS,
                                            FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
            if (file == INVALID_HANDLE_VALUE) {
                return GetLastError();
            }
            handle = file;
            return DWORD(ERROR_SUCCESS);
        },
        patience);
    if (error == ERROR_SUCCESS) {
        state = LockState::Held;
    } else if (error == ERROR_SHARING_VIOLATION) {
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
