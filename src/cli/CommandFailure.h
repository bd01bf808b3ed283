// cli/CommandFailure.h
// How commands end when they cannot go on: one message on standard error, one exit code.
#pragma once

#include <functional>

namespace tarnvexo {

// Runs a command and returns its exit code. RunFailure gives its text and its code; memory that runs out gives a
// message and ExitNumerical; a file system that refuses gives the system's reason and ExitFile; any other exception its
// text and ExitNumerical.
int RunReportingFailures(const std::function<int()>& command);

} // namespace tarnvexo
