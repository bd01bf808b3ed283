// solver/SkylineEngine.h
// The skyline solver behind the interface of the sparse engines: needs no library, starts at once, fastest for models
// of a few thousand equations. The elimination order should keep connected nodes close (solver/BandOrdering).
#pragma once

#include "solver/SparseEngine.h"

namespace tarnvexo {

class SkylineEngine : public SparseEngine {
public:
    std::string Name() const override;
    std::string Kernels() const override;

    // Errors: throws std::length_error when the skyline has more entries than 32-bit addresses reach.
    FactorSize Analyse(const BlockPattern& pattern) override;
    PivotReport Factorise(const BlockMatrix& matrix) override;
    void Solve(double* vectors, int count) override;

private:
    std::vector<int> columnHeight;
    std::vector<int> diagonalAddress;
    LargeArray values;
};

} // namespace tarnvexo
