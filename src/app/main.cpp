// Without arguments: the console run in the current directory. Everything else is a command line.
#include "app/RunDriver.h"
#include "core/Failure.h"

#include <cstdio>
#include <new>

namespace {

constexpr int UsageExitCode = 2;

int PrintUsage(const char* firstArgument)
{
    std::fprintf(stderr,
                 "tarnvexo: error: unknown argument \"%s\"\n"
                 "  expected: no arguments\n"
                 "  to do:    change to a folder that holds fem_solving.txt and start tarnvexo there:\n"
                 "              cd examples/wing && ../../build/tarnvexo\n",
                 firstArgument);
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
