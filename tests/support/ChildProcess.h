// support/ChildProcess.h
// Runs a piece of the program in a process of its own, as a user would see it: what it writes to standard output and
// standard error, and its exit code. For everything that reads standard input or ends the process.
#pragma once

#include <functional>
#include <string>

namespace tarnvexo::test {

struct ChildResult {
    int exitCode = -1; // -1 when a signal ended the child
    std::string output;
    std::string error;
};

enum class ChildOutput { Pipe, Terminal };

// Calls action in a child process whose standard input holds `input`; the child then ends as a program does that
// returns 0 from main. A terminal passes bytes through unchanged.
ChildResult RunInChild(const std::function<void()>& action, const std::string& input = {},
                       ChildOutput output = ChildOutput::Pipe);

// False where the system has no pseudo-terminals (some containers): tests of ChildOutput::Terminal are skipped there.
bool TerminalsAreAvailable();

} // namespace tarnvexo::test
