// Without arguments: the console run in the current directory. Everything else is a command line.
#include "app/RunDriver.h"
#include "core/Failure.h"

#include <cstdio>
#include <new>

namespace {

constexpr int UsageExitCode = 2;

int PrintUsage(const char* argument)
{
    std::fprintf(stderr, "usage: tarnvexo takes no arguments (\"%s\" was given)\n", argument);
    std::fputs("  It works in the current directory, on the model file fem_solving.txt, and writes its results there.\n"
               "  Example:\n"
               "      mkdir -p /tmp/first && cd /tmp/first\n"
               "      cp ~/tarnvexo/examples/elements/fem_solving.txt .\n"
               "      ~/tarnvexo/build/tarnvexo\n",
               stderr);
    return UsageExitCode;
}

} // namespace

int main(int argumentCount, char* arguments[])
{
    if (argumentCount > 1) {
        return PrintUsage(arguments[1]);
    }
    try {
        return tarnvexo::RunConsole();
    } catch (const std::bad_alloc&) {
        tarnvexo::FailWithDiagnostic("fem_solving.txt: error: memory ran out\n"
                                     "  expected: enough memory for the model and its results\n"
                                     "  to do:    close other programs, or analyse a smaller model");
    }
}
