// support/ProgramRun.h
// Runs the built program as a user does: in a directory of its own, with a model file, keys waiting on standard input,
// and a look at everything it leaves behind.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace tarnvexo::test {

struct ProgramStart {
    std::string program; // path of the executable
    std::vector<std::string> arguments = {};
    std::string input = {};                        // what standard input holds
    std::map<std::string, std::string> files = {}; // name and content of files that stand there before the start
    std::function<void()> prepare = {};            // called in the directory just before the start
    bool errorWithOutput = false; // standard error goes where standard output goes, in order of writing
};

struct ProgramRun {
    int exitCode = -1; // -1 when a signal ended the program
    std::string output;
    std::string error;
    std::size_t inputTaken = 0;               // characters of standard input that were read
    std::map<std::string, std::string> files; // regular files of the directory afterwards
};

// In a fresh temporary directory, which is the current one until the program has ended.
ProgramRun RunProgram(const ProgramStart& start);

// Console bytes as UTF-8; throws when they are not GBK.
std::string GbkToUtf8(const std::string& bytes);

} // namespace tarnvexo::test
