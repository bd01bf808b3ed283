// core/LargeArray.h
// An array of doubles for gigabytes of matrix: begins on a cache line, allocated without being written, on large pages
// where the system has them, so that the threads that fill it touch it first.
#pragma once

#include "platform/Platform.h"

#include <cstddef>
#include <memory>
#include <new>

namespace tarnvexo {

class LargeArray {
public:
    LargeArray() = default;
    // Errors: throws std::bad_alloc.
    explicit LargeArray(std::size_t count) : values(new (Alignment) double[count]), count(count)
    {
        platform::PreferLargePages(values.get(), count * sizeof(double));
    }

    std::size_t Size() const { return count; }
    double* Data() { return values.get(); }
    const double* Data() const { return values.get(); }

private:
    static constexpr std::align_val_t Alignment{64};

    struct Delete {
        void operator()(double* array) const { ::operator delete[](array, Alignment); }
    };

    std::unique_ptr<double[], Delete> values;
    std::size_t count = 0;
};

} // namespace tarnvexo
