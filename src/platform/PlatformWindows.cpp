#include "platform/InterruptionState.h"
#include "platform/Platform.h"
#include "platform/WindowsFiles.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <io.h>
#include <iterator>
#include <mutex>
#include <psapi.h>
#include <shellapi.h>
#include <string>
#include <vector>

namespace tarnvexo::platform {

namespace {

constexpr UINT GbkCodePage = 936;

bool keyHasBeenAwaited = false;

bool IsConsole(DWORD stream)
{
    DWORD mode = 0;
    return GetConsoleMode(GetStdHandle(stream), &mode) != 0;
}

// False when the stream is no console window. A window shows every character, whatever its code page.
bool WriteToConsoleWindow(DWORD stream, std::wstring_view wide)
{
    constexpr std::size_t most = 8192; // units that older systems take at once
    if (!IsConsole(stream)) {
        return false;
    }
    while (!wide.empty()) {
        std::size_t size = std::min(wide.size(), most);
        if (size < wide.size() && IS_HIGH_SURROGATE(wide[size - 1])) {
            --size;
        }
        DWORD written = 0;
        if (!WriteConsoleW(GetStdHandle(stream), wide.data(), static_cast<DWORD>(size), &written, nullptr) ||
            written == 0) {
            return false;
        }
        wide.remove_prefix(written);
    }
    return true;
}

// Erases the line of the cursor, which then stands at its begin. False where there is no console window.
bool EraseLine(DWORD stream)
{
    const HANDLE console = GetStdHandle(stream);
    CONSOLE_SCREEN_BUFFER_INFO screen = {};
    if (!GetConsoleScreenBufferInfo(console, &screen)) {
        return false;
    }
    const COORD begin = {0, screen.dwCursorPosition.Y};
    DWORD erased = 0;
    FillConsoleOutputCharacterW(console, L' ', static_cast<DWORD>(screen.dwSize.X), begin, &erased);
    return SetConsoleCursorPosition(console, begin) != 0;
}

std::wstring FullPath(const std::string& name)
{
    std::wstring path(GetFullPathNameW(Wide(name).c_str(), 0, nullptr, nullptr), L'\0');
    path.resize(GetFullPathNameW(Wide(name).c_str(), static_cast<DWORD>(path.size()), path.data(), nullptr));
    return path;
}

// Of a program that was started without a window, or where nobody is at a screen (a scheduled task).
bool IsHidden()
{
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    GetStartupInfoW(&start);
    USEROBJECTFLAGS station = {};
    DWORD size = 0;
    const bool isSeen =
        GetUserObjectInformationW(GetProcessWindowStation(), UOI_FLAGS, &station, sizeof station, &size) &&
        (station.dwFlags & WSF_VISIBLE) != 0;
    return !isSeen || ((start.dwFlags & STARTF_USESHOWWINDOW) != 0 && start.wShowWindow == SW_HIDE);
}

// "NUL" and "nul.txt": with anything behind a full stop, too.
bool IsDevice(std::string_view part)
{
    constexpr std::string_view devices[] = {"CON", "PRN", "AUX", "NUL", "CONIN$", "CONOUT$"};
    constexpr std::string_view ports[] = {"COM", "LPT"}; // with a digit behind
    constexpr std::string_view digits[] = {"1", "2", "3", "4", "5", "6", "7", "8", "9", "¹", "²", "³"};
    std::string name(part.substr(0, part.find('.')));
    while (name.ends_with(' ')) { name.pop_back(); }
    for (char& c : name) { c = c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; }
    const auto isOneOf = [](std::string_view word, const auto& words) {
        return std::find(std::begin(words), std::end(words), word) != std::end(words);
    };
    return isOneOf(name, devices) ||
           (isOneOf(std::string_view(name).substr(0, 3), ports) && isOneOf(std::string_view(name).substr(3), digits));
}

// Of one part of a path.
std::string PartFault(std::string_view part)
{
    constexpr std::string_view ofNoName = "<>:\"|?*";
    const std::string shown = "\"" + std::string(part) + "\"";
    if (part.empty() || part == "." || part == "..") {
        return "";
    }
    if (IsDevice(part)) {
        return shown + " is a device in every folder of Windows";
    }
    if (part.ends_with('.') || part.ends_with(' ')) {
        return "Windows leaves out the " + std::string(part.ends_with('.') ? "full stop" : "blank") +
               " at the end of " + shown;
    }
    const std::size_t at = part.find_first_of(ofNoName);
    return at == std::string_view::npos
               ? ""
               : "names of Windows have no \"" + std::string(1, part[at]) + "\", as " + shown + " has";
}

} // namespace

std::vector<std::string> CommandLineWords(int, char**)
{
    int count = 0;
    wchar_t** const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    std::vector<std::string> words;
    for (int i = 1; i < count; ++i) { words.push_back(Utf8(wide[i])); }
    LocalFree(wide);
    return words;
}

// A console that this process alone is attached to. Programs that start this one without a window get one too, but
// without a window, or with the streams elsewhere.
bool HasOwnConsole()
{
    static const bool hasIt = [] { // others may join later
        DWORD process = 0;
        return GetConsoleProcessList(&process, 1) == 1 && GetConsoleWindow() != nullptr &&
               IsConsole(STD_INPUT_HANDLE) && IsConsole(STD_OUTPUT_HANDLE) && !IsHidden();
    }();
    return hasIt;
}

void PauseInOwnConsole()
{
    if (!keyHasBeenAwaited && HasOwnConsole()) {
        Pause();
    }
}

void ShowWarningBox(const char* text)
{
    MessageBoxW(nullptr, Wide(text).c_str(), L"Warning!", MB_OK);
}

void Pause()
{
    keyHasBeenAwaited = true;
    std::system("pause");
}

void WaitForKey()
{
    keyHasBeenAwaited = true;
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

std::string AbsoluteName(const std::string& name)
{
    std::string path = Utf8(FullPath(name));
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

std::string NameFault(const std::string& name)
{
    std::string_view rest = name;
    if (rest.starts_with("\\\\?\\") || rest.starts_with("\\\\.\\")) {
        return ""; // taken as they are
    }
    if (rest.size() >= 2 && rest[1] == ':') {
        rest.remove_prefix(2); // the drive
    }
    std::string fault;
    while (fault.empty() && !rest.empty()) {
        const std::size_t end = std::min(rest.find_first_of("/\\"), rest.size());
        fault = PartFault(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return fault;
}

// By its whole name: the library takes "C:name" for a name within a directory "C:", and looks for a drive that is not
// there until the name is too long.
std::error_code MakeDirectories(const std::string& path)
{
    const std::filesystem::path whole = FullPath(path);
    std::error_code error;
    if (!std::filesystem::exists(whole.root_path(), error)) {
        return error ? error : std::make_error_code(std::errc::no_such_file_or_directory);
    }
    std::filesystem::create_directories(whole, error);
    return error;
}

bool FileExists(const char* path)
{
    return GetFileAttributesW(Wide(path).c_str()) != INVALID_FILE_ATTRIBUTES;
}

// Others may delete the file, unlike one of the C library's: an interruption removes files while they are written.
std::FILE* OpenFile(const char* path, const char* mode)
{
    const bool isWritten = *mode == 'w';
    const bool isText = std::string_view(mode).find('b') == std::string_view::npos;
    const HANDLE handle = CreateFileW(Wide(path).c_str(), isWritten ? GENERIC_WRITE : GENERIC_READ,
                                      FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                      isWritten ? CREATE_ALWAYS : OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (handle == INVALID_HANDLE_VALUE) {
        const DWORD error = GetLastError();
        const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
        const bool isDirectory = attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
        errno = isDirectory ? EISDIR : ErrorNumberOf(error); // as elsewhere
        return nullptr;
    }
    const int descriptor = _open_osfhandle(reinterpret_cast<std::intptr_t>(handle),
                                           (isWritten ? _O_WRONLY : _O_RDONLY) | (isText ? _O_TEXT : _O_BINARY));
    if (descriptor < 0) {
        CloseHandle(handle);
        return nullptr;
    }
    std::FILE* const file = _fdopen(descriptor, mode);
    if (file == nullptr) {
        _close(descriptor);
    }
    return file;
}

std::size_t BytesOfLineEnd()
{
    return 2; // "\r\n"
}

MappedFile::MappedFile(const char* path)
{
    const HANDLE file = CreateFileW(Wide(path).c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr, OPEN_EXISTING,
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
    std::FILE* const file = OpenFile(path, "rb");
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

// By its full name, and without the system's shell, which has no network folder as its current one.
void RunProgram(const char* fileName)
{
    STARTUPINFOW start = {};
    start.cb = sizeof start;
    PROCESS_INFORMATION started = {};
    const std::wstring path = FullPath(fileName);
    std::wstring line = L"\"" + path + L"\"";
    constexpr BOOL inheritsStreams = TRUE;
    if (!CreateProcessW(path.c_str(), line.data(), nullptr, nullptr, inheritsStreams, 0, nullptr, nullptr, &start,
                        &started)) {
        WriteErrorOutput(std::string(fileName) + ": error: it cannot be started: " + ReasonOfFileError(GetLastError()) +
                         "\n");
        return;
    }
    CloseHandle(started.hThread);
    WaitForSingleObject(started.hProcess, INFINITE);
    CloseHandle(started.hProcess);
}

void WriteStandardOutput(std::string_view text)
{
    const std::wstring wide = Wide(text);
    if (WriteToConsoleWindow(STD_OUTPUT_HANDLE, wide)) {
        return;
    }
    const std::string gbk = Narrow(wide, GbkCodePage); // a file or a pipe, in text mode: "\n" leaves as "\r\n"
    std::fwrite(gbk.data(), 1, gbk.size(), stdout);
    std::fflush(stdout);
}

bool WriteUtf8Output(std::string_view text)
{
    return WriteToConsoleWindow(STD_OUTPUT_HANDLE, Wide(text)) ||
           (std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0);
}

// A line that is rewritten is erased here: consoles know "\x1b[K" from a release of Windows 10 on, and when asked to.
void WriteErrorOutput(std::string_view text)
{
    constexpr std::string_view rewritten = "\r\x1b[K";
    if (text.starts_with(rewritten) && EraseLine(STD_ERROR_HANDLE)) {
        text.remove_prefix(rewritten.size());
    }
    if (!WriteToConsoleWindow(STD_ERROR_HANDLE, Wide(text))) {
        std::fwrite(text.data(), 1, text.size(), stderr);
        std::fflush(stderr);
    }
}

bool ErrorLinesCanBeRewritten()
{
    return IsConsole(STD_ERROR_HANDLE); // by WriteErrorOutput
}

// Memory is refused, too, where the sum that the system has promised reaches that of memory and page file.
std::uint64_t AvailableMemory()
{
    MEMORYSTATUSEX status;
    status.dwLength = sizeof status;
    return GlobalMemoryStatusEx(&status) ? std::min(status.ullAvailPhys, status.ullAvailPageFile) : 0;
}

// The program file says how large it is, 2 MB by the linker's custom.
std::size_t ProvideStack(std::size_t bytes)
{
    return bytes;
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
    const DWORD attributes = GetFileAttributesW(Wide(path).c_str());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0 &&
           (attributes & FILE_ATTRIBUTE_READONLY) != 0;
}

void BeginFlush(const std::string&) {}

bool FlushToDisk(const std::string& path, std::string& reason)
{
    const DWORD error = Persistently([&] {
        const HANDLE file =
            CreateFileW(Wide(path).c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                        nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (file == INVALID_HANDLE_VALUE) {
            return GetLastError();
        }
        const DWORD refusal = FlushFileBuffers(file) ? ERROR_SUCCESS : GetLastError();
        CloseHandle(file);
        return refusal;
    });
    if (error != ERROR_SUCCESS) {
        reason = ReasonOfFileError(error);
    }
    return error == ERROR_SUCCESS;
}

// Of a file that is open elsewhere Windows says that access is denied.
bool RenameFile(const std::string& from, const std::string& to, std::string& reason)
{
    DWORD error = Persistently([&] { return MoveNow(from, to); });
    if (error == ERROR_ACCESS_DENIED) {
        const HANDLE target =
            CreateFileW(Wide(to).c_str(), DELETE, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                        OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
        if (target != INVALID_HANDLE_VALUE) {
            CloseHandle(target);
        } else if (GetLastError() == ERROR_SHARING_VIOLATION) {
            error = ERROR_SHARING_VIOLATION;
        }
    }
    if (error != ERROR_SUCCESS) {
        reason = ReasonOfFileError(error);
    }
    return error == ERROR_SUCCESS;
}

// Here they are errors without further ado.
void MakeStreamFaultsErrors() {}

namespace {

BOOL WINAPI EndInterrupted(DWORD)
{
    InterruptionState& state = Interruption();
    const std::lock_guard lock(state.mutex);
    for (const std::string& path : state.unfinishedFiles) { DeleteFileW(Wide(path).c_str()); }
    state.CleanUp();
    WriteErrorOutput(state.Notice());
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

// Of the system's copy, which started programs inherit, not that of the C library.
std::string EnvironmentValue(const char* name)
{
    std::wstring value(GetEnvironmentVariableW(Wide(name).c_str(), nullptr, 0), L'\0');
    value.resize(GetEnvironmentVariableW(Wide(name).c_str(), value.data(), static_cast<DWORD>(value.size())));
    return Utf8(value);
}

void SetEnvironmentDefault(const char* name, const char* value)
{
    if (EnvironmentValue(name).empty()) {
        SetEnvironment(name, value);
    }
}

void SetEnvironment(const char* name, const char* value)
{
    SetEnvironmentVariableW(Wide(name).c_str(), Wide(value).c_str());
}

// The Windows programs have everything linked in.
void* LoadPlugin(const char* fileName, std::string& reason)
{
    reason = std::string(fileName) + ": there are no plug-ins on Windows";
    return nullptr;
}

void* PluginSymbol(void*, const char*)
{
    return nullptr;
}

} // namespace tarnvexo::platform
