// Without arguments: the console run in the current directory. Everything else is a command line.
#include "cli/CommandLine.h"

int main(int argumentCount, char* arguments[])
{
    return tarnvexo::RunCommandLine(argumentCount, arguments);
}
