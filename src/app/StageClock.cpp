#include "app/StageClock.h"

#include "core/Units.h"
#include "platform/Platform.h"

#include <algorithm>
#include <cassert>
#include <string_view>
#include <utility>

namespace tarnvexo {

namespace {

double SecondsBetween(std::chrono::steady_clock::time_point from, std::chrono::steady_clock::time_point to)
{
    return std::chrono::duration<double>(to - from).count();
}

} // namespace

StageClock::StageClock(std::vector<const char*> stageNames, ProgressListener progressListener)
    : stages(std::move(stageNames)), expected(stages.size(), 0.0), listener(std::move(progressListener))
{
}

void StageClock::Next()
{
    End();
    assert(current < stages.size());
    ++current;
    stageBegin = Clock::now();
    Tell(false, 0.0);
}

void StageClock::End()
{
    if (times.size() == current) {
        return; // none is running
    }
    const double seconds = SecondsBetween(stageBegin, Clock::now());
    times.push_back({stages[current - 1], seconds, static_cast<double>(platform::ResidentMemory()) * GigabytesPerByte});
    Tell(true, seconds);
}

void StageClock::Expect(const char* name, double seconds)
{
    const auto stage = std::find(stages.begin(), stages.end(), std::string_view(name));
    assert(stage != stages.end());
    expected[static_cast<std::size_t>(stage - stages.begin())] = seconds;
}

double StageClock::Seconds() const
{
    return SecondsBetween(begin, Clock::now());
}

void StageClock::Tell(bool ended, double stageSeconds) const
{
    if (!listener) {
        return;
    }
    Progress progress;
    progress.stage = stages[current - 1];
    progress.number = static_cast<int>(current);
    progress.stages = static_cast<int>(stages.size());
    progress.ended = ended;
    progress.stageSeconds = stageSeconds;
    progress.seconds = Seconds();
    progress.secondsLeft = SecondsLeft();
    progress.memoryGigabytes = static_cast<double>(platform::ResidentMemory()) * GigabytesPerByte;
    listener(progress);
}

// Expected seconds of the stages that have not ended; the running one counts in full.
double StageClock::SecondsLeft() const
{
    double left = 0.0;
    for (std::size_t stage = times.size(); stage < stages.size(); ++stage) { left += expected[stage]; }
    return left;
}

} // namespace tarnvexo
