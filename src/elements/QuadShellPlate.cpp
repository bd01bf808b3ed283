#include "elements/QuadShellPlate.h"

#include "elements/QuadShellPlate-inl.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

void QuadPlateCurvature(const QuadPoint& point, double Bb[CurvatureCount][QuadPlateDofCount])
{
    for (int i = 0; i < QuadNodeCount; ++i) {
        const int n = PlateDofsPerNode * i;
        Bb[KappaX][n + PlateW] = Bb[KappaY][n + PlateW] = Bb[KappaXY][n + PlateW] = 0.0;
        Bb[KappaX][n + PlateRX] = 0.0;
        Bb[KappaX][n + PlateRY] = point.dNdx[i];  // κx  =  ∂θy/∂x
        Bb[KappaY][n + PlateRX] = -point.dNdy[i]; // κy  = −∂θx/∂y
        Bb[KappaY][n + PlateRY] = 0.0;
        Bb[KappaXY][n + PlateRX] = -point.dNdx[i]; // κxy =  ∂θy/∂y − ∂θx/∂x
        Bb[KappaXY][n + PlateRY] = point.dNdy[i];
    }
}

void QuadPlateShear(const double x[QuadNodeCount], const double y[QuadNodeCount], double xi, double eta, double detJ,
                    double Bs[PlateShearCount][QuadPlateDofCount])
{
    HWY_NAMESPACE::QuadPlateShear<double>(HWY_NAMESPACE::MidlinesOfQuad<double>(x, y), x, y, xi, eta, detJ, Bs);
}

void QuadPlateStiffness(const double x[QuadNodeCount], const double y[QuadNodeCount], double E, double Mu, double t,
                        double Kb[QuadPlateDofCount][QuadPlateDofCount])
{
    HWY_NAMESPACE::QuadPlateStiffness<double>(x, y, ShellRigidityOf(E, Mu, t), Kb);
    MirrorUpperTriangle(Kb);
}

} // namespace tarnvexo
