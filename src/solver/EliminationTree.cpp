#include "solver/EliminationTree.h"

#include <algorithm>
#include <cstddef>
#include <numeric>
#include <utility>

namespace tarnvexo {

namespace {

constexpr int None = -1;

// Liu's algorithm with path compression: the parent of column k is the first row below it that is not zero.
std::vector<int> FindParents(const NodeGraph& graph, const EliminationOrder& order)
{
    const int n = graph.Size();
    std::vector<int> parent(n, None), ancestor(n, None);
    for (int k = 0; k < n; ++k) {
        const int node = order.nodeAt[k];
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            int column = order.positionOf[graph.neighbours[e]];
            while (column != None && column < k) { // climb to the root of the subtree known so far
                const int next = std::exchange(ancestor[column], k);
                if (next == None) {
                    parent[column] = k;
                }
                column = next;
            }
        }
    }
    return parent;
}

// Columns in postorder: children, in ascending order, before their parent.
std::vector<int> Postorder(const std::vector<int>& parent)
{
    const int n = static_cast<int>(parent.size());
    std::vector<int> firstChild(n + 1, None), nextSibling(n, None); // child lists; entry n holds the roots
    for (int k = n - 1; k >= 0; --k) {
        const int list = parent[k] == None ? n : parent[k];
        nextSibling[k] = std::exchange(firstChild[list], k);
    }
    std::vector<int> sequence, path;
    sequence.reserve(n);
    for (int root = firstChild[n]; root != None; root = nextSibling[root]) {
        path.push_back(root);
        while (!path.empty()) {
            const int column = path.back();
            const int child = firstChild[column];
            if (child != None) {
                firstChild[column] = nextSibling[child];
                path.push_back(child);
            } else {
                sequence.push_back(column);
                path.pop_back();
            }
        }
    }
    return sequence;
}

// The last column of the row subtrees seen so far climbs to its root by `above`; paths are shortened on the way.
int RootOf(std::vector<int>& above, int column)
{
    int root = column;
    while (above[root] != root) { root = above[root]; }
    while (column != root) { column = std::exchange(above[column], root); }
    return root;
}

// Row i of the factor is the part of the tree between the columns i is connected with and i itself. Its leaves, in
// postorder, are joined pairwise at their least common ancestors: with +1 at every leaf, -1 at every such ancestor and
// -1 above the root i, the sum over the columns below and at k is 1 where the row has column k and 0 elsewhere. The
// sums of all rows together are the blocks of each column; the tree must be in postorder.
std::vector<int> CountBlocksBelow(const NodeGraph& graph, const EliminationOrder& order, const std::vector<int>& parent)
{
    const int n = graph.Size();
    std::vector<int> lowest(n), above(n); // first column of a subtree; sets of columns whose common root is known
    std::iota(lowest.begin(), lowest.end(), 0);
    std::iota(above.begin(), above.end(), 0);
    for (int k = 0; k < n; ++k) {
        if (parent[k] != None) {
            lowest[parent[k]] = std::min(lowest[parent[k]], lowest[k]);
        }
    }
    std::vector<int> count(n, 0), lastLeaf(n, None); // diagonal blocks included; last leaf found in each row
    for (int column = 0; column < n; ++column) {
        if (lowest[column] == column) {
            ++count[column]; // a leaf of its own row
        }
        if (parent[column] != None) {
            --count[parent[column]]; // its own row ends
        }
        const int node = order.nodeAt[column];
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            const int row = order.positionOf[graph.neighbours[e]];
            if (row < column || lastLeaf[row] >= lowest[column]) {
                continue; // of a column above one that the row has already
            }
            ++count[column];
            if (lastLeaf[row] != None) {
                --count[RootOf(above, lastLeaf[row])];
            }
            lastLeaf[row] = column;
        }
        if (parent[column] != None) {
            above[column] = parent[column];
        }
    }
    for (int column = 0; column < n; ++column) {
        if (parent[column] != None) {
            count[parent[column]] += count[column];
        }
        --count[column]; // without its diagonal block
    }
    return count;
}

} // namespace

EliminationOrder OrderFromSequence(std::vector<int> nodeAt)
{
    EliminationOrder order;
    order.nodeAt = std::move(nodeAt);
    order.positionOf.resize(order.nodeAt.size());
    for (std::size_t k = 0; k < order.nodeAt.size(); ++k) { order.positionOf[order.nodeAt[k]] = static_cast<int>(k); }
    return order;
}

PostorderedTree BuildEliminationTree(const NodeGraph& graph, const EliminationOrder& order)
{
    const std::vector<int> parent = FindParents(graph, order);
    const std::vector<int> sequence = Postorder(parent);

    std::vector<int> nodeAt(sequence.size()), newNumber(sequence.size());
    for (std::size_t k = 0; k < sequence.size(); ++k) {
        nodeAt[k] = order.nodeAt[sequence[k]];
        newNumber[sequence[k]] = static_cast<int>(k);
    }
    PostorderedTree result;
    result.order = OrderFromSequence(std::move(nodeAt));
    result.tree.parent.resize(sequence.size());
    for (std::size_t k = 0; k < sequence.size(); ++k) {
        const int above = parent[sequence[k]];
        result.tree.parent[k] = above == None ? None : newNumber[above];
    }
    result.tree.below = CountBlocksBelow(graph, result.order, result.tree.parent);
    return result;
}

FactorCost CostOfFactor(const EliminationTree& tree)
{
    FactorCost cost;
    for (int below : tree.below) {
        for (int k = 0; k < DofsPerNode; ++k) {
            const double height = static_cast<double>(DofsPerNode) * (below + 1) - k; // column with its diagonal
            cost.entries += height;
            cost.operations += height * height; // h divisions or roots and h²/2 multiply-subtracts, nearly
        }
    }
    return cost;
}

} // namespace tarnvexo
