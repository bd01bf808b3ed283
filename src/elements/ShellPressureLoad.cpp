#include "elements/ShellPressureLoad.h"

#include "elements/QuadGeometry.h"
#include "elements/ShellTransform.h"
#include "elements/TriGeometry.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Forces w [Nodes] along e3 as the element's load vector in global axes.
template <int Nodes> void NormalForcesToGlobal(const Vector3 axes[3], const double w[Nodes], double* f)
{
    double local[Nodes * DofsPerNode] = {};
    for (int i = 0; i < Nodes; ++i) { local[DofsPerNode * i + DZ] = w[i]; }
    VectorToGlobal<Nodes>(axes, local, f);
}

} // namespace

double PressureInPlane(const double x[3], const double y[3], const double q[3], double px, double py)
{
    // Area coordinates of the triangle 1-2-3; negative where the point lies outside of it.
    const double twiceArea = (x[1] - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    const double L2 = ((px - x[0]) * (y[2] - y[0]) - (x[2] - x[0]) * (py - y[0])) / twiceArea;
    const double L3 = ((x[1] - x[0]) * (py - y[0]) - (px - x[0]) * (y[1] - y[0])) / twiceArea;
    return q[0] + L2 * (q[1] - q[0]) + L3 * (q[2] - q[0]); // the pressure itself where it is constant
}

void QuadShellPressureLoad(const QuadShellElement& element, const ShellDistributedLoad& load, double f[QuadDofCount])
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    const double q[QuadNodeCount] = {load.pressure[0], load.pressure[1], load.pressure[2],
                                     PressureInPlane(x, y, load.pressure, x[3], y[3])};

    double w[QuadNodeCount] = {};
    for (double xi : QuadGaussPoints) {
        for (double eta : QuadGaussPoints) {
            const QuadPoint point = EvaluateQuad(x, y, xi, eta);
            double pressure = 0.0;
            for (int i = 0; i < QuadNodeCount; ++i) { pressure += point.N[i] * q[i]; }
            for (int i = 0; i < QuadNodeCount; ++i) { w[i] += point.N[i] * pressure * std::fabs(point.detJ); }
        }
    }
    NormalForcesToGlobal<QuadNodeCount>(element.axes, w, f);
}

void TriShellPressureLoad(const TriShellElement& element, const ShellDistributedLoad& load, double f[TriDofCount])
{
    double x[TriNodeCount], y[TriNodeCount];
    LocalShellCoordinates(element, x, y);
    const double weight = EvaluateTri(x, y).area / TriMidsideCount;

    double w[TriNodeCount] = {};
    for (const double(&L)[TriNodeCount] : TriMidsides) {
        const double pressure = L[0] * load.pressure[0] + L[1] * load.pressure[1] + L[2] * load.pressure[2];
        for (int i = 0; i < TriNodeCount; ++i) { w[i] += weight * L[i] * pressure; }
    }
    NormalForcesToGlobal<TriNodeCount>(element.axes, w, f);
}

} // namespace tarnvexo
