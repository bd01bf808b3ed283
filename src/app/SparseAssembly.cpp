#include "app/SparseAssembly.h"

#include "core/Parallel.h"
#include "elements/BeamStiffness.h"
#include "elements/ShellStiffnessBatch.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr int ChunksPerThread = 8;
constexpr int FewestColumnsPerChunk = 256;

// Chunk c owns the block columns begin[c] ... begin[c + 1] - 1. Chunks hold about equally many blocks.
struct Chunks {
    std::vector<int> begin;
    std::vector<int> ofColumn;

    int Count() const { return static_cast<int>(begin.size()) - 1; }
};

Chunks CutIntoChunks(const BlockPattern& pattern)
{
    const int columns = pattern.Size();
    const std::size_t count = std::max(1, std::min(ChunksPerThread * ThreadCount(), columns / FewestColumnsPerChunk));
    Chunks chunks;
    chunks.begin.push_back(0);
    chunks.ofColumn.resize(static_cast<std::size_t>(columns));
    for (int column = 0; column < columns; ++column) {
        const std::size_t share = pattern.first[column] * count / pattern.rows.size();
        if (share >= chunks.begin.size()) {
            chunks.begin.push_back(column);
        }
        chunks.ofColumn[column] = static_cast<int>(chunks.begin.size()) - 1;
    }
    chunks.begin.push_back(columns);
    return chunks;
}

// Elements of one kind that touch each chunk, ascending.
struct ElementsOfChunks {
    std::vector<std::size_t> first;
    std::vector<int> elements;
};

template <std::size_t Nodes>
ElementsOfChunks FindElementsOfChunks(const std::vector<std::array<int, Nodes>>& connectivity,
                                      const std::vector<int>& positionOf, const Chunks& chunks)
{
    // Calls visit(chunk) once for each chunk that the element touches.
    const auto forChunksOf = [&](const std::array<int, Nodes>& nodes, auto visit) {
        std::array<int, Nodes> touched;
        for (std::size_t i = 0; i < Nodes; ++i) {
            touched[i] = chunks.ofColumn[positionOf[nodes[i]]];
            if (std::find(touched.begin(), touched.begin() + i, touched[i]) == touched.begin() + i) {
                visit(touched[i]);
            }
        }
    };
    ElementsOfChunks map;
    map.first.assign(static_cast<std::size_t>(chunks.Count()) + 1, 0);
    for (const auto& nodes : connectivity) {
        forChunksOf(nodes, [&](int chunk) { ++map.first[chunk + 1]; });
    }
    for (std::size_t c = 1; c < map.first.size(); ++c) { map.first[c] += map.first[c - 1]; }
    map.elements.resize(map.first.back());
    std::vector<std::size_t> next(map.first.begin(), map.first.end() - 1);
    for (std::size_t e = 0; e < connectivity.size(); ++e) {
        forChunksOf(connectivity[e], [&](int chunk) { map.elements[next[chunk]++] = static_cast<int>(e); });
    }
    return map;
}

// Adds an element matrix K [6·Nodes][6·Nodes] (symmetric) at the lower-triangle blocks of the columns begin ... end
// - 1.
template <std::size_t Nodes>
void ScatterBlocks(const double* K, const std::array<int, Nodes>& nodes, const std::vector<int>& positionOf, int begin,
                   int end, BlockMatrix& matrix)
{
    constexpr int order = static_cast<int>(Nodes) * DofsPerNode;
    const BlockPattern& pattern = matrix.pattern;
    for (std::size_t c = 0; c < Nodes; ++c) {
        const int J = positionOf[nodes[c]];
        if (J < begin || J >= end) {
            continue;
        }
        const int blocks = pattern.BlocksOf(J);
        const int* rows = &pattern.rows[pattern.first[J]];
        double* column = matrix.Column(J);
        for (std::size_t r = 0; r < Nodes; ++r) {
            const int I = positionOf[nodes[r]];
            if (I < J) {
                continue; // its transpose stands in column I
            }
            const int block = static_cast<int>(std::find(rows, rows + blocks, I) - rows);
            for (int v = 0; v < DofsPerNode; ++v) {
                const double* from = K + (DofsPerNode * c + v) * order + DofsPerNode * r; // row of K = its column
                double* to = column + DofsPerNode * (blocks * v + block);
                for (int u = 0; u < DofsPerNode; ++u) { to[u] += from[u]; }
            }
        }
    }
}

// The shells of one kind that touch a chunk, ShellBatch at a time; scatter(K, nodes) adds one of their matrices.
template <std::size_t Nodes, class Stiffness, class Scatter>
void AssembleShells(const std::vector<ShellElement<Nodes>>& shells,
                    const std::vector<std::array<int, Nodes>>& connectivity, const ElementsOfChunks& map,
                    std::size_t chunk, Stiffness stiffness, Scatter scatter)
{
    constexpr int order = static_cast<int>(Nodes) * DofsPerNode;
    double K[ShellBatch][order][order];
    const ShellElement<Nodes>* batch[ShellBatch];
    for (std::size_t k = map.first[chunk]; k < map.first[chunk + 1]; k += ShellBatch) {
        const std::size_t count = std::min<std::size_t>(ShellBatch, map.first[chunk + 1] - k);
        for (std::size_t i = 0; i < count; ++i) { batch[i] = &shells[map.elements[k + i]]; }
        stiffness(batch, static_cast<int>(count), K);
        for (std::size_t i = 0; i < count; ++i) { scatter(&K[i][0][0], connectivity[map.elements[k + i]]); }
    }
}

} // namespace

void AssembleBlockMatrix(const ModelStore& model, const EliminationOrder& order, BlockMatrix& matrix)
{
    const BlockPattern& pattern = matrix.pattern;
    const Chunks chunks = CutIntoChunks(pattern);
    const ElementsOfChunks quads = FindElementsOfChunks(model.QuadConnectivity, order.positionOf, chunks);
    const ElementsOfChunks tris = FindElementsOfChunks(model.TriConnectivity, order.positionOf, chunks);
    const ElementsOfChunks beams = FindElementsOfChunks(model.BeamConnectivity, order.positionOf, chunks);
    matrix.values = LargeArray(BlockEntries * pattern.rows.size());

    ParallelFor(static_cast<std::size_t>(chunks.Count()), 1, [&](std::size_t chunk, std::size_t) {
        const int begin = chunks.begin[chunk], end = chunks.begin[chunk + 1];
        const auto scatter = [&](const double* K, const auto& nodes) {
            ScatterBlocks(K, nodes, order.positionOf, begin, end, matrix);
        };
        std::fill(matrix.Column(begin),
                  matrix.Column(begin) + BlockEntries * (pattern.first[end] - pattern.first[begin]), 0.0);
        AssembleShells<QuadNodeCount>(model.QuadElements, model.QuadConnectivity, quads, chunk, QuadShellStiffnessBatch,
                                      scatter);
        AssembleShells<TriNodeCount>(model.TriElements, model.TriConnectivity, tris, chunk, TriShellStiffnessBatch,
                                     scatter);
        for (std::size_t k = beams.first[chunk]; k < beams.first[chunk + 1]; ++k) {
            const int e = beams.elements[k];
            double K[BeamDofCount][BeamDofCount];
            BeamStiffness(model.BeamElements[e], K);
            scatter(&K[0][0], model.BeamConnectivity[e]);
        }
    });
}

} // namespace tarnvexo
