// app/ElementEnergy.h
// Energies of the elements, each from its own stiffness: in the solution, and in the six rigid motions, where there
// must be none. Nothing of the assembled matrix is used, so what assembly or factorisation spoil shows against it.
//
// A rigid motion of a part moves every element and turns it; K·d = 0 for both when the element is sound. So it is
// enough to move each element by 1 along x, y, z and to turn it by 1 about the three axes through its middle: far from
// the middle of the part nothing is lost among large numbers. Every energy ½·dᵀ·K·d stands beside its scale
//   ½·Σ (tr Kuu·|u|² + tr Kθθ·|θ|²)   over the nodes, with the diagonal blocks of forces and of moments,
// the energy that the same displacements have one node at a time. Energy against scale is round-off in triangles, beams
// and flat quadrilaterals; in a quadrilateral warped by h against its edge a it is of the order (h/a)², since its
// stiffness is that of its flat projection: turned, it feels forces, as if tied to the ground.
// Cost: the stiffness of every element once more and seven products with it; in parallel, the same to the last bit for
// any number of threads.
#pragma once

#include "core/ConnectedParts.h"
#include "core/ModelStore.h"

#include <array>
#include <vector>

namespace tarnvexo {

// Unit translations along x, y, z, then unit rotations about them.
constexpr int ElementMotionCount = 6;

struct MotionEnergy {
    double energy = 0.0;
    double scale = 0.0;

    double Share() const { return scale == 0.0 ? 0.0 : energy / scale; } // what is not a number must show
};
using MotionEnergies = std::array<MotionEnergy, ElementMotionCount>;

// The element with the largest share of all, in any motion.
struct GroundedElement {
    const char* kind = ""; // "quad", "tri", "beam"; empty: no elements
    int element = -1;
    int node = -1; // with the largest force there
    int motion = 0;
    double share = 0.0;
};

struct ElementEnergies {
    std::vector<MotionEnergies> ofParts; // sums over the elements of each connected part
    GroundedElement worst;
    double strainEnergy = 0.0; // ½·Σ uᵀ·K·u over the elements
};

// displacements [DofsPerNode·NPOIN]. Node coordinates and elements of the model in the same axes.
ElementEnergies MeasureElementEnergies(const ModelStore& model, const ConnectedParts& parts,
                                       const std::vector<double>& displacements);

} // namespace tarnvexo
