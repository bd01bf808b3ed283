// checks/CoincidentNodes.h
// Nodes of elements that stand at one place: no farther apart than a distance, and than the reach of either
// (checks/NodeTree.h), directly or through others between them.
#pragma once

#include "checks/NodeTree.h"
#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

struct CoincidentNodes {
    std::vector<int> leader; // [NPOIN] the lowest node at the place of each; itself where it is alone
    bool any = false;
};

// Thousands of nodes at one place cost no more than as many at different ones: branches of the tree within the distance
// are taken whole.
CoincidentNodes FindCoincidentNodes(const ModelStore& model, const NodeTree& tree, double distance);

// Of the nodes at one place, those that no element connects with the first of them, directly or through others there;
// one for each set that elements connect. Ascending.
std::vector<int> UnconnectedNodes(const ModelStore& model, const CoincidentNodes& coincident);

} // namespace tarnvexo
