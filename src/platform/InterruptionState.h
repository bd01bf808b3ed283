// platform/InterruptionState.h
// What an interruption finds, the same on every system: files to remove, and what its notice says. For the sources of
// this folder; Platform.h declares what others call.
#pragma once

#include <mutex>
#include <string>
#include <vector>

namespace tarnvexo::platform {

constexpr int InterruptExitCode = 130;

struct InterruptionState {
    std::recursive_mutex mutex; // held while files take their names, and by whoever ends the process
    std::vector<std::string> unfinishedFiles;
    bool filesAreWritten = false;

    const char* Notice() const
    {
        return filesAreWritten ? "\ninterrupted: the files written so far are complete\n"
                               : "\ninterrupted: no results were written\n";
    }
};

// The one of this process.
InterruptionState& Interruption();

} // namespace tarnvexo::platform
