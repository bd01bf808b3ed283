#include "inertia/BalanceCheck.h"

#include "inertia/InertiaRelief.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace tarnvexo {

namespace {

// False for a component that is not a number, too.
bool IsWithin(const Vector3& v, double limit)
{
    return std::all_of(v.begin(), v.end(), [limit](double component) { return std::fabs(component) <= limit; });
}

} // namespace

LoadSizes SizesOfLoads(const ModelStore& model)
{
    LoadSizes sizes;
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* load = &model.GLOAD[std::size_t(DofsPerNode) * n];
        const double force = Length({load[DX], load[DY], load[DZ]});
        sizes.forces += force;
        sizes.moments += Length(model.NodeCoordinates[n]) * force + Length({load[RX], load[RY], load[RZ]});
    }
    return sizes;
}

std::string BalanceWarning(const ModelStore& model, const LoadSizes& applied)
{
    const LoadResultant rest = ResultantOfLoads(model);
    const LoadSizes balanced = SizesOfLoads(model);
    if (IsWithin(rest.force, BalanceTolerance * (applied.forces + balanced.forces)) &&
        IsWithin(rest.moment, BalanceTolerance * (applied.moments + balanced.moments))) {
        return "";
    }
    char text[600];
    std::snprintf(text, sizeof text,
                  "fem_solving.txt: warning: the balanced loads keep a resultant, which the supports will carry\n"
                  "  remains:  force %.6g, %.6g, %.6g; moment about the centroid %.6g, %.6g, %.6g\n"
                  "  expected: zero within %g of the loads; beams and several densities leave one by design\n"
                  "  to do:    judge results near the supports with care; without mass in the model, enter densities",
                  rest.force[0], rest.force[1], rest.force[2], rest.moment[0], rest.moment[1], rest.moment[2],
                  BalanceTolerance);
    return text;
}

} // namespace tarnvexo
