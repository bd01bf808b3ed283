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

// Adds a plane stress stiffness [2·Nodes][2·Nodes] at the u, v of a membrane matrix Km [3·Nodes][3·Nodes].
template <int Nodes> void AddPlaneStiffness(const double* plane, double* Km)
{
    constexpr int planeDofs = PlaneDofsPerNode * Nodes;
    constexpr int membraneDofs = MembraneDofsPerNode * Nodes;
    const auto membraneDof = [](int i) { return i / PlaneDofsPerNode * MembraneDofsPerNode + i % PlaneDofsPerNode; };
    for (int i = 0; i < planeDofs; ++i) {
        for (int j = 0; j < planeDofs; ++j) {
            Km[membraneDof(i) * membraneDofs + membraneDof(j)] += plane[i * planeDofs + j];
        }
    }
}

} // namespace tarnvexo
