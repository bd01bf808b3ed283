#include "checks/PartSummary.h"

#include "checks/FindingText.h"
#include "elements/BeamSection.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace tarnvexo {

namespace {

template <std::size_t Nodes>
std::array<Vector3, Nodes> CornersOf(const ModelStore& model, const std::array<int, Nodes>& nodes)
{
    std::array<Vector3, Nodes> corners;
    for (std::size_t i = 0; i < Nodes; ++i) { corners[i] = model.NodeCoordinates[nodes[i]]; }
    return corners;
}

// Of the projection on the plane of the first three nodes, as the element has it: half the product of the diagonals.
double Area(const std::array<Vector3, QuadNodeCount>& X)
{
    const Vector3 normal = Cross(X[1] - X[0], X[2] - X[0]);
    const Vector3 twice = Cross(X[2] - X[0], X[3] - X[1]);
    const double length = Length(normal);
    return length > 0.0 ? 0.5 * std::fabs(Dot(twice, normal)) / length : 0.5 * Length(twice);
}

double Area(const std::array<Vector3, TriNodeCount>& X)
{
    return 0.5 * Length(Cross(X[1] - X[0], X[2] - X[0]));
}

double ShellMass(const ModelStore& model, double area, const ShellPropertyRef& property)
{
    return area * model.Thicknesses[property.thickness] * model.Materials[property.material].Density;
}

void AddNodes(const ModelStore& model, const ConnectedParts& parts, int p, PartSummary& part)
{
    part.nodes = parts.NodeCount(p);
    part.lowestNode = parts.LowestNode(p);
    part.boxLow = part.boxHigh = model.NodeCoordinates[part.lowestNode];
    for (int i = parts.firstOfPart[p]; i < parts.firstOfPart[p + 1]; ++i) {
        const Vector3& X = model.NodeCoordinates[parts.nodes[i]];
        for (int k = 0; k < 3; ++k) {
            part.boxLow[k] = std::min(part.boxLow[k], X[k]);
            part.boxHigh[k] = std::max(part.boxHigh[k], X[k]);
        }
    }
    part.centre = 0.5 * part.boxLow + 0.5 * part.boxHigh;
}

} // namespace

std::vector<PartSummary> SummariseParts(const ModelStore& model, const ConnectedParts& parts)
{
    std::vector<PartSummary> summaries(parts.count);
    for (int p = 0; p < parts.count; ++p) { AddNodes(model, parts, p, summaries[p]); }
    const auto partOf = [&](const auto& elementNodes) -> PartSummary& {
        return summaries[parts.partOfNode[elementNodes[0]]];
    };

    for (std::size_t e = 0; e < model.QuadConnectivity.size(); ++e) {
        PartSummary& part = partOf(model.QuadConnectivity[e]);
        ++part.quads;
        part.mass += ShellMass(model, Area(CornersOf(model, model.QuadConnectivity[e])), model.QuadProperties[e]);
    }
    for (std::size_t e = 0; e < model.TriConnectivity.size(); ++e) {
        PartSummary& part = partOf(model.TriConnectivity[e]);
        ++part.tris;
        part.mass += ShellMass(model, Area(CornersOf(model, model.TriConnectivity[e])), model.TriProperties[e]);
    }
    for (std::size_t e = 0; e < model.BeamConnectivity.size(); ++e) {
        PartSummary& part = partOf(model.BeamConnectivity[e]);
        const BeamElement& beam = model.BeamElements[e];
        ++part.beams;
        part.mass += beam.section.A * BeamLength(beam) * beam.Density;
    }

    std::vector<std::array<bool, DofsPerNode>> isRestrained(model.NPOIN);
    for (const Restraint& restraint : model.Restraints) {
        const int p = parts.partOfNode[restraint.node];
        for (int k = 0; k < DofsPerNode; ++k) {
            if (p >= 0 && restraint.flags[k] == 1 && !isRestrained[restraint.node][k]) {
                isRestrained[restraint.node][k] = true;
                ++summaries[p].restrainedDirections;
            }
        }
    }
    for (const NodalForce& force : model.NodalForces) {
        const int p = parts.partOfNode[force.node];
        if (p >= 0) {
            ++summaries[p].nodalForces;
        }
    }
    for (const ShellDistributedLoad& load : model.QuadDistributedLoads) {
        ++partOf(model.QuadConnectivity[load.element]).distributedLoads;
    }
    for (const ShellDistributedLoad& load : model.TriDistributedLoads) {
        ++partOf(model.TriConnectivity[load.element]).distributedLoads;
    }
    for (const BeamDistributedLoad& load : model.BeamDistributedLoads) {
        ++partOf(model.BeamConnectivity[load.element]).distributedLoads;
    }
    return summaries;
}

std::string PartSummaryText(const PartSummary& part)
{
    std::string text = Counted(part.nodes, "node");
    const auto addElements = [&](int count, const char* what) {
        if (count > 0) {
            text += ", " + Counted(count, what);
        }
    };
    addElements(part.quads, "quad");
    addElements(part.tris, "tri");
    addElements(part.beams, "beam");
    return text + ", mass " + ShortNumber(part.mass) + ", from " + PlaceText(part.boxLow) + " to " +
           PlaceText(part.boxHigh) + ", " + Counted(part.restrainedDirections, "direction") + " restrained, " +
           Counted(part.nodalForces + part.distributedLoads, "load");
}

} // namespace tarnvexo
