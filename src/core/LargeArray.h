// core/LargeArray.h
// An array of doubles for gigabytes of matrix: allocated without being written, on large pages where the system has
// them, so that the threads that fill it touch it first.
#pragma once

#include "platform/Platform.h"

#include <cstddef>
#include <memory>

namespace tarnvexo {

class LargeArray {
public:
    LargeArray() = default;
    // Errors: throws std::bad_alloc.
    explicit LargeArray(std::size_t count) : values(new double[count]), count(count)
    {
        platform::PreferLargePages(values.get(), count * sizeof(double));
    }

    std::size_t Size() const { return count; }
    double* Data() { return values.get(); }
    const double* Data() const { return values.get(); }

private:
    std::unique_ptr<double[]> values;
    std::size_t count = 0;
};

} // namespace tarnvexo
