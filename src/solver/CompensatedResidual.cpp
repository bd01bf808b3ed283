// Eight lanes whatever the vector unit, so that sums do not hang on it. A row's own column is a product of numbers that
// stand side by side: a lane takes every eighth one, and the lanes are added last. In a block left of the diagonal the
// six rows stand side by side: one lane each.
//
// Compiled once for each kind of vector unit; the best one that the processor has is chosen when the program runs.

#include "core/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "solver/CompensatedResidual.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"
#include "solver/CompensatedResidual.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

constexpr int LaneCount = 8;
using Tag = hn::CappedTag<double, LaneCount>;
using Vector = hn::Vec<Tag>;
constexpr int VectorLanes = static_cast<int>(hn::MaxLanes(Tag()));
constexpr int VectorCount = LaneCount / VectorLanes;
constexpr int NodeVectors = (DofsPerNode + VectorLanes - 1) / VectorLanes; // that hold the six rows of a node

// Sum of products in eight lanes: high + low is the sum in twice the precision, size that of the magnitudes.
struct LaneSums {
    Vector high[VectorCount];
    Vector low[VectorCount];
    Vector size[VectorCount];
};

HWY_INLINE void Clear(LaneSums& sums)
{
    for (int k = 0; k < VectorCount; ++k) { sums.high[k] = sums.low[k] = sums.size[k] = hn::Zero(Tag()); }
}

#if !HWY_NATIVE_FMA
// a = upper + lower, 26 bits each (Veltkamp).
HWY_INLINE void Split(Vector a, Vector& upper, Vector& lower)
{
    const Vector c = hn::Mul(hn::Set(Tag(), 0x1p27 + 1.0), a);
    upper = hn::Sub(c, hn::Sub(c, a));
    lower = hn::Sub(a, upper);
}
#endif

// a·b − product, without error, for product = fl(a·b).
HWY_INLINE Vector ProductError(Vector a, Vector b, Vector product)
{
#if HWY_NATIVE_FMA
    return hn::MulSub(a, b, product);
#else
    Vector aUpper, aLower, bUpper, bLower;
    Split(a, aUpper, aLower);
    Split(b, bUpper, bLower);
    const Vector upper = hn::Sub(product, hn::Mul(aUpper, bUpper));
    const Vector mixed = hn::Sub(hn::Sub(upper, hn::Mul(aLower, bUpper)), hn::Mul(aUpper, bLower));
    return hn::Sub(hn::Mul(aLower, bLower), mixed);
#endif
}

HWY_INLINE void AddProduct(Vector a, Vector b, LaneSums& sums, int k)
{
    const Vector product = hn::Mul(a, b);
    const Vector productError = ProductError(a, b, product);
    const Vector sum = hn::Add(sums.high[k], product);
    const Vector added = hn::Sub(sum, sums.high[k]);
    const Vector sumError = hn::Add(hn::Sub(sums.high[k], hn::Sub(sum, added)), hn::Sub(product, added));
    sums.high[k] = sum;
    sums.low[k] = hn::Add(sums.low[k], hn::Add(productError, sumError));
    sums.size[k] = hn::Add(sums.size[k], hn::Abs(product));
}

// The lanes in memory, to be added up.
struct StoredSums {
    alignas(64) double high[LaneCount];
    alignas(64) double low[LaneCount];
    alignas(64) double size[LaneCount];
};

HWY_INLINE void Store(const LaneSums& sums, StoredSums& stored)
{
    for (int k = 0; k < VectorCount; ++k) {
        hn::Store(sums.high[k], Tag(), stored.high + k * VectorLanes);
        hn::Store(sums.low[k], Tag(), stored.low + k * VectorLanes);
        hn::Store(sums.size[k], Tag(), stored.size + k * VectorLanes);
    }
}

// Σ a[i]·x[i], i < count, lane by lane. x is padded with zeros to whole groups of lanes, a is not read beyond its end.
HWY_INLINE void MultiplyColumn(const double* a, const double* x, int count, StoredSums& stored)
{
    const Tag d;
    LaneSums sums;
    Clear(sums);
    int i = 0;
    for (; i + LaneCount <= count; i += LaneCount) {
        for (int k = 0; k < VectorCount; ++k) {
            AddProduct(hn::LoadU(d, a + i + k * VectorLanes), hn::Load(d, x + i + k * VectorLanes), sums, k);
        }
    }
    for (int k = 0; k < VectorCount && i < count; ++k, i += VectorLanes) {
        const auto inside = hn::FirstN(d, static_cast<std::size_t>(count - i));
        AddProduct(hn::MaskedLoad(inside, d, a + i), hn::Load(d, x + i), sums, k);
    }
    Store(sums, stored);
}

// Σ A·x over the blocks left of the diagonal of block row I, for the vector −x; lane u has row u.
HWY_INLINE void MultiplyLeftBlocks(const BlockMatrix& matrix, const LeftBlocks& left, int I, const double* x,
                                   StoredSums& stored)
{
    const Tag d;
    const auto inside = hn::FirstN(d, static_cast<std::size_t>(DofsPerNode - (NodeVectors - 1) * VectorLanes));
    LaneSums sums;
    Clear(sums);
    for (std::size_t e = left.first[I]; e < left.first[I + 1]; ++e) {
        const int J = left.column[e];
        const std::size_t above = left.block[e] - matrix.pattern.first[J];
        const int height = DofsPerNode * matrix.pattern.BlocksOf(J);
        const double* a = matrix.Column(J) + DofsPerNode * above;
        const double* xJ = x + static_cast<std::ptrdiff_t>(DofsPerNode) * J;
        for (int v = 0; v < DofsPerNode; ++v, a += height) {
            const Vector xj = hn::Neg(hn::Set(d, xJ[v]));
            for (int k = 0; k + 1 < NodeVectors; ++k) { AddProduct(hn::LoadU(d, a + k * VectorLanes), xj, sums, k); }
            constexpr int last = NodeVectors - 1;
            AddProduct(hn::MaskedLoad(inside, d, a + last * VectorLanes), xj, sums, last);
        }
    }
    Store(sums, stored);
}

// Adds high + low to the sum in twice the precision.
HWY_INLINE void AddPair(double high, double low, double& sum, double& sumLow)
{
    const double total = sum + high;
    const double added = total - sum;
    sumLow += ((sum - (total - added)) + (high - added)) + low;
    sum = total;
}

// Block rows begin ... end - 1 of one vector. work: the longest column, padded.
void FormRows(const BlockMatrix& matrix, const LeftBlocks& left, const double* f, const double* u, std::size_t begin,
              std::size_t end, double* work, double* residual, double* size)
{
    const BlockPattern& pattern = matrix.pattern;
    for (std::size_t column = begin; column < end; ++column) {
        const int J = static_cast<int>(column);
        const int blocks = pattern.BlocksOf(J);
        const int height = DofsPerNode * blocks;
        const int* rows = &pattern.rows[pattern.first[J]];
        for (int k = 0; k < blocks; ++k) {
            const double* uI = u + static_cast<std::ptrdiff_t>(DofsPerNode) * rows[k];
            for (int i = 0; i < DofsPerNode; ++i) { work[DofsPerNode * k + i] = -uI[i]; }
        }
        for (int i = height; i % LaneCount != 0; ++i) { work[i] = 0.0; }

        StoredSums leftSums, columnSums[DofsPerNode];
        MultiplyLeftBlocks(matrix, left, J, u, leftSums);
        for (int v = 0; v < DofsPerNode; ++v) {
            MultiplyColumn(matrix.Column(J) + height * v, work, height, columnSums[v]);
        }
        for (int v = 0; v < DofsPerNode; ++v) {
            const std::size_t j = DofsPerNode * column + v;
            double sum = f[j], low = 0.0, magnitude = std::fabs(f[j]) + leftSums.size[v];
            AddPair(leftSums.high[v], leftSums.low[v], sum, low);
            for (int lane = 0; lane < LaneCount; ++lane) {
                AddPair(columnSums[v].high[lane], columnSums[v].low[lane], sum, low);
                magnitude += columnSums[v].size[lane];
            }
            residual[j] = sum + low;
            size[j] = magnitude;
        }
    }
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

#include "core/Parallel.h"
#include "hwy/aligned_allocator.h"

#include <new>

namespace tarnvexo {

namespace {

// Some 400 kB of matrix in plates: several right-hand sides find it in the second-level cache.
constexpr std::size_t ColumnsPerRange = 256;

} // namespace

HWY_EXPORT(FormRows);

LeftBlocks BlocksLeftOfDiagonal(const BlockPattern& pattern)
{
    const int columns = pattern.Size();
    LeftBlocks left;
    left.first.assign(static_cast<std::size_t>(columns) + 1, 0);
    for (int J = 0; J < columns; ++J) {
        for (std::size_t b = pattern.first[J] + 1; b < pattern.first[J + 1]; ++b) { ++left.first[pattern.rows[b] + 1]; }
    }
    for (int I = 0; I < columns; ++I) { left.first[I + 1] += left.first[I]; }
    left.block.resize(left.first.back());
    left.column.resize(left.first.back());
    std::vector<std::size_t> next(left.first.begin(), left.first.end() - 1);
    for (int J = 0; J < columns; ++J) {
        for (std::size_t b = pattern.first[J] + 1; b < pattern.first[J + 1]; ++b) {
            const std::size_t e = next[pattern.rows[b]]++;
            left.block[e] = b;
            left.column[e] = J;
        }
    }
    return left;
}

void FormCompensatedResidual(const BlockMatrix& matrix, const LeftBlocks& left, const double* f, const double* u,
                             int count, double* residual, double* size)
{
    const BlockPattern& pattern = matrix.pattern;
    const std::size_t columns = static_cast<std::size_t>(pattern.Size());
    const std::size_t equations = DofsPerNode * columns;
    ParallelFor(columns, ColumnsPerRange, [&](std::size_t begin, std::size_t end) {
        int longest = 0;
        for (std::size_t column = begin; column < end; ++column) {
            longest = std::max(longest, pattern.BlocksOf(static_cast<int>(column)));
        }
        const auto work = hwy::AllocateAligned<double>(static_cast<std::size_t>(DofsPerNode) * longest + 8);
        if (!work) {
            throw std::bad_alloc();
        }
        for (int c = 0; c < count; ++c) {
            const std::size_t at = equations * static_cast<std::size_t>(c);
            HWY_DYNAMIC_DISPATCH(FormRows)
            (matrix, left, f + at, u + at, begin, end, work.get(), residual + at, size + at);
        }
    });
}

} // namespace tarnvexo

#endif // HWY_ONCE
