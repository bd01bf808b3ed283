// solver/BandOrdering.h
// Node numbers for a short skyline: reverse Cuthill–McKee. The nodes of every connected part are taken level by level
// from a pseudo-peripheral node, neighbours in order of their degree, and the order is reversed.
// Sources: E. Cuthill, J. McKee, Proc. 24th ACM National Conference (1969) 157–172; A. George, J. W. H. Liu, ACM Trans.
// Math. Softw. 5 (1979) 284–295 (pseudo-peripheral node).
//
// newNumber [nodes]: newNumber[old] is the number that node `old` gets; a permutation of 0 ... nodes − 1.
// Connected parts stay together, in the order of their lowest old numbers; a node without element is a part by itself.
// Ties are decided by the old numbers: the same model gives the same order everywhere.
#pragma once

#include "solver/NodeGraph.h"

#include <cstdint>
#include <vector>

namespace tarnvexo {

// Cost: O(N log d), d the largest number of neighbours, times the few level structures that find each start.
std::vector<int> ReverseCuthillMcKee(const NodeGraph& graph);

// Entries of the skyline of solver/SkylineProfile when the nodes have these numbers, and the operations (additions and
// multiplications) of its factorisation.
struct SkylineCost {
    std::int64_t entries = 0;
    double operations = 0.0;
};
SkylineCost SkylineCostWith(const NodeGraph& graph, const std::vector<int>& newNumber);

} // namespace tarnvexo
