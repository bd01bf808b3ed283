#include "cli/CommandFailure.h"

#include "app/SolveDriver.h"
#include "platform/FilePath.h"
#include "platform/Platform.h"

#include <exception>
#include <filesystem>
#include <new>

namespace tarnvexo {

int RunReportingFailures(const std::function<int()>& command)
{
    try {
        return command();
    } catch (const RunFailure& failure) {
        platform::WriteErrorOutput(std::string(failure.what()) + "\n");
        return failure.exitCode;
    } catch (const std::bad_alloc&) {
        platform::WriteErrorOutput(
            "tarnvexo: error: memory ran out\n"
            "  expected: enough memory for the model, its factor and its results\n"
            "  to do:    see with tarnvexo info how much it needs; close other programs, or take a coarser mesh\n");
        return ExitNumerical;
    } catch (const std::filesystem::filesystem_error& error) {
        platform::WriteErrorOutput(error.path1().string() + ": error: " + platform::ReasonOf(error.code()) +
                                   "\n  expected: a path that may be read or written"
                                   "\n  to do:    look at its permissions and at the room on the disk\n");
        return ExitFile;
    } catch (const std::exception& error) {
        platform::WriteErrorOutput(
            std::string("tarnvexo: error: ") + error.what() +
            "\n  expected: a system that grants threads and memory, and a program without this fault"
            "\n  to do:    close other programs and run again; if it fails again, report it with the model\n");
        return ExitNumerical;
    }
}

} // namespace tarnvexo
