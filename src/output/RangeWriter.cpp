#include "output/RangeWriter.h"

#include "core/Parallel.h"

#include <algorithm>
#include <atomic>
#include <cassert>
#include <condition_variable>
#include <mutex>

namespace tarnvexo {

namespace {

constexpr std::size_t BufferSize = std::size_t(1) << 19; // of each thread

// Lets ranges pass one after the other, in order.
class Queue {
public:
    // Returns when it is the range's turn; false: it never will be, because a range before it failed.
    bool WaitFor(std::size_t range)
    {
        std::unique_lock lock(mutex);
        changed.wait(lock, [&] { return current == range || failed; });
        return !failed;
    }

    void Advance()
    {
        {
            const std::lock_guard lock(mutex);
            ++current;
        }
        changed.notify_all();
    }

    void Fail()
    {
        {
            const std::lock_guard lock(mutex);
            failed = true;
        }
        changed.notify_all();
    }

private:
    std::mutex mutex;
    std::condition_variable changed;
    std::size_t current = 0;
    bool failed = false;
};

} // namespace

void WriteRanges(TextFile& file, std::size_t count, std::size_t grain, const RangeText& format)
{
    assert(grain > 0);
    const std::size_t ranges = (count + grain - 1) / grain;
    const std::size_t threads = std::min(ranges, static_cast<std::size_t>(ThreadCount()));
    if (threads < 2) {
        if (count > 0) {
            format(file.Text(), 0, count);
        }
        return;
    }

    file.Text().Flush();
    std::atomic<std::size_t> next = 0;
    Queue queue;
    // One call per thread; each takes the next range again and again. The range whose turn it is has always been taken
    // by a thread that does not wait.
    ParallelFor(threads, 1, [&](std::size_t, std::size_t) {
        std::size_t range = 0;
        TextWriter text(
            [&](std::string_view piece) {
                if (queue.WaitFor(range)) {
                    file.Append(piece);
                }
            },
            BufferSize);
        try {
            for (range = next++; range < ranges; range = next++) {
                format(text, range * grain, std::min(count, (range + 1) * grain));
                text.Flush();
                if (!queue.WaitFor(range)) { // a range may be without any text
                    return;
                }
                queue.Advance();
            }
        } catch (...) {
            queue.Fail(); // before the rest of the buffer would wait for its turn
            throw;
        }
    });
}

} // namespace tarnvexo
