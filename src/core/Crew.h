// core/Crew.h
// Threads that go through one procedure together: every member runs the same text, shares the indices of its loops with
// the others and waits for them at the end of each. For work of many short loops that depend on one another, where
// starting threads for every loop (core/Parallel) would cost more than the loop.
//
//     RunCrew(ThreadCount(), [&](CrewMember& member) {
//         for (const Step& step : steps) {
//             member.Each(step.pieces, [&](std::size_t piece) { ... });
//         }
//     });
#pragma once

#include "platform/AddressWait.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <functional>

namespace tarnvexo {

class Crew {
public:
    explicit Crew(int size) : size(size) {}

    // There is no thread for a member. To be called by another one before it has come to its first meeting: nobody has
    // gone on yet.
    void GoWithoutOne() { --size; }

private:
    friend class CrewMember;

    // Returns when all members have come; the last one makes ready for the next loop.
    void Meet()
    {
        const std::uint32_t loop = loops.load(std::memory_order_relaxed);
        if (arrived.fetch_add(1, std::memory_order_acq_rel) + 1 == size) {
            arrived.store(0, std::memory_order_relaxed);
            next.store(0, std::memory_order_relaxed);
            loops.store(loop + 1, std::memory_order_release);
            platform::WakeWaiting(loops);
        } else {
            platform::WaitWhileEqual(loops, loop);
        }
    }

    std::atomic<int> size;
    std::atomic<std::size_t> next = 0; // index of the loop at hand that nobody has taken yet
    std::atomic<int> arrived = 0;      // members that are done with it
    std::atomic<std::uint32_t> loops = 0;
};

class CrewMember {
public:
    CrewMember(Crew* crew, int number) : crew(crew), number(number) {}

    // A crew of one, without threads.
    static CrewMember Alone() { return {nullptr, 0}; }

    int Number() const { return number; } // from 0

    // work(index) for every index below count, each by one member. All members call it with the same count and go on
    // when all indices are done. work must not throw.
    template <class Work> void Each(std::size_t count, const Work& work)
    {
        if (crew == nullptr) {
            for (std::size_t index = 0; index < count; ++index) { work(index); }
            return;
        }
        for (std::size_t index = crew->next++; index < count; index = crew->next++) { work(index); }
        crew->Meet();
    }

    // work() by one member while the others wait.
    template <class Work> void One(const Work& work)
    {
        Each(1, [&](std::size_t) { work(); });
    }

private:
    Crew* crew;
    int number;
};

// Runs work on `members` threads, the calling one among them, and returns when all have ended. Fewer where the system
// does not give as many; with one, no thread is started.
void RunCrew(int members, const std::function<void(CrewMember&)>& work);

} // namespace tarnvexo
