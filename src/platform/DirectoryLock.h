// platform/DirectoryLock.h
// A directory that one run at a time writes its results into. The lock leaves nothing behind, however the process ends.
// One source per system, like Platform.h.
#pragma once

#include <string>

namespace tarnvexo::platform {

enum class LockState {
    Held,
    Occupied, // another run has it
    Unknown   // the file system does not lock, or the directory may not be read: whether others write is not known
};

class DirectoryLock {
public:
    // Waits a moment for a run that is just ending, no longer.
    explicit DirectoryLock(const std::string& directory);
    ~DirectoryLock();

    DirectoryLock(const DirectoryLock&) = delete;
    DirectoryLock& operator=(const DirectoryLock&) = delete;

    LockState State() const { return state; }

private:
    LockState state = LockState::Unknown;
    int descriptor = -1;    // POSIX: of the directory itself; a process started meanwhile shares the lock
    void* handle = nullptr; // Windows: of a file in it that goes with its last handle
};

} // namespace tarnvexo::platform
