// app/Progress.h
// What a run tells about itself while it is under way.
#pragma once

#include <functional>

namespace tarnvexo {

// State of a run for a progress display, sent when a stage begins and when it ends.
struct Progress {
    const char* stage = "";    // "read", "order", ...
    int number = 0;            // of this stage, from 1
    int stages = 0;            // in all
    bool ended = false;        // false: begins
    double stageSeconds = 0.0; // of this stage, when it has ended
    double seconds = 0.0;      // since the run began
    double secondsLeft = 0.0;  // estimate for the rest of the run; 0: not known yet
    double memoryGigabytes = 0.0;
};
using ProgressListener = std::function<void(const Progress&)>;

} // namespace tarnvexo
