// core/Dofs.h
// Degrees of freedom and sizes that every stage shares: six per node, in this order everywhere
// (element matrices, load vector, displacements). Equation of DOF k of node n: DofsPerNode*n + k.
#pragma once

namespace tarnvexo {

enum Dof { DX, DY, DZ, RX, RY, RZ };
constexpr int DofsPerNode = 6;

constexpr int QuadNodeCount = 4;
constexpr int TriNodeCount = 3;
constexpr int BeamNodeCount = 2;
constexpr int QuadDofCount = QuadNodeCount * DofsPerNode;
constexpr int TriDofCount = TriNodeCount * DofsPerNode;
constexpr int BeamDofCount = BeamNodeCount * DofsPerNode;

// Components of a stress state, global axes. The result files head the fifth one TXZ; it is the same number.
enum StressComponent { SX, SY, SZ, TXY, TZX, TYZ, StressCount };

// Equation numbers of an element's nodes, node by node: the row and column of each entry of its matrix.
template <int NodeCount> void ElementDofMap(const int* nodes, int map[NodeCount * DofsPerNode])
{
    for (int i = 0; i < NodeCount; ++i) {
        for (int k = 0; k < DofsPerNode; ++k) { map[DofsPerNode * i + k] = DofsPerNode * nodes[i] + k; }
    }
}

} // namespace tarnvexo
