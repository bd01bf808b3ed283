// Wall time of the stages of a program, one after the other.
#pragma once

#include <chrono>

namespace tarnvexo {

class Stopwatch {
public:
    double Lap() // seconds since the last one, or since the start
    {
        const auto now = std::chrono::steady_clock::now();
        const double seconds = std::chrono::duration<double>(now - last).count();
        last = now;
        return seconds;
    }

private:
    std::chrono::steady_clock::time_point last = std::chrono::steady_clock::now();
};

} // namespace tarnvexo
