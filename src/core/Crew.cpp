#include "core/Crew.h"

#include <exception>
#include <thread>
#include <vector>

namespace tarnvexo {

void RunCrew(int members, const std::function<void(CrewMember&)>& work)
{
    if (members <= 1) {
        CrewMember alone = CrewMember::Alone();
        work(alone);
        return;
    }
    Crew crew(members);
    std::vector<std::jthread> threads;
    try {
        threads.reserve(static_cast<std::size_t>(members));
        for (int number = 1; number < members; ++number) {
            threads.emplace_back([&crew, &work, number] {
                CrewMember member(&crew, number);
                work(member);
            });
        }
    } catch (const std::exception&) { // of the system, or no memory: those that there are
        for (int missing = members - 1 - static_cast<int>(threads.size()); missing > 0; --missing) {
            crew.GoWithoutOne();
        }
    }
    CrewMember first(&crew, 0);
    work(first);
}

} // namespace tarnvexo
