// solver/VertexCover.h
// Fewest nodes that touch all edges between two sets, A and B, of a bipartite graph: the narrowest separator along a
// cut. By a maximum matching, which has as many edges as the cover has nodes (D. König). Source: J. E. Hopcroft, R. M.
// Karp, SIAM J. Comput. 2 (1973) 225–231.
#pragma once

#include <vector>

namespace tarnvexo {

// Neighbours of node a of A: neighbours[first[a]] ... neighbours[first[a + 1] - 1], numbers of B, 0 ... sizeB - 1.
struct BipartiteGraph {
    std::vector<int> first; // size of A + 1 entries
    std::vector<int> neighbours;
    int sizeB = 0;
};

struct VertexCover {
    std::vector<char> inA, inB; // 1: the node is in the cover
    int size = 0;
};

// Cost: edges times the root of the nodes at worst, linear for the cuts of a mesh.
class MaximumMatching {
public:
    explicit MaximumMatching(const BipartiteGraph& graph);
    // Of all least covers the one with most nodes of A.
    VertexCover Cover() const;

private:
    bool LayerFromFree();
    void Augment(int root);

    const BipartiteGraph& graph;
    std::vector<int> mateOfA, mateOfB; // -1: free
    std::vector<int> layer;            // of a node of A, by alternating paths from the free ones; -1 out of reach
    std::vector<int> next;             // first edge of a node of A not tried yet
};

} // namespace tarnvexo
