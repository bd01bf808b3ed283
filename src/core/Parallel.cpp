#include "core/Parallel.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace tarnvexo {

namespace {

int threadCount = 0; // 0: as many as there are processors

} // namespace

int ThreadCount()
{
    return threadCount > 0 ? threadCount : std::max(1, static_cast<int>(std::thread::hardware_concurrency()));
}

void SetThreadCount(int count)
{
    threadCount = count;
}

void ParallelFor(std::size_t count, std::size_t grain, const RangeBody& body)
{
    assert(grain > 0);
    const std::size_t ranges = (count + grain - 1) / grain;
    std::atomic<std::size_t> next = 0;
    std::exception_ptr failure;
    std::mutex failureMutex;
    const auto work = [&] {
        for (std::size_t range = next++; range < ranges; range = next++) {
            try {
                body(range * grain, std::min(count, (range + 1) * grain));
            } catch (...) {
                const std::lock_guard lock(failureMutex);
                failure = std::current_exception();
                next = ranges;
            }
        }
    };

    std::vector<std::jthread> helpers;
    const std::size_t useful = std::min(ranges, static_cast<std::size_t>(ThreadCount()));
    try {
        for (std::size_t t = 1; t < useful; ++t) { helpers.emplace_back(work); }
    } catch (const std::system_error&) {
        // No room for another thread: those that have begun do the work.
    }
    work();
    helpers.clear(); // waits
    if (failure) {
        std::rethrow_exception(failure);
    }
}

} // namespace tarnvexo
