#include "solver/VertexCover.h"

#include <algorithm>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr int None = -1;

} // namespace

MaximumMatching::MaximumMatching(const BipartiteGraph& graph)
    : graph(graph), mateOfA(graph.first.size() - 1, None), mateOfB(static_cast<std::size_t>(graph.sizeB), None),
      layer(mateOfA.size()), next(mateOfA.size())
{
    const int sizeA = static_cast<int>(mateOfA.size());
    for (int a = 0; a < sizeA; ++a) { // greedily first: most nodes find their mate at once
        for (int e = graph.first[a]; e < graph.first[a + 1] && mateOfA[a] == None; ++e) {
            const int b = graph.neighbours[e];
            if (mateOfB[b] == None) {
                mateOfA[a] = b;
                mateOfB[b] = a;
            }
        }
    }
    while (LayerFromFree()) {
        std::copy(graph.first.begin(), graph.first.end() - 1, next.begin());
        for (int a = 0; a < sizeA; ++a) {
            if (mateOfA[a] == None) {
                Augment(a);
            }
        }
    }
}

// Breadth first over edges to B and matched edges back. True: a free node of B was met.
bool MaximumMatching::LayerFromFree()
{
    std::vector<int> queue;
    for (std::size_t a = 0; a < mateOfA.size(); ++a) {
        layer[a] = mateOfA[a] == None ? 0 : None;
        if (mateOfA[a] == None) {
            queue.push_back(static_cast<int>(a));
        }
    }
    bool found = false;
    for (std::size_t k = 0; k < queue.size(); ++k) {
        const int a = queue[k];
        for (int e = graph.first[a]; e < graph.first[a + 1]; ++e) {
            const int mate = mateOfB[graph.neighbours[e]];
            if (mate == None) {
                found = true;
            } else if (layer[mate] == None) {
                layer[mate] = layer[a] + 1;
                queue.push_back(mate);
            }
        }
    }
    return found;
}

// Depth first along the layers from a free node of A to a free one of B, edges exchanged on the way back; without
// recursion, since paths may be as long as the cut.
void MaximumMatching::Augment(int root)
{
    std::vector<int> path = {root}; // nodes of A; the edge taken from path[i] is next[path[i]]
    while (!path.empty()) {
        const int a = path.back();
        if (next[a] == graph.first[a + 1]) {
            layer[a] = None; // leads nowhere
            path.pop_back();
            if (!path.empty()) {
                ++next[path.back()];
            }
            continue;
        }
        const int mate = mateOfB[graph.neighbours[next[a]]];
        if (mate == None) {
            for (const int along : path) {
                mateOfA[along] = graph.neighbours[next[along]];
                mateOfB[mateOfA[along]] = along;
                layer[along] = None; // paths of one round share no nodes
            }
            return;
        }
        if (layer[mate] == layer[a] + 1) {
            path.push_back(mate);
        } else {
            ++next[a];
        }
    }
}

// König: Z, what alternating paths from the free nodes of A reach; the cover is A without Z and B within Z.
VertexCover MaximumMatching::Cover() const
{
    VertexCover cover;
    cover.inA.assign(mateOfA.size(), 1);
    cover.inB.assign(mateOfB.size(), 0);
    std::vector<int> reached; // nodes of A
    const auto reach = [&](int a) {
        if (cover.inA[a] != 0) {
            cover.inA[a] = 0;
            reached.push_back(a);
        }
    };
    for (std::size_t a = 0; a < mateOfA.size(); ++a) {
        if (mateOfA[a] == None) {
            reach(static_cast<int>(a));
        }
    }
    for (std::size_t k = 0; k < reached.size(); ++k) {
        for (int e = graph.first[reached[k]]; e < graph.first[reached[k] + 1]; ++e) {
            const int b = graph.neighbours[e];
            cover.inB[b] = 1;
            reach(mateOfB[b]); // it has one, or the matching could grow
        }
    }
    cover.size = static_cast<int>(std::count(cover.inA.begin(), cover.inA.end(), 1) +
                                  std::count(cover.inB.begin(), cover.inB.end(), 1));
    return cover;
}

} // namespace tarnvexo
