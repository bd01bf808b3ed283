#include "elements/TriShellMembrane.h"

#include "elements/TriShellMembrane-inl.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

void TriMembraneStrain(const TriGeometry& geometry, double B[PlaneStrainCount][TriPlaneDofCount])
{
    for (int i = 0; i < TriNodeCount; ++i) {
        const int u = PlaneDofsPerNode * i;
        const int v = u + 1;
        B[EpsX][u] = geometry.dLdx[i]; // εx = ∂u/∂x
        B[EpsX][v] = 0.0;
        B[EpsY][u] = 0.0;
        B[EpsY][v] = geometry.dLdy[i]; // εy = ∂v/∂y
        B[GammaXY][u] = geometry.dLdy[i];
        B[GammaXY][v] = geometry.dLdx[i]; // γxy = ∂u/∂y + ∂v/∂x
    }
}

void TriMembraneStiffness(const double x[TriNodeCount], const double y[TriNodeCount], double E, double Mu, double t,
                          double Km[TriMembraneDofCount][TriMembraneDofCount])
{
    HWY_NAMESPACE::TriMembraneStiffness<double>(EvaluateTri(x, y), ShellRigidityOf(E, Mu, t), Km);
    MirrorUpperTriangle(Km);
}

} // namespace tarnvexo
