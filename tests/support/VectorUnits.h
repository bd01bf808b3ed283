// support/VectorUnits.h
// Kernels that exist once for each kind of vector unit: a test runs them on every one that this processor has.
#pragma once

#include <cstdint>
#include <functional>
#include <vector>

namespace tarnvexo::test {

// Has the kernels use one kind of vector unit, and the best one again when it goes out of scope.
class VectorUnit {
public:
    explicit VectorUnit(std::int64_t target);
    ~VectorUnit();
    VectorUnit(const VectorUnit&) = delete;
    VectorUnit& operator=(const VectorUnit&) = delete;
};

// One bit for each kind this processor has, the plainest included.
std::vector<std::int64_t> VectorUnits();

// Calls check with each of them in use; failures tell its name.
void OnEveryVectorUnit(const std::function<void()>& check);

} // namespace tarnvexo::test
