#include "support/ChildProcess.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <stdexcept>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>

namespace tarnvexo::test {

namespace {

void Require(bool condition, const char* what)
{
    if (!condition) {
        throw std::runtime_error(std::string("child process: ") + what);
    }
}

// readEnd gets what is written to writeEnd.
void MakeTerminal(int& readEnd, int& writeEnd)
{
    readEnd = posix_openpt(O_RDWR | O_NOCTTY);
    Require(readEnd >= 0 && grantpt(readEnd) == 0 && unlockpt(readEnd) == 0, "no terminal to be had");
    writeEnd = open(ptsname(readEnd), O_RDWR | O_NOCTTY);
    Require(writeEnd >= 0, "the terminal cannot be opened");
    termios settings;
    Require(tcgetattr(writeEnd, &settings) == 0, "the terminal has no settings");
    cfmakeraw(&settings); // no "\r" before "\n"
    tcsetattr(writeEnd, TCSANOW, &settings);
}

// Until the end; a terminal tells of its end by EIO.
std::string ReadAll(int descriptor)
{
    std::string text;
    char piece[4096];
    for (;;) {
        const ssize_t count = read(descriptor, piece, sizeof piece);
        if (count > 0) {
            text.append(piece, static_cast<std::size_t>(count));
        } else if (count == 0 || errno != EINTR) {
            return text;
        }
    }
}

} // namespace

ChildResult RunInChild(const std::function<void()>& action, const std::string& input, ChildOutput output)
{
    std::FILE* inputFile = std::tmpfile();
    std::FILE* errorFile = std::tmpfile();
    Require(inputFile != nullptr && errorFile != nullptr, "no temporary file to be had");
    std::fwrite(input.data(), 1, input.size(), inputFile);
    std::rewind(inputFile);

    int ends[2];
    if (output == ChildOutput::Terminal) {
        MakeTerminal(ends[0], ends[1]);
    } else {
        Require(pipe(ends) == 0, "no pipe to be had");
    }

    std::fflush(nullptr); // or the child would write the test program's pending text once more
    const pid_t child = fork();
    Require(child >= 0, "cannot be started");
    if (child == 0) {
        dup2(fileno(inputFile), STDIN_FILENO);
        dup2(ends[1], STDOUT_FILENO);
        dup2(fileno(errorFile), STDERR_FILENO);
        close(ends[0]);
        close(ends[1]);
        action();
        std::exit(0);
    }

    close(ends[1]);
    ChildResult result;
    result.output = ReadAll(ends[0]);
    close(ends[0]);
    int status = 0;
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {}
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;

    lseek(fileno(errorFile), 0, SEEK_SET);
    result.error = ReadAll(fileno(errorFile));
    std::fclose(inputFile);
    std::fclose(errorFile);
    return result;
}

bool TerminalsAreAvailable()
{
    const int terminal = posix_openpt(O_RDWR | O_NOCTTY);
    if (terminal < 0) {
        return false;
    }
    const bool usable = grantpt(terminal) == 0 && unlockpt(terminal) == 0 && access(ptsname(terminal), R_OK) == 0;
    close(terminal);
    return usable;
}

} // namespace tarnvexo::test
