// checks/TJunctions.h
// Nodes of elements that lie on a shell that does not use them: on an edge between its ends, or inside its face. What a
// change of mesh size without transition leaves, a stiffener or a beam line that is meshed finer than its plating, one
// that stands between the lines of its mesh, plates that overlap. The structure is not connected there.
#pragma once

#include "checks/CoincidentNodes.h"
#include "checks/NodeTree.h"
#include "checks/ShellEdges.h"

#include <vector>

namespace tarnvexo {

struct TJunction {
    int node;
    int low, high;   // ends of the edge; the longest, where the node lies on several; -1 inside a face
    int shell;       // the first that uses the edge; the one with the face
    double length;   // of the edge; of the longest side
    double distance; // of the node from the edge; from the mean plane

    bool IsInFace() const { return low < 0; }
};

// Every edge counts, at whatever number of shells: the web that is not connected may stand on the middle of a plate. A
// node that shells at the edge, or at an edge of the face, use is connected there.
//   limit   distance over length, also from the ends of the edge, and from the sides of the face
// A node is never farther off than its reach. One per node, ascending, an edge before a face.
// Each edge and face is searched for in the tree; edges between coincident nodes are searched for once.
std::vector<TJunction> FindTJunctions(const ModelStore& model, const ShellEdges& edges, const NodeTree& tree,
                                      const CoincidentNodes& coincident, double limit);

} // namespace tarnvexo
