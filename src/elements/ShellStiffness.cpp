#include "elements/ShellStiffness.h"

#include "elements/QuadShellMembrane.h"
#include "elements/QuadShellPlate.h"
#include "elements/ShellTransform.h"
#include "elements/TriShellMembrane.h"
#include "elements/TriShellPlate.h"

namespace tarnvexo {

void QuadShellStiffness(const QuadShellElement& element, double K[QuadDofCount][QuadDofCount])
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);

    double Km[QuadMembraneDofCount][QuadMembraneDofCount];
    double Kb[QuadPlateDofCount][QuadPlateDofCount];
    QuadMembraneStiffness(x, y, element.E, element.Mu, element.thickness, Km);
    QuadPlateStiffness(x, y, element.E, element.Mu, element.thickness, Kb);

    JoinMembraneAndPlate<QuadNodeCount>(&Km[0][0], &Kb[0][0], &K[0][0]);
    MatrixToGlobal<QuadNodeCount>(element.axes, &K[0][0]);
}

void TriShellStiffness(const TriShellElement& element, double K[TriDofCount][TriDofCount])
{
    double x[TriNodeCount], y[TriNodeCount];
    LocalShellCoordinates(element, x, y);

    double Km[TriMembraneDofCount][TriMembraneDofCount];
    double Kb[TriPlateDofCount][TriPlateDofCount];
    TriMembraneStiffness(x, y, element.E, element.Mu, element.thickness, Km);
    TriPlateStiffness(x, y, element.E, element.Mu, element.thickness, Kb);

    JoinMembraneAndPlate<TriNodeCount>(&Km[0][0], &Kb[0][0], &K[0][0]);
    MatrixToGlobal<TriNodeCount>(element.axes, &K[0][0]);
}

} // namespace tarnvexo
