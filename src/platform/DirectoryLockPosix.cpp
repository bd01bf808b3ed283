#include "platform/DirectoryLock.h"

#include <cerrno>
#include <chrono>
#include <fcntl.h>
#include <sys/file.h>
#include <thread>
#include <unistd.h>

namespace tarnvexo::platform {

namespace {

// A run that was killed has a process that removes its files (platform/FileReplacement): it needs milliseconds.
constexpr int Attempts = 20;
constexpr std::chrono::milliseconds Pause(10);

} // namespace

DirectoryLock::DirectoryLock(const std::string& directory)
{
    descriptor = open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    for (int attempt = 0; attempt < Attempts; ++attempt) {
        if (flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
            state = LockState::Held;
            return;
        }
        if (errno != EWOULDBLOCK && errno != EINTR) {
            return; // network file systems may refuse to lock what cannot be written
        }
        std::this_thread::sleep_for(Pause);
    }
    state = LockState::Occupied;
}

DirectoryLock::~DirectoryLock()
{
    if (descriptor >= 0) {
        close(descriptor);
    }
}

} // namespace tarnvexo::platform
