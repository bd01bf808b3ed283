#include "core/Parallel.h"

#include "support/ChildProcess.h"

#include <atomic>
#include <gtest/gtest.h>
#include <pthread.h>
#include <stdexcept>
#include <system_error>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace tarnvexo;

namespace {

// Sets the number of threads for one test.
struct Threads {
    explicit Threads(int count) { SetThreadCount(count); }
    ~Threads() { SetThreadCount(0); }
};

TEST(Parallel, EveryIndexIsVisitedOnceForAnyNumberOfThreads)
{
    for (int threads : {1, 2, 7}) {
        const Threads use(threads);
        for (std::size_t count : {0u, 1u, 9u, 10u, 11u, 1000u}) {
            std::vector<int> visits(count, 0);
            ParallelFor(count, 10, [&](std::size_t begin, std::size_t end) {
                EXPECT_EQ(begin % 10, 0u);
                EXPECT_LE(end - begin, 10u);
                for (std::size_t i = begin; i < end; ++i) { ++visits[i]; }
            });
            EXPECT_EQ(visits, std::vector<int>(count, 1)) << threads << " threads";
        }
    }
}

#ifdef __GLIBC__
// No address space holds the stacks that these threads ask for.
TEST(Parallel, GoesOnWithTheThreadsThereAre)
{
    const test::ChildResult run = test::RunInChild([] {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, std::size_t(1) << 50);
        pthread_setattr_default_np(&attributes);
        EXPECT_THROW(std::jthread([] {}), std::system_error);
        const Threads use(4);
        std::vector<int> visits(1000, 0);
        ParallelFor(visits.size(), 10, [&](std::size_t begin, std::size_t end) {
            for (std::size_t i = begin; i < end; ++i) { ++visits[i]; }
        });
        _exit(visits == std::vector<int>(1000, 1) && !testing::Test::HasFailure() ? 0 : 1);
    });
    EXPECT_EQ(run.exitCode, 0) << run.error;
}
#endif

TEST(Parallel, AnExceptionOfARangeComesOutOfTheLoop)
{
    for (int threads : {1, 3}) {
        const Threads use(threads);
        std::atomic<int> ranges = 0;
        EXPECT_THROW(ParallelFor(1000, 1,
                                 [&](std::size_t begin, std::size_t) {
                                     ++ranges;
                                     if (begin == 5) {
                                         throw std::runtime_error("range 5");
                                     }
                                 }),
                     std::runtime_error);
        EXPECT_LT(ranges, 1000);
    }
}

TEST(Parallel, ThereIsAtLeastOneThread)
{
    EXPECT_GE(ThreadCount(), 1);
    const Threads use(3);
    EXPECT_EQ(ThreadCount(), 3);
}

} // namespace
