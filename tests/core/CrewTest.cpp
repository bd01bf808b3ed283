#include "core/Crew.h"

#include "support/ChildProcess.h"

#include <atomic>
#include <gtest/gtest.h>
#include <numeric>
#include <pthread.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace tarnvexo;

namespace {

// The last ones are more than the processors of most machines.
constexpr int CrewSizes[] = {1, 2, 3, 10, 40};

TEST(Crew, TakesEveryIndexOnce)
{
    for (const int members : CrewSizes) {
        for (const std::size_t count : {0u, 1u, 2u, 39u, 1000u}) {
            std::vector<int> visits(count, 0); // no lock: two members at one index would be a race
            RunCrew(members,
                    [&](CrewMember& member) { member.Each(count, [&](std::size_t index) { ++visits[index]; }); });
            EXPECT_EQ(visits, std::vector<int>(count, 1)) << members << " members";
        }
    }
}

// Every number is the sum of its neighbours in the row before: a loop that began too early would read an old one.
TEST(Crew, EndsALoopBeforeTheNextBegins)
{
    constexpr std::size_t Width = 61, Loops = 300;
    const auto next = [](const std::vector<unsigned>& before, std::size_t i) {
        return before[(i + Width - 1) % Width] + before[i] + before[(i + 1) % Width];
    };
    std::vector<unsigned> start(Width);
    std::iota(start.begin(), start.end(), 1u);
    std::vector<unsigned> expected = start;
    for (std::size_t loop = 0; loop < Loops; ++loop) {
        const std::vector<unsigned> before = expected;
        for (std::size_t i = 0; i < Width; ++i) { expected[i] = next(before, i); }
    }
    for (const int members : CrewSizes) {
        std::vector<unsigned> rows[2] = {start, std::vector<unsigned>(Width)};
        RunCrew(members, [&](CrewMember& member) {
            for (std::size_t loop = 0; loop < Loops; ++loop) {
                member.Each(Width, [&](std::size_t i) { rows[(loop + 1) % 2][i] = next(rows[loop % 2], i); });
            }
        });
        EXPECT_EQ(rows[Loops % 2], expected) << members << " members";
    }
}

TEST(Crew, GoesThroughLoopsWithoutIndices)
{
    for (const int members : CrewSizes) {
        int visits = 0;
        RunCrew(members, [&](CrewMember& member) {
            for (int loop = 0; loop < 100; ++loop) {
                member.Each(0, [&](std::size_t) { visits = -1000; });
                member.Each(1, [&](std::size_t) { ++visits; });
                member.Each(0, [&](std::size_t) { visits = -1000; });
            }
        });
        EXPECT_EQ(visits, 100) << members << " members";
    }
}

TEST(Crew, HasOneMemberDoWhatTheOthersWaitFor)
{
    for (const int members : CrewSizes) {
        int turn = 0;
        std::atomic<int> late = 0;
        RunCrew(members, [&](CrewMember& member) {
            for (int k = 1; k <= 100; ++k) {
                member.One([&] { turn = k; });
                late += turn != k ? 1 : 0;
                member.One([] {}); // nobody goes on while another still looks
            }
        });
        EXPECT_EQ(turn, 100);
        EXPECT_EQ(late, 0) << members << " members";
    }
}

TEST(Crew, NumbersItsMembersFromZero)
{
    for (const int members : CrewSizes) {
        std::vector<std::atomic<int>> seen(static_cast<std::size_t>(members));
        RunCrew(members, [&](CrewMember& member) { ++seen[static_cast<std::size_t>(member.Number())]; });
        for (const std::atomic<int>& times : seen) { EXPECT_EQ(times, 1) << members << " members"; }
    }
}

TEST(Crew, OfOneWorksOnTheCallingThread)
{
    std::thread::id worker;
    RunCrew(1, [&](CrewMember& member) { member.Each(1, [&](std::size_t) { worker = std::this_thread::get_id(); }); });
    EXPECT_EQ(worker, std::this_thread::get_id());
}

TEST(Crew, MemberAloneTakesTheIndicesInOrder)
{
    CrewMember alone = CrewMember::Alone();
    EXPECT_EQ(alone.Number(), 0);
    std::vector<std::size_t> taken;
    alone.Each(5, [&](std::size_t index) { taken.push_back(index); });
    EXPECT_EQ(taken, (std::vector<std::size_t>{0, 1, 2, 3, 4}));
}

#ifdef __GLIBC__
// No address space holds the stacks that these threads ask for.
TEST(Crew, GoesOnWithTheThreadsThereAre)
{
    const test::ChildResult run = test::RunInChild([] {
        pthread_attr_t attributes;
        pthread_attr_init(&attributes);
        pthread_attr_setstacksize(&attributes, std::size_t(1) << 50);
        pthread_setattr_default_np(&attributes);
        std::vector<int> visits(1000, 0);
        RunCrew(4,
                [&](CrewMember& member) { member.Each(visits.size(), [&](std::size_t index) { ++visits[index]; }); });
        _exit(visits == std::vector<int>(1000, 1) ? 0 : 1);
    });
    EXPECT_EQ(run.exitCode, 0) << run.error;
}
#endif

} // namespace
