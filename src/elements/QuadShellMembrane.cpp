#include "elements/QuadShellMembrane.h"

#include "solver/DenseMatrix.h"

#include <cmath>

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
    double D[PlaneStrainCount][PlaneStrainCount];
    PlaneStressMatrix(E, Mu, D);
    const double gamma = DrillingPenalty(E, Mu, t);

    double plane[QuadPlaneDofCount][QuadPlaneDofCount] = {};
    for (int i = 0; i < QuadMembraneDofCount; ++i) {
        for (int j = 0; j < QuadMembraneDofCount; ++j) { Km[i][j] = 0.0; }
    }
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPoint point = EvaluateQuad(x, y, xi, eta);
            const double area = std::fabs(point.detJ); // Gauss weights are 1

            // Plane stress: t·Bᵀ·D·B
            double B[PlaneStrainCount][QuadPlaneDofCount];
            double BtDB[QuadPlaneDofCount][QuadPlaneDofCount];
            QuadMembraneStrain(point, B);
            TripleProduct<PlaneStrainCount, QuadPlaneDofCount>(&BtDB[0][0], &B[0][0], &D[0][0]);
            MatScale(&BtDB[0][0], &BtDB[0][0], area * t, QuadPlaneDofCount, QuadPlaneDofCount);
            MatAdd(&plane[0][0], &plane[0][0], &BtDB[0][0], QuadPlaneDofCount, QuadPlaneDofCount);

            // Drilling: b·d = θz − ½(∂v/∂x − ∂u/∂y)
            double b[QuadMembraneDofCount];
            for (int i = 0; i < QuadNodeCount; ++i) {
                const int n = MembraneDofsPerNode * i;
                b[n + MembraneU] = 0.5 * point.dNdy[i];
                b[n + MembraneV] = -0.5 * point.dNdx[i];
                b[n + MembraneRZ] = point.N[i];
            }
            for (int i = 0; i < QuadMembraneDofCount; ++i) {
                for (int j = 0; j < QuadMembraneDofCount; ++j) { Km[i][j] += gamma * b[i] * b[j] * area; }
            }
        }
    }

    AddPlaneStiffness<QuadNodeCount>(&plane[0][0], &Km[0][0]);
}

} // namespace tarnvexo
