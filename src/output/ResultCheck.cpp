#include "output/ResultCheck.h"

#include "core/Parallel.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t ItemsPerRange = 512;

bool AreFinite(const double* begin, const double* end)
{
    return std::all_of(begin, end, [](double value) { return std::isfinite(value); });
}

template <std::size_t Nodes> bool AreFinite(const double (&stresses)[Nodes][StressCount])
{
    return AreFinite(&stresses[0][0], &stresses[0][0] + Nodes * StressCount);
}

bool AreFinite(const BeamSectionModel& section)
{
    return AreFinite(section.displacements.data(), section.displacements.data() + section.displacements.size()) &&
           std::all_of(section.patches.begin(), section.patches.end(),
                       [](const SectionPatch& patch) {
                           return AreFinite(patch.positiveFace) && AreFinite(patch.negativeFace);
                       }) &&
           std::all_of(section.averaged.begin(), section.averaged.end(), [](const SectionNodeStress& node) {
               return AreFinite(node.positiveFace, node.positiveFace + StressCount) &&
                      AreFinite(node.negativeFace, node.negativeFace + StressCount);
           });
}

// Those of 0 ... count - 1 for which isFinite(i) does not hold.
template <class IsFinite> NonFiniteResults CountOf(const char* kind, std::size_t count, IsFinite isFinite)
{
    std::vector<NonFiniteResults> ranges((count + ItemsPerRange - 1) / ItemsPerRange, {kind});
    ParallelFor(count, ItemsPerRange, [&](std::size_t begin, std::size_t end) {
        NonFiniteResults& found = ranges[begin / ItemsPerRange];
        for (std::size_t i = begin; i < end; ++i) {
            if (!isFinite(i) && found.bad++ == 0) {
                found.firstBad = static_cast<long long>(i);
            }
        }
    });
    NonFiniteResults sum = {kind};
    sum.all = static_cast<long long>(count);
    for (const NonFiniteResults& range : ranges) {
        sum.firstBad = sum.bad == 0 ? range.firstBad : sum.firstBad;
        sum.bad += range.bad;
    }
    return sum;
}

template <class Elements> NonFiniteResults CountShells(const char* kind, const Elements& shells)
{
    return CountOf(kind, shells.size(), [&](std::size_t e) {
        return AreFinite(shells[e].positiveFace) && AreFinite(shells[e].negativeFace) &&
               AreFinite(shells[e].averagedPositiveFace) && AreFinite(shells[e].averagedNegativeFace);
    });
}

} // namespace

std::vector<NonFiniteResults> CountNonFiniteResults(const ModelStore& model)
{
    const auto isNodeFinite = [&](std::size_t n) {
        const double* d = &model.GlobalDisplacement[DofsPerNode * n];
        return AreFinite(d, d + DofsPerNode);
    };
    return {CountOf("node", static_cast<std::size_t>(model.NPOIN), isNodeFinite),
            CountShells("four-node shell", model.QuadElements), CountShells("three-node shell", model.TriElements),
            CountOf("beam", model.BeamStressRecords.size(),
                    [&](std::size_t b) { return AreFinite(model.BeamStressRecords[b]); })};
}

std::string NonFiniteText(const std::vector<NonFiniteResults>& counts)
{
    std::string text;
    for (const NonFiniteResults& count : counts) {
        if (count.bad > 0) {
            text += text.empty() ? "" : ", ";
            text += std::to_string(count.bad) + " of " + std::to_string(count.all) + " " + count.kind + "s (first " +
                    std::to_string(count.firstBad) + ")";
        }
    }
    return text;
}

std::string ResultWarning(const ModelStore& model)
{
    const std::string found = NonFiniteText(CountNonFiniteResults(model));
    if (found.empty()) {
        return "";
    }
    return "results: warning: displacements or stresses are not numbers at " + found +
           "\n"
           "  expected: finite numbers everywhere\n"
           "  to do:    look there for zero thicknesses, sections, lengths, areas or moduli, and for free parts";
}

} // namespace tarnvexo
