// core/Parallel.h
// Loops shared between threads. A loop is cut into ranges of fixed length, whatever the number of threads; the ranges
// are handed out in order to whichever thread is free. As long as a range writes only what belongs to it, the result
// is the same to the last bit for any number of threads.
//
//     ParallelFor(elements.size(), 256, [&](std::size_t begin, std::size_t end) {
//         for (std::size_t e = begin; e < end; ++e) { ... }
//     });
//
// Threads are started for the loop and end with it (some 20 µs each): nobody waits in a spin, nothing stays behind.
#pragma once

#include <cstddef>
#include <functional>

namespace tarnvexo {

// Threads that loops may use: the processors that this process may run on until set otherwise; at least one.
int ThreadCount();
void SetThreadCount(int count);

// Called for each range [begin, end) of at most `grain` indices of 0 ... count - 1; grain > 0.
using RangeBody = std::function<void(std::size_t begin, std::size_t end)>;

// Returns when every range is done, by fewer threads where the system does not give as many. A range that throws stops
// the loop; the exception comes out here.
void ParallelFor(std::size_t count, std::size_t grain, const RangeBody& body);

} // namespace tarnvexo
