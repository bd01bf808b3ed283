// core/LargeArray.h
// An array of doubles for gigabytes of matrix: begins on a cache line, allocated without being written, so that the
// threads that fill it touch it first.
#pragma once

#include "platform/Platform.h"

#include <cstddef>
#include <memory>
#include <new>

namespace tarnvexo {

// Large pages, where the system has them, make work on an array faster that goes to and fro in it again and again. What
// is filled once and read in order gains nothing, and its first touch may take several times as long: a virtual machine
// has to get 2 MB at once from its host.
enum class Pages { Usual, Large };

class LargeArray {
public:
    LargeArray() = default;
    // Errors: throws std::bad_alloc.
    explicit LargeArray(std::size_t count, Pages pages = Pages::Large)
        : values(new (Alignment) double[count]), count(count)
    {
        if (pages == Pages::Large) {
            platform::PreferLargePages(values.get(), count * sizeof(double));
        }
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
