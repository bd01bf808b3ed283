// solver/FrontCost.h
// What a front of the multifrontal factorisation costs on one thread, from its size alone. The amalgamation of fronts
// and the share of work between threads go by it. The constants were measured (bench/FrontBench.cpp) on a server
// processor with AVX-512; elsewhere the ratios between them stay about the same, and results never depend on them being
// right.
#pragma once

namespace tarnvexo {

// Scalar sizes: `width` columns are eliminated, `height` rows are there at the start.
struct FrontSize {
    int width;
    int height;

    int Below() const { return height - width; }
};

// One operation is a multiplication with an addition, or a division or root: Σ h² over the columns is twice their
// number, as is usual.
double OperationsOf(const FrontSize& front);

// Seconds to clear, assemble from the matrix and eliminate a front.
double SecondsOf(const FrontSize& front);

// Seconds to add what is left of a front to its parent.
double SecondsToAdd(const FrontSize& front);

} // namespace tarnvexo
