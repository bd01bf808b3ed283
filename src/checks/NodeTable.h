// checks/NodeTable.h
// Entries sorted by a node and, at each node, in their own order: elements by their lowest node, edges by their lower
// end. A counting sort by node, then a short sort at each: near linear, and N log N when all meet at one node.
#pragma once

#include "core/Parallel.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace tarnvexo {

template <class Entry> class NodeTable {
public:
    // forEach(visit) calls visit(node, entry) for every entry, the same ones in the same order each time. Entries are
    // ordered by operator<.
    template <class ForEach> NodeTable(int nodeCount, ForEach forEach) : first(std::size_t(nodeCount) + 1, 0)
    {
        forEach([&](int node, const Entry&) { ++first[std::size_t(node) + 1]; });
        for (std::size_t n = 1; n < first.size(); ++n) { first[n] += first[n - 1]; }
        entries.resize(first.back());
        std::vector<std::size_t> next(first.begin(), first.end() - 1);
        forEach([&](int node, const Entry& entry) { entries[next[std::size_t(node)]++] = entry; });

        constexpr std::size_t nodesPerRange = 8192;
        ParallelFor(next.size(), nodesPerRange, [&](std::size_t begin, std::size_t end) {
            for (std::size_t n = begin; n < end; ++n) {
                std::sort(entries.begin() + std::ptrdiff_t(first[n]), entries.begin() + std::ptrdiff_t(first[n + 1]));
            }
        });
    }

    int NodeCount() const { return static_cast<int>(first.size()) - 1; }
    std::span<const Entry> At(int node) const
    {
        return std::span(entries).subspan(first[std::size_t(node)],
                                          first[std::size_t(node) + 1] - first[std::size_t(node)]);
    }

private:
    std::vector<std::size_t> first; // entries of node n: entries[first[n]] ... entries[first[n + 1] - 1]
    std::vector<Entry> entries;
};

} // namespace tarnvexo
