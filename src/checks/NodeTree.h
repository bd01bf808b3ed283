// checks/NodeTree.h
// A k-d tree of nodes: balanced, every half split across its longest side, with the box of what it holds. Serves any
// spread of nodes, a fine patch in a coarse mesh and one node far away included. N log N.
//
// Each node has a reach: how far from it another thing may be and still be meant to be at its place, whatever a limit
// says that is taken from the size of the model. A quarter of the shortest edge of its elements: neighbours in a fine
// mesh are never taken for one node.
// Source: J. L. Bentley, Commun. ACM 18 (1975) 509–517.
#pragma once

#include "core/ModelStore.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tarnvexo {

class NodeTree {
public:
    struct Point {
        Vector3 place;
        double reach;
        int node;
    };
    struct Box {
        Vector3 low, high;
        double leastReach, mostReach;
    };

    // Branch 0 holds all; branch b splits into 2b + 1 and 2b + 2.
    explicit NodeTree(std::vector<Point> points);

    bool IsEmpty() const { return points.empty(); }
    bool IsLeaf(std::size_t branch) const { return 2 * branch + 1 >= boxes.size(); }
    const Box& BoxOf(std::size_t branch) const { return boxes[branch]; }
    std::span<const Point> PointsOf(std::size_t branch) const
    {
        return std::span(points).subspan(ranges[branch].begin, ranges[branch].end - ranges[branch].begin);
    }

    // Diagonal of the box around all nodes.
    double Size() const;

private:
    struct Range {
        std::size_t begin, end;
    };

    void MakeBranch(std::size_t branch);

    std::vector<Point> points;
    std::vector<Box> boxes;
    std::vector<Range> ranges;
};

// The nodes that elements use, with their reach. Nodes whose coordinates are no numbers, or too large to be squared,
// are left out.
std::vector<NodeTree::Point> UsedNodes(const ModelStore& model);

} // namespace tarnvexo
