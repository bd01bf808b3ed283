#include "platform/Browser.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <mutex>
#include <string_view>
#include <sys/stat.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace tarnvexo::platform {

namespace {

namespace fs = std::filesystem;

constexpr std::chrono::milliseconds PollStep(20);

bool IsProgram(const std::string& path)
{
    std::error_code ignored;
    return fs::is_regular_file(path, ignored) && access(path.c_str(), X_OK) == 0;
}

// Starts a program in a session (and so in a group) of its own: what ends this program's group or terminal is not for
// it. Signals are as at the start of a program. Returns its number, or -1 with errno.
pid_t StartInSession(const std::vector<std::string>& words, const char* outputFile)
{
    std::vector<char*> arguments;
    for (const std::string& word : words) { arguments.push_back(const_cast<char*>(word.c_str())); }
    arguments.push_back(nullptr);
    int failure[2]; // closed when the program runs; else the reason comes through it
    if (pipe2(failure, O_CLOEXEC) != 0) {
        return -1;
    }
    const pid_t child = fork();
    if (child == 0) { // async-signal-safe calls only
        setsid();
        sigset_t none;
        sigemptyset(&none);
        sigprocmask(SIG_SETMASK, &none, nullptr);
        for (const int signal : {SIGPIPE, SIGXFSZ, SIGINT, SIGTERM, SIGHUP}) { std::signal(signal, SIG_DFL); }
        const int input = open("/dev/null", O_RDONLY);
        const int output = open(outputFile, O_WRONLY | O_CREAT | O_TRUNC, S_IRUSR | S_IWUSR);
        dup2(input, STDIN_FILENO);
        dup2(output, STDOUT_FILENO);
        dup2(output, STDERR_FILENO);
        execv(arguments[0], arguments.data());
        const int error = errno;
        [[maybe_unused]] const ssize_t written = write(failure[1], &error, sizeof error);
        _exit(127);
    }
    const int forkError = errno;
    close(failure[1]);
    int error = 0;
    const bool failed = child < 0 || read(failure[0], &error, sizeof error) == sizeof error;
    close(failure[0]);
    if (child > 0 && failed) {
        waitpid(child, nullptr, 0);
    }
    errno = child < 0 ? forkError : error;
    return failed ? -1 : child;
}

} // namespace

const char* const CacheVariables = "XDG_CACHE_HOME, HOME or TMPDIR";
const char* const TemporaryVariable = "TMPDIR";
const char* const PictureBrowsers =
    "chromium, chromium-browser or google-chrome along the search path (apt install chromium)";

bool OpenInBrowser(const std::string&, const std::string& address, std::string& reason)
{
    if (EnvironmentValue("DISPLAY").empty() && EnvironmentValue("WAYLAND_DISPLAY").empty() &&
        EnvironmentValue("BROWSER").empty()) {
        reason = "there is no display (DISPLAY and WAYLAND_DISPLAY are not set)";
        return false;
    }
    const std::string opener = FindProgram({"xdg-open"});
    if (opener.empty()) {
        reason = "the program xdg-open (package xdg-utils) is not there";
        return false;
    }
    const pid_t child = StartInSession({opener, address}, "/dev/null");
    if (child < 0) {
        reason = opener + ": " + std::strerror(errno);
        return false;
    }
    // Without a desktop it stays as long as the browser does: one that is still there has found one.
    constexpr std::chrono::seconds patience(5);
    const auto begin = std::chrono::steady_clock::now();
    int status = 0;
    pid_t ended = 0;
    while ((ended = waitpid(child, &status, WNOHANG)) == 0 && std::chrono::steady_clock::now() - begin < patience) {
        std::this_thread::sleep_for(PollStep);
    }
    if (ended == child && !(WIFEXITED(status) && WEXITSTATUS(status) == 0)) {
        reason = "xdg-open found no browser that opens it";
        return false;
    }
    return true;
}

std::string UserCacheDirectory()
{
    const std::string cache = EnvironmentValue("XDG_CACHE_HOME");
    if (cache.starts_with("/")) { // others are to be ignored, says the XDG base directories
        return cache;
    }
    const std::string home = EnvironmentValue("HOME");
    return home.starts_with("/") ? home + "/.cache" : "";
}

std::string MakePrivateDirectory(const std::string& prefix, std::string& reason)
{
    std::error_code ignored;
    const fs::path temporary = fs::temp_directory_path(ignored);
    std::string path = ((temporary.empty() ? fs::path("/tmp") : temporary) / (prefix + "XXXXXX")).string();
    if (mkdtemp(path.data()) == nullptr) {
        reason = std::strerror(errno);
        return "";
    }
    return path;
}

void MakePrivate(const std::string& directory)
{
    chmod(directory.c_str(), S_IRWXU);
}

std::string ProgramDirectory()
{
    std::error_code error;
    const fs::path program = fs::read_symlink("/proc/self/exe", error);
    return error ? "" : program.parent_path().string();
}

std::string FindProgram(const std::vector<std::string>& names)
{
    for (const std::string& name : names) {
        if (name.find('/') != std::string::npos) {
            if (IsProgram(name)) {
                return name;
            }
            continue;
        }
        const std::string path = EnvironmentValue("PATH");
        for (std::size_t begin = 0; !name.empty() && begin <= path.size();) {
            const std::size_t end = std::min(path.find(':', begin), path.size());
            const std::string directory = path.substr(begin, end - begin);
            const std::string program = (directory.empty() ? "." : directory) + "/" + name;
            if (IsProgram(program)) {
                return program;
            }
            begin = end + 1;
        }
    }
    return "";
}

bool IsAdministrator()
{
    return geteuid() == 0;
}

// What the program has started in other groups loses its parent and would be taken on by the system, out of reach. On
// Linux this process takes it on instead: its children that were not there before.
struct ChildProgram::Process {
    pid_t number = -1; // its group's, too; -1: none
    bool hasEnded = true;
    std::vector<pid_t> earlierChildren; // of this process
    std::mutex mutex;
};

namespace {

#ifdef __linux__
std::vector<pid_t> ChildrenBeside(const std::vector<pid_t>& others)
{
    std::vector<pid_t> children;
    std::error_code error;
    for (const fs::directory_entry& entry : fs::directory_iterator("/proc", error)) {
        const std::string name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        std::FILE* const file = std::fopen((entry.path() / "stat").c_str(), "re");
        if (file == nullptr) {
            continue;
        }
        char text[512];
        const std::size_t size = std::fread(text, 1, sizeof text - 1, file);
        std::fclose(file);
        text[size] = '\0';
        // "123 (name) S parent ...": the name may hold anything
        const char* const nameEnd = std::strrchr(text, ')');
        char state = ' ';
        int parent = 0;
        if (nameEnd != nullptr && std::sscanf(nameEnd + 1, " %c %d", &state, &parent) == 2 && parent == getpid()) {
            const auto child = static_cast<pid_t>(std::atoi(name.c_str()));
            if (std::find(others.begin(), others.end(), child) == others.end()) {
                children.push_back(child);
            }
        }
    }
    return children;
}
#endif

} // namespace

ChildProgram::ChildProgram(const std::vector<std::string>& words, const std::string& outputFile)
    : process(std::make_unique<Process>())
{
#ifdef __linux__
    prctl(PR_SET_CHILD_SUBREAPER, 1);
    process->earlierChildren = ChildrenBeside({});
#endif
    process->number = StartInSession(words, outputFile.c_str());
    process->hasEnded = process->number < 0;
    if (process->hasEnded) {
        reason = std::strerror(errno);
    }
}

ChildProgram::~ChildProgram()
{
    EndAll();
}

bool ChildProgram::HasEnded()
{
    const std::lock_guard lock(process->mutex);
    if (!process->hasEnded && waitpid(process->number, nullptr, WNOHANG) != 0) {
        process->hasEnded = true;
    }
    return process->hasEnded;
}

void ChildProgram::EndAll()
{
    const std::lock_guard lock(process->mutex);
    if (process->number < 0) {
        return;
    }
    kill(-process->number, SIGKILL);
    if (!process->hasEnded) {
        waitpid(process->number, nullptr, 0);
        process->hasEnded = true;
    }
    process->number = -1;
#ifdef __linux__
    // What it had started elsewhere has come to this process by now, generation after generation.
    const auto left = [&] { return ChildrenBeside(process->earlierChildren); };
    for (std::vector<pid_t> children = left(); !children.empty(); children = left()) {
        for (const pid_t child : children) {
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
        }
    }
    prctl(PR_SET_CHILD_SUBREAPER, 0);
#endif
}

} // namespace tarnvexo::platform
