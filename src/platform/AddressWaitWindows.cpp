#include "platform/AddressWait.h"
#include "platform/WindowsText.h"

#include <synchapi.h>

namespace tarnvexo::platform {

void WaitWhileEqual(const std::atomic<std::uint32_t>& number, std::uint32_t value)
{
    constexpr int spins = 200; // a microsecond or two: what the others need when their shares are about equal
    for (int spin = 0; spin < spins; ++spin) {
        if (number.load(std::memory_order_acquire) != value) {
            return;
        }
        YieldProcessor();
    }
    static_assert(sizeof number == sizeof value);
    void* const address = const_cast<std::atomic<std::uint32_t>*>(&number);
    while (number.load(std::memory_order_acquire) == value) {
        WaitOnAddress(address, &value, sizeof value, INFINITE); // may return without a change
    }
}

void WakeWaiting(std::atomic<std::uint32_t>& number)
{
    WakeByAddressAll(&number);
}

} // namespace tarnvexo::platform
