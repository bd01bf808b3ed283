#include "platform/InterruptionState.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <filesystem>
#include <iconv.h>
#include <inttypes.h>
#include <langinfo.h>
#include <locale.h>
#include <mutex>
#include <new>
#include <poll.h>
#include <pthread.h>
#include <ratio>
#include <string>
#include <sys/mman.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>
#include <utility>
#include <vector>

namespace tarnvexo::platform {

namespace {

// Writes all bytes: an interrupted or partial write goes on where it stopped. False, with errno, when it cannot.
bool WriteAll(int descriptor, std::string_view bytes)
{
    while (!bytes.empty()) {
        const ssize_t written = write(descriptor, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) { // a pipe in non-blocking mode is full: wait until the reader has taken some
            pollfd room = {descriptor, POLLOUT, 0};
            poll(&room, 1, -1);
        } else if (errno != EINTR) {
            return false;
        }
    }
    return true;
}

// One byte of standard input, or false at its end. Unbuffered: what is not asked for stays for a started program.
bool ReadByte(char& byte)
{
    ssize_t count = 0;
    do {
        count = read(STDIN_FILENO, &byte, 1);
    } while (count < 0 && errno == EINTR);
    return count == 1;
}

bool IsUtf8Terminal()
{
    if (!isatty(STDOUT_FILENO)) {
        return false;
    }
    // The user's character set, without touching the locale that formats numbers.
    const locale_t user = newlocale(LC_CTYPE_MASK, "", nullptr);
    if (user == nullptr) {
        return false;
    }
    const bool utf8 = std::strcmp(nl_langinfo_l(CODESET, user), "UTF-8") == 0;
    freelocale(user);
    return utf8;
}

bool IsAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

// Bytes of the first character of a UTF-8 text: its first byte and the continuation bytes behind it.
std::size_t CharacterSize(std::string_view text)
{
    constexpr std::size_t longest = 4;
    std::size_t size = 1;
    while (size < longest && size < text.size() && (static_cast<unsigned char>(text[size]) & 0xC0) == 0x80) { ++size; }
    return size;
}

iconv_t OpenGbkConverter()
{
    const iconv_t converter = iconv_open("GBK", "UTF-8");
    if (converter == iconv_t(-1)) {
        std::fputs("standard output: error: Chinese console text cannot be converted to GBK and shows as \"?\"\n"
                   "  expected: the C library's converter module for GBK\n"
                   "  to do:    install it (package libc-gconv-modules-extra on newer Debian systems)\n",
                   stderr);
    }
    return converter;
}

// ASCII is the same in both sets; a character that GBK lacks becomes "?".
std::string Utf8ToGbk(std::string_view text)
{
    std::string gbk;
    gbk.reserve(text.size());
    while (!text.empty()) {
        if (IsAscii(text.front())) {
            gbk.push_back(text.front());
            text.remove_prefix(1);
            continue;
        }
        static const iconv_t converter = OpenGbkConverter();
        std::size_t inputLeft = CharacterSize(text);
        std::string character(text.substr(0, inputLeft)); // iconv wants to be able to write where it reads
        text.remove_prefix(inputLeft);
        char* input = character.data();
        char converted[4];
        char* output = converted;
        std::size_t outputLeft = sizeof converted;
        if (converter != iconv_t(-1) && iconv(converter, &input, &inputLeft, &output, &outputLeft) != std::size_t(-1)) {
            gbk.append(converted, output);
        } else {
            gbk.push_back('?');
        }
    }
    return gbk;
}

// The number that a file of the kernel holds; false where there is no such file, or no number ("max") in it.
bool ReadNumberFile(const char* path, std::uint64_t& number)
{
    std::FILE* file = std::fopen(path, "r");
    if (file == nullptr) {
        return false;
    }
    unsigned long long value = 0;
    const bool found = std::fscanf(file, "%llu", &value) == 1;
    std::fclose(file);
    number = value;
    return found;
}

// Bytes of this process: addresses handed out to it, and memory behind them; zero when the system does not tell.
struct ProcessMemory {
    std::uint64_t addressed = 0;
    std::uint64_t resident = 0;
};

ProcessMemory OwnMemory()
{
    ProcessMemory memory;
    if (std::FILE* file = std::fopen("/proc/self/statm", "r")) {
        std::uint64_t addressed = 0, resident = 0; // pages
        if (std::fscanf(file, "%" SCNu64 " %" SCNu64, &addressed, &resident) == 2) {
            const auto pageSize = static_cast<std::uint64_t>(sysconf(_SC_PAGESIZE));
            memory = {addressed * pageSize, resident * pageSize};
        }
        std::fclose(file);
    }
    return memory;
}

// 'text' as one word of the shell: nothing inside single quotes has a meaning but the quote itself.
std::string ShellQuoted(std::string_view text)
{
    std::string quoted = "'";
    for (const char c : text) {
        if (c == '\'') {
            quoted += "'\\''";
        } else {
            quoted += c;
        }
    }
    return quoted + "'";
}

} // namespace

void ShowWarningBox(const char* text)
{
    std::fprintf(stderr, "[Warning!] %s\nPress Enter to continue . . .", text);
    std::fflush(stderr);
    char c = 0;
    while (c != '\n') {
        if (!ReadByte(c)) {
            std::fputs("\n", stderr); // no one pressed Enter: later messages start on a line of their own
            return;
        }
    }
}

std::vector<std::string> CommandLineWords(int argc, char** argv)
{
    return argc < 2 ? std::vector<std::string>() : std::vector<std::string>(argv + 1, argv + argc);
}

bool HasOwnConsole()
{
    return false;
}

void PauseInOwnConsole() {}

void Pause()
{
    WriteStandardOutput("Press any key to continue . . . ");
    WaitForKey();
}

void WaitForKey()
{
    char key = 0;
    ReadByte(key);
}

std::int64_t PerformanceFrequency()
{
    return std::int64_t(std::nano::den);
}

std::int64_t PerformanceCounter()
{
    return std::chrono::nanoseconds(std::chrono::steady_clock::now().time_since_epoch()).count();
}

std::string AbsoluteName(const std::string& name)
{
    std::error_code ignored;
    return std::filesystem::absolute(name, ignored).lexically_normal().string();
}

std::string NameFault(const std::string&)
{
    return "";
}

std::error_code MakeDirectories(const std::string& path)
{
    std::error_code error;
    std::filesystem::create_directories(path, error);
    return error;
}

bool FileExists(const char* path)
{
    return access(path, F_OK) == 0;
}

std::FILE* OpenFile(const char* path, const char* mode)
{
    return std::fopen(path, mode);
}

std::size_t BytesOfLineEnd()
{
    return 1;
}

MappedFile::MappedFile(const char* path)
{
    struct stat file = {};
    if (stat(path, &file) != 0 || !S_ISREG(file.st_mode) || file.st_size == 0) {
        return; // a pipe is not even opened: whoever writes into it would take the first reader's end for the last
    }
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    const auto size = static_cast<std::size_t>(file.st_size);
    void* const begin = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
    close(descriptor); // the mapping stays
    if (begin != MAP_FAILED) {
        bytes = {static_cast<const char*>(begin), size};
    }
}

MappedFile::~MappedFile()
{
    if (!bytes.empty()) {
        munmap(const_cast<char*>(bytes.data()), bytes.size());
    }
}

bool ReadStream(const char* path, int silenceSeconds, StreamJudge goesOn, std::string& bytes)
{
    constexpr std::size_t piece = std::size_t(1) << 16; // as much as a pipe holds
    constexpr int milliseconds = 1000;
    // Without O_NONBLOCK the opening of a pipe would wait for whoever writes into it.
    const int descriptor = open(path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0) {
        return false;
    }
    int fault = 0;
    while (fault == 0) {
        pollfd input = {descriptor, POLLIN, 0};
        const int ready = poll(&input, 1, silenceSeconds < 0 ? -1 : silenceSeconds * milliseconds);
        if (ready <= 0) {
            fault = ready == 0 ? ETIMEDOUT : errno == EINTR ? 0 : errno;
            continue;
        }
        const std::size_t size = bytes.size();
        bytes.resize(size + piece);
        const ssize_t got = read(descriptor, bytes.data() + size, piece);
        fault = got < 0 && errno != EINTR && errno != EAGAIN ? errno : 0;
        bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(got, 0)));
        if (got == 0 || (got > 0 && goesOn != nullptr && !goesOn(bytes, static_cast<std::size_t>(got)))) {
            break;
        }
    }
    close(descriptor);
    errno = fault;
    return fault == 0;
}

void RunProgram(const char* fileName)
{
    // A program that cannot be started is reported by the shell on standard error; a run that is complete does not
    // fail for it.
    [[maybe_unused]] const int status = std::system(ShellQuoted(std::string("./") + fileName).c_str());
}

void WriteStandardOutput(std::string_view text)
{
    static const bool utf8 = IsUtf8Terminal();
    static bool failed = false;
    if (!failed && !WriteAll(STDOUT_FILENO, utf8 ? std::string(text) : Utf8ToGbk(text))) {
        failed = true; // reported once; the result files do not depend on it
        std::fprintf(stderr,
                     "standard output: error: console text cannot be written: %s\n"
                     "  expected: a terminal, a pipe that is read, or a file with room for it\n"
                     "  to do:    send the output elsewhere; the run goes on without it\n",
                     std::strerror(errno));
    }
}

bool WriteUtf8Output(std::string_view text)
{
    return WriteAll(STDOUT_FILENO, text);
}

void WriteErrorOutput(std::string_view text)
{
    std::fwrite(text.data(), 1, text.size(), stderr);
}

bool ErrorLinesCanBeRewritten()
{
    const char* terminal = std::getenv("TERM");
    return isatty(STDERR_FILENO) && terminal != nullptr && std::strcmp(terminal, "dumb") != 0;
}

namespace {

// The number behind a key at the beginning of a line of a file such as /proc/meminfo; 0: not there.
std::uint64_t NumberOfKey(const char* fileName, std::string_view key)
{
    std::uint64_t number = 0;
    if (std::FILE* file = std::fopen(fileName, "r")) {
        char line[256];
        while (std::fgets(line, sizeof line, file) != nullptr) {
            if (std::string_view(line).starts_with(key)) {
                number = std::strtoull(line + key.size(), nullptr, 10);
                break;
            }
        }
        std::fclose(file);
    }
    return number;
}

constexpr std::uint64_t BytesPerKilobyte = 1024; // as /proc has it

} // namespace

std::uint64_t AvailableMemory()
{
    std::uint64_t available = NumberOfKey("/proc/meminfo", "MemAvailable:") * BytesPerKilobyte;
    // A container may get less than the machine has. Of what it uses, files that were read or written give way.
    std::uint64_t limit = 0;
    std::uint64_t used = 0;
    if (available > 0 && ReadNumberFile("/sys/fs/cgroup/memory.max", limit) &&
        ReadNumberFile("/sys/fs/cgroup/memory.current", used)) {
        used -= std::min(used, NumberOfKey("/sys/fs/cgroup/memory.stat", "inactive_file "));
        available = std::min(available, limit > used ? limit - used : 1);
    }
    // And a process less than that, where a batch system or "ulimit -v" has limited it.
    rlimit addresses;
    if (available > 0 && getrlimit(RLIMIT_AS, &addresses) == 0 && addresses.rlim_cur != RLIM_INFINITY) {
        used = OwnMemory().addressed;
        available = std::min(available, addresses.rlim_cur > used ? addresses.rlim_cur - used : 1);
    }
    return available;
}

// A stack grows up to the limit as it is when it grows; those of threads have the one that the program began with.
std::size_t ProvideStack(std::size_t bytes)
{
    rlimit stack;
    if (getrlimit(RLIMIT_STACK, &stack) != 0 || stack.rlim_cur >= bytes) { // "unlimited" is the largest number
        return bytes;
    }
    stack.rlim_cur = std::min(stack.rlim_max, static_cast<rlim_t>(bytes));
    setrlimit(RLIMIT_STACK, &stack);
#ifdef __GLIBC__
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, bytes);
    pthread_setattr_default_np(&attributes);
    pthread_attr_destroy(&attributes);
#endif
    return static_cast<std::size_t>(stack.rlim_cur);
}

std::uint64_t ResidentMemory()
{
    return OwnMemory().resident;
}

// getrusage would count what the program that started this one held.
std::uint64_t PeakMemory()
{
    return NumberOfKey("/proc/self/status", "VmHWM:") * BytesPerKilobyte;
}

namespace {

// Advice on the whole pages of an array; the partial ones at its ends stay out.
void AdvisePages(void* array, std::size_t bytes, int advice)
{
    const auto page = static_cast<std::uintptr_t>(sysconf(_SC_PAGESIZE));
    const auto begin = (reinterpret_cast<std::uintptr_t>(array) + page - 1) / page * page;
    const auto end = (reinterpret_cast<std::uintptr_t>(array) + bytes) / page * page;
    if (begin < end) {
        madvise(reinterpret_cast<void*>(begin), end - begin, advice);
    }
}

} // namespace

void PreferLargePages([[maybe_unused]] void* array, [[maybe_unused]] std::size_t bytes)
{
#ifdef MADV_HUGEPAGE
    AdvisePages(array, bytes, MADV_HUGEPAGE);
#endif
}

void PopulatePages([[maybe_unused]] void* array, [[maybe_unused]] std::size_t bytes)
{
#ifdef MADV_POPULATE_WRITE
    AdvisePages(array, bytes, MADV_POPULATE_WRITE);
#endif
}

bool IsWriteProtected(const std::string& path)
{
    struct stat file = {};
    return lstat(path.c_str(), &file) == 0 && S_ISREG(file.st_mode) && access(path.c_str(), W_OK) != 0;
}

void BeginFlush([[maybe_unused]] const std::string& path)
{
#ifdef SYNC_FILE_RANGE_WRITE
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (descriptor >= 0) {
        sync_file_range(descriptor, 0, 0, SYNC_FILE_RANGE_WRITE);
        close(descriptor);
    }
#endif
}

bool FlushToDisk(const std::string& path, std::string& reason)
{
    const int descriptor = open(path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    const bool flushed = descriptor >= 0 && (fsync(descriptor) == 0 || errno == EINVAL || errno == EROFS);
    if (!flushed) {
        reason = std::strerror(errno);
    }
    if (descriptor >= 0) {
        close(descriptor);
    }
    return flushed;
}

bool RenameFile(const std::string& from, const std::string& to, std::string& reason)
{
    if (std::rename(from.c_str(), to.c_str()) != 0) {
        reason = std::strerror(errno);
        return false;
    }
    return true;
}

void MakeStreamFaultsErrors()
{
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (fcntl(stream, F_GETFD) < 0) {
            // Takes the lowest free number, this one. Output cannot be written to it; errors have no one to read them.
            open("/dev/null", stream == STDERR_FILENO ? O_WRONLY : O_RDONLY);
        }
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

namespace {

// Waits for an interruption and ends the process.
void EndWhenInterrupted(sigset_t signals)
{
    int signal = 0;
    sigwait(&signals, &signal);
    InterruptionState& state = Interruption();
    const std::lock_guard lock(state.mutex);
    for (const std::string& path : state.unfinishedFiles) { unlink(path.c_str()); }
    state.CleanUp();
    const std::string_view notice = state.Notice();
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, notice.data(), notice.size());
    _exit(state.ExitCode());
}

} // namespace

int ProcessId()
{
    return getpid();
}

// A thread waits for the signals, and all others do not get them. Handlers would not do: METIS puts its own in place of
// that of SIGTERM while it orders, and these end in a jump into a thread that is not there.
void ExitOnInterrupt()
{
    static bool isWatched = false;
    if (std::exchange(isWatched, true)) {
        return;
    }
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    struct sigaction hangUp;
    if (sigaction(SIGHUP, nullptr, &hangUp) == 0 && hangUp.sa_handler != SIG_IGN) { // as nohup sets it
        sigaddset(&signals, SIGHUP);
    }
    pthread_sigmask(SIG_BLOCK, &signals, nullptr); // threads that are started from now on inherit it
    std::thread(EndWhenInterrupted, signals).detach();
}

std::string EnvironmentValue(const char* name)
{
    const char* const value = std::getenv(name);
    return value == nullptr ? "" : value;
}

void SetEnvironmentDefault(const char* name, const char* value)
{
    setenv(name, value, 0);
}

void SetEnvironment(const char* name, const char* value)
{
    setenv(name, value, 1);
}

void* LoadPlugin(const char* fileName, std::string& reason)
{
    void* const library = dlopen(fileName, RTLD_NOW | RTLD_LOCAL); // searched for along the program's own run path
    if (library == nullptr) {
        reason = dlerror();
        // The only words that the loader has for it: the library is there, room for it is not.
        for (const char* memory : {"map segment", "allocate memory", "zero-fill"}) {
            if (reason.find(memory) != std::string::npos) {
                throw std::bad_alloc();
            }
        }
    }
    return library;
}

void* PluginSymbol(void* library, const char* name)
{
    return dlsym(library, name);
}

} // namespace tarnvexo::platform
