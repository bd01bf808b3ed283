// elements/ShellDofs.h
// Local DOFs of the two parts of a flat shell element, quadrilateral and triangle alike.
#pragma once

namespace tarnvexo {

// Membrane with drilling rotation: node n owns 3n, 3n+1, 3n+2.
enum MembraneDof { MembraneU, MembraneV, MembraneRZ, MembraneDofsPerNode };

// Plane stress alone: u, v of node n at 2n, 2n+1.
constexpr int PlaneDofsPerNode = 2;

// Plate: node n owns 3n, 3n+1, 3n+2. Rotations are right-handed about the local axes.
enum PlateDof { PlateW, PlateRX, PlateRY, PlateDofsPerNode };

static_assert(int(MembraneDofsPerNode) == int(PlateDofsPerNode));

// First DOF of the node that membrane or plate DOF i belongs to.
constexpr int FirstOfNode(int i)
{
    return i - i % MembraneDofsPerNode;
}

} // namespace tarnvexo
