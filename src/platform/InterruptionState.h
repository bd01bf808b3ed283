// platform/InterruptionState.h
// What an interruption finds, the same on every system: files to remove, and what its notice says. For the sources of
// this folder; Platform.h declares what others call.
#pragma once

#include "platform/Platform.h"

#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace tarnvexo::platform {

constexpr int InterruptExitCode = 130;

struct InterruptionState {
    std::recursive_mutex mutex; // held while files take their names, and by whoever ends the process
    std::vector<std::string> unfinishedFiles;
    bool filesAreWritten = false;
    std::optional<InterruptEnding> ending; // none: that of a run that writes files

    void CleanUp() const
    {
        if (ending && ending->cleanUp) {
            ending->cleanUp();
        }
    }
    const char* Notice() const
    {
        return ending            ? ending->notice.c_str()
               : filesAreWritten ? "\ninterrupted: the files written so far are complete\n"
                                 : "\ninterrupted: no results were written\n";
    }
    int ExitCode() const { return ending ? ending->exitCode : InterruptExitCode; }
};

// The one of this process.
InterruptionState& Interruption();

} // namespace tarnvexo::platform
