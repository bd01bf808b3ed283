#include "app/SupportReactions.h"

#include "elements/BeamStiffness.h"
#include "elements/ShellStiffness.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

// Adds K·d of the elements that touch a marked node to the forces [DofsPerNode·NPOIN] of their nodes.
template <int Nodes, class Elements, class Stiffness>
void AddElementForces(const Elements& elements, const std::vector<std::array<int, Nodes>>& connectivity,
                      const std::vector<unsigned char>& isMarked, const std::vector<double>& displacements,
                      Stiffness stiffness, std::vector<double>& forces)
{
    constexpr int order = Nodes * DofsPerNode;
    for (std::size_t e = 0; e < connectivity.size(); ++e) {
        const std::array<int, Nodes>& nodes = connectivity[e];
        if (std::none_of(nodes.begin(), nodes.end(), [&](int node) { return isMarked[node] != 0; })) {
            continue;
        }
        double K[order][order];
        int map[order];
        stiffness(elements[e], K);
        ElementDofMap<Nodes>(nodes.data(), map);
        for (int i = 0; i < order; ++i) {
            for (int j = 0; j < order; ++j) { forces[map[i]] += K[i][j] * displacements[map[j]]; }
        }
    }
}

} // namespace

std::vector<double> ReactionsAt(const ModelStore& model, const std::vector<int>& equations,
                                const std::vector<double>& displacements, const std::vector<double>& loads)
{
    std::vector<unsigned char> isMarked(model.NodeCoordinates.size(), 0);
    for (int equation : equations) { isMarked[equation / DofsPerNode] = 1; }
    std::vector<double> forces(displacements.size(), 0.0);
    AddElementForces<QuadNodeCount>(model.QuadElements, model.QuadConnectivity, isMarked, displacements,
                                    QuadShellStiffness, forces);
    AddElementForces<TriNodeCount>(model.TriElements, model.TriConnectivity, isMarked, displacements, TriShellStiffness,
                                   forces);
    AddElementForces<BeamNodeCount>(model.BeamElements, model.BeamConnectivity, isMarked, displacements, BeamStiffness,
                                    forces);
    std::vector<double> reactions;
    reactions.reserve(equations.size());
    for (int equation : equations) { reactions.push_back(forces[equation] - loads[equation]); }
    return reactions;
}

} // namespace tarnvexo
