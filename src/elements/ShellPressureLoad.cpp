#include "elements/ShellPressureLoad.h"

#include "elements/QuadGeometry.h"
#include "elements/ShellTransform.h"
#include "elements/TriGeometry.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Value at node 4 of the plane through the values at nodes 1, 2, 3: q4 = q1 + a·(x4 − x1) + b·(y4 − y1).
double PressureAtFourthNode(const double x[QuadNodeCount], const double y[QuadNodeCount], const double q[3])
{
    const double den = (y[2] - y[0]) * (x[1] - x[0]) - (x[2] - x[0]) * (y[1] - y[0]);
    const double a = ((q[1] - q[0]) * (y[2] - y[0]) - (q[2] - q[0]) * (y[1] - y[0])) / den;
    const double b = ((x[1] - x[0]) * (q[2] - q[0]) - (x[2] - x[0]) * (q[1] - q[0])) / den;
    return q[0] + a * (x[3] - x[0]) + b * (y[3] - y[0]);
}

// Forces w [Nodes] along e3 as the element's load vector in global axes.
template <int Nodes> void NormalForcesToGlobal(const Vector3 axes[3], const double w[Nodes], double* f)
{
    double local[Nodes * DofsPerNode] = {};
    for (int i = 0; i < Nodes; ++i) { local[DofsPerNode * i + DZ] = w[i]; }
    VectorToGlobal<Nodes>(axes, local, f);
}

} // namespace

void QuadShellPressureLoad(const QuadShellElement& element, const ShellDistributedLoad& load, double f[QuadDofCount])
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    const double q[QuadNodeCount] = {load.pressure[0], load.pressure[1], load.pressure[2],
                                     PressureAtFourthNode(x, y, load.pressure)};

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
