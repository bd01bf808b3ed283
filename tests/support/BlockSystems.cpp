#include "support/BlockSystems.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>

namespace tarnvexo::test {

std::vector<double> RandomVectors(std::size_t count, unsigned seed)
{
    std::mt19937 generator(seed);
    std::vector<double> x(count);
    for (double& value : x) { value = generator() / 2147483648.0 - 1.0; }
    return x;
}

namespace {

// Rows divided by `scale`.
double LargestShare(const BlockMatrix& matrix, const double* x, const double* f, const std::vector<double>& scale)
{
    const std::size_t n = scale.size();
    std::vector<double> y(n), ySize(n);
    MultiplyBlockMatrix(matrix, x, y.data(), ySize.data());
    double residual = 0.0, size = 0.0;
    for (std::size_t i = 0; i < n; ++i) {
        const double part = std::fabs(f[i] - y[i]) / scale[i];
        if (!(part <= residual)) { // no number counts as the largest
            residual = part;
        }
        size = std::max(size, (ySize[i] + std::fabs(f[i])) / scale[i]);
    }
    return residual / size;
}

} // namespace

double BackwardError(const BlockMatrix& matrix, const double* x, const double* f)
{
    return LargestShare(matrix, x, f,
                        std::vector<double>(static_cast<std::size_t>(DofsPerNode) * matrix.pattern.Size(), 1.0));
}

double ScaledBackwardError(const BlockMatrix& matrix, const double* x, const double* f)
{
    std::vector<double> scale = DiagonalOf(matrix);
    for (double& s : scale) { s = std::sqrt(std::fabs(s)); }
    return LargestShare(matrix, x, f, scale);
}

double LargestDifference(const std::vector<double>& a, const std::vector<double>& b)
{
    double largest = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) { largest = std::max(largest, std::fabs(a[i] - b[i])); }
    return largest;
}

bool SameBits(const std::vector<double>& a, const std::vector<double>& b)
{
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), sizeof(double) * a.size()) == 0;
}

double& DiagonalBlockEntry(BlockMatrix& matrix, int position, int u, int v)
{
    return matrix.Column(position)[DofsPerNode * matrix.pattern.BlocksOf(position) * v + u];
}

double& Diagonal(BlockMatrix& matrix, int equation)
{
    return DiagonalBlockEntry(matrix, equation / DofsPerNode, equation % DofsPerNode, equation % DofsPerNode);
}

void Scale(BlockMatrix& matrix, const std::vector<double>& s)
{
    const BlockPattern& pattern = matrix.pattern;
    for (int J = 0; J < pattern.Size(); ++J) {
        const int height = DofsPerNode * pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            for (int i = 0; i < height; ++i) {
                const int row = DofsPerNode * pattern.rows[pattern.first[J] + i / DofsPerNode] + i % DofsPerNode;
                matrix.Column(J)[height * v + i] *= s[row] * s[DofsPerNode * J + v];
            }
        }
    }
}

BlockMatrix RandomStiffness(const NodeGraph& graph, const EliminationOrder& order, unsigned seed,
                            const std::vector<double>& stiffness)
{
    BlockMatrix matrix;
    matrix.pattern = LowerPattern(graph, order);
    const BlockPattern& pattern = matrix.pattern;
    matrix.values = LargeArray(BlockEntries * pattern.rows.size());
    std::fill_n(matrix.values.Data(), matrix.values.Size(), 0.0);
    constexpr int Both = 2 * DofsPerNode;
    const std::vector<double> random = RandomVectors(DofsPerNode * Both * pattern.rows.size(), seed);
    for (int J = 0; J < pattern.Size(); ++J) {
        const int height = DofsPerNode * pattern.BlocksOf(J);
        for (int k = 0; k < pattern.BlocksOf(J); ++k) {
            const std::size_t edge = pattern.first[J] + k;
            const double* const B = &random[DofsPerNode * Both * edge]; // [6][12]: columns of J, then of I
            const auto product = [&](int a, int b) {
                double sum = 0.0;
                for (int p = 0; p < DofsPerNode; ++p) { sum += B[Both * p + a] * B[Both * p + b]; }
                return stiffness[edge] * sum;
            };
            for (int v = 0; v < DofsPerNode; ++v) {
                for (int u = 0; u < DofsPerNode; ++u) {
                    DiagonalBlockEntry(matrix, J, u, v) += product(u, v);
                    if (k > 0) {
                        matrix.Column(J)[height * v + DofsPerNode * k + u] += product(DofsPerNode + u, v);
                        DiagonalBlockEntry(matrix, pattern.rows[edge], u, v) +=
                            product(DofsPerNode + u, DofsPerNode + v);
                    }
                }
            }
        }
    }
    return matrix;
}

} // namespace tarnvexo::test
