#include "app/SoftMotions.h"

#include "inertia/SymmetricEigen.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>

namespace tarnvexo {

namespace {

constexpr int LargestBlock = 40;
constexpr int SmallestBlock = 6;
constexpr int MostSteps = 20;

using Vectors = std::vector<std::vector<double>>;

void SetDiagonal(BlockMatrix& matrix, const std::vector<double>& diagonal)
{
    for (int J = 0; J < matrix.pattern.Size(); ++J) {
        const int height = DofsPerNode * matrix.pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            matrix.Column(J)[height * v + v] = diagonal[static_cast<std::size_t>(DofsPerNode) * J + v];
        }
    }
}

// Factorises K + s·D with the first s that serves. Returns how many pivots are of the size of s; -1: none serves.
int FactoriseShifted(SparseEngine& engine, BlockMatrix& matrix, const std::vector<double>& diagonal,
                     const std::vector<double>& weights)
{
    for (double shift = 1e-12; shift < 1e3; shift *= 100.0) {
        std::vector<double> shifted = diagonal;
        for (std::size_t i = 0; i < shifted.size(); ++i) { shifted[i] += shift * weights[i]; }
        SetDiagonal(matrix, shifted);
        const PivotReport report = engine.Factorise(matrix);
        SetDiagonal(matrix, diagonal);
        if (!report.Complete()) {
            continue;
        }
        int small = 0;
        bool serves = true;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            const double ratio = report.pivots[i] / weights[i];
            serves = serves && ratio > 0.1 * shift;
            small += ratio < 100.0 * shift ? 1 : 0;
        }
        if (serves) {
            return small;
        }
    }
    return -1;
}

enum Kind { Negative, Mechanism, Soft };

Kind KindOf(double lambda)
{
    return lambda < -NoStiffness ? Negative : lambda <= NoStiffness ? Mechanism : Soft;
}

// Numbers of -1 ... 1 that are the same in every run (xorshift, G. Marsaglia 2003).
void FillAtRandom(Vectors& block)
{
    std::uint64_t state = 88172645463325252u;
    for (std::vector<double>& vector : block) {
        for (double& value : vector) {
            state ^= state << 13;
            state ^= state >> 7;
            state ^= state << 17;
            value = static_cast<double>(state >> 11) * 0x1p-52 - 1.0;
        }
    }
}

double WeightedProduct(const std::vector<double>& weights, const std::vector<double>& a, const std::vector<double>& b)
{
    double sum = 0.0;
    for (std::size_t i = 0; i < a.size(); ++i) { sum += weights[i] * a[i] * b[i]; }
    return sum;
}

// xᵢᵀ·D·xⱼ = δᵢⱼ by modified Gram–Schmidt, twice for vectors that were nearly parallel.
void Orthonormalise(const std::vector<double>& weights, Vectors& block)
{
    for (std::size_t j = 0; j < block.size(); ++j) {
        for (int pass = 0; pass < 2; ++pass) {
            for (std::size_t i = 0; i < j; ++i) {
                const double share = WeightedProduct(weights, block[i], block[j]);
                for (std::size_t k = 0; k < weights.size(); ++k) { block[j][k] -= share * block[i][k]; }
            }
            const double length = std::sqrt(WeightedProduct(weights, block[j], block[j]));
            for (double& value : block[j]) { value /= length; }
        }
    }
}

std::vector<double> Times(const BlockMatrix& matrix, const std::vector<double>& x)
{
    std::vector<double> y(x.size()), size(x.size());
    MultiplyBlockMatrix(matrix, x.data(), y.data(), size.data());
    return y;
}

// The block becomes the approximate eigenvectors that its span holds; their λ are returned, ascending.
std::vector<double> RayleighRitz(const BlockMatrix& matrix, Vectors& block)
{
    const int count = static_cast<int>(block.size());
    SquareMatrix<LargestBlock> projected = {};
    for (int j = 0; j < count; ++j) {
        const std::vector<double> Kx = Times(matrix, block[j]);
        for (int i = 0; i < count; ++i) {
            double product = 0.0;
            for (std::size_t k = 0; k < Kx.size(); ++k) { product += block[i][k] * Kx[k]; }
            projected[i][j] = product;
        }
    }
    double largest = 0.0;
    for (int j = 0; j < count; ++j) { largest = std::max(largest, std::fabs(projected[j][j])); }
    // Vectors that are not there: above all of the block, but no higher, because the eigenvalues are as good as the
    // largest entry lets them be.
    for (int j = count; j < LargestBlock; ++j) { projected[j][j] = 2.0 * count * largest; }
    const SymmetricEigen<LargestBlock> eigen = SolveSymmetricEigen<LargestBlock>(projected);
    Vectors turned(block.size(), std::vector<double>(block[0].size(), 0.0));
    for (int j = 0; j < count; ++j) {
        for (int i = 0; i < count; ++i) {
            for (std::size_t k = 0; k < block[i].size(); ++k) { turned[j][k] += eigen.vectors[j][i] * block[i][k]; }
        }
    }
    block = std::move(turned);
    return {eigen.values.begin(), eigen.values.begin() + count};
}

// Another basis of the same space: each vector has an entry 1 (of √d·u) where the others have 0, largest entries first.
void MakeSparse(const std::vector<double>& weights, std::span<std::vector<double>> basis)
{
    for (std::vector<double>& vector : basis) {
        for (std::size_t k = 0; k < vector.size(); ++k) { vector[k] *= std::sqrt(weights[k]); }
    }
    for (std::size_t step = 0; step < basis.size(); ++step) {
        std::size_t row = 0, column = step;
        for (std::size_t j = step; j < basis.size(); ++j) {
            for (std::size_t k = 0; k < basis[j].size(); ++k) {
                if (std::fabs(basis[j][k]) > (1.0 + 1e-9) * std::fabs(basis[column][row])) {
                    row = k;
                    column = j;
                }
            }
        }
        std::swap(basis[step], basis[column]);
        const double pivot = basis[step][row];
        for (double& value : basis[step]) { value /= pivot; }
        for (std::size_t j = 0; j < basis.size(); ++j) {
            const double share = basis[j][row];
            for (std::size_t k = 0; j != step && k < basis[j].size(); ++k) { basis[j][k] -= share * basis[step][k]; }
        }
    }
    for (std::vector<double>& vector : basis) {
        double largest = 0.0;
        for (const double value : vector) { largest = std::max(largest, std::fabs(value)); }
        for (std::size_t k = 0; k < vector.size(); ++k) { vector[k] /= largest * std::sqrt(weights[k]); }
    }
}

// Inverse iteration on `count` vectors; returns their λ, ascending. Those below SoftLimit have settled.
std::vector<double> FindSmallest(SparseEngine& engine, const BlockMatrix& matrix, const std::vector<double>& weights,
                                 std::size_t count, Vectors& block)
{
    const std::size_t n = weights.size();
    block.assign(count, std::vector<double>(n));
    FillAtRandom(block);
    std::vector<double> lambdas(count, 1.0), together(count * n);
    for (int step = 0; step < MostSteps; ++step) {
        for (std::size_t j = 0; j < count; ++j) {
            for (std::size_t k = 0; k < n; ++k) { together[n * j + k] = weights[k] * block[j][k]; }
        }
        engine.Solve(together.data(), static_cast<int>(count));
        for (std::size_t j = 0; j < count; ++j) { std::copy_n(&together[n * j], n, block[j].begin()); }
        Orthonormalise(weights, block);
        const std::vector<double> before = std::exchange(lambdas, RayleighRitz(matrix, block));
        bool isSettled = true;
        for (std::size_t j = 0; j < count; ++j) {
            const bool isTold = lambdas[j] < SoftLimit;
            isSettled = isSettled &&
                        (!isTold || std::fabs(lambdas[j] - before[j]) <= 1e-2 * std::fabs(lambdas[j]) + NoStiffness);
        }
        if (isSettled && step >= 2) {
            break;
        }
    }
    return lambdas;
}

std::size_t CountSoft(const std::vector<double>& lambdas)
{
    return static_cast<std::size_t>(
        std::count_if(lambdas.begin(), lambdas.end(), [](double lambda) { return lambda < SoftLimit; }));
}

} // namespace

SoftMotions FindSoftMotions(SparseEngine& engine, BlockMatrix& matrix, std::vector<double> weights)
{
    SoftMotions found;
    const std::vector<double> diagonal = DiagonalOf(matrix);
    for (std::size_t i = 0; i < weights.size(); ++i) { weights[i] = std::max(weights[i], std::fabs(diagonal[i])); }
    const int small = FactoriseShifted(engine, matrix, diagonal, weights);
    if (small < 0) {
        return found;
    }
    // Small pivots may be fewer than soft motions: as long as all vectors have become soft ones, there may be more.
    const std::size_t most = std::min<std::size_t>(LargestBlock, weights.size());
    std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(std::max(small + 4, SmallestBlock)), most);
    Vectors block;
    std::vector<double> lambdas = FindSmallest(engine, matrix, weights, count, block);
    while (CountSoft(lambdas) == count && count < most) {
        count = std::min(2 * count, most);
        lambdas = FindSmallest(engine, matrix, weights, count, block);
    }
    const std::size_t told = CountSoft(lambdas);
    found.mayBeMore = told == LargestBlock;
    block.resize(told);
    if (block.empty()) {
        return found;
    }
    lambdas = RayleighRitz(matrix, block); // apart from the stiffer ones, which cost digits of the small λ
    // A mixture of kinds would hide what has no stiffness at all.
    for (std::size_t begin = 0, end = 0; begin < block.size(); begin = end) {
        while (end < block.size() && KindOf(lambdas[end]) == KindOf(lambdas[begin])) { ++end; }
        MakeSparse(weights, std::span(block).subspan(begin, end - begin));
    }
    for (std::vector<double>& vector : block) {
        const std::vector<double> Ku = Times(matrix, vector);
        double energy = 0.0;
        for (std::size_t k = 0; k < Ku.size(); ++k) { energy += Ku[k] * vector[k]; }
        found.motions.push_back({energy / WeightedProduct(weights, vector, vector), std::move(vector)});
    }
    // The λ of mechanisms are round-off: these keep the order of their places.
    std::stable_sort(found.motions.begin(), found.motions.end(), [](const SoftMotion& a, const SoftMotion& b) {
        const Kind kindA = KindOf(a.lambda), kindB = KindOf(b.lambda);
        return kindA != kindB ? kindA < kindB : kindA != Mechanism && a.lambda < b.lambda;
    });
    return found;
}

} // namespace tarnvexo
