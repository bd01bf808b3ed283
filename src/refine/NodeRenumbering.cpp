#include "refine/NodeRenumbering.h"

#include "solver/BandOrdering.h"

#include <algorithm>
#include <cassert>
#include <cstddef>
#include <numeric>

namespace tarnvexo {

void PermuteNodes(ModelStore& model, const std::vector<int>& newNumber)
{
    assert(newNumber.size() == model.NodeCoordinates.size());
    std::vector<Vector3> coordinates(model.NodeCoordinates.size());
    for (std::size_t n = 0; n < coordinates.size(); ++n) {
        coordinates[std::size_t(newNumber[n])] = model.NodeCoordinates[n];
    }
    model.NodeCoordinates = std::move(coordinates);

    const auto renumber = [&](int& node) { node = newNumber[std::size_t(node)]; };
    for (auto& nodes : model.QuadConnectivity) { std::for_each(nodes.begin(), nodes.end(), renumber); }
    for (auto& nodes : model.TriConnectivity) { std::for_each(nodes.begin(), nodes.end(), renumber); }
    for (auto& nodes : model.BeamConnectivity) { std::for_each(nodes.begin(), nodes.end(), renumber); }
    for (Restraint& restraint : model.Restraints) { renumber(restraint.node); }
    for (NodalForce& force : model.NodalForces) { renumber(force.node); }
}

Renumbering RenumberNodes(ModelStore& model)
{
    const NodeGraph graph = BuildNodeGraph(model);
    Renumbering result;
    result.newNumber.resize(std::size_t(model.NPOIN));
    std::iota(result.newNumber.begin(), result.newNumber.end(), 0);
    result.skylineEntriesBefore = result.skylineEntriesAfter = SkylineCostWith(graph, result.newNumber).entries;

    std::vector<int> reordered = ReverseCuthillMcKee(graph);
    const std::int64_t entries = SkylineCostWith(graph, reordered).entries;
    if (entries < result.skylineEntriesBefore) {
        result.newNumber = std::move(reordered);
        result.skylineEntriesAfter = entries;
        PermuteNodes(model, result.newNumber);
    }
    return result;
}

} // namespace tarnvexo
