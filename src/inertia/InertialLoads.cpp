#include "inertia/InertialLoads.h"

#include "elements/BeamLoadVector.h"
#include "elements/BeamSection.h"
#include "elements/LocalAxes.h"
#include "inertia/ConsistentMass.h"

namespace tarnvexo {

namespace {

// f_i = −Σj m_ij·(a + α × rj)
template <int Nodes>
void ShellLoads(const double m[Nodes][Nodes], const Vector3 r[Nodes], const Vector3& a, const Vector3& alpha,
                Vector3 f[Nodes])
{
    for (int i = 0; i < Nodes; ++i) {
        f[i] = {};
        for (int j = 0; j < Nodes; ++j) { f[i] = f[i] - m[i][j] * (a + Cross(alpha, r[j])); }
    }
}

constexpr Vector3 Zero = {0.0, 0.0, 0.0};

// Loads of a beam whose section centroids accelerate by a1 at node 1 and a2 at node 2, linearly in between.
void BeamInertialLoads(const BeamElement& beam, const Vector3 frame[3], const Vector3& offset, const Vector3& a1,
                       const Vector3& a2, double f[BeamDofCount])
{
    const double massPerLength = beam.Density * beam.section.A;
    const Vector3 load1 = -massPerLength * a1;
    const Vector3 load2 = -massPerLength * a2;
    double q1[3], q2[3], local[BeamDofCount];
    ToLocal(frame, load1.data(), q1);
    ToLocal(frame, load2.data(), q2);
    BeamLinearLoad(BeamLength(beam), q1, q2, local);
    VectorToGlobal<BeamNodeCount>(frame, local, f);

    // The forces act at the section centroid: moments e × F about the node.
    for (int n = 0; n < BeamDofCount; n += DofsPerNode) {
        const Vector3 moment = Cross(offset, {f[n + DX], f[n + DY], f[n + DZ]});
        f[n + RX] += moment[0];
        f[n + RY] += moment[1];
        f[n + RZ] += moment[2];
    }
}

} // namespace

void QuadTranslationalLoads(const QuadShellElement& element, const Vector3& a, Vector3 f[QuadNodeCount])
{
    double m[QuadNodeCount][QuadNodeCount];
    QuadMass(element, m);
    ShellLoads<QuadNodeCount>(m, element.coordinates, a, Zero, f);
}

void QuadRotationalLoads(const QuadShellElement& element, const Vector3& alpha, Vector3 f[QuadNodeCount])
{
    double m[QuadNodeCount][QuadNodeCount];
    QuadMass(element, m);
    ShellLoads<QuadNodeCount>(m, element.coordinates, Zero, alpha, f);
}

void TriTranslationalLoads(const TriShellElement& element, const Vector3& a, Vector3 f[TriNodeCount])
{
    double m[TriNodeCount][TriNodeCount];
    TriMass(element, m);
    ShellLoads<TriNodeCount>(m, element.coordinates, a, Zero, f);
}

void TriRotationalLoads(const TriShellElement& element, const Vector3& alpha, Vector3 f[TriNodeCount])
{
    double m[TriNodeCount][TriNodeCount];
    TriMass(element, m);
    ShellLoads<TriNodeCount>(m, element.coordinates, Zero, alpha, f);
}

void BeamTranslationalLoads(const BeamElement& beam, const Vector3& a, double f[BeamDofCount])
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    BeamInertialLoads(beam, frame, BeamCentroidOffset(beam, frame), a, a, f);
}

void BeamRotationalLoads(const BeamElement& beam, const Vector3& alpha, double f[BeamDofCount])
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 offset = BeamCentroidOffset(beam, frame);
    const Vector3 a1 = Cross(alpha, beam.node1 + offset);
    const Vector3 a2 = Cross(alpha, beam.node2 + offset);
    BeamInertialLoads(beam, frame, offset, a1, a2, f);
}

} // namespace tarnvexo
