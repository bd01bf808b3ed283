// platform/Platform.h
// Everything that differs between operating systems, and nothing else. One source per system:
// PlatformPosix.cpp, PlatformWindows.cpp. All text is UTF-8 on this side of the border.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

namespace tarnvexo::platform {

// Modal notice with the caption "Warning!" and an OK button; returns when the user has seen it.
// POSIX: "[Warning!] <text>" and "Press Enter to continue . . ." on standard error, then one line of standard input is
// read; at end of file it goes on.
void ShowWarningBox(const char* text);

// What stands on the command line behind the name of the program, from the arguments of main.
std::vector<std::string> CommandLineWords(int argc, char** argv);

// True when the program got a console window of its own, which closes with it: it was started by a double click, or a
// file was dropped onto it. As it was at the first call. Never on POSIX systems.
bool HasOwnConsole();

// The console's "pause" command, for the end of a program that has its own console and has not waited for a key yet.
void PauseInOwnConsole();

// The console's "pause" command: "Press any key to continue . . . " on standard output, then one character of standard
// input; at end of file it goes on.
void Pause();

// Waits for one character of standard input; at end of file it goes on.
void WaitForKey();

// Counts per second, and the count now, of a steady clock.
std::int64_t PerformanceFrequency();
std::int64_t PerformanceCounter();

// True when the path names something that exists (it need not be readable).
bool FileExists(const char* path);

// The whole name of a file, from the root of its drive or "//computer/share" on, with "/" between its parts and without
// "." and ".." in it.
std::string AbsoluteName(const std::string& name);

// Why a file or directory that is made under this name would be another one or none at all; empty: it would not.
// Windows has names that stand for devices in every directory, leaves out what stands at the end of others, and takes a
// colon for something else; POSIX systems take every name as it is.
std::string NameFault(const std::string& name);

// Makes a directory with all that it stands in; those that are there stay as they are.
std::error_code MakeDirectories(const std::string& path);

// std::fopen for a name in UTF-8. mode: "r" or "w", or with "b" behind.
std::FILE* OpenFile(const char* path, const char* mode);

// Bytes that "\n" becomes in a file that is written as text.
std::size_t BytesOfLineEnd();

// The bytes of a file as memory, without a copy, while the object lives. Meant for files that are read at once: bytes
// of a file that is made shorter meanwhile cannot be read any more, which ends the process.
class MappedFile {
public:
    explicit MappedFile(const char* path);
    ~MappedFile();

    MappedFile(const MappedFile&) = delete;
    MappedFile& operator=(const MappedFile&) = delete;

    // Empty where there is nothing to map: an empty file, a pipe, a directory, a file that cannot be opened.
    std::string_view Bytes() const { return bytes; }

private:
    std::string_view bytes;
};

// Reads what cannot be mapped, a pipe or a device, to its end, or until goesOn(bytes so far, how many of them are new)
// is false; nullptr: always to the end. False, with errno, when it cannot be read; ETIMEDOUT: nothing came for
// `silenceSeconds`, so that a pipe that nobody writes into holds no run up (AnySilence and Windows: waits).
using StreamJudge = bool (*)(std::string_view bytes, std::size_t newBytes);
constexpr int AnySilence = -1;
bool ReadStream(const char* path, int silenceSeconds, StreamJudge goesOn, std::string& bytes);

// Starts a program of the current directory by its file name and waits until it ends.
void RunProgram(const char* fileName);

// Writes text to standard output: as GBK bytes, or as UTF-8 when standard output is a terminal whose character set is
// UTF-8. Nothing is kept back: the bytes have left the process on return.
void WriteStandardOutput(std::string_view text);

// Writes text to standard output as UTF-8, whatever standard output is. False, with errno, when it cannot.
bool WriteUtf8Output(std::string_view text);

// Writes text to standard error as UTF-8, to a console window as what it shows. What cannot be written is lost.
void WriteErrorOutput(std::string_view text);

// True when standard error is a terminal whose lines can be rewritten in place ("\r", "\x1b[K").
bool ErrorLinesCanBeRewritten();

// Memory that this process can still get without swapping, in bytes; 0 when the system does not tell.
std::uint64_t AvailableMemory();

// Sees to it that this thread and those that are started from now on have a stack of at least `bytes`. Returns what the
// system lets this one have.
std::size_t ProvideStack(std::size_t bytes);

// Memory of this process, in bytes: what it holds now, and the most it has held; 0 when the system does not tell.
std::uint64_t ResidentMemory();
std::uint64_t PeakMemory();

// Asks for large pages behind an array of `bytes` that has been allocated but not yet written: gigabytes are then ready
// in a fraction of the time and need fewer address translations. A hint; systems that do not know it ignore it.
void PreferLargePages(void* array, std::size_t bytes);

// Gives memory to the pages of an array that has been allocated, without changing what stands there; other threads may
// use the array meanwhile. Systems that cannot do it leave that to the first touch.
void PopulatePages(void* array, std::size_t bytes);

// True for a file that may not be written to. (An administrator may write to any but an immutable one.)
bool IsWriteProtected(const std::string& path);

// Lets the system begin to write the bytes of a file to the disk, and does not wait: FlushToDisk then has less to wait
// for. A hint.
void BeginFlush(const std::string& path);

// Returns when the bytes of a file have left the system's memory for the disk: what a power failure would take else.
// False, with the system's reason, when the disk does not take them. What cannot be flushed (a pipe) counts as flushed.
bool FlushToDisk(const std::string& path, std::string& reason);

// std::rename: what bears the name is replaced. False, with the system's reason, when it cannot be.
bool RenameFile(const std::string& from, const std::string& to, std::string& reason);

// Makes standard streams that were closed, or whose reader has gone, give an error to whoever writes to them. Without
// it the first file that is opened would get the number of a closed stream, and with it the stream's text; and a
// reader that leaves, or a file beyond the limit of its size, would end the process without a word.
void MakeStreamFaultsErrors();

// An interruption of the program (Ctrl-C, a request to end, its terminal gone) removes these files before the process
// ends. KeepOnInterrupt takes one from the list.
void RemoveOnInterrupt(const std::string& path);
void KeepOnInterrupt(const std::string& path);

// The notice of an interruption says that nothing was written; from now on that what was written is complete.
void TellOnInterruptOfWrittenFiles();

// While one lives, an interruption waits. For steps that belong together; they may be nested.
class InterruptionHold {
public:
    InterruptionHold();
    ~InterruptionHold();

    InterruptionHold(const InterruptionHold&) = delete;
    InterruptionHold& operator=(const InterruptionHold&) = delete;
};

// Number of this process, of which no other one running has the same.
int ProcessId();

// From now on an interruption ends the process with exit code 130 and a notice on standard error. To be called before
// the process starts threads.
void ExitOnInterrupt();

// What an interruption does from now on, in place of that: cleanUp, then a notice on standard error, then the process
// ends with this code. For what must not be left behind: programs that were started, directories.
struct InterruptEnding {
    int exitCode = 0;
    std::string notice;            // with its line ends
    std::function<void()> cleanUp; // called in a thread of its own; may be empty
};
void EndOnInterrupt(InterruptEnding ending);

// A variable of the process's environment; empty: it is not set.
std::string EnvironmentValue(const char* name);

// Sets one; the first of them unless it is set already.
void SetEnvironmentDefault(const char* name, const char* value);
void SetEnvironment(const char* name, const char* value);

// Loads a library of the program's own, found beside it or where it was installed; nullptr, and the system's reason,
// when that fails; throws std::bad_alloc when memory is too short for it. It stays loaded. PluginSymbol: address of one
// of its functions, nullptr when it has none of that name.
void* LoadPlugin(const char* fileName, std::string& reason);
void* PluginSymbol(void* library, const char* name);

} // namespace tarnvexo::platform
