// elements/ShellTransform.h
// A flat shell in its local axes: node positions, and all that its stiffness depends on. Local DOFs per node: u, v, w,
// θx, θy, θz; membrane part (u, v, θz), plate part (w, θx, θy), uncoupled.
#pragma once

#include "core/ShellElement.h"
#include "elements/Elasticity.h"
#include "elements/LocalAxes.h"
#include "elements/ShellDofs.h"

namespace tarnvexo {

// Position of each plate DOF within the six of a node.
constexpr int PlateToNodeDof[PlateDofsPerNode] = {DZ, RX, RY};

// x, y [Nodes] local coordinates: products of the node position with e1 and e2, no origin subtracted.
template <int Nodes> void LocalShellCoordinates(const ShellElement<Nodes>& element, double x[Nodes], double y[Nodes])
{
    for (int i = 0; i < Nodes; ++i) {
        x[i] = Dot(element.axes[0], element.coordinates[i]);
        y[i] = Dot(element.axes[1], element.coordinates[i]);
    }
}

// What the stiffness kernels read of an element. Real: double, or as many numbers as a vector has lanes, one element in
// each.
template <class Real, int Nodes> struct LocalShell {
    Real x[Nodes];
    Real y[Nodes];
    Real lambda[3][3]; // rows e1, e2, e3
    ShellRigidity<Real> rigidity;
};

template <int Nodes> LocalShell<double, Nodes> LocalShellOf(const ShellElement<Nodes>& element)
{
    LocalShell<double, Nodes> shell;
    LocalShellCoordinates(element, shell.x, shell.y);
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { shell.lambda[i][j] = element.axes[i][j]; }
    }
    shell.rigidity = ShellRigidityOf(element.E, element.Mu, element.thickness);
    return shell;
}

} // namespace tarnvexo
