#include "output/ShellStressRecovery.h"

#include "core/Parallel.h"
#include "elements/QuadGeometry.h"
#include "elements/ShellNodeStress.h"

namespace tarnvexo {

namespace {

constexpr std::size_t ElementsPerRange = 256;

void RecoverQuadStresses(QuadShellElement& element, const std::array<int, QuadNodeCount>& nodes,
                         const std::vector<double>& displacements)
{
    double d[QuadDofCount];
    GatherDisplacements<QuadNodeCount>(nodes.data(), displacements, d);
    for (int i = 0; i < QuadNodeCount; ++i) {
        QuadNodeStress(element, element.positiveFace[i], element.negativeFace[i], d, QuadNodeXi[i], QuadNodeEta[i]);
    }
}

void RecoverTriStresses(TriShellElement& element, const std::array<int, TriNodeCount>& nodes,
                        const std::vector<double>& displacements)
{
    double d[TriDofCount];
    GatherDisplacements<TriNodeCount>(nodes.data(), displacements, d);
    for (int i = 0; i < TriNodeCount; ++i) {
        double corner[TriNodeCount] = {};
        corner[i] = 1.0;
        TriNodeStress(element, element.positiveFace[i], element.negativeFace[i], d, corner);
    }
}

} // namespace

void RecoverShellStresses(ModelStore& model)
{
    ParallelFor(model.QuadElements.size(), ElementsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            RecoverQuadStresses(model.QuadElements[e], model.QuadConnectivity[e], model.GlobalDisplacement);
        }
    });
    ParallelFor(model.TriElements.size(), ElementsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            RecoverTriStresses(model.TriElements[e], model.TriConnectivity[e], model.GlobalDisplacement);
        }
    });
}

} // namespace tarnvexo
