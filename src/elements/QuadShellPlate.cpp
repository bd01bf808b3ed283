#include "elements/QuadShellPlate.h"

#include "solver/DenseMatrix.h"

#include <cmath>
#include <initializer_list>

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

namespace {

// Shear strain along the edge from node i to node j, tied at its midpoint, times half the edge's length:
// e = (wj − wi)/2 + (xj − xi)·(θyi + θyj)/4 − (yj − yi)·(θxi + θxj)/4, added into row as weight·e.
void AddEdgeShear(const double* x, const double* y, int i, int j, double weight, double row[QuadPlateDofCount])
{
    const double dx = (x[j] - x[i]) / 4.0;
    const double dy = (y[j] - y[i]) / 4.0;
    row[PlateDofsPerNode * i + PlateW] -= weight / 2.0;
    row[PlateDofsPerNode * j + PlateW] += weight / 2.0;
    for (int n : {i, j}) {
        row[PlateDofsPerNode * n + PlateRX] -= weight * dy;
        row[PlateDofsPerNode * n + PlateRY] += weight * dx;
    }
}

} // namespace

void QuadPlateShear(const double x[QuadNodeCount], const double y[QuadNodeCount], double xi, double eta, double detJ,
                    double Bs[PlateShearCount][QuadPlateDofCount])
{
    // Directions of the element: α of the ξ midline (edge 4–1 to edge 2–3), β of the η midline (edge 1–2 to edge 3–4).
    const double xXi = -x[0] + x[1] + x[2] - x[3], yXi = -y[0] + y[1] + y[2] - y[3];
    const double xEta = -x[0] - x[1] + x[2] + x[3], yEta = -y[0] - y[1] + y[2] + y[3];
    const double xTwist = x[0] - x[1] + x[2] - x[3], yTwist = y[0] - y[1] + y[2] - y[3];
    const double midlineXi = std::sqrt(xXi * xXi + yXi * yXi);
    const double midlineEta = std::sqrt(xEta * xEta + yEta * yEta);
    const double cosAlpha = xXi / midlineXi, sinAlpha = yXi / midlineXi;
    const double cosBeta = xEta / midlineEta, sinBeta = yEta / midlineEta;

    // Lengths of the natural base vectors at the point: |gξ|, |gη|.
    const double gxX = 0.25 * (xXi + eta * xTwist), gxY = 0.25 * (yXi + eta * yTwist);
    const double geX = 0.25 * (xEta + xi * xTwist), geY = 0.25 * (yEta + xi * yTwist);
    const double factorXi = std::sqrt(geX * geX + geY * geY) / (2.0 * std::fabs(detJ));
    const double factorEta = std::sqrt(gxX * gxX + gxY * gxY) / (2.0 * std::fabs(detJ));

    // Covariant strains, interpolated between opposite edges.
    double gammaXi[QuadPlateDofCount] = {};
    double gammaEta[QuadPlateDofCount] = {};
    AddEdgeShear(x, y, 0, 1, factorXi * (1.0 - eta), gammaXi);
    AddEdgeShear(x, y, 3, 2, factorXi * (1.0 + eta), gammaXi);
    AddEdgeShear(x, y, 0, 3, factorEta * (1.0 - xi), gammaEta);
    AddEdgeShear(x, y, 1, 2, factorEta * (1.0 + xi), gammaEta);

    for (int j = 0; j < QuadPlateDofCount; ++j) {
        Bs[GammaXZ][j] = gammaXi[j] * sinBeta - gammaEta[j] * sinAlpha;
        Bs[GammaYZ][j] = -gammaXi[j] * cosBeta + gammaEta[j] * cosAlpha;
    }
}

void QuadPlateStiffness(const double x[QuadNodeCount], const double y[QuadNodeCount], double E, double Mu, double t,
                        double Kb[QuadPlateDofCount][QuadPlateDofCount])
{
    double Db[CurvatureCount][CurvatureCount];
    PlateRigidity(E, Mu, t, Db);
    const double k = PlateShearRigidity(E, Mu, t);
    const double Ds[PlateShearCount][PlateShearCount] = {{k, 0.0}, {0.0, k}};

    for (int i = 0; i < QuadPlateDofCount; ++i) {
        for (int j = 0; j < QuadPlateDofCount; ++j) { Kb[i][j] = 0.0; }
    }
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPoint point = EvaluateQuad(x, y, xi, eta);
            const double area = std::fabs(point.detJ); // Gauss weights are 1
            double part[QuadPlateDofCount][QuadPlateDofCount];

            double Bb[CurvatureCount][QuadPlateDofCount];
            QuadPlateCurvature(point, Bb);
            TripleProduct<CurvatureCount, QuadPlateDofCount>(&part[0][0], &Bb[0][0], &Db[0][0]);
            MatScale(&part[0][0], &part[0][0], area, QuadPlateDofCount, QuadPlateDofCount);
            MatAdd(&Kb[0][0], &Kb[0][0], &part[0][0], QuadPlateDofCount, QuadPlateDofCount);

            double Bs[PlateShearCount][QuadPlateDofCount];
            QuadPlateShear(x, y, xi, eta, point.detJ, Bs);
            TripleProduct<PlateShearCount, QuadPlateDofCount>(&part[0][0], &Bs[0][0], &Ds[0][0]);
            MatScale(&part[0][0], &part[0][0], area, QuadPlateDofCount, QuadPlateDofCount);
            MatAdd(&Kb[0][0], &Kb[0][0], &part[0][0], QuadPlateDofCount, QuadPlateDofCount);
        }
    }
}

} // namespace tarnvexo
