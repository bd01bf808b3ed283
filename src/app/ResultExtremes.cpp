#include "app/ResultExtremes.h"

#include "core/Parallel.h"
#include "elements/ShellNodeStress.h"

#include <algorithm>
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

} // namespace

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
