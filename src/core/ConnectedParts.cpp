#include "core/ConnectedParts.h"

#include <algorithm>

namespace tarnvexo {

namespace {

constexpr int NoElement = -1;

// Lowest node of the tree that holds the node. Every step halves the path for those who come later.
int Root(std::vector<int>& parent, int node)
{
    while (parent[node] != node) {
        parent[node] = parent[parent[node]];
        node = parent[node];
    }
    return node;
}

template <class Nodes> void Connect(const Nodes& elementNodes, std::vector<int>& parent)
{
    for (const int node : elementNodes) {
        if (parent[node] == NoElement) {
            parent[node] = node;
        }
        const int a = Root(parent, elementNodes[0]), b = Root(parent, node);
        parent[std::max(a, b)] = std::min(a, b); // the lower node leads
    }
}

template <class Connectivity> void CountElements(const Connectivity& elements, ConnectedParts& parts)
{
    for (const auto& elementNodes : elements) { ++parts.elementCount[parts.partOfNode[elementNodes[0]]]; }
}

} // namespace

ConnectedParts FindConnectedParts(const ModelStore& model)
{
    std::vector<int> parent(model.NPOIN, NoElement);
    for (const auto& elementNodes : model.QuadConnectivity) { Connect(elementNodes, parent); }
    for (const auto& elementNodes : model.TriConnectivity) { Connect(elementNodes, parent); }
    for (const auto& elementNodes : model.BeamConnectivity) { Connect(elementNodes, parent); }

    // Ascending nodes: a part's lowest node comes first and gets the next number.
    ConnectedParts parts;
    parts.partOfNode.assign(model.NPOIN, -1);
    parts.firstOfPart = {0};
    for (int n = 0; n < model.NPOIN; ++n) {
        if (parent[n] == NoElement) {
            continue;
        }
        const int root = Root(parent, n);
        if (root == n) {
            parts.partOfNode[n] = parts.count++;
            parts.firstOfPart.push_back(0);
        }
        parts.partOfNode[n] = parts.partOfNode[root];
        ++parts.firstOfPart[parts.partOfNode[n] + 1]; // sizes first
    }
    for (int p = 0; p < parts.count; ++p) { parts.firstOfPart[p + 1] += parts.firstOfPart[p]; }

    parts.nodes.resize(parts.firstOfPart.back());
    std::vector<int> next(parts.firstOfPart.begin(), parts.firstOfPart.end() - 1);
    for (int n = 0; n < model.NPOIN; ++n) {
        if (parts.partOfNode[n] >= 0) {
            parts.nodes[next[parts.partOfNode[n]]++] = n;
        }
    }

    parts.elementCount.assign(parts.count, 0);
    CountElements(model.QuadConnectivity, parts);
    CountElements(model.TriConnectivity, parts);
    CountElements(model.BeamConnectivity, parts);
    return parts;
}

} // namespace tarnvexo
