#include "solver/BlockMatrix.h"

#include "core/Parallel.h"

#include <algorithm>
#include <cmath>

namespace tarnvexo {

namespace {

constexpr std::size_t ColumnsPerRange = 2048;

} // namespace

BlockPattern LowerPattern(const NodeGraph& graph, const EliminationOrder& order)
{
    const std::size_t columns = order.nodeAt.size();
    BlockPattern pattern;
    pattern.first.assign(columns + 1, 0);
    const auto isBelow = [&](int neighbour, std::size_t column) {
        return order.positionOf[neighbour] > static_cast<int>(column);
    };
    ParallelFor(columns, ColumnsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t column = begin; column < end; ++column) {
            const int node = order.nodeAt[column];
            std::size_t blocks = 1;
            for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
                blocks += isBelow(graph.neighbours[e], column) ? 1 : 0;
            }
            pattern.first[column + 1] = blocks;
        }
    });
    for (std::size_t column = 0; column < columns; ++column) { pattern.first[column + 1] += pattern.first[column]; }

    pattern.rows.resize(pattern.first.back());
    ParallelFor(columns, ColumnsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t column = begin; column < end; ++column) {
            const int node = order.nodeAt[column];
            int* row = &pattern.rows[pattern.first[column]];
            *row++ = static_cast<int>(column);
            int* const below = row;
            for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
                if (isBelow(graph.neighbours[e], column)) {
                    *row++ = order.positionOf[graph.neighbours[e]];
                }
            }
            std::sort(below, row);
        }
    });
    return pattern;
}

void EliminateEquations(BlockMatrix& matrix, const std::vector<unsigned char>& isFixed)
{
    const BlockPattern& pattern = matrix.pattern;
    const auto anyFixed = [&](int position) {
        const unsigned char* flags = &isFixed[static_cast<std::size_t>(DofsPerNode) * position];
        return std::any_of(flags, flags + DofsPerNode, [](unsigned char flag) { return flag != 0; });
    };
    ParallelFor(static_cast<std::size_t>(pattern.Size()), ColumnsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t column = begin; column < end; ++column) {
            const int J = static_cast<int>(column);
            const int blocks = pattern.BlocksOf(J);
            const int* rows = &pattern.rows[pattern.first[column]];
            const unsigned char* columnFixed = &isFixed[DofsPerNode * column];
            double* values = matrix.Column(J);
            for (int k = 0; k < blocks; ++k) {
                const int I = rows[k];
                if (!anyFixed(I) && !anyFixed(J)) {
                    continue;
                }
                const unsigned char* rowFixed = &isFixed[static_cast<std::size_t>(DofsPerNode) * I];
                for (int v = 0; v < DofsPerNode; ++v) {
                    for (int u = 0; u < DofsPerNode; ++u) {
                        double& entry = values[DofsPerNode * blocks * v + DofsPerNode * k + u];
                        const bool isDiagonal = k == 0 && u == v;
                        if (isDiagonal && rowFixed[u]) {
                            entry = entry != 0.0 ? entry : 1.0;
                        } else if (rowFixed[u] || columnFixed[v]) {
                            entry = 0.0;
                        }
                    }
                }
            }
        }
    });
}

void MultiplyBlockMatrix(const BlockMatrix& matrix, const double* x, double* y, double* ySize)
{
    const BlockPattern& pattern = matrix.pattern;
    const std::size_t equations = static_cast<std::size_t>(DofsPerNode) * pattern.Size();
    std::fill(y, y + equations, 0.0);
    std::fill(ySize, ySize + equations, 0.0);
    for (int J = 0; J < pattern.Size(); ++J) {
        const int blocks = pattern.BlocksOf(J);
        const int* rows = &pattern.rows[pattern.first[J]];
        const double* column = matrix.Column(J);
        for (int v = 0; v < DofsPerNode; ++v, column += DofsPerNode * blocks) {
            const std::size_t j = static_cast<std::size_t>(DofsPerNode) * J + v;
            double sum = 0.0, size = 0.0; // of row j, from the blocks below the diagonal
            for (int u = 0; u < DofsPerNode; ++u) {
                const std::size_t i = static_cast<std::size_t>(DofsPerNode) * J + u;
                y[i] += column[u] * x[j];
                ySize[i] += std::fabs(column[u] * x[j]);
            }
            for (int k = 1; k < blocks; ++k) {
                const std::size_t i = static_cast<std::size_t>(DofsPerNode) * rows[k];
                const double* a = column + DofsPerNode * k;
                for (int u = 0; u < DofsPerNode; ++u) {
                    y[i + u] += a[u] * x[j];
                    ySize[i + u] += std::fabs(a[u] * x[j]);
                    sum += a[u] * x[i + u];
                    size += std::fabs(a[u] * x[i + u]);
                }
            }
            y[j] += sum;
            ySize[j] += size;
        }
    }
}

std::vector<double> DiagonalOf(const BlockMatrix& matrix)
{
    const int columns = matrix.pattern.Size();
    std::vector<double> diagonal(static_cast<std::size_t>(DofsPerNode) * columns);
    for (int J = 0; J < columns; ++J) {
        const int height = DofsPerNode * matrix.pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            diagonal[static_cast<std::size_t>(DofsPerNode) * J + v] = matrix.Column(J)[height * v + v];
        }
    }
    return diagonal;
}

} // namespace tarnvexo
