#include "support/VectorUnits.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace tarnvexo::test {

VectorUnit::VectorUnit(std::int64_t target)
{
    hwy::SetSupportedTargetsForTest(target);
    hwy::GetChosenTarget().Update(target);
}

VectorUnit::~VectorUnit()
{
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().DeInit();
}

std::vector<std::int64_t> VectorUnits()
{
    std::vector<std::int64_t> units;
    for (std::int64_t left = hwy::SupportedTargets() | HWY_SCALAR; left != 0; left &= left - 1) {
        units.push_back(left & -left);
    }
    return units;
}

void OnEveryVectorUnit(const std::function<void()>& check)
{
    for (const std::int64_t unit : VectorUnits()) {
        SCOPED_TRACE(hwy::TargetName(unit));
        const VectorUnit chosen(unit);
        check();
    }
}

} // namespace tarnvexo::test
