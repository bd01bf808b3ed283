// What the solvers that are compared get: the equations of a balanced model in a given order of elimination, and the
// order that a well-set solver from elsewhere would choose.
#pragma once

#include "core/ModelStore.h"
#include "solver/BlockMatrix.h"
#include "solver/NodeOrdering.h"

#include <cstddef>
#include <vector>

namespace tarnvexo {

struct Equations {
    BlockMatrix matrix;        // held equations taken out
    std::vector<double> loads; // [6·columns] in elimination order, zero where held
};
// pattern: of the model's graph in that order.
Equations AssembleEquations(const ModelStore& model, BlockPattern pattern, const EliminationOrder& order);

// METIS and AMD on the graph of nodes at the same time, the one with fewer operations, in postorder.
ChosenOrder OrderByLibraries(const NodeGraph& graph);

// ‖f − K·u‖ / (‖|K|·|u|‖ + ‖f‖), largest entries: shows that the equations were solved.
double RelativeResidual(const BlockMatrix& matrix, const double* u, const double* f);

// Scalar entries of the lower triangle, and visit(row, column, value) for each, column by column, rows ascending.
std::size_t LowerEntries(const BlockMatrix& matrix);

template <class Visit> void ForEachLowerEntry(const BlockMatrix& matrix, const Visit& visit)
{
    const BlockPattern& pattern = matrix.pattern;
    for (int J = 0; J < pattern.Size(); ++J) {
        const int rows = DofsPerNode * pattern.BlocksOf(J);
        for (int v = 0; v < DofsPerNode; ++v) {
            const double* const column = matrix.Column(J) + rows * v;
            for (int row = v; row < rows; ++row) {
                const int I = pattern.rows[pattern.first[J] + static_cast<std::size_t>(row / DofsPerNode)];
                visit(DofsPerNode * I + row % DofsPerNode, DofsPerNode * J + v, column[row]);
            }
        }
    }
}

} // namespace tarnvexo
