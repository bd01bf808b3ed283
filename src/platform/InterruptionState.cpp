#include "platform/InterruptionState.h"

#include <utility>

namespace tarnvexo::platform {

InterruptionState& Interruption()
{
    static InterruptionState* const state = new InterruptionState; // stays: an interruption may come at the very end
    return *state;
}

void RemoveOnInterrupt(const std::string& path)
{
    InterruptionState& state = Interruption();
    const std::lock_guard lock(state.mutex);
    state.unfinishedFiles.push_back(path);
}

void KeepOnInterrupt(const std::string& path)
{
    InterruptionState& state = Interruption();
    const std::lock_guard lock(state.mutex);
    std::erase(state.unfinishedFiles, path);
}

void TellOnInterruptOfWrittenFiles()
{
    InterruptionState& state = Interruption();
    const std::lock_guard lock(state.mutex);
    state.filesAreWritten = true;
}

void EndOnInterrupt(InterruptEnding ending)
{
    InterruptionState& state = Interruption();
    {
        const std::lock_guard lock(state.mutex);
        state.ending = std::move(ending);
    }
    ExitOnInterrupt();
}

InterruptionHold::InterruptionHold()
{
    Interruption().mutex.lock();
}

InterruptionHold::~InterruptionHold()
{
    Interruption().mutex.unlock();
}

} // namespace tarnvexo::platform
