// solver/LeafOrdering.h
// Order of elimination of few nodes inside a large graph: exact minimum degree on rows of bits. The nodes around the
// few are eliminated later, but count in the degrees (their halo), else the rim would be taken first and fill what lies
// behind it. Source: F. Pellegrini, J. Roman, P. Amestoy, Concurrency: Pract. Exper. 12 (2000) 69–84.
#pragma once

#include <vector>

namespace tarnvexo {

// nodes         0 ... nodes - 1 are to be ordered, up to 1,000 say; nodes ... nodes + halo - 1 are the halo
// first, neighbours   of the nodes to be ordered alone, without themselves; symmetric among them
struct LeafGraph {
    int nodes = 0;
    int halo = 0;
    std::vector<int> first; // nodes + 1 entries
    std::vector<int> neighbours;
};

// Of nodes of equal degree the lower number goes first. Cost: nodes² · (nodes + halo)/64 at worst, a few row operations
// for each entry of the factor in fact.
std::vector<int> OrderLeaf(const LeafGraph& graph);

} // namespace tarnvexo
