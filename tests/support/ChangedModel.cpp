#include "support/ChangedModel.h"

#include "elements/ModelSetUp.h"

#include <cmath>

namespace tarnvexo::test {

namespace {

// The axis of the old model that the new axis j is nearest to.
int OldAxis(const Matrix3& Q, int j)
{
    int nearest = 0;
    for (int i = 1; i < 3; ++i) { nearest = std::fabs(Q[j][i]) > std::fabs(Q[j][nearest]) ? i : nearest; }
    return nearest;
}

// Pressures at all nodes of a flat element; of a quadrilateral the fourth lies in the plane through the other three.
template <int Nodes> std::array<double, Nodes> NodePressures(const ShellElement<Nodes>& shell, const double p[3])
{
    std::array<double, Nodes> pressures = {p[0], p[1], p[2]};
    if constexpr (Nodes == QuadNodeCount) {
        const Vector3* X = shell.coordinates;
        const Vector3 normal = Cross(X[1] - X[0], X[2] - X[0]);
        const double twice = Dot(normal, normal);
        const double b = Dot(Cross(X[3] - X[0], X[2] - X[0]), normal) / twice; // X4 − X1 = b·(X2 − X1) + c·(X3 − X1)
        const double c = Dot(Cross(X[1] - X[0], X[3] - X[0]), normal) / twice;
        pressures[3] = p[0] + b * (p[1] - p[0]) + c * (p[2] - p[0]);
    }
    return pressures;
}

template <int Nodes, class Number, class Order>
void ChangeShells(const ModelChange& change, const std::vector<std::array<int, Nodes>>& nodes,
                  const std::vector<ShellPropertyRef>& properties, const Number& number, const Order& order,
                  std::vector<std::array<int, Nodes>>& newNodes, std::vector<ShellPropertyRef>& newProperties)
{
    for (int e = 0; e < int(nodes.size()); ++e) {
        for (int i = 0; i < Nodes; ++i) { newNodes[number(e)][i] = change.Node(nodes[e][order(e).Old(i, Nodes)]); }
        newProperties[number(e)] = properties[e];
    }
}

template <int Nodes, class Number, class Order>
void ChangePressures(const ModelChange& change, const std::vector<ShellElement<Nodes>>& shells, const Number& number,
                     const Order& order, std::vector<ShellDistributedLoad>& loads)
{
    for (ShellDistributedLoad& load : loads) {
        const NodeOrder nodes = order(load.element);
        const std::array<double, Nodes> old = NodePressures(shells[load.element], load.pressure);
        const double factor = (change.TurnsNormal(nodes) ? -1.0 : 1.0) * change.force / (change.length * change.length);
        for (int i = 0; i < 3; ++i) { load.pressure[i] = factor * old[nodes.Old(i, Nodes)]; }
        load.element = number(load.element);
    }
}

} // namespace

double ModelChange::Determinant() const
{
    return Dot(Cross(Q[0], Q[1]), Q[2]);
}

ModelStore Changed(const ModelStore& model, const ModelChange& change)
{
    const double length = change.length, area = length * length;
    const double mass = change.force * change.time * change.time / length;
    const double handedness = change.Determinant() < 0.0 ? -1.0 : 1.0;
    ModelStore changed = model;
    for (Material& material : changed.Materials) {
        material.E *= change.force / area;
        material.Density *= mass / (area * length);
    }
    for (double& thickness : changed.Thicknesses) { thickness *= length; }
    for (auto* sections : {&changed.TBeamSections, &changed.LBeamSections}) {
        for (WebFlangeSection& s : *sections) { s = {s.Hw * length, s.Tw * length, s.Bf * length, s.Tf * length}; }
    }
    for (CBeamSection& tube : changed.CBeamSections) { tube = {tube.R * length, tube.T * length}; }
    for (int n = 0; n < model.NPOIN; ++n) {
        changed.NodeCoordinates[change.Node(n)] = change.Point(model.NodeCoordinates[n]);
    }

    const auto quad = [&](int e) { return change.Quad(e); };
    const auto quadOrder = [&](int e) { return change.QuadOrder(e); };
    const auto tri = [&](int e) { return change.Tri(e); };
    const auto triOrder = [&](int e) { return change.TriOrder(e); };
    ChangeShells<QuadNodeCount>(change, model.QuadConnectivity, model.QuadProperties, quad, quadOrder,
                                changed.QuadConnectivity, changed.QuadProperties);
    ChangeShells<TriNodeCount>(change, model.TriConnectivity, model.TriProperties, tri, triOrder,
                               changed.TriConnectivity, changed.TriProperties);
    ChangePressures(change, model.QuadElements, quad, quadOrder, changed.QuadDistributedLoads);
    ChangePressures(change, model.TriElements, tri, triOrder, changed.TriDistributedLoads);

    for (int b = 0; b < model.NELEM_B; ++b) {
        const int end = change.IsReversed(b);
        const auto& nodes = model.BeamConnectivity[b];
        changed.BeamConnectivity[change.Beam(b)] = {change.Node(nodes[end]), change.Node(nodes[1 - end])};
        BeamPropertyRef& properties = changed.BeamProperties[change.Beam(b)] = model.BeamProperties[b];
        properties.orientation = length * change.Polar(properties.orientation);
        BeamSectionRef& section = changed.BeamSectionRefs[change.Beam(b)] = model.BeamSectionRefs[b];
        section.BeamSecOz *= length;
        section.BeamSecMirrored ^= change.IsReversed(b) != (handedness < 0.0); // y' points the other way
    }
    for (BeamDistributedLoad& load : changed.BeamDistributedLoads) {
        if (change.IsReversed(load.element)) {
            std::swap(load.q1, load.q2);
        }
        load.q1 *= change.force / length;
        load.q2 *= change.force / length;
        load.element = change.Beam(load.element);
    }

    for (Restraint& restraint : changed.Restraints) {
        const Restraint old = restraint;
        restraint.node = change.Node(old.node);
        for (int j = 0; j < 3; ++j) {
            restraint.flags[j] = old.flags[OldAxis(change.Q, j)];
            restraint.flags[3 + j] = old.flags[3 + OldAxis(change.Q, j)];
        }
    }
    for (NodalForce& load : changed.NodalForces) {
        const double* c = load.components;
        const Vector3 force = change.force * change.Polar({c[0], c[1], c[2]});
        const Vector3 moment = change.force * length * change.Axial({c[3], c[4], c[5]});
        load = {change.Node(load.node), {force[0], force[1], force[2], moment[0], moment[1], moment[2]}};
    }
    SetUpModel(changed);
    return changed;
}

} // namespace tarnvexo::test
