#include "cli/ContourProgram.h"
#include "platform/Platform.h"

int main(int argumentCount, char* arguments[])
{
    const bool ownsWindow = tarnvexo::platform::HasOwnConsole();
    const int exitCode = tarnvexo::RunContourProgram(argumentCount, arguments);
    if (exitCode != 0 && ownsWindow) { // a window that goes with the program shows why
        tarnvexo::platform::PauseInOwnConsole();
    }
    return exitCode;
}
