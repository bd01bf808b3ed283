#include "solver/LeafOrdering.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tarnvexo {

namespace {

constexpr int WordBits = 64;

// Bits that are set, by sums of neighbouring fields: without the instruction for it, which not every processor has,
// the compiler does this for several words at once.
std::uint64_t BitCount(std::uint64_t word)
{
    word -= (word >> 1) & 0x5555555555555555u;
    word = (word & 0x3333333333333333u) + ((word >> 2) & 0x3333333333333333u);
    word = (word + (word >> 4)) & 0x0f0f0f0f0f0f0f0fu;
    word += word >> 8;
    word += word >> 16;
    word += word >> 32;
    return word & 0x7f;
}

} // namespace

std::vector<int> OrderLeaf(const LeafGraph& graph)
{
    const int n = graph.nodes;
    const std::size_t words = (static_cast<std::size_t>(n) + graph.halo + WordBits - 1) / WordBits;
    std::vector<std::uint64_t> rows(words * n, 0); // row of a node: bit of each neighbour that is still there
    const auto row = [&](int node) { return rows.data() + words * node; };
    const auto bit = [](int node) { return std::uint64_t(1) << (node % WordBits); };

    // Degree and number in one, so that the least of all is the node to take next.
    constexpr std::int64_t Taken = std::numeric_limits<std::int64_t>::max();
    std::vector<std::int64_t> rank(n);
    for (int node = 0; node < n; ++node) {
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            row(node)[graph.neighbours[e] / WordBits] |= bit(graph.neighbours[e]);
        }
        rank[node] = std::int64_t(graph.first[node + 1] - graph.first[node]) * n + node;
    }

    std::vector<int> order;
    order.reserve(n);
    while (static_cast<int>(order.size()) < n) {
        const int taken = static_cast<int>(std::min_element(rank.begin(), rank.end()) - rank.begin());
        order.push_back(taken);
        rank[taken] = Taken;
        const std::uint64_t* const front = row(taken);
        for (int word = 0; WordBits * word < n; ++word) {
            for (std::uint64_t left = front[word]; left != 0; left &= left - 1) {
                const int node = WordBits * word + std::countr_zero(left);
                if (node >= n) {
                    break;
                }
                std::uint64_t* const joined = row(node);
                for (std::size_t w = 0; w < words; ++w) { joined[w] |= front[w]; }
                joined[node / WordBits] &= ~bit(node);
                joined[taken / WordBits] &= ~bit(taken);
                std::uint64_t degree = 0;
                for (std::size_t w = 0; w < words; ++w) { degree += BitCount(joined[w]); }
                rank[node] = static_cast<std::int64_t>(degree) * n + node;
            }
        }
    }
    return order;
}

} // namespace tarnvexo
