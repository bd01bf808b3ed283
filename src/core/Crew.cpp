#include "core/Crew.h"

#include <exception>
#include <optional>
#include <thread>
#include <vector>

namespace tarnvexo {

void RunCrew(int members, const std::function<void(CrewMember&)>& work)
{
    std::optional<Crew> crew; // made when it is known how many threads there are
    std::atomic<std::uint32_t> ready = 0;
    std::vector<std::jthread> threads;
    threads.reserve(static_cast<std::size_t>(members));
    try {
        for (int number = 1; number < members; ++number) {
            threads.emplace_back([&, number] {
                platform::WaitWhileEqual(ready, 0);
                CrewMember member(&*crew, number);
                work(member);
            });
        }
    } catch (const std::exception&) { // of the system, or no memory
        // Those that there are.
    }
    if (threads.empty()) {
        CrewMember alone = CrewMember::Alone();
        work(alone);
        return;
    }
    crew.emplace(static_cast<int>(threads.size()) + 1);
    ready = 1;
    platform::WakeWaiting(ready);
    CrewMember first(&*crew, 0);
    work(first);
}

} // namespace tarnvexo
