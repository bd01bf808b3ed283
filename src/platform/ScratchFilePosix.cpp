#include "platform/ScratchFile.h"

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <stdexcept>
#include <unistd.h>

namespace tarnvexo::platform {

namespace {

// Without a name from the beginning where the system can do that, else without one from now on.
int OpenUnnamed(const std::string& directory)
{
#ifdef O_TMPFILE
    const int unnamed = open(directory.c_str(), O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
    if (unnamed >= 0) {
        return unnamed;
    }
#endif
    std::string path = directory + "/.tarnvexo-scratch-XXXXXX";
    const int descriptor = mkstemp(path.data());
    if (descriptor >= 0) {
        unlink(path.c_str());
        fcntl(descriptor, F_SETFD, FD_CLOEXEC);
    }
    return descriptor;
}

} // namespace

ScratchFile::ScratchFile(const std::string& directory, std::uint64_t bytes) : descriptor(OpenUnnamed(directory))
{
    if (descriptor < 0) {
        throw std::runtime_error(std::strerror(errno));
    }
    int refusal = 0;
    do {
        refusal = bytes == 0 ? 0 : posix_fallocate(descriptor, 0, static_cast<off_t>(bytes));
    } while (refusal == EINTR);                                       // the process was stopped meanwhile
    if (refusal != 0 && refusal != EOPNOTSUPP && refusal != EINVAL) { // then the writes will tell
        close(descriptor);
        throw std::runtime_error(std::strerror(refusal));
    }
}

ScratchFile::~ScratchFile()
{
    close(descriptor);
}

bool ScratchFile::Write(std::uint64_t at, const void* bytes, std::size_t count, std::string& reason)
{
    const char* from = static_cast<const char*>(bytes);
    while (count > 0) {
        const ssize_t written = pwrite(descriptor, from, count, static_cast<off_t>(at));
        if (written < 0 && errno == EINTR) {
            continue;
        }
        if (written <= 0) {
            reason = std::strerror(written < 0 ? errno : ENOSPC);
            return false;
        }
        from += written;
        at += static_cast<std::uint64_t>(written);
        count -= static_cast<std::size_t>(written);
    }
    return true;
}

bool ScratchFile::Read(std::uint64_t at, void* bytes, std::size_t count, std::string& reason)
{
    char* to = static_cast<char*>(bytes);
    while (count > 0) {
        const ssize_t got = pread(descriptor, to, count, static_cast<off_t>(at));
        if (got < 0 && errno == EINTR) {
            continue;
        }
        if (got <= 0) {
            reason = got < 0 ? std::strerror(errno) : "the file ends too early";
            return false;
        }
        to += got;
        at += static_cast<std::uint64_t>(got);
        count -= static_cast<std::size_t>(got);
    }
    return true;
}

} // namespace tarnvexo::platform
