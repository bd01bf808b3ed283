// elements/ShellStiffnessBatch.h
// Stiffness of several shells of one kind at once, for loops over many elements: the formulas of
// elements/ShellStiffness.h with one element in each lane of the vector unit. Equal to QuadShellStiffness and
// TriShellStiffness to the last bit, on any processor and for any count.
// No memory from the heap; several threads may call at once.
#pragma once

#include "core/ShellElement.h"

namespace tarnvexo {

// Most elements of one call. Full batches are the fastest.
constexpr int ShellBatch = 8;

//   elements [count]          pointers to the elements, 1 ≤ count ≤ ShellBatch
//   K        [count][24][24]  out, global axes, symmetric, every entry written
// Errors: none reported; degenerate geometry gives non-finite entries, in its own matrix only.
void QuadShellStiffnessBatch(const QuadShellElement* const* elements, int count,
                             double (*K)[QuadDofCount][QuadDofCount]);

// The same for triangles; K [count][18][18].
void TriShellStiffnessBatch(const TriShellElement* const* elements, int count, double (*K)[TriDofCount][TriDofCount]);

} // namespace tarnvexo
