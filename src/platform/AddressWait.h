// platform/AddressWait.h
// Waiting for a number to change, as threads do that meet often: without a system call while nobody waits long. One
// source per system, like Platform.h. (std::atomic::wait and std::barrier lose wake-ups where the C++ library of GCC 12
// has no futex, as on Windows: it looks at the number before it takes the lock that the notice does not take.)
#pragma once

#include <atomic>
#include <cstdint>

namespace tarnvexo::platform {

// Returns when the number is no longer `value`; memory that was written before it changed is visible then.
void WaitWhileEqual(const std::atomic<std::uint32_t>& number, std::uint32_t value);

// To be called by whoever has changed it.
void WakeWaiting(std::atomic<std::uint32_t>& number);

} // namespace tarnvexo::platform
