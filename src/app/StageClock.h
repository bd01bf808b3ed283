// app/StageClock.h
// Times the stages of a run, tells a listener, and estimates what is left from the work that the stages ahead expect.
#pragma once

#include "app/Progress.h"
#include "app/SolveReport.h"

#include <chrono>
#include <vector>

namespace tarnvexo {

class StageClock {
public:
    // The stages of the run, in order, and who is told.
    StageClock(std::vector<const char*> stages, ProgressListener listener);

    // The next stage begins; the one before ends.
    void Next();
    // The last stage ends.
    void End();

    // What stage `name` is expected to take, as soon as something is known; replaces what was expected before.
    void Expect(const char* name, double seconds);

    const std::vector<StageTime>& Times() const { return times; }
    double Seconds() const; // since construction

private:
    using Clock = std::chrono::steady_clock;

    void Tell(bool ended, double stageSeconds) const;
    double SecondsLeft() const;

    std::vector<const char*> stages;
    std::vector<double> expected; // seconds of each stage; 0: not known
    ProgressListener listener;
    std::size_t current = 0; // stages begun
    Clock::time_point begin = Clock::now();
    Clock::time_point stageBegin = begin;
    std::vector<StageTime> times;
};

} // namespace tarnvexo
