// support/ChangedModel.h
// The same structure described in another way: seen from other axes or in a mirror, in other units, with other numbers
// of nodes and elements, with other first nodes and normals of its elements. For statements that results follow the
// description as physics says, and only so.
#pragma once

#include "core/ModelStore.h"
#include "inertia/MassProperties.h"

#include <vector>

namespace tarnvexo::test {

// Which of an element's nodes comes first, and whether the others follow the other way round.
struct NodeOrder {
    int first = 0;
    bool reversed = false;

    // Old position of the node at the new position i of n.
    int Old(int i, int n) const { return (first + (reversed ? n - i : i)) % n; }
};

// New = Q·old·length + shift for points. An empty table: as it was.
struct ModelChange {
    Matrix3 Q = {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}}; // orthogonal; determinant −1: a mirror
    Vector3 shift = {};                              // new units of length
    double length = 1.0, force = 1.0, time = 1.0;    // new numbers of one old unit
    std::vector<int> nodes, quads, tris, beams;      // by old number: the new one
    std::vector<NodeOrder> quadOrders, triOrders;    // by old number
    std::vector<bool> beamsReversed;                 // by old number

    double Determinant() const;
    int Node(int old) const { return nodes.empty() ? old : nodes[old]; }
    int Quad(int old) const { return quads.empty() ? old : quads[old]; }
    int Tri(int old) const { return tris.empty() ? old : tris[old]; }
    int Beam(int old) const { return beams.empty() ? old : beams[old]; }
    NodeOrder QuadOrder(int old) const { return quadOrders.empty() ? NodeOrder() : quadOrders[old]; }
    NodeOrder TriOrder(int old) const { return triOrders.empty() ? NodeOrder() : triOrders[old]; }
    bool IsReversed(int beam) const { return !beamsReversed.empty() && beamsReversed[beam]; }

    // Whether the element's positive face becomes its negative one.
    bool TurnsNormal(NodeOrder order) const { return (Determinant() < 0.0) != order.reversed; }

    Vector3 Point(const Vector3& old) const { return length * Multiply(Q, old) + shift; }
    Vector3 Polar(const Vector3& old) const { return Multiply(Q, old); }                 // forces, displacements
    Vector3 Axial(const Vector3& old) const { return Determinant() * Multiply(Q, old); } // moments, rotations
};

// Fresh from its tables, without results. Other node orders of quadrilaterals need flat ones; axes that are not those
// of the old model in another order need supports that hold all translations, and all rotations, of a node or none.
ModelStore Changed(const ModelStore& model, const ModelChange& change);

} // namespace tarnvexo::test
