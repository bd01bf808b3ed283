// The kernels of elements/ShellStiffness-inl.h with one element in each lane of a vector. Compiled once for each kind
// of vector unit; the best one that the processor has is chosen when the program runs. Every lane does the arithmetic
// of the scalar kernel in the same order, products and sums rounded separately, so it gives the same bits.

#include "core/VectorTargets.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "elements/ShellStiffnessBatch.cpp"
#include "hwy/foreach_target.h"
// Behind foreach_target.h.
#include "elements/ShellStiffness-inl.h"
#include "elements/ShellStiffnessBatch.h"
#include "hwy/highway.h"

#include <algorithm>
#include <cstring>
#include <type_traits>

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

namespace hn = hwy::HWY_NAMESPACE;

using Tag = hn::CappedTag<double, ShellBatch>;
constexpr int LaneCount = static_cast<int>(hn::MaxLanes(Tag()));

// One number of each of LaneCount elements; a double stands for the same number in all of them.
struct Lanes {
    hn::Vec<Tag> v;

    Lanes() = default;
    HWY_INLINE Lanes(double value) : v(hn::Set(Tag(), value)) {}
    HWY_INLINE explicit Lanes(hn::Vec<Tag> vector) : v(vector) {}
};

// Not members or friends: without optimisation, GCC 12 returns results of operators defined in the class wrongly.
HWY_INLINE Lanes operator-(Lanes a)
{
    return Lanes(hn::Neg(a.v));
}
HWY_INLINE Lanes operator+(Lanes a, Lanes b)
{
    return Lanes(hn::Add(a.v, b.v));
}
HWY_INLINE Lanes operator-(Lanes a, Lanes b)
{
    return Lanes(hn::Sub(a.v, b.v));
}
HWY_INLINE Lanes operator*(Lanes a, Lanes b)
{
    return Lanes(hn::Mul(a.v, b.v));
}
HWY_INLINE Lanes operator/(Lanes a, Lanes b)
{
    return Lanes(hn::Div(a.v, b.v));
}
HWY_INLINE Lanes& operator+=(Lanes& a, Lanes b)
{
    return a = a + b;
}
HWY_INLINE Lanes& operator-=(Lanes& a, Lanes b)
{
    return a = a - b;
}
HWY_INLINE Lanes sqrt(Lanes a)
{
    return Lanes(hn::Sqrt(a.v));
}
HWY_INLINE Lanes fabs(Lanes a)
{
    return Lanes(hn::Abs(a.v));
}

// Element e of elements in lane e; lanes from count on repeat the last element.
template <int Nodes> LocalShell<Lanes, Nodes> GatherShells(const ShellElement<Nodes>* const* elements, int count)
{
    using Scalar = LocalShell<double, Nodes>;
    using Vector = LocalShell<Lanes, Nodes>;
    constexpr int numbers = sizeof(Scalar) / sizeof(double); // both are nothing but numbers, in the same order
    static_assert(sizeof(Vector) == numbers * sizeof(Lanes));
    static_assert(std::is_trivially_copyable_v<Scalar> && std::is_trivially_copyable_v<Vector>);

    alignas(64) double table[numbers][LaneCount];
    for (int lane = 0; lane < LaneCount; ++lane) {
        const Scalar shell = LocalShellOf(*elements[std::min(lane, count - 1)]);
        double number[numbers];
        std::memcpy(number, &shell, sizeof shell);
        for (int i = 0; i < numbers; ++i) { table[i][lane] = number[i]; }
    }
    Vector shells;
    std::memcpy(&shells, table, sizeof table);
    return shells;
}

// Exchanges rows and columns of LaneCount vectors of LaneCount numbers: 2x2 blocks, then blocks of these, and so on.
HWY_INLINE void TransposeLanes([[maybe_unused]] hn::Vec<Tag> (&rows)[LaneCount])
{
#if HWY_TARGET != HWY_SCALAR
    const Tag d;
    for (int i = 0; i < LaneCount; i += 2) {
        const auto a = rows[i], b = rows[i + 1];
        rows[i] = hn::InterleaveLower(d, a, b);
        rows[i + 1] = hn::InterleaveUpper(d, a, b);
    }
    if constexpr (LaneCount == 8) {
        for (int i : {0, 1, 4, 5}) {
            const auto a = rows[i], b = rows[i + 2];
            rows[i] = hn::OddEvenBlocks(hn::SwapAdjacentBlocks(b), a);
            rows[i + 2] = hn::OddEvenBlocks(b, hn::SwapAdjacentBlocks(a));
        }
    }
    if constexpr (LaneCount >= 4) {
        for (int i = 0; i < LaneCount / 2; ++i) {
            const auto a = rows[i], b = rows[i + LaneCount / 2];
            rows[i] = hn::ConcatLowerLower(d, b, a);
            rows[i + LaneCount / 2] = hn::ConcatUpperUpper(d, b, a);
        }
    }
#endif
}

// Element matrices from the upper triangle of the matrix of lanes, LaneCount columns of a row at a time. The last
// columns of a row may be written twice.
template <int n> void ScatterMatrices(const Lanes upper[n][n], int count, double (*K)[n][n])
{
    for (int row = 0; row < n; ++row) {
        for (int column = 0; column < n; column += LaneCount) {
            const int first = std::min(column, n - LaneCount);
            hn::Vec<Tag> entries[LaneCount];
            for (int c = 0; c < LaneCount; ++c) {
                entries[c] = upper[std::min(row, first + c)][std::max(row, first + c)].v;
            }
            TransposeLanes(entries);
            for (int e = 0; e < count; ++e) { hn::StoreU(entries[e], Tag(), &K[e][row][first]); }
        }
    }
}

void QuadBatch(const QuadShellElement* const* elements, int count, double (*K)[QuadDofCount][QuadDofCount])
{
    for (int first = 0; first < count; first += LaneCount) {
        const int inLanes = std::min(LaneCount, count - first);
        Lanes upper[QuadDofCount][QuadDofCount];
        QuadShellStiffness<Lanes>(GatherShells(elements + first, inLanes), upper);
        ScatterMatrices<QuadDofCount>(upper, inLanes, K + first);
    }
}

void TriBatch(const TriShellElement* const* elements, int count, double (*K)[TriDofCount][TriDofCount])
{
    for (int first = 0; first < count; first += LaneCount) {
        const int inLanes = std::min(LaneCount, count - first);
        Lanes upper[TriDofCount][TriDofCount];
        TriShellStiffness<Lanes>(GatherShells(elements + first, inLanes), upper);
        ScatterMatrices<TriDofCount>(upper, inLanes, K + first);
    }
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#if HWY_ONCE

namespace tarnvexo {

HWY_EXPORT(QuadBatch);
HWY_EXPORT(TriBatch);

void QuadShellStiffnessBatch(const QuadShellElement* const* elements, int count,
                             double (*K)[QuadDofCount][QuadDofCount])
{
    HWY_DYNAMIC_DISPATCH(QuadBatch)(elements, count, K);
}

void TriShellStiffnessBatch(const TriShellElement* const* elements, int count, double (*K)[TriDofCount][TriDofCount])
{
    HWY_DYNAMIC_DISPATCH(TriBatch)(elements, count, K);
}

} // namespace tarnvexo

#endif // HWY_ONCE
