// elements/ShellTransform.h
// Node positions of a flat shell in its local axes, and the place of its membrane and plate parts in the element
// matrix. Local DOFs per node: u, v, w, θx, θy, θz; membrane part (u, v, θz), plate part (w, θx, θy), uncoupled.
#pragma once

#include "core/ShellElement.h"
#include "elements/LocalAxes.h"
#include "elements/ShellDofs.h"

namespace tarnvexo {

// Position of each membrane and plate DOF within the six of a node.
constexpr int MembraneToNodeDof[MembraneDofsPerNode] = {DX, DY, RZ};
constexpr int PlateToNodeDof[PlateDofsPerNode] = {DZ, RX, RY};

// x, y [Nodes] local coordinates: products of the node position with e1 and e2, no origin subtracted.
template <int Nodes> void LocalShellCoordinates(const ShellElement<Nodes>& element, double x[Nodes], double y[Nodes])
{
    for (int i = 0; i < Nodes; ++i) {
        x[i] = Dot(element.axes[0], element.coordinates[i]);
        y[i] = Dot(element.axes[1], element.coordinates[i]);
    }
}

// K [6·Nodes][6·Nodes] in local axes from membrane Km and plate Kb, both [3·Nodes][3·Nodes]; every entry written.
template <int Nodes> void JoinMembraneAndPlate(const double* Km, const double* Kb, double* K)
{
    constexpr int parts = 3 * Nodes;
    constexpr int n = Nodes * DofsPerNode;
    for (int i = 0; i < n * n; ++i) { K[i] = 0.0; }
    for (int i = 0; i < parts; ++i) {
        const int node = i / 3 * DofsPerNode;
        for (int j = 0; j < parts; ++j) {
            const int other = j / 3 * DofsPerNode;
            K[(node + MembraneToNodeDof[i % 3]) * n + other + MembraneToNodeDof[j % 3]] += Km[i * parts + j];
            K[(node + PlateToNodeDof[i % 3]) * n + other + PlateToNodeDof[j % 3]] += Kb[i * parts + j];
        }
    }
}

} // namespace tarnvexo
