// Compiled once for each kind of vector unit; the best one that the processor has is chosen when the program runs.

#include "core/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "solver/FrontKernels.cpp"
#include "hwy/foreach_target.h"
#include "hwy/highway.h"
#include "solver/FrontKernels.h"

#include <algorithm>
#include <cmath>
#include <limits>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<double, RowAlignment>;
using Vector = hn::Vec<Tag>;
constexpr int Lanes = static_cast<int>(hn::MaxLanes(Tag()));
constexpr int Six = 6;

// A tile of C of TileVectors vectors by six columns stays in registers: 24 sums where there are 32 registers, 12 where
// there are 16.
#if HWY_TARGET <= HWY_AVX3 || HWY_ARCH_ARM_A64
constexpr int TileVectors = 4;
#else
constexpr int TileVectors = 2;
#endif
constexpr int TileRows = TileVectors * Lanes;

// Columns of L that a product goes through before it is taken off C.
constexpr int MostColumnsAtOnce = 192;

// C(Vectors·Lanes x 6) −= A·Bᵀ, k columns of both.
template <int Vectors>
HWY_INLINE void SubtractTile(int k, const double* HWY_RESTRICT A, std::ptrdiff_t strideOfA,
                             const double* HWY_RESTRICT B, std::ptrdiff_t strideOfB, double* HWY_RESTRICT C,
                             std::ptrdiff_t strideOfC)
{
    const Tag d;
    Vector sum[Six][Vectors];
    HWY_UNROLL(6)
    for (int c = 0; c < Six; ++c) {
        HWY_UNROLL(4)
        for (int v = 0; v < Vectors; ++v) { sum[c][v] = hn::Zero(d); }
    }
    for (int p = 0; p < k; ++p, A += strideOfA, B += strideOfB) {
        Vector a[Vectors];
        HWY_UNROLL(4)
        for (int v = 0; v < Vectors; ++v) { a[v] = hn::Load(d, A + v * Lanes); }
        HWY_UNROLL(6)
        for (int c = 0; c < Six; ++c) {
            const Vector b = hn::Set(d, B[c]);
            HWY_UNROLL(4)
            for (int v = 0; v < Vectors; ++v) { sum[c][v] = hn::MulAdd(a[v], b, sum[c][v]); }
        }
    }
    HWY_UNROLL(6)
    for (int c = 0; c < Six; ++c) {
        HWY_UNROLL(4)
        for (int v = 0; v < Vectors; ++v) {
            double* const to = C + c * strideOfC + v * Lanes;
            hn::Store(hn::Sub(hn::Load(d, to), sum[c][v]), d, to);
        }
    }
}

// The same for `rows` rows, a multiple of RowAlignment.
HWY_INLINE void SubtractSix(int rows, int k, const double* A, std::ptrdiff_t strideOfA, const double* B,
                            std::ptrdiff_t strideOfB, double* C, std::ptrdiff_t strideOfC)
{
    int i = 0;
    for (; i + TileRows <= rows; i += TileRows) {
        SubtractTile<TileVectors>(k, A + i, strideOfA, B, strideOfB, C + i, strideOfC);
    }
    if constexpr (TileRows > RowAlignment) {
        switch ((rows - i) / Lanes) {
        case 1:
            SubtractTile<1>(k, A + i, strideOfA, B, strideOfB, C + i, strideOfC);
            break;
        case 2:
            SubtractTile<2>(k, A + i, strideOfA, B, strideOfB, C + i, strideOfC);
            break;
        case 3:
            SubtractTile<3>(k, A + i, strideOfA, B, strideOfB, C + i, strideOfC);
            break;
        default:
            break;
        }
    }
}

void TakeProductOff(const FrontArray& L, IndexRange k, const double* signs, IndexRange rows, IndexRange columns,
                    const FrontArray& C)
{
    for (int first = k.begin; first < k.end; first += MostColumnsAtOnce) {
        const int count = std::min(MostColumnsAtOnce, k.end - first);
        for (int c = columns.begin; c < columns.end; c += Six) {
            const int top = std::max(rows.begin, c / RowAlignment * RowAlignment);
            if (top >= rows.end) {
                break;
            }
            const double* B = L.At(c, first);
            std::ptrdiff_t strideOfB = L.stride;
            double signedB[MostColumnsAtOnce * Six];
            if (signs != nullptr) {
                for (int p = 0; p < count; ++p) {
                    for (int u = 0; u < Six; ++u) { signedB[p * Six + u] = signs[first + p] * B[p * strideOfB + u]; }
                }
                B = signedB;
                strideOfB = Six;
            }
            SubtractSix(rows.end - top, count, L.At(top, first), L.stride, B, strideOfB, C.At(top, c), C.stride);
        }
    }
}

// L of six columns, and what the rows below need of it.
struct SixPivots {
    double L[Six][Six];  // L(i, j)·s_j, i > j
    double inverse[Six]; // s_j / L(j, j)
};

HWY_INLINE bool FactoriseSix(const FrontArray& L, int first, double* signs, double* pivots, SixPivots& six)
{
    bool allPositive = true;
    for (int j = 0; j < Six; ++j) {
        double* const column = L.At(first, first + j);
        double pivot = column[j];
        for (int p = 0; p < j; ++p) { pivot -= six.L[j][p] * signs[p] * six.L[j][p]; }
        const bool isUsable = std::isfinite(pivot) && pivot != 0.0;
        allPositive = allPositive && isUsable && pivot > 0.0;
        pivots[j] = pivot;
        signs[j] = isUsable && pivot < 0.0 ? -1.0 : 1.0;
        const double diagonal = isUsable ? std::sqrt(std::fabs(pivot)) : std::numeric_limits<double>::infinity();
        six.inverse[j] = signs[j] / diagonal;
        column[j] = diagonal;
        for (int i = j + 1; i < Six; ++i) {
            double entry = column[i];
            for (int p = 0; p < j; ++p) { entry -= six.L[i][p] * signs[p] * six.L[j][p]; }
            six.L[i][j] = isUsable ? entry * six.inverse[j] : 0.0;
            column[i] = six.L[i][j];
        }
    }
    return allPositive;
}

// Times s_j, as SolveSix needs it.
HWY_INLINE void SignColumns(const double* signs, SixPivots& six)
{
    for (int i = 1; i < Six; ++i) {
        for (int j = 0; j < i; ++j) { six.L[i][j] *= signs[j]; }
    }
}

// Rows below, by six columns that are done.
HWY_INLINE void SolveSix(const FrontArray& L, int first, const SixPivots& six, IndexRange rows)
{
    const Tag d;
    for (int r = rows.begin; r < rows.end; r += Lanes) {
        Vector x[Six];
        HWY_UNROLL(6)
        for (int j = 0; j < Six; ++j) {
            double* const at = L.At(r, first + j);
            Vector sum = hn::Load(d, at);
            HWY_UNROLL(6)
            for (int p = 0; p < j; ++p) { sum = hn::NegMulAdd(x[p], hn::Set(d, six.L[j][p]), sum); }
            x[j] = hn::Mul(sum, hn::Set(d, six.inverse[j]));
            hn::Store(x[j], d, at);
        }
    }
}

bool FactoriseDiagonal(const FrontArray& L, IndexRange columns, double* signs, double* pivots)
{
    const int end = (columns.end + RowAlignment - 1) / RowAlignment * RowAlignment;
    bool allPositive = true;
    for (int c = columns.begin; c < columns.end; c += Six) {
        const int top = c / RowAlignment * RowAlignment;
        TakeProductOff(L, {columns.begin, c}, allPositive ? nullptr : signs, {top, end}, {c, c + Six}, L);
        SixPivots six;
        allPositive = FactoriseSix(L, c, signs + c, pivots + c, six) && allPositive;
        SignColumns(signs + c, six);
        for (int r = c + Six; r < end && r % RowAlignment != 0; ++r) { // up to the next whole vector
            for (int j = 0; j < Six; ++j) {
                double sum = *L.At(r, c + j);
                for (int p = 0; p < j; ++p) { sum -= *L.At(r, c + p) * six.L[j][p]; }
                *L.At(r, c + j) = sum * six.inverse[j];
            }
        }
        SolveSix(L, c, six, {(c + Six + RowAlignment - 1) / RowAlignment * RowAlignment, end});
    }
    return allPositive;
}

void SolveRows(const FrontArray& L, IndexRange columns, const double* signs, IndexRange rows)
{
    for (int c = columns.begin; c < columns.end; c += Six) {
        TakeProductOff(L, {columns.begin, c}, signs, rows, {c, c + Six}, L);
        SixPivots six;
        for (int j = 0; j < Six; ++j) {
            const double sign = signs == nullptr ? 1.0 : signs[c + j];
            six.inverse[j] = sign / *L.At(c + j, c + j);
            for (int i = j + 1; i < Six; ++i) { six.L[i][j] = sign * *L.At(c + i, c + j); }
        }
        SolveSix(L, c, six, rows);
    }
}

// Six columns of `count` rows each.
HWY_INLINE void AddSix(double* HWY_RESTRICT to, std::ptrdiff_t strideOfTo, const double* HWY_RESTRICT from,
                       std::ptrdiff_t strideOfFrom, int count)
{
    const Tag d;
    for (int c = 0; c < Six; ++c, to += strideOfTo, from += strideOfFrom) {
        int i = 0;
        for (; i + Lanes <= count; i += Lanes) {
            hn::StoreU(hn::Add(hn::LoadU(d, to + i), hn::LoadU(d, from + i)), d, to + i);
        }
        for (; i < count; ++i) { to[i] += from[i]; }
    }
}

void AddBlockColumns(const FrontArray& from, int width, const int* blockInParent, int blocks, IndexRange blockColumns,
                     const FrontArray& to)
{
    for (int k = blockColumns.begin; k < blockColumns.end; ++k) {
        for (int i = k; i < blocks;) { // runs of neighbours stay neighbours
            const int first = i;
            do {
                ++i;
            } while (i < blocks && blockInParent[i] == blockInParent[i - 1] + 1);
            AddSix(to.At(Six * blockInParent[first], Six * blockInParent[k]), to.stride,
                   from.At(width + Six * first, width + Six * k), from.stride, Six * (i - first));
        }
    }
}

// Columns of the factor that one pass of a solution reads: enough of them to read y seldom, few enough for the
// processor to fetch all ahead.
constexpr int PassColumns = 6;

void SubtractColumns(const FrontArray& L, IndexRange columns, const double* HWY_RESTRICT x, IndexRange rows,
                     double* HWY_RESTRICT y)
{
    const Tag d;
    for (int c = columns.begin; c < columns.end; c += PassColumns, x += PassColumns) {
        const double* const first = L.At(0, c);
        int r = rows.begin;
        for (; r + Lanes <= rows.end; r += Lanes) {
            Vector sum = hn::LoadU(d, y + r);
            HWY_UNROLL(6)
            for (int j = 0; j < PassColumns; ++j) {
                sum = hn::NegMulAdd(hn::LoadU(d, first + j * L.stride + r), hn::Set(d, x[j]), sum);
            }
            hn::StoreU(sum, d, y + r);
        }
        for (; r < rows.end; ++r) {
            for (int j = 0; j < PassColumns; ++j) { y[r] -= first[j * L.stride + r] * x[j]; }
        }
    }
}

void SubtractColumnProducts(const FrontArray& L, IndexRange columns, IndexRange rows, const double* HWY_RESTRICT y,
                            double* HWY_RESTRICT x)
{
    const Tag d;
    for (int c = columns.begin; c < columns.end; c += PassColumns, x += PassColumns) {
        const double* const first = L.At(0, c);
        Vector sum[PassColumns];
        HWY_UNROLL(6)
        for (int j = 0; j < PassColumns; ++j) { sum[j] = hn::Zero(d); }
        int r = rows.begin;
        for (; r + Lanes <= rows.end; r += Lanes) {
            const Vector part = hn::LoadU(d, y + r);
            HWY_UNROLL(6)
            for (int j = 0; j < PassColumns; ++j) {
                sum[j] = hn::MulAdd(hn::LoadU(d, first + j * L.stride + r), part, sum[j]);
            }
        }
        for (int j = 0; j < PassColumns; ++j) {
            double total = hn::GetLane(hn::SumOfLanes(d, sum[j]));
            for (int rest = r; rest < rows.end; ++rest) { total += first[j * L.stride + rest] * y[rest]; }
            x[j] -= total;
        }
    }
}

const char* VectorUnitName()
{
    return hwy::TargetName(HWY_TARGET);
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tarnvexo {

HWY_EXPORT(TakeProductOff);
HWY_EXPORT(FactoriseDiagonal);
HWY_EXPORT(SolveRows);
HWY_EXPORT(AddBlockColumns);
HWY_EXPORT(SubtractColumns);
HWY_EXPORT(SubtractColumnProducts);
HWY_EXPORT(VectorUnitName);

void SubtractProduct(const FrontArray& L, IndexRange k, const double* signs, IndexRange rows, IndexRange columns,
                     const FrontArray& C)
{
    HWY_DYNAMIC_DISPATCH(TakeProductOff)(L, k, signs, rows, columns, C);
}

bool FactoriseDiagonal(const FrontArray& L, IndexRange columns, double* signs, double* pivots)
{
    return HWY_DYNAMIC_DISPATCH(FactoriseDiagonal)(L, columns, signs, pivots);
}

void SolveRows(const FrontArray& L, IndexRange columns, const double* signs, IndexRange rows)
{
    HWY_DYNAMIC_DISPATCH(SolveRows)(L, columns, signs, rows);
}

void AddUpdate(const FrontArray& from, int width, const int* blockInParent, int blocks, IndexRange blockColumns,
               const FrontArray& to)
{
    HWY_DYNAMIC_DISPATCH(AddBlockColumns)(from, width, blockInParent, blocks, blockColumns, to);
}

void SubtractColumns(const FrontArray& L, IndexRange columns, const double* x, IndexRange rows, double* y)
{
    HWY_DYNAMIC_DISPATCH(SubtractColumns)(L, columns, x, rows, y);
}

void SubtractColumnProducts(const FrontArray& L, IndexRange columns, IndexRange rows, const double* y, double* x)
{
    HWY_DYNAMIC_DISPATCH(SubtractColumnProducts)(L, columns, rows, y, x);
}

std::string FrontVectorUnit()
{
    return HWY_DYNAMIC_DISPATCH(VectorUnitName)();
}

} // namespace tarnvexo

#endif // HWY_ONCE
