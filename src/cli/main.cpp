// Without arguments: the console run in the current directory. Everything else is a command line.
#include "cli/CommandLine.h"
#include "platform/Platform.h"

#include <cstdlib>

int main(int argumentCount, char* arguments[])
{
    if (tarnvexo::platform::HasOwnConsole()) {
        std::atexit(tarnvexo::platform::PauseInOwnConsole); // a window that goes with the program shows its last words
    }
    return tarnvexo::RunCommandLine(argumentCount, arguments);
}
