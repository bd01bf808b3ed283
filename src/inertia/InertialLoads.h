// inertia/InertialLoads.h
// Consistent nodal loads of a rigid-body acceleration: minus mass times acceleration. Global axes; the true node
// positions enter, also for a warped quadrilateral.
//
// Shells: the consistent mass m_ij couples the nodes of an element, f_i = −Σj m_ij·(a + α × rj), forces and no moments.
// What matters of it at a node is its share of the mass Σj m_ij and of the static moment Σj m_ij·rj, added up over the
// elements there; with these two the loads of any acceleration follow node by node.
// Beams: the mass lies on the line through the section centroids; its loads vary linearly along the beam and come with
// moments, those of the offset included.
#pragma once

#include "core/ModelStore.h"

#include <vector>

namespace tarnvexo {

// The point at r, relative to the origin, accelerates with a + alpha × r.
struct RigidAcceleration {
    Vector3 a = {};     // length/time²
    Vector3 alpha = {}; // rad/time²
};

// Share of a node in the mass of shells.
struct NodeInertia {
    bool hasShells = false; // without: it gets no load even of an acceleration that is not a number
    double mass = 0.0;      // Σj m_ij       mass
    Vector3 moment = {};    // Σj m_ij·rj    mass·length, about the origin
};

// f = −(mass·a + α × moment)
inline Vector3 InertialForce(const NodeInertia& node, const RigidAcceleration& acceleration)
{
    return -(node.mass * acceleration.a + Cross(acceleration.alpha, node.moment));
}

void QuadNodeInertia(const QuadShellElement& element, NodeInertia nodes[QuadNodeCount]);
void TriNodeInertia(const TriShellElement& element, NodeInertia nodes[TriNodeCount]);

// f [12]: three forces and three moments per node.
void BeamInertialLoads(const BeamElement& beam, const RigidAcceleration& acceleration, double f[BeamDofCount]);

// Shares of all nodes, one per node of the model, in the mass of all shells about the present origin. The mass of every
// element is integrated once, here.
std::vector<NodeInertia> ShellInertia(const ModelStore& model);

// Adds the inertial loads of all elements to a vector laid out like GLOAD.
void AddInertialLoads(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                      const RigidAcceleration& acceleration, std::vector<double>& loads);

} // namespace tarnvexo
