// app/SparseAssembly.h
// Stiffness of the whole model in node blocks, straight into the input of the sparse engines. Supports are not applied.
//
// The block columns are cut into chunks, in elimination order, and every chunk goes through the elements that touch its
// columns: the few elements between chunks are computed once for each. No two threads write the same entry, every entry
// receives its terms in the order quadrilaterals, triangles, beams, by number, so the matrix is the same to the last
// bit for any number of threads and chunks.
//
// Deliberate: the pairs of a node that stands twice in an element are both added. The console run adds them once, which
// loses the second part of that node's stiffness; all other entries are equal to the last bit.
#pragma once

#include "core/ModelStore.h"
#include "solver/BlockMatrix.h"

namespace tarnvexo {

// Values for a pattern of solver/BlockMatrix's LowerPattern of the model's node graph.
void AssembleBlockMatrix(const ModelStore& model, const EliminationOrder& order, BlockMatrix& matrix);

} // namespace tarnvexo
