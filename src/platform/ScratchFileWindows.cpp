#include "platform/FilePath.h"
#include "platform/ScratchFile.h"
#include "platform/WindowsText.h"

#include <algorithm>
#include <filesystem>
#include <stdexcept>

namespace tarnvexo::platform {

namespace {

constexpr std::size_t LargestTransfer = std::size_t(1) << 30; // one call counts its bytes in 32 bits

std::string LastReason()
{
    return ReasonOfSystemError(GetLastError());
}

OVERLAPPED Position(std::uint64_t at)
{
    OVERLAPPED position = {};
    position.Offset = static_cast<DWORD>(at);
    position.OffsetHigh = static_cast<DWORD>(at >> 32);
    return position;
}

} // namespace

ScratchFile::ScratchFile(const std::string& directory, std::uint64_t bytes)
{
    const std::filesystem::path folder = PathOf(directory);
    handle = INVALID_HANDLE_VALUE;
    for (int attempt = 0; attempt < 100 && handle == INVALID_HANDLE_VALUE; ++attempt) {
        const std::string name = "tarnvexo-scratch-" + std::to_string(GetCurrentProcessId()) + "-" +
                                 std::to_string(GetTickCount64() + attempt) + ".tmp";
        handle = CreateFileW((folder / name).c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                             FILE_ATTRIBUTE_TEMPORARY | FILE_FLAG_DELETE_ON_CLOSE, nullptr);
        if (handle == INVALID_HANDLE_VALUE && GetLastError() != ERROR_FILE_EXISTS) {
            break;
        }
    }
    if (handle == INVALID_HANDLE_VALUE) {
        throw std::runtime_error(LastReason());
    }
    LARGE_INTEGER end;
    end.QuadPart = static_cast<LONGLONG>(bytes);
    if (!SetFilePointerEx(handle, end, nullptr, FILE_BEGIN) || !SetEndOfFile(handle)) { // takes the room on the disk
        const std::string reason = LastReason();
        CloseHandle(handle);
        throw std::runtime_error(reason);
    }
}

ScratchFile::~ScratchFile()
{
    CloseHandle(handle);
}

bool ScratchFile::Write(std::uint64_t at, const void* bytes, std::size_t count, std::string& reason)
{
    const char* from = static_cast<const char*>(bytes);
    while (count > 0) {
        OVERLAPPED position = Position(at);
        DWORD written = 0;
        if (!WriteFile(handle, from, static_cast<DWORD>(std::min(count, LargestTransfer)), &written, &position)) {
            reason = LastReason();
            return false;
        }
        from += written;
        at += written;
        count -= written;
    }
    return true;
}

bool ScratchFile::Read(std::uint64_t at, void* bytes, std::size_t count, std::string& reason)
{
    char* to = static_cast<char*>(bytes);
    while (count > 0) {
        OVERLAPPED position = Position(at);
        DWORD got = 0;
        if (!ReadFile(handle, to, static_cast<DWORD>(std::min(count, LargestTransfer)), &got, &position) || got == 0) {
            reason = LastReason();
            return false;
        }
        to += got;
        at += got;
        count -= got;
    }
    return true;
}

} // namespace tarnvexo::platform
