#include "output/ResultCheck.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

// Things of one kind that were looked at, and those among them with a value that is not finite.
struct Count {
    const char* kind;
    long long all = 0;
    long long bad = 0;
    long long firstBad = 0;

    void Add(const double* begin, const double* end)
    {
        const bool finite = std::all_of(begin, end, [](double value) { return std::isfinite(value); });
        if (!finite && bad++ == 0) {
            firstBad = all;
        }
        ++all;
    }
};

template <class Elements> void AddShells(const Elements& elements, Count& count)
{
    for (const auto& element : elements) {
        // The other face has the same membrane and bending stresses with another sign between them.
        const double* stress = &element.positiveFace[0][0];
        count.Add(stress, stress + element.NodeCount * StressCount);
    }
}

} // namespace

std::string ResultWarning(const ModelStore& model)
{
    Count counts[] = {{"node"}, {"four-node shell"}, {"three-node shell"}, {"beam"}};
    for (int n = 0; n < model.NPOIN; ++n) {
        const double* d = &model.GlobalDisplacement[std::size_t(DofsPerNode) * n];
        counts[0].Add(d, d + DofsPerNode);
    }
    AddShells(model.QuadElements, counts[1]);
    AddShells(model.TriElements, counts[2]);
    for (const BeamSectionModel& section : model.BeamStressRecords) {
        counts[3].Add(section.displacements.data(), section.displacements.data() + section.displacements.size());
    }

    std::string found;
    for (const Count& count : counts) {
        if (count.bad > 0) {
            found += found.empty() ? "" : ", ";
            found += std::to_string(count.bad) + " of " + std::to_string(count.all) + " " + count.kind + "s (first " +
                     std::to_string(count.firstBad) + ")";
        }
    }
    if (found.empty()) {
        return "";
    }
    return "results: warning: displacements or stresses are not numbers at " + found +
           "\n"
           "  expected: finite numbers everywhere\n"
           "  to do:    look there for zero thicknesses, sections, lengths, areas or moduli, and for free parts";
}

} // namespace tarnvexo
