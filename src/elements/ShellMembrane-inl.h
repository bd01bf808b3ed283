// elements/ShellMembrane-inl.h
// What the membranes of the four-node and the three-node shell have in common (see elements/QuadGeometry-inl.h).
#if defined(TARNVEXO_SHELL_MEMBRANE_INL) == defined(HWY_TARGET_TOGGLE)
#ifdef TARNVEXO_SHELL_MEMBRANE_INL
#undef TARNVEXO_SHELL_MEMBRANE_INL
#else
#define TARNVEXO_SHELL_MEMBRANE_INL
#endif

#include "elements/GradientStiffness-inl.h"
#include "elements/ShellDofs.h"
#include "hwy/highway.h"

HWY_BEFORE_NAMESPACE();
namespace tarnvexo {
namespace HWY_NAMESPACE {

// Plane stress alone, by node pairs i ≤ j.
template <class Real, int Nodes> using PlaneStiffness = GradientBlock<Real>[Nodes][Nodes];

template <class Real, int Nodes> void ClearPlaneStiffness(PlaneStiffness<Real, Nodes>& plane)
{
    for (int i = 0; i < Nodes; ++i) {
        for (int j = i; j < Nodes; ++j) { plane[i][j] = {0.0, 0.0, 0.0, 0.0}; }
    }
}

// Adds volume·Bᵀ·D·B.
template <class Real, int Nodes>
void AddPlaneStress(const IsotropicPlane<Real>& D, const Real dNdx[Nodes], const Real dNdy[Nodes], const Real& volume,
                    PlaneStiffness<Real, Nodes>& plane)
{
    for (int i = 0; i < Nodes; ++i) {
        const GradientStress<Real> stress = StressOfNode<Real>(D, dNdx[i], dNdy[i]);
        for (int j = i; j < Nodes; ++j) {
            const GradientBlock<Real> block = StiffnessOfNodes<Real>(stress, dNdx[j], dNdy[j]);
            plane[i][j].xx += volume * block.xx;
            plane[i][j].xy += volume * block.xy;
            plane[i][j].yx += volume * block.yx;
            plane[i][j].yy += volume * block.yy;
        }
    }
}

// Drilling: b·d = θz − ½(∂v/∂x − ∂u/∂y); N [Nodes] shape functions of θz at the point.
template <class Real, int Nodes>
void DrillingVector(const double N[Nodes], const Real dNdx[Nodes], const Real dNdy[Nodes],
                    Real b[MembraneDofsPerNode * Nodes])
{
    for (int i = 0; i < Nodes; ++i) {
        const int n = MembraneDofsPerNode * i;
        b[n + MembraneU] = 0.5 * dNdy[i];
        b[n + MembraneV] = -0.5 * dNdx[i];
        b[n + MembraneRZ] = N[i];
    }
}

// Km += plane at u, v.
template <class Real, int Nodes>
void JoinPlaneStiffness(const PlaneStiffness<Real, Nodes>& plane,
                        Real Km[MembraneDofsPerNode * Nodes][MembraneDofsPerNode * Nodes])
{
    for (int i = 0; i < Nodes; ++i) {
        for (int j = i; j < Nodes; ++j) {
            const int row = MembraneDofsPerNode * i, column = MembraneDofsPerNode * j;
            Km[row + MembraneU][column + MembraneU] += plane[i][j].xx;
            Km[row + MembraneU][column + MembraneV] += plane[i][j].xy;
            Km[row + MembraneV][column + MembraneU] += plane[i][j].yx;
            Km[row + MembraneV][column + MembraneV] += plane[i][j].yy;
        }
    }
}

} // namespace HWY_NAMESPACE
} // namespace tarnvexo
HWY_AFTER_NAMESPACE();

#endif // once for each vector unit
