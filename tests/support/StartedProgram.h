// support/StartedProgram.h
// Starts a program on Windows with its standard streams in files and waits for its end.
#pragma once

#include <string>
#include <vector>

namespace tarnvexo::test {

struct StreamFiles {
    std::string input, output, error; // paths; output and error may be the same
};

// The program's path and its arguments. Returns its exit code; throws std::runtime_error when it cannot be started.
int RunStarted(const std::vector<std::string>& words, const StreamFiles& streams);

// What such a file holds, with "\n" for "\r\n", to be compared with what a program writes elsewhere.
std::string TextOfStream(const std::string& file);

// Of the program that is running.
std::string ProgramPath();

} // namespace tarnvexo::test
