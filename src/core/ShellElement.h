// core/ShellElement.h
// What a flat shell element holds: its own copy of the node coordinates, material, thickness, local axes and results.
// Plain data; the kernels that read and fill it are in elements/ and output/.
#pragma once

#include "core/Dofs.h"
#include "core/Vector3.h"

namespace tarnvexo {

template <int Nodes> struct ShellElement {
    static constexpr int NodeCount = Nodes;
    static constexpr int DofCount = Nodes * DofsPerNode;

    Vector3 coordinates[Nodes] = {}; // node positions, connectivity order                     length
    double E = 0.0;                  // Young's modulus                                         force/length²
    double Mu = 0.0;                 // Poisson's ratio
    double thickness = 0.0;          //                                                         length
    double Density = 7.85e-9;        // steel in tonne/mm³ until set-up stores the material's   mass/length³
    Vector3 axes[3] = {};            // unit vectors e1, e2, e3: rows of the rotation λ, global components

    // Stresses at each node on the faces z = +t/2 (towards e3) and z = -t/2, global axes        force/length²
    double positiveFace[Nodes][StressCount] = {}; // of this element alone
    double negativeFace[Nodes][StressCount] = {};
    double averagedPositiveFace[Nodes][StressCount] = {}; // averaged with the neighbours at the node
    double averagedNegativeFace[Nodes][StressCount] = {};
};

using QuadShellElement = ShellElement<QuadNodeCount>;
using TriShellElement = ShellElement<TriNodeCount>;

} // namespace tarnvexo
