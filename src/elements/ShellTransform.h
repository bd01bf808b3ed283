// elements/ShellTransform.h
// Between the local axes of a flat shell and the global axes: node positions, the place of the membrane and plate parts
// in the element matrix, and its rotation. Rows of λ are e1, e2, e3 (ShellElement::axes).
// Local DOFs per node: u, v, w, θx, θy, θz; membrane part (u, v, θz), plate part (w, θx, θy), uncoupled.
#pragma once

#include "core/ShellElement.h"
#include "elements/QuadShellMembrane.h"
#include "elements/QuadShellPlate.h"
#include "solver/DenseMatrix.h"

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

// out = λ·v for the three components of v.
inline void ToLocal(const Vector3 lambda[3], const double v[3], double out[3])
{
    for (int i = 0; i < 3; ++i) { out[i] = lambda[i][0] * v[0] + lambda[i][1] * v[1] + lambda[i][2] * v[2]; }
}

// out = λᵀ·v.
inline void ToGlobal(const Vector3 lambda[3], const double v[3], double out[3])
{
    for (int i = 0; i < 3; ++i) { out[i] = lambda[0][i] * v[0] + lambda[1][i] * v[1] + lambda[2][i] * v[2]; }
}

// Translations and rotations of every node to global axes: out = Tᵀ·f; f, out [6·Nodes].
template <int Nodes> void VectorToGlobal(const Vector3 lambda[3], const double* f, double* out)
{
    for (int i = 0; i < 2 * Nodes; ++i) { ToGlobal(lambda, f + 3 * i, out + 3 * i); }
}

// The same to local axes: out = T·d.
template <int Nodes> void VectorToLocal(const Vector3 lambda[3], const double* d, double* out)
{
    for (int i = 0; i < 2 * Nodes; ++i) { ToLocal(lambda, d + 3 * i, out + 3 * i); }
}

// K ← Tᵀ·K·T, T block diagonal with one λ per three DOFs; K [6·Nodes][6·Nodes].
template <int Nodes> void MatrixToGlobal(const Vector3 lambda[3], double* K)
{
    constexpr int n = Nodes * DofsPerNode;
    double T[n * n] = {};
    for (int block = 0; block < n; block += 3) {
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) { T[(block + i) * n + block + j] = lambda[i][j]; }
        }
    }
    double rotated[n * n];
    TripleProduct<n, n>(rotated, T, K);
    for (int i = 0; i < n * n; ++i) { K[i] = rotated[i]; }
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
