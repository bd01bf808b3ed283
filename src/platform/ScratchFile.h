// platform/ScratchFile.h
// A file for numbers that do not fit into memory. It has no name that another program would find and is gone when it is
// closed, however the program ends. One source per system, like Platform.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace tarnvexo::platform {

class ScratchFile {
public:
    // In a directory, with room for `bytes` on its disk. Errors: throws std::runtime_error with the system's reason.
    ScratchFile(const std::string& directory, std::uint64_t bytes);
    ~ScratchFile();

    ScratchFile(const ScratchFile&) = delete;
    ScratchFile& operator=(const ScratchFile&) = delete;

    // Bytes from position `at` on; by several threads at the same time. False, with the system's reason, when the disk
    // does not take or give them.
    bool Write(std::uint64_t at, const void* bytes, std::size_t count, std::string& reason);
    bool Read(std::uint64_t at, void* bytes, std::size_t count, std::string& reason);

private:
#ifdef _WIN32
    void* handle;
#else
    int descriptor;
#endif
};

} // namespace tarnvexo::platform
