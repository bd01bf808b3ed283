#include "elements/TriShellPlate.h"

#include "solver/DenseMatrix.h"

#include <initializer_list>

namespace tarnvexo {

void TriPlateCurvature(const double x[TriNodeCount], const double y[TriNodeCount], const double L[TriNodeCount],
                       double Bb[CurvatureCount][TriPlateDofCount])
{
    for (int row = 0; row < CurvatureCount; ++row) {
        for (int j = 0; j < TriPlateDofCount; ++j) { Bb[row][j] = 0.0; }
    }
    const TriGeometry geometry = EvaluateTri(x, y);

    // β = Σ N·β over six nodes with quadratic N; a node's part in κ is ∂N/∂x, ∂N/∂y times its β = c·d.
    const auto addRotation = [&](double dNdx, double dNdy, int dof, double cx, double cy) {
        Bb[KappaX][dof] += dNdx * cx;              // κx  = ∂βx/∂x
        Bb[KappaY][dof] += dNdy * cy;              // κy  = ∂βy/∂y
        Bb[KappaXY][dof] += dNdy * cx + dNdx * cy; // κxy = ∂βx/∂y + ∂βy/∂x
    };

    // Corners: N = L(2L − 1), βx = θy, βy = −θx.
    for (int i = 0; i < TriNodeCount; ++i) {
        const double slope = 4.0 * L[i] - 1.0;
        const int n = PlateDofsPerNode * i;
        addRotation(slope * geometry.dLdx[i], slope * geometry.dLdy[i], n + PlateRX, 0.0, -1.0);
        addRotation(slope * geometry.dLdx[i], slope * geometry.dLdy[i], n + PlateRY, 1.0, 0.0);
    }

    // Mid-sides: N = 4·Li·Lj. Along the side w is cubic and β_s = −∂w/∂s holds at its middle,
    //   β_s(m) = −3/2·(wj − wi)/l − 1/4·(β_s(i) + β_s(j)),   β_n(m) = 1/2·(β_n(i) + β_n(j)),
    // which in x, y with the side's direction (c, s) reads
    //   βx(m) = −3/2·c/l·(wj − wi) + (s²/2 − c²/4)·(βxi + βxj) − 3/4·c·s·(βyi + βyj)
    //   βy(m) = −3/2·s/l·(wj − wi) + (c²/2 − s²/4)·(βyi + βyj) − 3/4·c·s·(βxi + βxj)
    for (int i = 0; i < TriNodeCount; ++i) {
        const int j = (i + 1) % TriNodeCount;
        const double dNdx = 4.0 * (L[i] * geometry.dLdx[j] + L[j] * geometry.dLdx[i]);
        const double dNdy = 4.0 * (L[i] * geometry.dLdy[j] + L[j] * geometry.dLdy[i]);
        const double xij = x[j] - x[i];
        const double yij = y[j] - y[i];
        const double ll = xij * xij + yij * yij;
        const double cPerL = 1.5 * xij / ll;                             // 3/2·c/l
        const double sPerL = 1.5 * yij / ll;                             // 3/2·s/l
        const double alongX = (0.5 * yij * yij - 0.25 * xij * xij) / ll; // s²/2 − c²/4
        const double alongY = (0.5 * xij * xij - 0.25 * yij * yij) / ll; // c²/2 − s²/4
        const double mixed = -0.75 * xij * yij / ll;                     // −3/4·c·s
        addRotation(dNdx, dNdy, PlateDofsPerNode * i + PlateW, cPerL, sPerL);
        addRotation(dNdx, dNdy, PlateDofsPerNode * j + PlateW, -cPerL, -sPerL);
        for (int n : {PlateDofsPerNode * i, PlateDofsPerNode * j}) {
            addRotation(dNdx, dNdy, n + PlateRX, -mixed, -alongY); // through βy = −θx
            addRotation(dNdx, dNdy, n + PlateRY, alongX, mixed);   // through βx = θy
        }
    }
}

void TriPlateStiffness(const double x[TriNodeCount], const double y[TriNodeCount], double E, double Mu, double t,
                       double Kb[TriPlateDofCount][TriPlateDofCount])
{
    double Db[CurvatureCount][CurvatureCount];
    PlateRigidity(E, Mu, t, Db);
    const double weight = EvaluateTri(x, y).area / TriMidsideCount;

    for (int i = 0; i < TriPlateDofCount; ++i) {
        for (int j = 0; j < TriPlateDofCount; ++j) { Kb[i][j] = 0.0; }
    }
    for (const double(&L)[TriNodeCount] : TriMidsides) {
        double Bb[CurvatureCount][TriPlateDofCount];
        double part[TriPlateDofCount][TriPlateDofCount];
        TriPlateCurvature(x, y, L, Bb);
        TripleProduct<CurvatureCount, TriPlateDofCount>(&part[0][0], &Bb[0][0], &Db[0][0]);
        MatScale(&part[0][0], &part[0][0], weight, TriPlateDofCount, TriPlateDofCount);
        MatAdd(&Kb[0][0], &Kb[0][0], &part[0][0], TriPlateDofCount, TriPlateDofCount);
    }
}

} // namespace tarnvexo
