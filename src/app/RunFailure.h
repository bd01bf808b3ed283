// app/RunFailure.h
// How a run of the command line ends when it cannot go on, and with which exit code.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnvexo {

// Exit codes of the command line.
enum ExitCode { ExitGood = 0, ExitBadModel = 1, ExitUsage = 2, ExitNumerical = 3, ExitFile = 4, ExitInterrupted = 130 };

// The text is complete (what, where, expected, to do) and without a line end behind it.
struct RunFailure : std::runtime_error {
    RunFailure(int exitCode, const std::string& text) : std::runtime_error(text), exitCode(exitCode) {}
    int exitCode;
};

} // namespace tarnvexo
