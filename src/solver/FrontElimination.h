// solver/FrontElimination.h
// One dense front: its columns are eliminated, what is left waits for the parent.
//
//          width   below
//        +-------+
//        | L11   |               L11·S·L11ᵀ = F11      (signed Cholesky, solver/FrontKernels)
//        |       |               L21 = F21·L11⁻ᵀ·S
//        +-------+--------+      U   = F22 − L21·S·L21ᵀ
//        | L21   |  U     |
//        |       |        |      The upper triangles are not used.
//        +-------+--------+
#pragma once

#include "core/Crew.h"
#include "solver/FrontCost.h"
#include "solver/FrontKernels.h"

namespace tarnvexo {

// Columns that are eliminated before the next ones are touched.
constexpr int BlockColumns = 96;

// L11 and L21 stand in one array. U stands in strips of StripColumns columns, each from its own diagonal down, so that
// little more than its lower triangle is stored. Large strides are odd multiples of a cache line: the columns of a
// block then do not fall into the same few places of the caches.
constexpr int StripColumns = 192;

std::size_t PanelEntries(const FrontSize& size);
std::size_t UpdateEntries(const FrontSize& size);

FrontArray PanelAt(double* values, const FrontSize& size);

// What is left of a front, in `values` [UpdateEntries].
struct FrontUpdate {
    double* values;
    FrontSize size;

    int Strips() const { return (size.Below() + StripColumns - 1) / StripColumns; }
    FrontArray Strip(int number) const;
};

// L holds F11 and F21 on entry, U holds F22.
//   signs, pivots  [width] out, as FactoriseDiagonal tells
//   isPositive     out: all pivots are positive and finite; one for all members
// All members of the crew call it; bits do not depend on how many there are.
void EliminateFront(CrewMember& member, const FrontSize& size, const FrontArray& L, const FrontUpdate& U, double* signs,
                    double* pivots, unsigned char& isPositive);

} // namespace tarnvexo
