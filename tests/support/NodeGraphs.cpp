#include "support/NodeGraphs.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>
#include <random>
#include <set>

namespace tarnvexo::test {

namespace {

// −1 ... 1, the same on every system.
double Uniform(std::mt19937& generator)
{
    return generator() / 2147483648.0 - 1.0;
}

} // namespace

NodeGraph GraphOf(int nodes, const std::vector<Edge>& edges)
{
    std::vector<std::set<int>> neighbours(static_cast<std::size_t>(nodes));
    for (const auto& [a, b] : edges) {
        neighbours[a].insert(b);
        neighbours[b].insert(a);
    }
    NodeGraph graph;
    graph.first.push_back(0);
    for (const std::set<int>& list : neighbours) {
        graph.neighbours.insert(graph.neighbours.end(), list.begin(), list.end());
        graph.first.push_back(static_cast<int>(graph.neighbours.size()));
    }
    return graph;
}

NodeGraph Chain(int nodes)
{
    std::vector<Edge> edges;
    for (int n = 1; n < nodes; ++n) { edges.push_back({n - 1, n}); }
    return GraphOf(nodes, edges);
}

NodeGraph Star(int spokes)
{
    std::vector<Edge> edges;
    for (int n = 1; n <= spokes; ++n) { edges.push_back({0, n}); }
    return GraphOf(spokes + 1, edges);
}

NodeGraph QuadGrid(int m, int n)
{
    return Brick(m, n, 1);
}

NodeGraph Brick(int m, int n, int p)
{
    std::vector<Edge> edges;
    const auto at = [&](int i, int j, int k) { return (i * n + j) * p + k; };
    for (int i = 0; i < m; ++i) {
        for (int j = 0; j < n; ++j) {
            for (int k = 0; k < p; ++k) {
                for (int a = std::max(0, i - 1); a < std::min(m, i + 2); ++a) {
                    for (int b = std::max(0, j - 1); b < std::min(n, j + 2); ++b) {
                        for (int c = std::max(0, k - 1); c < std::min(p, k + 2); ++c) {
                            if (at(a, b, c) > at(i, j, k)) {
                                edges.push_back({at(i, j, k), at(a, b, c)});
                            }
                        }
                    }
                }
            }
        }
    }
    return GraphOf(m * n * p, edges);
}

NodeGraph Girder(int around, int along)
{
    std::vector<Edge> edges;
    for (int i = 0; i < along; ++i) {
        for (int j = 0; j < around; ++j) {
            const int here = i * around + j, beside = i * around + (j + 1) % around;
            edges.push_back({here, beside});
            if (i + 1 < along) {
                edges.push_back({here, here + around});
                edges.push_back({here, beside + around});
                edges.push_back({beside, here + around});
            }
        }
    }
    return GraphOf(around * along, edges);
}

NodeGraph RandomGraph(int nodes, int edges, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<Edge> list;
    while (static_cast<int>(list.size()) < edges) {
        const int a = static_cast<int>(generator() % static_cast<unsigned>(nodes));
        const int b = static_cast<int>(generator() % static_cast<unsigned>(nodes));
        if (a != b) {
            list.push_back({a, b});
        }
    }
    return GraphOf(nodes, list);
}

std::vector<Vector3> BrickPlaces(int m, int n, int p)
{
    std::vector<Vector3> places;
    for (int i = 0; i < m; ++i) {
        for (int j = 0; j < n; ++j) {
            for (int k = 0; k < p; ++k) { places.push_back({1.0 * i, 1.0 * j, 1.0 * k}); }
        }
    }
    return places;
}

std::vector<Vector3> GirderPlaces(int around, int along)
{
    const double step = 2.0 * std::numbers::pi / around, radius = 1.0 / step;
    std::vector<Vector3> places;
    for (int i = 0; i < along; ++i) {
        for (int j = 0; j < around; ++j) {
            places.push_back({1.0 * i, radius * std::cos(step * j), radius * std::sin(step * j)});
        }
    }
    return places;
}

std::vector<Vector3> Askew(std::vector<Vector3> places)
{
    for (Vector3& x : places) {
        x = {0.8 * x[0] - 0.6 * x[1], 0.6 * x[0] + 0.8 * x[1], x[2]};
        x = {x[0], (5.0 * x[1] - 12.0 * x[2]) / 13.0, (12.0 * x[1] + 5.0 * x[2]) / 13.0};
    }
    return places;
}

EliminationOrder NaturalOrder(int nodes)
{
    std::vector<int> sequence(static_cast<std::size_t>(nodes));
    std::iota(sequence.begin(), sequence.end(), 0);
    return OrderFromSequence(sequence);
}

EliminationOrder RandomOrder(int nodes, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<int> sequence = NaturalOrder(nodes).nodeAt;
    for (std::size_t k = sequence.size(); k > 1; --k) { std::swap(sequence[k - 1], sequence[generator() % k]); }
    return OrderFromSequence(sequence);
}

ChosenOrder OrderNodes(const NodeGraph& graph)
{
    return tarnvexo::OrderNodes(graph, std::vector<Vector3>(graph.first.size() - 1));
}

EliminationTree DenseElimination(const NodeGraph& graph, const EliminationOrder& order)
{
    const int n = graph.Size();
    std::vector<std::vector<char>> connected(static_cast<std::size_t>(n),
                                             std::vector<char>(static_cast<std::size_t>(n)));
    for (int node = 0; node < n; ++node) {
        for (int e = graph.first[node]; e < graph.first[node + 1]; ++e) {
            connected[order.positionOf[node]][order.positionOf[graph.neighbours[e]]] = 1;
        }
    }
    EliminationTree tree;
    for (int k = 0; k < n; ++k) {
        std::vector<int> rows;
        for (int i = k + 1; i < n; ++i) {
            if (connected[k][i] != 0) {
                rows.push_back(i);
            }
        }
        for (int i : rows) {
            for (int j : rows) { connected[i][j] = 1; }
        }
        tree.parent.push_back(rows.empty() ? -1 : rows.front());
        tree.below.push_back(static_cast<int>(rows.size()));
    }
    return tree;
}

BlockMatrix RandomMatrix(const NodeGraph& graph, const EliminationOrder& order, unsigned seed)
{
    std::mt19937 generator(seed);
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(graph, order);
    const BlockPattern& pattern = matrix.pattern;
    matrix.values = LargeArray(BlockEntries * pattern.rows.size());
    std::vector<double> rowSum(static_cast<std::size_t>(DofsPerNode) * pattern.Size(), 0.0);
    for (int J = 0; J < pattern.Size(); ++J) {
        const int height = DofsPerNode * pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            for (int i = v + 1; i < height; ++i) {
                const double value = Uniform(generator);
                matrix.Column(J)[height * v + i] = value;
                if (i < DofsPerNode) { // the diagonal block is stored in full
                    matrix.Column(J)[height * i + v] = value;
                }
                const int I = pattern.rows[pattern.first[J] + i / DofsPerNode];
                rowSum[DofsPerNode * I + i % DofsPerNode] += std::fabs(value);
                rowSum[DofsPerNode * J + v] += std::fabs(value);
            }
        }
    }
    for (int J = 0; J < pattern.Size(); ++J) {
        const int height = DofsPerNode * pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) { matrix.Column(J)[height * v + v] = rowSum[DofsPerNode * J + v] + 1.0; }
    }
    return matrix;
}

std::vector<double> DenseOf(const BlockMatrix& matrix)
{
    const BlockPattern& pattern = matrix.pattern;
    const std::size_t n = static_cast<std::size_t>(DofsPerNode) * pattern.Size();
    std::vector<double> dense(n * n, 0.0);
    for (int J = 0; J < pattern.Size(); ++J) {
        for (int k = 0; k < pattern.BlocksOf(J); ++k) {
            const int I = pattern.rows[pattern.first[J] + k];
            for (int v = 0; v < DofsPerNode; ++v) {
                for (int u = 0; u < DofsPerNode; ++u) {
                    const std::size_t i = static_cast<std::size_t>(DofsPerNode) * I + u;
                    const std::size_t j = static_cast<std::size_t>(DofsPerNode) * J + v;
                    const std::size_t at = BlockEntries * pattern.first[J] +
                                           static_cast<std::size_t>(DofsPerNode * pattern.BlocksOf(J) * v) +
                                           static_cast<std::size_t>(DofsPerNode * k + u);
                    dense[i * n + j] = matrix.values.Data()[at];
                    dense[j * n + i] = matrix.values.Data()[at];
                }
            }
        }
    }
    return dense;
}

std::vector<double> DensePivots(std::vector<double> A)
{
    const std::size_t n = static_cast<std::size_t>(std::lround(std::sqrt(static_cast<double>(A.size()))));
    std::vector<double> pivots(n);
    for (std::size_t k = 0; k < n; ++k) {
        pivots[k] = A[k * n + k];
        for (std::size_t i = k + 1; i < n; ++i) {
            const double factor = A[i * n + k] / pivots[k];
            for (std::size_t j = k + 1; j < n; ++j) { A[i * n + j] -= factor * A[k * n + j]; }
        }
    }
    return pivots;
}

} // namespace tarnvexo::test
