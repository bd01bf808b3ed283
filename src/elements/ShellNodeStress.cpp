#include "elements/ShellNodeStress.h"

#include "elements/QuadShellMembrane.h"
#include "elements/QuadShellPlate.h"
#include "elements/ShellTransform.h"
#include "elements/TriShellMembrane.h"
#include "elements/TriShellPlate.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Global components of a plane stress state (σx, σy, τxy) in the plane of e1, e2: σG = λᵀ·σL·λ.
void PlaneStressToGlobal(const Vector3 axes[3], const double plane[PlaneStrainCount], double stress[StressCount])
{
    const Vector3& e1 = axes[0];
    const Vector3& e2 = axes[1];
    const auto component = [&](int i, int j) {
        return e1[i] * e1[j] * plane[EpsX] + e2[i] * e2[j] * plane[EpsY] +
               (e1[i] * e2[j] + e2[i] * e1[j]) * plane[GammaXY];
    };
    stress[SX] = component(0, 0);
    stress[SY] = component(1, 1);
    stress[SZ] = component(2, 2);
    stress[TXY] = component(0, 1);
    stress[TZX] = component(2, 0);
    stress[TYZ] = component(1, 2);
}

// Faces from the strain matrices at the point: membrane D·B·(u, v) plus and minus 6/t²·Db·Bb·(w, θx, θy).
template <int Nodes>
void FaceStresses(const ShellElement<Nodes>& element, const double* B, const double* Bb, const double* d,
                  double positiveFace[StressCount], double negativeFace[StressCount])
{
    constexpr int planeDofs = Nodes * PlaneDofsPerNode;
    constexpr int plateDofs = Nodes * PlateDofsPerNode;
    double local[Nodes * DofsPerNode];
    VectorToLocal<Nodes>(element.axes, d, local);
    double inPlane[planeDofs], bending[plateDofs];
    for (int i = 0; i < Nodes; ++i) {
        const double* node = local + DofsPerNode * i;
        inPlane[PlaneDofsPerNode * i] = node[DX];
        inPlane[PlaneDofsPerNode * i + 1] = node[DY];
        for (int k = 0; k < PlateDofsPerNode; ++k) { bending[PlateDofsPerNode * i + k] = node[PlateToNodeDof[k]]; }
    }

    double D[PlaneStrainCount][PlaneStrainCount], Db[CurvatureCount][CurvatureCount];
    double strain[PlaneStrainCount], membrane[PlaneStrainCount], curvature[CurvatureCount], moment[CurvatureCount];
    PlaneStressMatrix(element.E, element.Mu, D);
    PlateRigidity(element.E, element.Mu, element.thickness, Db);
    MatMultiply(strain, B, inPlane, PlaneStrainCount, planeDofs, 1);
    MatMultiply(membrane, &D[0][0], strain, PlaneStrainCount, PlaneStrainCount, 1);
    MatMultiply(curvature, Bb, bending, CurvatureCount, plateDofs, 1);
    MatMultiply(moment, &Db[0][0], curvature, CurvatureCount, CurvatureCount, 1);

    const double toStress = 6.0 / element.thickness / element.thickness;
    double positive[PlaneStrainCount], negative[PlaneStrainCount];
    for (int i = 0; i < PlaneStrainCount; ++i) {
        positive[i] = membrane[i] + toStress * moment[i];
        negative[i] = membrane[i] - toStress * moment[i];
    }
    PlaneStressToGlobal(element.axes, positive, positiveFace);
    PlaneStressToGlobal(element.axes, negative, negativeFace);
}

} // namespace

void QuadNodeStress(const QuadShellElement& element, double positiveFace[StressCount], double negativeFace[StressCount],
                    const double d[QuadDofCount], double xi, double eta)
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    const QuadPoint point = EvaluateQuad(x, y, xi, eta);
    double B[PlaneStrainCount][QuadPlaneDofCount], Bb[CurvatureCount][QuadPlateDofCount];
    QuadMembraneStrain(point, B);
    QuadPlateCurvature(point, Bb);
    FaceStresses(element, &B[0][0], &Bb[0][0], d, positiveFace, negativeFace);
}

void TriNodeStress(const TriShellElement& element, double positiveFace[StressCount], double negativeFace[StressCount],
                   const double d[TriDofCount], const double L[TriNodeCount])
{
    double x[TriNodeCount], y[TriNodeCount];
    LocalShellCoordinates(element, x, y);
    double B[PlaneStrainCount][TriPlaneDofCount], Bb[CurvatureCount][TriPlateDofCount];
    TriMembraneStrain(EvaluateTri(x, y), B);
    TriPlateCurvature(x, y, L, Bb);
    FaceStresses(element, &B[0][0], &Bb[0][0], d, positiveFace, negativeFace);
}

double EquivalentStress(const double stress[StressCount])
{
    const double xy = stress[SX] - stress[SY];
    const double yz = stress[SY] - stress[SZ];
    const double zx = stress[SZ] - stress[SX];
    const double shear = stress[TXY] * stress[TXY] + stress[TZX] * stress[TZX] + stress[TYZ] * stress[TYZ];
    return std::sqrt(0.5 * (xy * xy + yz * yz + zx * zx + 6.0 * shear));
}

} // namespace tarnvexo
