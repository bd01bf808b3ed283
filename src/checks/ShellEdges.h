// checks/ShellEdges.h
// The edges of all shells, each with the shells that use it: one at a free edge, two inside a plate or a fold, more at
// a junction.
#pragma once

#include "checks/NodeTable.h"
#include "checks/Shells.h"

#include <algorithm>
#include <compare>
#include <span>
#include <vector>

namespace tarnvexo {

// A shell's use of an edge.
struct EdgeUse {
    int high;     // the edge's higher node
    int shell;    // checks/Shells.h
    bool forward; // the shell runs through the edge from its lower to its higher node

    auto operator<=>(const EdgeUse&) const = default;
};

struct ShellEdge {
    int low, high; // its nodes
    std::span<const EdgeUse> uses;
};

class ShellEdges {
public:
    // leftOut [ShellCount]: shells that do not count. Sides between one and the same node are no edges.
    ShellEdges(const ModelStore& model, const std::vector<char>& leftOut);

    // visit(ShellEdge) for the edges whose lower node is one of lowBegin ... lowEnd - 1, by lower and higher node.
    template <class Visit> void ForEach(int lowBegin, int lowEnd, Visit visit) const
    {
        for (int low = lowBegin; low < lowEnd; ++low) {
            const std::span<const EdgeUse> uses = table.At(low);
            for (std::size_t begin = 0, end; begin < uses.size(); begin = end) {
                end = begin + 1;
                while (end < uses.size() && uses[end].high == uses[begin].high) { ++end; }
                visit(ShellEdge{low, uses[begin].high, uses.subspan(begin, end - begin)});
            }
        }
    }

    // The shells at the edge; none where there is none.
    std::span<const EdgeUse> UsesOf(int low, int high) const
    {
        const std::span<const EdgeUse> uses = table.At(low);
        const auto [begin, end] = std::equal_range(uses.begin(), uses.end(), high, ByHigh());
        return {begin, end};
    }

    // All of them.
    template <class Visit> void ForEach(Visit visit) const { ForEach(0, table.NodeCount(), visit); }

private:
    struct ByHigh {
        bool operator()(const EdgeUse& use, int high) const { return use.high < high; }
        bool operator()(int high, const EdgeUse& use) const { return high < use.high; }
    };

    NodeTable<EdgeUse> table; // by lower node
};

// Between two shells, neither at a free edge nor at a junction.
inline bool JoinsTwoShells(const ShellEdge& edge)
{
    return edge.uses.size() == 2 && edge.uses[0].shell != edge.uses[1].shell;
}

inline double EdgeLength(const ModelStore& model, const ShellEdge& edge)
{
    return Length(model.NodeCoordinates[edge.high] - model.NodeCoordinates[edge.low]);
}

inline Vector3 EdgeMiddle(const ModelStore& model, const ShellEdge& edge)
{
    return 0.5 * model.NodeCoordinates[edge.low] + 0.5 * model.NodeCoordinates[edge.high];
}

// "nodes 3 and 4".
inline std::string EdgeName(int low, int high)
{
    return "nodes " + std::to_string(low) + " and " + std::to_string(high);
}

} // namespace tarnvexo
