#include "platform/InterruptionState.h"

#include "platform/Platform.h"

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

InterruptionHold::InterruptionHold()
{
    Interruption().mutex.lock();
}

InterruptionHold::~InterruptionHold()
{
    Interruption().mutex.unlock();
}

} // namespace tarnvexo::platform
