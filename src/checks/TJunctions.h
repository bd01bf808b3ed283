// checks/TJunctions.h
// Nodes of elements that lie on an edge of a shell between its ends while no shell at the edge uses them: what a change
// of mesh size without transition leaves, and a stiffener or a beam line that is meshed finer than its plating. The
// structure is not connected there.
#pragma once

#include "checks/CoincidentNodes.h"
#include "checks/NodeTree.h"
#include "checks/ShellEdges.h"

#include <vector>

namespace tarnvexo {

struct TJunction {
    int node;
    int low, high;   // ends of the edge; the longest, where the node lies on several
    int shell;       // the first that uses the edge
    double length;   // of the edge
    double distance; // of the node from it
};

// Every edge counts, at whatever number of shells: the web that is not connected may stand on the middle of a plate.
//   limit   distance over length of the edge, and from its ends
// A node is never farther from the edge than its reach. One per node, ascending.
// Each edge is searched for in the tree; edges between coincident nodes are searched for once.
std::vector<TJunction> FindTJunctions(const ModelStore& model, const ShellEdges& edges, const NodeTree& tree,
                                      const CoincidentNodes& coincident, double limit);

} // namespace tarnvexo
