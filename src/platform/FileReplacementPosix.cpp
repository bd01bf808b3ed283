#include "platform/FileReplacement.h"

#include <cerrno>
#include <csignal>
#include <cstring>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#ifdef __linux__
#include <sys/prctl.h>
#endif

namespace tarnvexo::platform {

namespace {

// ---- the steps: async-signal-safe calls only, since the process that takes them was started from one with threads

struct Outcome {
    std::size_t file; // the one that was refused
    int error;        // 0: none was
};

bool Exists(const std::string& path)
{
    struct stat status;
    return lstat(path.c_str(), &status) == 0;
}

bool IsDirectory(const std::string& path)
{
    struct stat status;
    return lstat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

int Move(const std::string& from, const std::string& to)
{
    return rename(from.c_str(), to.c_str()) == 0 ? 0 : errno;
}

// What a step would be refused for is looked for before the first one. {0, 0}: nothing.
Outcome RefusalAhead(const std::vector<FileToReplace>& files)
{
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!Exists(files[i].unfinished)) { // gone with its directory, or someone has cleared up
            return {i, ENOENT};
        }
        if (IsDirectory(files[i].target)) {
            return {i, EISDIR};
        }
    }
    return {0, 0};
}

// From any point of the steps back to their begin: a new file that is not at its place has taken its name.
void MoveBack(const std::vector<FileToReplace>& files)
{
    for (const FileToReplace& file : files) {
        if (!Exists(file.unfinished)) {
            Move(file.target, file.unfinished);
        }
        if (Exists(file.earlier)) {
            Move(file.earlier, file.target);
        }
    }
}

Outcome Replace(const std::vector<FileToReplace>& files)
{
    const auto refuse = [&](std::size_t file, int error) {
        MoveBack(files);
        return Outcome{file, error};
    };
    for (std::size_t i = 0; i < files.size(); ++i) {
        const int error = Move(files[i].target, files[i].earlier);
        if (error != 0 && error != ENOENT) { // nothing may have borne the name
            return refuse(i, error);
        }
    }
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (const int error = Move(files[i].unfinished, files[i].target)) {
            return refuse(i, error);
        }
    }
    for (const FileToReplace& file : files) { unlink(file.earlier.c_str()); }
    return {0, 0};
}

void RemoveUnfinished(const std::vector<FileToReplace>& files)
{
    for (const FileToReplace& file : files) { unlink(file.unfinished.c_str()); }
}

// ---- the process that takes them

constexpr char CommitCommand = 'c';
constexpr char EndCommand = 'e';

bool Send(int channel, const void* bytes, std::size_t count)
{
    ssize_t sent = 0;
    do {
        sent = send(channel, bytes, count, MSG_NOSIGNAL);
    } while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(count);
}

// False when the other end is gone.
bool Receive(int channel, void* bytes, std::size_t count)
{
    ssize_t got = 0;
    do {
        got = recv(channel, bytes, count, MSG_WAITALL);
    } while (got < 0 && errno == EINTR);
    return got == static_cast<ssize_t>(count);
}

[[noreturn]] void ServeProgram(const std::vector<FileToReplace>& files, int channel)
{
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_SETMASK, &all, nullptr);
    setsid(); // what ends the program's group or terminal is not for this process
#ifdef __linux__
    prctl(PR_SET_NAME, "tarnvexo-files"); // "killall tarnvexo" is not either
#endif
    // Whoever reads what the program writes waits for the program alone.
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (stream != channel) {
            close(stream);
        }
    }
    char command = 0;
    while (Receive(channel, &command, 1) && command == CommitCommand) {
        const Outcome outcome = Replace(files);
        Send(channel, &outcome, sizeof outcome);
        if (outcome.error == 0) {
            _exit(0);
        }
    }
    RemoveUnfinished(files); // given up, or the program is gone
    _exit(0);
}

} // namespace

FileReplacement::FileReplacement(std::vector<FileToReplace> filesToReplace) : files(std::move(filesToReplace))
{
    int ends[2];
    if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) {
        return;
    }
    process = fork();
    if (process == 0) {
        close(ends[0]);
        ServeProgram(files, ends[1]);
    }
    close(ends[1]);
    if (process < 0) {
        close(ends[0]);
    } else {
        channel = ends[0];
    }
}

FileReplacement::~FileReplacement()
{
    if (process > 0) {
        Send(channel, &EndCommand, 1);
        close(channel);
        while (waitpid(process, nullptr, 0) < 0 && errno == EINTR) {}
    } else {
        RemoveUnfinished(files);
    }
}

std::optional<FileReplacement::Refusal> FileReplacement::Commit()
{
    Outcome outcome = RefusalAhead(files);
    if (outcome.error != 0) {
        // No step has been taken.
    } else if (process < 0) {
        outcome = Replace(files);
    } else if (!Send(channel, &CommitCommand, 1) || !Receive(channel, &outcome, sizeof outcome)) {
        MoveBack(files); // someone ended that process, perhaps between two steps
        outcome = Replace(files);
    }
    if (outcome.error == 0) {
        return {};
    }
    return Refusal{outcome.file, std::strerror(outcome.error)};
}

} // namespace tarnvexo::platform
