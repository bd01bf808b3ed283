#include "solver/FrontTree.h"

#include "solver/NodeOrdering.h"
#include "support/NodeGraphs.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <numeric>
#include <string>
#include <vector>

namespace tarnvexo {
namespace {

using namespace test;

struct Case {
    std::string name;
    NodeGraph graph;
    EliminationOrder order;
};

// Sequence n − 1 ... 0.
EliminationOrder ReversedOrder(int nodes)
{
    std::vector<int> sequence(static_cast<std::size_t>(nodes));
    std::iota(sequence.rbegin(), sequence.rend(), 0);
    return OrderFromSequence(sequence);
}

const std::vector<Case>& Cases()
{
    static const std::vector<Case> cases = [] {
        std::vector<Case> list;
        const auto add = [&](const std::string& name, const NodeGraph& graph) {
            list.push_back({name + " as numbered", graph, NaturalOrder(graph.Size())});
            list.push_back({name + " backwards", graph, ReversedOrder(graph.Size())});
            list.push_back({name + " at random", graph, RandomOrder(graph.Size(), 1)});
            list.push_back({name + " ordered", graph, OrderNodes(graph).order});
        };
        list.push_back({"nothing", GraphOf(0, {}), NaturalOrder(0)});
        add("one node", GraphOf(1, {}));
        add("two nodes", GraphOf(2, {{0, 1}}));
        add("nodes without neighbours", GraphOf(7, {}));
        add("parts", GraphOf(12, {{0, 4}, {4, 8}, {1, 2}, {2, 3}, {1, 3}, {5, 7}, {9, 11}, {11, 5}}));
        add("chain", Chain(60));
        add("star", Star(50));
        add("plate", QuadGrid(11, 9));
        add("brick", Brick(5, 4, 4));
        add("girder", Girder(5, 20));
        for (unsigned seed = 0; seed < 8; ++seed) {
            add("random " + std::to_string(seed), RandomGraph(50, 30 + 15 * static_cast<int>(seed), seed));
        }
        return list;
    }();
    return cases;
}

// Calls check(tree, case, pattern) for each of them.
void ForEachTree(const auto& check)
{
    for (const Case& tested : Cases()) {
        SCOPED_TRACE(tested.name);
        const BlockPattern pattern = LowerPattern(tested.graph, tested.order);
        check(BuildFrontTree(pattern), tested, pattern);
        if (testing::Test::HasFailure()) {
            return;
        }
    }
}

// Graph whose nodes are the columns of the pattern.
NodeGraph GraphOfColumns(const BlockPattern& pattern)
{
    std::vector<Edge> edges;
    for (int column = 0; column < pattern.Size(); ++column) {
        for (std::size_t b = pattern.first[column] + 1; b < pattern.first[column + 1]; ++b) {
            edges.push_back({column, pattern.rows[b]});
        }
    }
    return GraphOf(pattern.Size(), edges);
}

// Place of each column of the pattern in the order of the fronts.
std::vector<int> PlacesOf(const FrontTree& tree)
{
    return OrderFromSequence(tree.columnAt).positionOf;
}

// Front of each place.
std::vector<int> FrontsOf(const FrontTree& tree)
{
    std::vector<int> frontOf;
    for (std::size_t f = 0; f < tree.fronts.size(); ++f) {
        frontOf.insert(frontOf.end(), static_cast<std::size_t>(tree.fronts[f].columns), static_cast<int>(f));
    }
    return frontOf;
}

// Place of block row `block` of a front.
int PlaceOfBlock(const FrontTree& tree, const Front& front, int block)
{
    return block < front.columns ? front.firstColumn + block : tree.RowsOf(front)[block - front.columns];
}

TEST(FrontTree, EliminatesEveryColumnOnce)
{
    ForEachTree([](const FrontTree& tree, const Case& tested, const BlockPattern&) {
        std::vector<int> columns = tree.columnAt;
        std::sort(columns.begin(), columns.end());
        EXPECT_EQ(columns, NaturalOrder(tested.graph.Size()).nodeAt);
        int next = 0;
        for (const Front& front : tree.fronts) {
            EXPECT_EQ(front.firstColumn, next);
            EXPECT_GT(front.columns, 0);
            next += front.columns;
        }
        EXPECT_EQ(next, tested.graph.Size());
    });
}

TEST(FrontTree, HasEverySubtreeInOnePieceBeforeItsRoot)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern&) {
        std::vector<int> first(tree.fronts.size()); // of the subtree of every front
        std::size_t children = 0;
        for (int f = 0; f < static_cast<int>(tree.fronts.size()); ++f) {
            const Front& front = tree.fronts[f];
            int next = f; // the subtree that ends before it, from the last child on
            for (int c = front.children - 1; c >= 0; --c) {
                const int child = tree.ChildrenOf(front)[c];
                EXPECT_EQ(child, next - 1) << "front " << f;
                EXPECT_EQ(tree.fronts[child].parent, f);
                next = first[child];
            }
            first[f] = next;
            children += static_cast<std::size_t>(front.children);
            EXPECT_TRUE(front.parent == -1 || front.parent > f);
        }
        const auto roots = std::count_if(tree.fronts.begin(), tree.fronts.end(),
                                         [](const Front& front) { return front.parent == -1; });
        EXPECT_EQ(children + static_cast<std::size_t>(roots), tree.fronts.size());
    });
}

// Renumbering within the tree changes nothing: every column of the factor keeps its rows.
TEST(FrontTree, KeepsTheFillOfTheOrder)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern& pattern) {
        const NodeGraph graph = GraphOfColumns(pattern);
        const EliminationTree asGiven = DenseElimination(graph, NaturalOrder(graph.Size()));
        const EliminationTree inFronts = DenseElimination(graph, OrderFromSequence(tree.columnAt));
        for (std::size_t k = 0; k < tree.columnAt.size(); ++k) {
            EXPECT_EQ(inFronts.below[k], asGiven.below[tree.columnAt[k]]) << "place " << k;
        }
    });
}

// Column by column, elimination in the order of the fronts: rows below the front's columns are those of all its columns
// together, no more.
TEST(FrontTree, GivesAFrontTheRowsOfItsColumns)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern& pattern) {
        const int n = pattern.Size();
        const std::vector<int> place = PlacesOf(tree);
        std::vector<std::vector<char>> connected(static_cast<std::size_t>(n),
                                                 std::vector<char>(static_cast<std::size_t>(n), 0));
        for (int column = 0; column < n; ++column) {
            for (std::size_t b = pattern.first[column]; b < pattern.first[column + 1]; ++b) {
                const int i = place[pattern.rows[b]], j = place[column];
                connected[i][j] = connected[j][i] = 1;
            }
        }
        for (const Front& front : tree.fronts) {
            const int end = front.firstColumn + front.columns;
            std::vector<char> isRow(static_cast<std::size_t>(n), 0);
            for (int k = front.firstColumn; k < end; ++k) {
                for (int i = k + 1; i < n; ++i) {
                    for (int j = k + 1; j < n && connected[k][i] != 0; ++j) { connected[i][j] |= connected[k][j]; }
                    isRow[i] |= connected[k][i];
                }
            }
            std::vector<int> expected;
            for (int i = end; i < n; ++i) {
                if (isRow[i] != 0) {
                    expected.push_back(i);
                }
            }
            EXPECT_EQ(std::vector<int>(tree.RowsOf(front).begin(), tree.RowsOf(front).end()), expected)
                << "front of column " << front.firstColumn;
        }
    });
}

TEST(FrontTree, HandsWhatIsLeftToTheFrontOfTheNextRow)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern&) {
        const std::vector<int> frontOf = FrontsOf(tree);
        for (const Front& front : tree.fronts) {
            EXPECT_EQ(front.parent, front.rows == 0 ? -1 : frontOf[tree.RowsOf(front)[0]]);
        }
    });
}

TEST(FrontTree, FindsTheRowsInTheParent)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern&) {
        EXPECT_EQ(tree.rowInParent.size(), tree.rows.size());
        for (const Front& front : tree.fronts) {
            for (int k = 0; k < front.rows; ++k) {
                const Front& parent = tree.fronts[front.parent];
                const int block = tree.RowsInParent(front)[k];
                ASSERT_LT(block, parent.Blocks());
                EXPECT_EQ(PlaceOfBlock(tree, parent, block), tree.RowsOf(front)[k]);
            }
        }
    });
}

TEST(FrontTree, FindsTheBlocksOfTheMatrixInTheFronts)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern& pattern) {
        const std::vector<int> place = PlacesOf(tree), frontOf = FrontsOf(tree);
        ASSERT_EQ(tree.blockInFront.size(), pattern.rows.size());
        for (int column = 0; column < pattern.Size(); ++column) {
            const Front& front = tree.fronts[frontOf[place[column]]];
            for (std::size_t b = pattern.first[column]; b < pattern.first[column + 1]; ++b) {
                ASSERT_LT(tree.blockInFront[b], front.Blocks());
                EXPECT_EQ(PlaceOfBlock(tree, front, tree.blockInFront[b]), place[pattern.rows[b]]);
                EXPECT_GE(tree.blockInFront[b], place[column] - front.firstColumn) << "above the diagonal";
            }
        }
    });
}

TEST(FrontTree, OfADenseMatrixIsOneFront)
{
    const FrontTree tree = BuildFrontTree(LowerPattern(Brick(3, 3, 3), RandomOrder(27, 3)));
    const FrontTree dense = BuildFrontTree(LowerPattern(Star(40), NaturalOrder(41))); // its centre first
    EXPECT_LT(tree.fronts.size(), 27u);
    ASSERT_EQ(dense.fronts.size(), 1u);
    EXPECT_EQ(dense.fronts[0].columns, 41);
    EXPECT_EQ(dense.fronts[0].rows, 0);
}

TEST(FrontTree, OfNodesWithoutNeighboursHasARootForEach)
{
    const FrontTree tree = BuildFrontTree(LowerPattern(GraphOf(7, {}), NaturalOrder(7)));
    ASSERT_EQ(tree.fronts.size(), 7u);
    for (const Front& front : tree.fronts) {
        EXPECT_EQ(front.parent, -1);
        EXPECT_EQ(front.Blocks(), 1);
    }
}

// As a rigid body of a hundred thousand spokes is: work or storage that grew by the square would not come to an end.
TEST(FrontTree, OfAStarOfManySpokesStaysSmall)
{
    constexpr int Spokes = 100000;
    const FrontTree tree = BuildFrontTree(LowerPattern(Star(Spokes), ReversedOrder(Spokes + 1)));
    EXPECT_LE(tree.rows.size(), static_cast<std::size_t>(Spokes));
    for (std::size_t f = 0; f + 1 < tree.fronts.size(); ++f) { EXPECT_EQ(tree.fronts[f].rows, 1); }
    EXPECT_EQ(tree.fronts.back().rows, 0);
}

// Thousands of nodes that all hang on the same twenty: what their fronts leave is gathered on the way, so that it does
// not all wait at the same time.
TEST(FrontTree, GathersWhatVeryManyChildrenLeave)
{
    constexpr int Hubs = 20, Leaves = 5000;
    std::vector<Edge> edges;
    for (int leaf = 0; leaf < Leaves; ++leaf) {
        for (int hub = 0; hub < Hubs; ++hub) { edges.push_back({leaf, Leaves + hub}); }
    }
    const FrontTree tree = BuildFrontTree(LowerPattern(GraphOf(Leaves + Hubs, edges), NaturalOrder(Leaves + Hubs)));
    int columns = 0;
    for (const Front& front : tree.fronts) {
        EXPECT_LE(front.children, 64);
        EXPECT_EQ(front.firstColumn, columns);
        EXPECT_LE(front.rows, Hubs);
        columns += front.columns;
    }
    EXPECT_EQ(columns, Leaves + Hubs);
    EXPECT_EQ(tree.fronts.back().parent, -1);
}

// Fronts are joined along the chain as long as that gains, and no longer.
TEST(FrontTree, OfALongChainStaysSmall)
{
    constexpr int Nodes = 100000;
    for (const EliminationOrder& order : {NaturalOrder(Nodes), ReversedOrder(Nodes), RandomOrder(Nodes, 5)}) {
        const FrontTree tree = BuildFrontTree(LowerPattern(Chain(Nodes), order));
        std::size_t blocks = 0;
        for (const Front& front : tree.fronts) {
            blocks += static_cast<std::size_t>(front.columns) * static_cast<std::size_t>(front.Blocks());
        }
        EXPECT_LT(blocks, 40u * Nodes);
    }
}

// Joining is for speed: it never costs more than fronts of single columns would, by its own model.
TEST(FrontTree, CostsNoMoreThanAFrontForEveryColumn)
{
    ForEachTree([](const FrontTree& tree, const Case&, const BlockPattern& pattern) {
        const NodeGraph graph = GraphOfColumns(pattern);
        double joined = 0.0, single = 0.0;
        for (const Front& front : tree.fronts) { joined += SecondsOf(front.Size()) + SecondsToAdd(front.Size()); }
        for (const int below : DenseElimination(graph, NaturalOrder(graph.Size())).below) {
            const FrontSize front = {DofsPerNode, DofsPerNode * (1 + below)};
            single += SecondsOf(front) + SecondsToAdd(front);
        }
        EXPECT_LE(joined, single * (1.0 + 1e-12));
    });
}

} // namespace
} // namespace tarnvexo
