// output/ShellStressRecovery.h
// Face stresses of every shell element at its own nodes, from the solution: evaluated at the nodes, not extrapolated
// from Gauss points. Fills positiveFace and negativeFace of the elements. Elements are shared between threads; each is
// written by one of them, so the stresses do not depend on their number.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

void RecoverShellStresses(ModelStore& model);

// Displacements of an element's nodes out of a vector with six per node; d [6·Nodes] out, node by node.
template <int Nodes> void GatherDisplacements(const int* nodes, const std::vector<double>& displacements, double* d)
{
    for (int i = 0; i < Nodes; ++i) {
        for (int k = 0; k < DofsPerNode; ++k) {
            d[DofsPerNode * i + k] = displacements[std::size_t(DofsPerNode) * nodes[i] + k];
        }
    }
}

} // namespace tarnvexo
