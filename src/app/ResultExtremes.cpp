#include "app/ResultExtremes.h"

#include "core/Parallel.h"
#include "elements/ShellNodeStress.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t ItemsPerRange = 4096;

// The largest of measure(i) over i = 0 ... count - 1; measure gives an ExtremeValue.
template <class Measure> ExtremeValue LargestOf(std::size_t count, Measure measure)
{
    std::vector<ExtremeValue> largest((count + ItemsPerRange - 1) / ItemsPerRange);
    ParallelFor(count, ItemsPerRange, [&](std::size_t begin, std::size_t end) {
        ExtremeValue& found = largest[begin / ItemsPerRange];
        found = measure(begin);
        for (std::size_t i = begin + 1; i < end; ++i) {
            const ExtremeValue value = measure(i);
            if (value.value > found.value) {
                found = value;
            }
        }
    });
    ExtremeValue result = largest.empty() ? ExtremeValue() : largest.front();
    for (const ExtremeValue& value : largest) {
        if (value.value > result.value) {
            result = value;
        }
    }
    return result;
}

// firstDof: DX or RX.
ExtremeValue LargestNodeVector(const ModelStore& model, Dof firstDof)
{
    return LargestOf(model.NodeCoordinates.size(), [&](std::size_t n) {
        const double* d = &model.GlobalDisplacement[DofsPerNode * n + firstDof];
        ExtremeValue value;
        value.value = Length({d[0], d[1], d[2]});
        value.node = static_cast<int>(n);
        value.place = model.NodeCoordinates[n];
        return value;
    });
}

template <int Nodes>
ExtremeValue LargestStressOf(const ModelStore& model, const std::vector<ShellElement<Nodes>>& shells,
                             const std::vector<std::array<int, Nodes>>& connectivity, const char* kind)
{
    return LargestOf(shells.size(), [&](std::size_t e) {
        ExtremeValue value;
        for (std::size_t i = 0; i < Nodes; ++i) {
            const double stress = std::max(EquivalentStress(shells[e].averagedPositiveFace[i]),
                                           EquivalentStress(shells[e].averagedNegativeFace[i]));
            if (i == 0 || stress > value.value) {
                value.value = stress;
                value.node = connectivity[e][i];
                value.element = static_cast<int>(e);
                value.kind = kind;
                value.place = model.NodeCoordinates[value.node];
            }
        }
        return value;
    });
}

constexpr const char* StressNames[StressCount] = {"SX", "SY", "SZ", "TXY", "TXZ", "TYZ"};
constexpr const char* DirectionNames[DofsPerNode] = {"dx", "dy", "dz", "rx", "ry", "rz"};

// Where a component is smallest or largest: item and corner.
struct Found {
    double value = 0.0;
    std::ptrdiff_t item = -1;
    int corner = 0;
};

template <int Components> struct Range {
    std::array<Found, Components> smallest, largest;

    void Take(const double* values, std::size_t item, int corner)
    {
        for (int c = 0; c < Components; ++c) {
            const Found here = {values[c], static_cast<std::ptrdiff_t>(item), corner};
            if (smallest[c].item < 0 || here.value < smallest[c].value) {
                smallest[c] = here;
            }
            if (largest[c].item < 0 || here.value > largest[c].value) {
                largest[c] = here;
            }
        }
    }
    void Take(const Range& behind)
    {
        for (int c = 0; c < Components; ++c) {
            if (behind.smallest[c].item >= 0 &&
                (smallest[c].item < 0 || behind.smallest[c].value < smallest[c].value)) {
                smallest[c] = behind.smallest[c];
            }
            if (behind.largest[c].item >= 0 && (largest[c].item < 0 || behind.largest[c].value > largest[c].value)) {
                largest[c] = behind.largest[c];
            }
        }
    }
};

// take(i, range) takes the values of one item.
template <int Components, class Take> Range<Components> RangeOf(std::size_t count, Take take)
{
    std::vector<Range<Components>> ranges((count + ItemsPerRange - 1) / ItemsPerRange);
    ParallelFor(count, ItemsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t i = begin; i < end; ++i) { take(i, ranges[begin / ItemsPerRange]); }
    });
    Range<Components> all;
    for (const Range<Components>& range : ranges) { all.Take(range); }
    return all;
}

// place(found): the extreme value with its node, element and place.
template <int Components, class Place>
void AddExtremes(const Range<Components>& range, const char* const (&names)[Components], Place place,
                 std::vector<ComponentExtremes>& extremes)
{
    for (int c = 0; c < Components && range.smallest[c].item >= 0; ++c) {
        extremes.push_back({names[c], place(range.smallest[c]), place(range.largest[c])});
    }
}

template <int Nodes>
std::vector<ComponentExtremes> StressExtremesOf(const ModelStore& model, const std::vector<ShellElement<Nodes>>& shells,
                                                const std::vector<std::array<int, Nodes>>& connectivity,
                                                const char* kind)
{
    const auto range = RangeOf<StressCount>(shells.size(), [&](std::size_t e, Range<StressCount>& found) {
        for (int i = 0; i < Nodes; ++i) {
            found.Take(shells[e].averagedPositiveFace[i], e, i);
            found.Take(shells[e].averagedNegativeFace[i], e, i);
        }
    });
    std::vector<ComponentExtremes> extremes;
    AddExtremes(
        range, StressNames,
        [&](const Found& found) {
            const int node = connectivity[static_cast<std::size_t>(found.item)][found.corner];
            return ExtremeValue{found.value, node, static_cast<int>(found.item), kind, model.NodeCoordinates[node]};
        },
        extremes);
    return extremes;
}

} // namespace

std::vector<ComponentExtremes> DisplacementExtremes(const ModelStore& model)
{
    const auto range =
        RangeOf<DofsPerNode>(model.NodeCoordinates.size(), [&](std::size_t n, Range<DofsPerNode>& found) {
            found.Take(&model.GlobalDisplacement[DofsPerNode * n], n, 0);
        });
    std::vector<ComponentExtremes> extremes;
    AddExtremes(
        range, DirectionNames,
        [&](const Found& found) {
            const int node = static_cast<int>(found.item);
            return ExtremeValue{found.value, node, -1, "", model.NodeCoordinates[node]};
        },
        extremes);
    return extremes;
}

std::vector<ComponentExtremes> ShellStressExtremes(const ModelStore& model)
{
    std::vector<ComponentExtremes> extremes =
        StressExtremesOf<QuadNodeCount>(model, model.QuadElements, model.QuadConnectivity, "quad");
    const std::vector<ComponentExtremes> tris =
        StressExtremesOf<TriNodeCount>(model, model.TriElements, model.TriConnectivity, "tri");
    if (extremes.empty()) {
        return tris;
    }
    for (std::size_t c = 0; c < tris.size(); ++c) {
        if (tris[c].smallest.value < extremes[c].smallest.value) {
            extremes[c].smallest = tris[c].smallest;
        }
        if (tris[c].largest.value > extremes[c].largest.value) {
            extremes[c].largest = tris[c].largest;
        }
    }
    return extremes;
}

std::vector<ComponentExtremes> BeamStressExtremes(const ModelStore& model)
{
    const auto range =
        RangeOf<StressCount>(model.BeamStressRecords.size(), [&](std::size_t b, Range<StressCount>& found) {
            const std::vector<SectionNodeStress>& averaged = model.BeamStressRecords[b].averaged;
            for (std::size_t n = 1; n + 1 < averaged.size(); ++n) { // the beam's ends have no walls of their own
                found.Take(averaged[n].positiveFace, b, static_cast<int>(n));
                found.Take(averaged[n].negativeFace, b, static_cast<int>(n));
            }
        });
    std::vector<ComponentExtremes> extremes;
    AddExtremes(
        range, StressNames,
        [&](const Found& found) {
            const std::size_t beam = static_cast<std::size_t>(found.item);
            return ExtremeValue{found.value, -1, static_cast<int>(beam), "beam",
                                model.BeamStressRecords[beam].nodes[found.corner]};
        },
        extremes);
    return extremes;
}

ExtremeValue LargestTranslation(const ModelStore& model)
{
    return LargestNodeVector(model, DX);
}

ExtremeValue LargestRotation(const ModelStore& model)
{
    return LargestNodeVector(model, RX);
}

ExtremeValue LargestShellStress(const ModelStore& model)
{
    const ExtremeValue quad = LargestStressOf<QuadNodeCount>(model, model.QuadElements, model.QuadConnectivity, "quad");
    const ExtremeValue tri = LargestStressOf<TriNodeCount>(model, model.TriElements, model.TriConnectivity, "tri");
    return quad.element < 0 || tri.value > quad.value ? tri : quad;
}

ExtremeValue LargestBeamStress(const ModelStore& model)
{
    return LargestOf(model.BeamStressRecords.size(), [&](std::size_t b) {
        const BeamSectionModel& section = model.BeamStressRecords[b];
        ExtremeValue value;
        for (std::size_t n = 0; n < section.averaged.size(); ++n) {
            const SectionNodeStress& averaged = section.averaged[n];
            const double stress =
                std::max(EquivalentStress(averaged.positiveFace), EquivalentStress(averaged.negativeFace));
            if (value.element < 0 || stress > value.value) {
                value.value = stress;
                value.element = static_cast<int>(b);
                value.kind = "beam";
                value.place = section.nodes[n];
            }
        }
        return value;
    });
}

} // namespace tarnvexo
