#include "cli/CommandFailure.h"

#include "app/SolveDriver.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <new>

namespace tarnvexo {

int RunReportingFailures(const std::function<int()>& command)
{
    try {
        return command();
    } catch (const RunFailure& failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return failure.exitCode;
    } catch (const std::bad_alloc&) {
        std::fputs(
            "tarnvexo: error: memory ran out\n"
            "  expected: enough memory for the model, its factor and its results\n"
            "  to do:    see with tarnvexo info how much it needs; close other programs, or take a coarser mesh\n",
            stderr);
        return ExitNumerical;
    } catch (const std::filesystem::filesystem_error& error) {
        std::fprintf(stderr,
                     "%s: error: %s\n"
                     "  expected: a path that may be read or written\n"
                     "  to do:    look at its permissions and at the room on the disk\n",
                     error.path1().string().c_str(), error.code().message().c_str());
        return ExitFile;
    } catch (const std::exception& error) {
        std::fprintf(stderr,
                     "tarnvexo: error: %s\n"
                     "  expected: a system that grants threads and memory, and a program without this fault\n"
                     "  to do:    close other programs and run again; if it fails again, report it with the model\n",
                     error.what());
        return ExitNumerical;
    }
}

} // namespace tarnvexo
