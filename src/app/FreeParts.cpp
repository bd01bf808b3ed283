#include "app/FreeParts.h"

#include "inertia/MotionNames.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdio>

namespace tarnvexo {

FreeParts FindFreeParts(const ModelStore& model, const std::vector<int>& holdNodes)
{
    FreeParts free;
    free.origin = model.StructureCentroid;
    free.parts = FindConnectedParts(model);
    free.restrained = RestrainedEquations(model);
    free.motions = FindPartMotions(model, free.parts, free.restrained, holdNodes);
    free.isHeld = free.restrained;
    for (const PartMotions& part : free.motions) {
        for (int equation : part.holds) { free.isHeld[equation] = 1; }
    }
    for (int node = 0; node < model.NPOIN; ++node) {
        if (free.parts.partOfNode[node] < 0) {
            std::fill_n(&free.isHeld[static_cast<std::size_t>(DofsPerNode) * node], DofsPerNode, 1);
        }
    }
    return free;
}

std::vector<PartReport> ReportParts(const FreeParts& free, DisplacementKind displacements)
{
    std::vector<PartReport> reports;
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        PartReport report;
        report.nodes = free.parts.NodeCount(part);
        report.elements = free.parts.elementCount[part];
        report.firstNode = free.parts.LowestNode(part);
        report.restrainedDofs = motions.restrainedDofs;
        report.freeMotions = static_cast<int>(motions.free.size());
        report.freeMotionTexts = FreeMotionTexts(motions, free.origin);
        report.middle = motions.reference + free.origin;
        for (int equation : motions.holds) {
            report.holds.push_back({equation / DofsPerNode, static_cast<Dof>(equation % DofsPerNode)});
        }
        report.massOrthogonal = report.freeMotions > 0 && displacements == DisplacementKind::MassOrthogonal;
        reports.push_back(report);
    }
    return reports;
}

std::vector<double> LoadSizesOfParts(const ModelStore& model, const FreeParts& free)
{
    std::vector<double> sizes(static_cast<std::size_t>(free.parts.count), 0.0);
    for (int part = 0; part < free.parts.count; ++part) {
        const PartMotions& motions = free.motions[part];
        for (int k = free.parts.firstOfPart[part]; k < free.parts.firstOfPart[part + 1]; ++k) {
            const int node = free.parts.nodes[k];
            const double* load = &model.GLOAD[static_cast<std::size_t>(DofsPerNode) * node];
            const double force = Length({load[DX], load[DY], load[DZ]});
            const double arm = Length(model.NodeCoordinates[node] - motions.reference);
            sizes[part] += force + (arm * force + Length({load[RX], load[RY], load[RZ]})) / motions.size;
        }
    }
    return sizes;
}

} // namespace tarnvexo
