#include "solver/FrontTree.h"

#include "solver/EliminationTree.h"

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <utility>

namespace tarnvexo {

namespace {

constexpr int None = -1;

// Both triangles without the diagonal.
NodeGraph GraphOfPattern(const BlockPattern& pattern)
{
    const int n = pattern.Size();
    NodeGraph graph;
    graph.first.assign(static_cast<std::size_t>(n) + 1, 0);
    const auto forEachBlockBelow = [&](const auto& visit) {
        for (int column = 0; column < n; ++column) {
            for (std::size_t b = pattern.first[column] + 1; b < pattern.first[column + 1]; ++b) {
                visit(pattern.rows[b], column);
            }
        }
    };
    forEachBlockBelow([&](int row, int column) {
        ++graph.first[row + 1];
        ++graph.first[column + 1];
    });
    std::partial_sum(graph.first.begin(), graph.first.end(), graph.first.begin());
    graph.neighbours.resize(static_cast<std::size_t>(graph.first[n]));
    std::vector<int> next(graph.first.begin(), graph.first.end() - 1);
    forEachBlockBelow([&](int row, int column) {
        graph.neighbours[next[row]++] = column;
        graph.neighbours[next[column]++] = row;
    });
    return graph;
}

// Fronts while they are joined. A front keeps the number of its last chain of columns; its parent has a larger one.
struct GrowingFronts {
    std::vector<int> columns;    // of the front in all
    std::vector<int> blocks;     // columns and rows below them
    std::vector<int> parent;     // None at a root
    std::vector<int> joined;     // the front that it has become a part of, None while it stands alone
    std::vector<int> firstChain; // its chains of columns as a list, in order of elimination
    std::vector<int> lastChain;
    std::vector<int> nextChain;
    std::vector<int> firstChild; // its children as a list
    std::vector<int> lastChild;
    std::vector<int> nextSibling;
    std::vector<int> chainAt; // chain c: columns chainAt[c] ... chainAt[c + 1] - 1 of the postorder

    int Count() const { return static_cast<int>(columns.size()); }

    FrontSize Size(int front) const { return {DofsPerNode * columns[front], DofsPerNode * blocks[front]}; }

    void AddChild(int front, int child)
    {
        nextSibling[child] = None;
        (firstChild[front] == None ? firstChild[front] : nextSibling[lastChild[front]]) = child;
        lastChild[front] = child;
    }
};

// Chains of columns with the same rows below them.
GrowingFronts FindChains(const EliminationTree& tree)
{
    const int n = static_cast<int>(tree.parent.size());
    GrowingFronts fronts;
    std::vector<int> chainOf(static_cast<std::size_t>(n));
    for (int j = 0; j < n; ++j) {
        const bool goesOn = j > 0 && tree.parent[j - 1] == j && tree.below[j - 1] == tree.below[j] + 1;
        if (!goesOn) {
            fronts.chainAt.push_back(j);
        }
        chainOf[j] = static_cast<int>(fronts.chainAt.size()) - 1;
    }
    const std::size_t count = fronts.chainAt.size();
    fronts.chainAt.push_back(n);
    fronts.columns.resize(count);
    fronts.blocks.resize(count);
    fronts.parent.resize(count);
    fronts.joined.assign(count, None);
    fronts.firstChain.resize(count);
    std::iota(fronts.firstChain.begin(), fronts.firstChain.end(), 0);
    fronts.lastChain = fronts.firstChain;
    fronts.nextChain.assign(count, None);
    fronts.firstChild.assign(count, None);
    fronts.lastChild.assign(count, None);
    fronts.nextSibling.assign(count, None);
    for (std::size_t c = 0; c < count; ++c) {
        const int last = fronts.chainAt[c + 1] - 1;
        fronts.columns[c] = fronts.chainAt[c + 1] - fronts.chainAt[c];
        fronts.blocks[c] = fronts.columns[c] + tree.below[last];
        fronts.parent[c] = tree.parent[last] == None ? None : chainOf[tree.parent[last]];
        if (fronts.parent[c] != None) {
            fronts.AddChild(fronts.parent[c], static_cast<int>(c));
        }
    }
    return fronts;
}

// Both in one front: the rows are the parent's, all columns of the child stand above them.
FrontSize SizeTogether(const FrontSize& child, const FrontSize& parent)
{
    return {child.width + parent.width, child.width + parent.height};
}

// Seconds gained; not positive: better apart.
double GainOfJoining(const FrontSize& child, const FrontSize& parent)
{
    return SecondsOf(child) + SecondsToAdd(child) + SecondsOf(parent) - SecondsOf(SizeTogether(child, parent));
}

void Join(GrowingFronts& fronts, int child, int front)
{
    const FrontSize together = SizeTogether(fronts.Size(child), fronts.Size(front));
    fronts.columns[front] = together.width / DofsPerNode;
    fronts.blocks[front] = together.height / DofsPerNode;
    fronts.joined[child] = front;
    fronts.nextChain[fronts.lastChain[child]] = std::exchange(fronts.firstChain[front], fronts.firstChain[child]);
}

// Every front with those of its children where that gains, children of joined children included; from the leaves up.
void JoinFronts(GrowingFronts& fronts)
{
    std::vector<int> candidates, staying;
    for (int front = 0; front < fronts.Count(); ++front) {
        candidates.clear();
        staying.clear();
        for (int c = fronts.firstChild[front]; c != None; c = fronts.nextSibling[c]) { candidates.push_back(c); }
        while (!candidates.empty()) {
            // Those that share most rows with the front first: they add fewest zeros.
            std::stable_sort(candidates.begin(), candidates.end(),
                             [&](int a, int b) { return fronts.Size(a).Below() > fronts.Size(b).Below(); });
            std::vector<int> next;
            for (const int child : candidates) {
                if (GainOfJoining(fronts.Size(child), fronts.Size(front)) > 0.0) {
                    Join(fronts, child, front);
                    for (int c = fronts.firstChild[child]; c != None; c = fronts.nextSibling[c]) { next.push_back(c); }
                } else {
                    staying.push_back(child);
                }
            }
            candidates.swap(next);
        }
        fronts.firstChild[front] = fronts.lastChild[front] = None;
        for (const int child : staying) {
            fronts.parent[child] = front;
            fronts.AddChild(front, child);
        }
    }
}

// What waits on the stack while a front is computed, after all its children, in entries.
double WaitingEntries(const FrontSize& front)
{
    return static_cast<double>(front.Below()) * front.Below();
}

// Children in the order that needs least memory for what is left of them: those whose own need stands out most go
// first.
std::vector<std::vector<int>> OrderChildren(const GrowingFronts& fronts)
{
    std::vector<std::vector<int>> children(static_cast<std::size_t>(fronts.Count()));
    std::vector<double> need(children.size());
    for (int front = 0; front < fronts.Count(); ++front) {
        if (fronts.joined[front] != None) {
            continue;
        }
        std::vector<int>& own = children[front];
        for (int c = fronts.firstChild[front]; c != None; c = fronts.nextSibling[c]) { own.push_back(c); }
        std::stable_sort(own.begin(), own.end(), [&](int a, int b) {
            return need[a] - WaitingEntries(fronts.Size(a)) > need[b] - WaitingEntries(fronts.Size(b));
        });
        double waiting = 0.0;
        for (const int child : own) {
            need[front] = std::max(need[front], waiting + need[child]);
            waiting += WaitingEntries(fronts.Size(child));
        }
        need[front] = std::max(need[front], waiting + WaitingEntries(fronts.Size(front)));
    }
    return children;
}

// A front that eliminates nothing: what its children leave is added up and handed on.
int AddGathering(GrowingFronts& fronts, int front, int mostBlocks)
{
    fronts.columns.push_back(0);
    fronts.blocks.push_back(mostBlocks);
    fronts.parent.push_back(front);
    fronts.joined.push_back(None);
    fronts.firstChain.push_back(None);
    return fronts.Count() - 1;
}

// Where thousands of children wait for one small front, as parts that all hang on the same few nodes do, what they
// leave would be many times the front that it is added to. It is gathered on the way, some children at a time.
void GatherChildren(GrowingFronts& fronts, std::vector<std::vector<int>>& children)
{
    constexpr std::size_t fewest = 64, together = 16;
    const int count = fronts.Count();
    for (int front = 0; front < count; ++front) {
        // Round by round, as long as a quarter fewer are left: all rounds are linear in the children.
        for (std::size_t before = 2 * children[front].size();
             children[front].size() > fewest && 4 * children[front].size() <= 3 * before;) {
            const std::vector<int> own = std::move(children[front]);
            before = own.size();
            std::vector<int> staying;
            for (std::size_t begin = 0; begin < before; begin += together) {
                const std::vector<int> some(&own[begin], &own[begin] + std::min(together, before - begin));
                double waiting = 0.0;
                std::int64_t rows = 0;
                for (const int child : some) {
                    waiting += WaitingEntries(fronts.Size(child));
                    rows += fronts.blocks[child] - fronts.columns[child];
                }
                const int mostBlocks = static_cast<int>(std::min<std::int64_t>(rows, fronts.blocks[front]));
                if (waiting < 2.0 * WaitingEntries({0, DofsPerNode * mostBlocks})) {
                    staying.insert(staying.end(), some.begin(), some.end());
                } else {
                    staying.push_back(AddGathering(fronts, front, mostBlocks));
                    children.push_back(some);
                }
            }
            children[front] = std::move(staying);
        }
    }
}

// Fronts, children and columns in the order of computation; nothing of the rows.
FrontTree Number(GrowingFronts& growing, const EliminationOrder& postorder)
{
    std::vector<std::vector<int>> children = OrderChildren(growing);
    GatherChildren(growing, children);
    FrontTree tree;
    tree.columnAt.reserve(postorder.nodeAt.size());
    std::vector<int> number(children.size(), None);
    std::size_t rows = 0;
    std::vector<std::pair<int, std::size_t>> path; // front, children of it that are numbered
    for (int root = 0; root < growing.Count(); ++root) {
        if (growing.joined[root] != None || growing.parent[root] != None) {
            continue;
        }
        path.push_back({root, 0});
        while (!path.empty()) {
            auto& [old, done] = path.back();
            if (done < children[old].size()) {
                path.push_back({children[old][done++], 0});
                continue;
            }
            Front front = {};
            front.firstColumn = static_cast<int>(tree.columnAt.size());
            front.columns = growing.columns[old];
            rows += static_cast<std::size_t>(growing.blocks[old] - growing.columns[old]);
            front.parent = None;
            front.childAt = tree.children.size();
            front.children = static_cast<int>(children[old].size());
            number[old] = static_cast<int>(tree.fronts.size());
            for (const int child : children[old]) {
                tree.children.push_back(number[child]);
                tree.fronts[number[child]].parent = number[old];
            }
            for (int chain = growing.firstChain[old]; chain != None; chain = growing.nextChain[chain]) {
                for (int k = growing.chainAt[chain]; k < growing.chainAt[chain + 1]; ++k) {
                    tree.columnAt.push_back(postorder.nodeAt[k]);
                }
            }
            tree.fronts.push_back(front);
            path.pop_back();
        }
    }
    tree.rows.reserve(rows);
    return tree;
}

// Every list of rows in ascending order: distributed to the rows and collected again, in linear time.
void SortRows(FrontTree& tree)
{
    std::vector<std::size_t> end(tree.columnAt.size() + 1, 0);
    for (const int row : tree.rows) { ++end[row + 1]; }
    std::partial_sum(end.begin(), end.end(), end.begin());
    std::vector<int> frontsWith(tree.rows.size());
    for (std::size_t f = 0; f < tree.fronts.size(); ++f) {
        for (const int row : tree.RowsOf(tree.fronts[f])) { frontsWith[end[row]++] = static_cast<int>(f); }
    }
    std::vector<std::size_t> next(tree.fronts.size());
    for (std::size_t f = 0; f < tree.fronts.size(); ++f) { next[f] = tree.fronts[f].rowsAt; }
    std::size_t k = 0;
    for (int row = 0; row < static_cast<int>(tree.columnAt.size()); ++row) {
        for (; k < end[row]; ++k) { tree.rows[next[frontsWith[k]]++] = row; }
    }
}

// Rows of a front: those of the matrix in its columns and those that its children hand on.
void FindRows(const BlockPattern& pattern, FrontTree& tree)
{
    std::vector<int> placeOf(tree.columnAt.size()), seenBy(tree.columnAt.size(), None);
    for (std::size_t k = 0; k < placeOf.size(); ++k) { placeOf[tree.columnAt[k]] = static_cast<int>(k); }
    for (std::size_t f = 0; f < tree.fronts.size(); ++f) {
        Front& front = tree.fronts[f];
        front.rowsAt = tree.rows.size();
        const int end = front.firstColumn + front.columns;
        const auto add = [&](int row) {
            if (row >= end && seenBy[row] != static_cast<int>(f)) {
                seenBy[row] = static_cast<int>(f);
                tree.rows.push_back(row);
            }
        };
        for (int k = front.firstColumn; k < end; ++k) {
            const int column = tree.columnAt[k];
            for (std::size_t b = pattern.first[column] + 1; b < pattern.first[column + 1]; ++b) {
                add(placeOf[pattern.rows[b]]);
            }
        }
        for (const int number : tree.ChildrenOf(front)) {
            const Front& child = tree.fronts[number];
            for (std::size_t k = child.rowsAt; k < child.rowsAt + child.rows; ++k) { add(tree.rows[k]); }
        }
        front.rows = static_cast<int>(tree.rows.size() - front.rowsAt);
    }
    SortRows(tree);
}

void FindRowsInParents(FrontTree& tree)
{
    tree.rowInParent.resize(tree.rows.size());
    for (const Front& front : tree.fronts) {
        if (front.parent == None) {
            continue;
        }
        const Front& parent = tree.fronts[front.parent];
        const int* parentRow = tree.RowsOf(parent).data();
        const int end = parent.firstColumn + parent.columns;
        int place = parent.columns;
        for (std::size_t k = front.rowsAt; k < front.rowsAt + front.rows; ++k) {
            const int row = tree.rows[k];
            if (row < end) {
                tree.rowInParent[k] = row - parent.firstColumn;
                continue;
            }
            while (parentRow[place - parent.columns] != row) { ++place; }
            tree.rowInParent[k] = place;
        }
    }
}

void FindBlocksInFronts(const BlockPattern& pattern, FrontTree& tree)
{
    tree.blockInFront.resize(pattern.rows.size());
    std::vector<int> blockRow(tree.columnAt.size()); // of each column of the pattern, in the front at hand
    for (const Front& front : tree.fronts) {
        for (int k = 0; k < front.columns; ++k) { blockRow[tree.columnAt[front.firstColumn + k]] = k; }
        int place = front.columns;
        for (const int row : tree.RowsOf(front)) { blockRow[tree.columnAt[row]] = place++; }
        for (int k = 0; k < front.columns; ++k) {
            const int column = tree.columnAt[front.firstColumn + k];
            for (std::size_t b = pattern.first[column]; b < pattern.first[column + 1]; ++b) {
                tree.blockInFront[b] = blockRow[pattern.rows[b]];
            }
        }
    }
}

} // namespace

FrontTree BuildFrontTree(const BlockPattern& pattern)
{
    std::vector<int> asGiven(static_cast<std::size_t>(pattern.Size()));
    std::iota(asGiven.begin(), asGiven.end(), 0);
    const PostorderedTree elimination =
        BuildEliminationTree(GraphOfPattern(pattern), OrderFromSequence(std::move(asGiven)));
    GrowingFronts growing = FindChains(elimination.tree);
    JoinFronts(growing);
    FrontTree tree = Number(growing, elimination.order);
    FindRows(pattern, tree);
    FindRowsInParents(tree);
    FindBlocksInFronts(pattern, tree);
    return tree;
}

} // namespace tarnvexo
