// cli/CommandLine.h
// The program: without arguments the console run (app/RunDriver), else one of the commands of cli/CommandParser.
#pragma once

namespace tarnvexo {

// Arguments as main gets them. Returns the exit code (ExitCode in app/SolveDriver.h); the console run may also end the
// process by itself.
int RunCommandLine(int argc, char** argv);

} // namespace tarnvexo
