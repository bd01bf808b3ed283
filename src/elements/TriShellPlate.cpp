#include "elements/TriShellPlate.h"

#include "elements/TriShellPlate-inl.h"
#include "solver/DenseMatrix.h"

namespace tarnvexo {

void TriPlateCurvature(const double x[TriNodeCount], const double y[TriNodeCount], const double L[TriNodeCount],
                       double Bb[CurvatureCount][TriPlateDofCount])
{
    HWY_NAMESPACE::KirchhoffSide<double> sides[TriNodeCount];
    HWY_NAMESPACE::KirchhoffSides<double>(x, y, sides);
    HWY_NAMESPACE::TriPlateCurvature<double>(EvaluateTri(x, y), sides, L, Bb);
}

void TriPlateStiffness(const double x[TriNodeCount], const double y[TriNodeCount], double E, double Mu, double t,
                       double Kb[TriPlateDofCount][TriPlateDofCount])
{
    HWY_NAMESPACE::TriPlateStiffness<double>(EvaluateTri(x, y), x, y, ShellRigidityOf(E, Mu, t), Kb);
    MirrorUpperTriangle(Kb);
}

} // namespace tarnvexo
