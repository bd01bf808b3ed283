// core/ConnectedParts.h
// Parts of the structure: nodes that elements connect, directly or through others. Parts share no node, so each has
// rigid motions of its own. Union–find, near linear in nodes and elements.
#pragma once

#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

struct ConnectedParts {
    int count = 0;                 // parts are numbered in the order of their lowest nodes
    std::vector<int> partOfNode;   // [NPOIN]; -1: a node without elements, in no part
    std::vector<int> elementCount; // [count] quadrilaterals, triangles and beams of each part

    // Nodes of part p, ascending: nodes[firstOfPart[p]] ... nodes[firstOfPart[p + 1] - 1].
    std::vector<int> firstOfPart; // [count + 1]
    std::vector<int> nodes;

    int NodeCount(int part) const { return firstOfPart[part + 1] - firstOfPart[part]; }
    int LowestNode(int part) const { return nodes[firstOfPart[part]]; }
};

ConnectedParts FindConnectedParts(const ModelStore& model);

} // namespace tarnvexo
