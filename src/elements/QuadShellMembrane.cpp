#include "elements/QuadShellMembrane.h"

#include "elements/QuadShellMembrane-inl.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

void QuadMembraneStrain(const QuadPoint& point, double B[PlaneStrainCount][QuadPlaneDofCount])
{
    for (int i = 0; i < QuadNodeCount; ++i) {
        const int u = PlaneDofsPerNode * i;
        const int v = u + 1;
        B[EpsX][u] = point.dNdx[i]; // εx = ∂u/∂x
        B[EpsX][v] = 0.0;
        B[EpsY][u] = 0.0;
        B[EpsY][v] = point.dNdy[i]; // εy = ∂v/∂y
        B[GammaXY][u] = point.dNdy[i];
        B[GammaXY][v] = point.dNdx[i]; // γxy = ∂u/∂y + ∂v/∂x
    }
}

void QuadMembraneStiffness(const double x[QuadNodeCount], const double y[QuadNodeCount], double E, double Mu, double t,
                           double Km[QuadMembraneDofCount][QuadMembraneDofCount])
{
    HWY_NAMESPACE::QuadMembraneStiffness<double>(x, y, ShellRigidityOf(E, Mu, t), Km);
    MirrorUpperTriangle(Km);
}

} // namespace tarnvexo
