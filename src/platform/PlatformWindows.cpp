#include "platform/InterruptionState.h"
#include "platform/Platform.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#define WIN32_LEAN_AND_MEAN
#include <cstdio>
#include <cstdlib>
#include <io.h>
#include <mutex>
#include <string>
#include <utility>
#include <vector>
#include <windows.h>
// After windows.h, which it needs.
#include <psapi.h>

namespace tarnvexo::platform {

namespace {

constexpr UINT GbkCodePage = 936;

std::wstring Utf8ToWide(std::string_view text)
{
    if (text.empty()) {
        return {};
    }
    const int bytes = static_cast<int>(text.size());
    std::wstring wide(static_cast<std::size_t>(MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, nullptr, 0)), L'\0');
    MultiByteToWideChar(CP_UTF8, 0, text.data(), bytes, wide.data(), static_cast<int>(wide.size()));
    return wide;
}

// A character that GBK lacks becomes "?".
std::string WideToGbk(const std::wstring& wide)
{
    const int units = static_cast<int>(wide.size());
    const int bytes = WideCharToMultiByte(GbkCodePage, 0, wide.data(), units, nullptr, 0, "?", nullptr);
    std::string gbk(static_cast<std::size_t>(bytes), '\0');
    WideCharToMultiByte(GbkCodePage, 0, wide.data(), units, gbk.data(), bytes, "?", nullptr);
    return gbk;
}

// False when standard output is no console window. A window shows every character, whatever its code page.
bool WriteToConsoleWindow(const std::wstring& wide)
{
    const HANDLE console = GetStdHandle(STD_OUTPUT_HANDLE);
    DWORD mode = 0;
    DWORD written = 0;
    return GetConsoleMode(console, &mode) &&
           WriteConsoleW(console, wide.data(), static_cast<DWORD>(wide.size()), &written, nullptr);
}

} // namespace

void ShowWarningBox(const char* text)
{
    MessageBoxW(nullptr, Utf8ToWide(text).c_str(), L"Warning!", MB_OK);
}

void Pause()
{
    std::system("pause");
}

void WaitForKey()
{
    std::getchar();
}

std::int64_t PerformanceFrequency()
{
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return frequency.QuadPart;
}

std::int64_t PerformanceCounter()
{
    LARGE_INTEGER count;
    QueryPerformanceCounter(&count);
    return count.QuadPart;
}

bool FileExists(const char* path)
{
    constexpr int existence = 0;
    return _access(path, existence) == 0;
}

MappedFile::MappedFile(const char* path)
{
    const HANDLE file = CreateFileW(Utf8ToWide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
                                    FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        return;
    }
    LARGE_INTEGER size = {};
    if (GetFileType(file) == FILE_TYPE_DISK && GetFileSizeEx(file, &size) && size.QuadPart > 0) {
        if (const HANDLE mapping = CreateFileMappingW(file, nullptr, PAGE_READONLY, 0, 0, nullptr)) {
            if (const void* begin = MapViewOfFile(mapping, FILE_MAP_READ, 0, 0, 0)) {
                bytes = {static_cast<const char*>(begin), static_cast<std::size_t>(size.QuadPart)};
            }
            CloseHandle(mapping); // the view stays
        }
    }
    CloseHandle(file);
}

MappedFile::~MappedFile()
{
    if (!bytes.empty()) {
        UnmapViewOfFile(bytes.data());
    }
}

bool ReadStream(const char* path, [[maybe_unused]] int silenceSeconds, StreamJudge goesOn, std::string& bytes)
{
    constexpr std::size_t piece = std::size_t(1) << 20;
    std::FILE* const file = _wfopen(Utf8ToWide(path).c_str(), L"rb");
    if (file == nullptr) {
        return false;
    }
    std::size_t got = 0;
    do {
        const std::size_t size = bytes.size();
        bytes.resize(size + piece);
        got = std::fread(bytes.data() + size, 1, piece, file);
        bytes.resize(size + got);
    } while (got > 0 && (goesOn == nullptr || goesOn(bytes, got)));
    const bool wasRead = std::ferror(file) == 0;
    std::fclose(file);
    return wasRead;
}

// The command processor looks in the current directory first.
void RunProgram(const char* fileName)
{
    std::system(("\"" + std::string(fileName) + "\"").c_str());
}

void WriteStandardOutput(std::string_view text)
{
    const std::wstring wide = Utf8ToWide(text);
    if (WriteToConsoleWindow(wide)) {
        return;
    }
    const std::string gbk = WideToGbk(wide); // a file or a pipe, in text mode: "\n" leaves as "\r\n"
    std::fwrite(gbk.data(), 1, gbk.size(), stdout);
    std::fflush(stdout);
}

bool WriteUtf8Output(std::string_view text)
{
    return WriteToConsoleWindow(Utf8ToWide(text)) ||
           (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0);
}

bool ErrorLinesCanBeRewritten()
{
    const HANDLE console = GetStdHandle(STD_ERROR_HANDLE);
    DWORD mode = 0;
    return GetConsoleMode(console, &mode) && SetConsoleMode(console, mode | ENABLE_VIRTUAL_TERMINAL_PROCESSING);
}

std::uint64_t AvailableMemory()
{
    MEMORYSTATUSEX status;
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) ? status.ullAvailPhys : 0;
}

std::uint64_t ResidentMemory()
{
    PROCESS_MEMORY_COUNTERS counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.WorkingSetSize : 0;
}

std::uint64_t PeakMemory()
{
    PROCESS_MEMORY_COUNTERS counters;
    return GetProcessMemoryInfo(GetCurrentProcess(), &counters, sizeof counters) ? counters.PeakWorkingSetSize : 0;
}

// Large pages need a privilege that users do not have.
void PreferLargePages(void*, std::size_t) {}

void PopulatePages(void*, std::size_t) {}

bool IsWriteProtected(const std::string& path)
{
    const DWORD attributes = GetFileAttributesW(Utf8ToWide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
           (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

void BeginFlush(const std::string&) {}

bool FlushToDisk(const std::string& path, std::string& reason)
{
    const HANDLE file = CreateFileW(Utf8ToWide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                    nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    const bool flushed = file != INVALID_HANDLE_VALUE && FlushFileBuffers(file);
    if (!flushed) {
        reason = "system error " + std::to_string(GetLastError());
    }
    if (file != INVALID_HANDLE_VALUE) {
        CloseHandle(file);
    }
    return flushed;
}

// Here they are errors without further ado.
void MakeStreamFaultsErrors() {}

namespace {

BOOL WINAPI EndInterrupted(DWORD)
{
    InterruptionState& state = Interruption();
    const std::lock_guard lock(state.mutex);
    for (const std::string& path : state.unfinishedFiles) { DeleteFileW(Utf8ToWide(path).c_str()); }
    state.CleanUp();
    std::fputs(state.Notice(), stderr);
    ExitProcess(static_cast<UINT>(state.ExitCode()));
}

} // namespace

int ProcessId()
{
    return static_cast<int>(GetCurrentProcessId());
}

void ExitOnInterrupt()
{
    SetConsoleCtrlHandler(EndInterrupted, TRUE);
}

void SetEnvironmentDefault(const char* name, const char* value)
{
    if (std::getenv(name) == nullptr) {
        _putenv_s(name, value);
    }
}

void SetEnvironment(const char* name, const char* value)
{
    _putenv_s(name, value);
}

void* LoadPlugin(const char* fileName, std::string& reason)
{
    const HMODULE library = LoadLibraryA(fileName);
    if (library == nullptr) {
        reason = std::string(fileName) + ": system error " + std::to_string(GetLastError());
    }
    return reinterpret_cast<void*>(library);
}

void* PluginSymbol(void* library, const char* name)
{
    return reinterpret_cast<void*>(GetProcAddress(static_cast<HMODULE>(library), name));
}

} // namespace tarnvexo::platform
