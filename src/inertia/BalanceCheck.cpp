#include "inertia/BalanceCheck.h"

#include "inertia/InertiaRelief.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace tarnvexo {

namespace {

double LargestComponent(const Vector3& v)
{
    return std::max({std::fabs(v[0]), std::fabs(v[1]), std::fabs(v[2])});
}

} // namespace

std::string BalanceWarning(const ModelStore& model)
{
    // What the resultants are the sums of: forces, and moments with their arms.
    double forces = 0.0;
    double moments = 0.0;
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* load = &model.GLOAD[std::size_t(DofsPerNode) * n];
        const double force = Length({load[DX], load[DY], load[DZ]});
        forces += force;
        moments += Length(model.NodeCoordinates[n]) * force + Length({load[RX], load[RY], load[RZ]});
    }
    const LoadResultant rest = ResultantOfLoads(model);
    // Not "greater": a resultant that is not a number is reported too.
    const bool balanced = LargestComponent(rest.force) <= BalanceTolerance * forces &&
                          LargestComponent(rest.moment) <= BalanceTolerance * moments;
    if (balanced) {
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
