#include "platform/AddressWait.h"

namespace tarnvexo::platform {

void WaitWhileEqual(const std::atomic<std::uint32_t>& number, std::uint32_t value)
{
    number.wait(value, std::memory_order_acquire);
}

void WakeWaiting(std::atomic<std::uint32_t>& number)
{
    number.notify_all();
}

} // namespace tarnvexo::platform
