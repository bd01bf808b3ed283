// solver/FrontTree.h
// The multifrontal factorisation before a number is computed: which columns are eliminated together in one dense front,
// which rows a front has, and which front takes up what is left of it.
//
// A front eliminates a chain of columns of the elimination tree. Chains with the same rows below are one front from the
// beginning (supernodes); then fronts are joined with their parents as long as the model of cost (solver/FrontCost)
// gains: a few zeros are stored and computed with, a front less is assembled. Where very many children wait for a small
// front, fronts without columns add up what they leave on the way. All sizes are in blocks of one node.
// Sources: I. S. Duff, J. K. Reid, ACM Trans. Math. Softw. 9 (1983) 302–325 (fronts); C. Ashcraft, R. Grimes, ibid. 15
// (1989) 291–309 (amalgamation); J. W. H. Liu, ibid. 12 (1986) 249–264 (order of children).
#pragma once

#include "solver/BlockMatrix.h"
#include "solver/FrontCost.h"

#include <cstddef>
#include <span>
#include <vector>

namespace tarnvexo {

struct Front {
    int firstColumn;     // block columns firstColumn ... firstColumn + columns - 1, in the order of the fronts
    int columns;         // 0: it only adds up what its children leave
    int parent;          // -1 at a root
    std::size_t rowsAt;  // of its rows in FrontTree::rows
    int rows;            // block rows below its columns
    std::size_t childAt; // of its children in FrontTree::children
    int children;

    int Blocks() const { return columns + rows; }
    FrontSize Size() const { return {DofsPerNode * columns, DofsPerNode * Blocks()}; }
};

struct FrontTree {
    std::vector<Front> fronts;     // every front after its children, every subtree without gaps
    std::vector<int> rows;         // block rows below the columns, ascending, in the order of the fronts
    std::vector<int> rowInParent;  // for each of them the block row of the parent front, counted from its top
    std::vector<int> children;     // numbers of fronts, in the order in which they are computed
    std::vector<int> columnAt;     // k-th column in the order of the fronts is column columnAt[k] of the pattern
    std::vector<int> blockInFront; // for each block of the pattern the block row in the front of its column

    std::span<const int> RowsOf(const Front& front) const
    {
        return {rows.data() + front.rowsAt, std::size_t(front.rows)};
    }
    std::span<const int> RowsInParent(const Front& front) const
    {
        return {rowInParent.data() + front.rowsAt, std::size_t(front.rows)};
    }
    std::span<const int> ChildrenOf(const Front& front) const
    {
        return {children.data() + front.childAt, std::size_t(front.children)};
    }
};

// Any order of the pattern will do; fill is that of the order. Cost: about linear in the pattern and the rows of all
// fronts, and the blocks of the factor once.
FrontTree BuildFrontTree(const BlockPattern& pattern);

} // namespace tarnvexo
