#include "solver/VertexCover.h"

#include <bit>
#include <gtest/gtest.h>
#include <random>

namespace tarnvexo {
namespace {

BipartiteGraph RandomBipartiteGraph(int sizeA, int sizeB, int oneIn, unsigned seed)
{
    std::mt19937 generator(seed);
    BipartiteGraph graph;
    graph.sizeB = sizeB;
    graph.first.push_back(0);
    for (int a = 0; a < sizeA; ++a) {
        for (int b = 0; b < sizeB; ++b) {
            if (generator() % static_cast<unsigned>(oneIn) == 0) {
                graph.neighbours.push_back(b);
            }
        }
        graph.first.push_back(static_cast<int>(graph.neighbours.size()));
    }
    return graph;
}

void ExpectAllEdgesTouched(const BipartiteGraph& graph, const VertexCover& cover)
{
    for (std::size_t a = 0; a + 1 < graph.first.size(); ++a) {
        for (int e = graph.first[a]; e < graph.first[a + 1]; ++e) {
            EXPECT_TRUE(cover.inA[a] != 0 || cover.inB[graph.neighbours[e]] != 0) << a << ' ' << graph.neighbours[e];
        }
    }
}

// Of all sets of nodes of A with what B must add.
int LeastCover(const BipartiteGraph& graph)
{
    const int sizeA = static_cast<int>(graph.first.size()) - 1;
    int least = sizeA;
    for (unsigned inA = 0; inA < 1u << sizeA; ++inA) {
        unsigned inB = 0;
        for (int a = 0; a < sizeA; ++a) {
            for (int e = graph.first[a]; e < graph.first[a + 1] && (inA >> a & 1) == 0; ++e) {
                inB |= 1u << graph.neighbours[e];
            }
        }
        least = std::min(least, std::popcount(inA) + std::popcount(inB));
    }
    return least;
}

TEST(VertexCover, TouchesAllEdgesWithTheFewestNodes)
{
    for (unsigned seed = 0; seed < 100; ++seed) {
        const BipartiteGraph graph = RandomBipartiteGraph(9, 5 + static_cast<int>(seed) % 8, 3 + seed % 5, seed);
        const VertexCover cover = MaximumMatching(graph).Cover();
        ExpectAllEdgesTouched(graph, cover);
        EXPECT_EQ(cover.size, LeastCover(graph)) << "seed " << seed;
    }
}

TEST(VertexCover, TakesAWhereTheSidesAreAlike)
{
    const VertexCover cover = MaximumMatching({{0, 1, 2, 3}, {0, 1, 2}, 3}).Cover();
    EXPECT_EQ(cover.inA, (std::vector<char>{1, 1, 1}));
    EXPECT_EQ(cover.size, 3);
}

TEST(VertexCover, OfAStarIsItsHub)
{
    const VertexCover fromA = MaximumMatching({{0, 5}, {0, 1, 2, 3, 4}, 5}).Cover();
    EXPECT_EQ(fromA.inA, (std::vector<char>{1}));
    EXPECT_EQ(fromA.size, 1);
    const VertexCover fromB = MaximumMatching({{0, 1, 2, 3}, {0, 0, 0}, 1}).Cover();
    EXPECT_EQ(fromB.inB, (std::vector<char>{1}));
    EXPECT_EQ(fromB.size, 1);
}

// a0 - b0 - a1 - b1 - ... : every node of B has a mate at hand, but the last node of A finds none before the first.
TEST(VertexCover, OfALongPathIsEverySecondNode)
{
    BipartiteGraph path;
    path.sizeB = 20000;
    path.first.push_back(0);
    for (int a = 0; a <= path.sizeB; ++a) {
        if (a < path.sizeB) {
            path.neighbours.push_back(a);
        }
        if (a > 0) {
            path.neighbours.push_back(a - 1);
        }
        path.first.push_back(static_cast<int>(path.neighbours.size()));
    }
    EXPECT_EQ(MaximumMatching(path).Cover().size, path.sizeB);
}

TEST(VertexCover, OfNothingIsEmpty)
{
    EXPECT_EQ(MaximumMatching({{0}, {}, 0}).Cover().size, 0);
}

} // namespace
} // namespace tarnvexo
