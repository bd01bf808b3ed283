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

std::string BalanceWarning(const ModelStore& model, const LoadSizes& applied, const char* modelName)
{
    const LoadResultant rest = ResultantOfLoads(model);
    const LoadSizes balanced = SizesOfLoads(model);
    const double forceLimit = BalanceTolerance * (applied.forces + balanced.forces);
    const double momentLimit = BalanceTolerance * (applied.moments + balanced.moments);
    char text[700];
    if (!std::isfinite(forceLimit + momentLimit)) {
        std::snprintf(text, sizeof text,
                      "%s: warning: the balanced loads are not numbers, and so are all results\n"
                      "  expected: a mass that is not zero and not all on one line\n"
                      "  to do:    enter densities; look for thicknesses, sections, lengths or areas of zero",
                      modelName);
        return text;
    }
    if (IsWithin(rest.force, forceLimit) && IsWithin(rest.moment, momentLimit)) {
        return "";
    }
    std::snprintf(
        text, sizeof text,
        "%s: warning: the balanced loads keep a resultant, which the supports will carry\n"
        "  remains:  force %.6g, %.6g, %.6g; moment about the centroid %.6g, %.6g, %.6g\n"
        "  expected: zero within %g of the loads; beams and several densities leave one by design\n"
        "  to do:    judge results near the supports with care; in a model of shells of one density look for\n"
        "            crossed or strongly warped quadrilaterals",
        modelName, rest.force[0], rest.force[1], rest.force[2], rest.moment[0], rest.moment[1], rest.moment[2],
        BalanceTolerance);
    return text;
}

std::string SupportWarning(const ModelStore& model, const LoadSizes& applied, const char* modelName)
{
    int restrained = 0;
    for (const Restraint& restraint : model.Restraints) {
        restrained += static_cast<int>(std::count(restraint.flags, restraint.flags + DofsPerNode, 1));
    }
    constexpr int rigidMotions = 6;
    if (restrained <= rigidMotions || (applied.forces == 0.0 && applied.moments == 0.0)) {
        return "";
    }
    char text[500];
    std::snprintf(text, sizeof text,
                  "%s: warning: %d directions are restrained, but the loads are balanced by inertia, not by supports\n"
                  "  expected: a structure that floats, flies or hangs free, held in position by six directions\n"
                  "  to do:    do not use these results for a structure that stands on its supports",
                  modelName, restrained);
    return text;
}

} // namespace tarnvexo
