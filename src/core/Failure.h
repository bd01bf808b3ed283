// core/Failure.h
// How a stage that cannot go on ends the run: one message, a wait so that a user who started the program by
// double-click can read it, exit code 1. Nothing is returned to the caller and nothing is retried.
#pragma once

#include <string>

namespace tarnvexo {

// Message on the console, the console's pause, exit code 1.
[[noreturn]] void FailWithPause(const char* message);

// Message on the console, one character of standard input, exit code 1.
[[noreturn]] void FailWithKey(const char* message);

// Diagnostic on standard error (UTF-8), no wait, exit code 1: for faults that have no message of their own.
[[noreturn]] void FailWithDiagnostic(const char* text);

// Diagnostic on standard error (UTF-8) where a user would want one; the run goes on. An empty text prints nothing.
void Warn(const std::string& text);

} // namespace tarnvexo
