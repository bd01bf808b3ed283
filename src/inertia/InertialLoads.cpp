#include "inertia/InertialLoads.h"

#include "core/Parallel.h"
#include "elements/BeamLoadVector.h"
#include "elements/BeamSection.h"
#include "elements/LocalAxes.h"
#include "inertia/ConsistentMass.h"

#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t ElementsPerRange = 1024;

template <int Nodes> void ShareOut(const double m[Nodes][Nodes], const Vector3 r[Nodes], NodeInertia nodes[Nodes])
{
    for (int i = 0; i < Nodes; ++i) {
        nodes[i] = {};
        for (int j = 0; j < Nodes; ++j) {
            nodes[i].mass += m[i][j];
            nodes[i].moment = nodes[i].moment + m[i][j] * r[j];
        }
    }
}

// Elements in parallel, then the sums at the nodes in the order of the elements.
template <int Nodes>
void AddShellInertia(const std::vector<ShellElement<Nodes>>& elements,
                     const std::vector<std::array<int, Nodes>>& connectivity,
                     void (*elementInertia)(const ShellElement<Nodes>&, NodeInertia*), std::vector<NodeInertia>& sums)
{
    std::vector<std::array<NodeInertia, Nodes>> shares(elements.size());
    ParallelFor(elements.size(), ElementsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) { elementInertia(elements[e], shares[e].data()); }
    });
    for (std::size_t e = 0; e < elements.size(); ++e) {
        for (int i = 0; i < Nodes; ++i) {
            NodeInertia& sum = sums[connectivity[e][i]];
            sum.hasShells = true;
            sum.mass += shares[e][i].mass;
            sum.moment = sum.moment + shares[e][i].moment;
        }
    }
}

} // namespace

void QuadNodeInertia(const QuadShellElement& element, NodeInertia nodes[QuadNodeCount])
{
    double m[QuadNodeCount][QuadNodeCount];
    QuadMass(element, m);
    ShareOut<QuadNodeCount>(m, element.coordinates, nodes);
}

void TriNodeInertia(const TriShellElement& element, NodeInertia nodes[TriNodeCount])
{
    double m[TriNodeCount][TriNodeCount];
    TriMass(element, m);
    ShareOut<TriNodeCount>(m, element.coordinates, nodes);
}

void BeamInertialLoads(const BeamElement& beam, const RigidAcceleration& acceleration, double f[BeamDofCount])
{
    Vector3 frame[3];
    BeamFrame(beam, frame);
    const Vector3 offset = BeamCentroidOffset(beam, frame);

    // Load per length at the section centroids, linear between the ends.
    const double massPerLength = beam.Density * beam.section.A;
    const Vector3 load1 = -massPerLength * (acceleration.a + Cross(acceleration.alpha, beam.node1 + offset));
    const Vector3 load2 = -massPerLength * (acceleration.a + Cross(acceleration.alpha, beam.node2 + offset));
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

std::vector<NodeInertia> ShellInertia(const ModelStore& model)
{
    std::vector<NodeInertia> sums(model.NPOIN);
    AddShellInertia<QuadNodeCount>(model.QuadElements, model.QuadConnectivity, QuadNodeInertia, sums);
    AddShellInertia<TriNodeCount>(model.TriElements, model.TriConnectivity, TriNodeInertia, sums);
    return sums;
}

void AddInertialLoads(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                      const RigidAcceleration& acceleration, std::vector<double>& loads)
{
    for (std::size_t n = 0; n < shellInertia.size(); ++n) {
        if (!shellInertia[n].hasShells) {
            continue;
        }
        const Vector3 force = InertialForce(shellInertia[n], acceleration);
        for (int k = 0; k < 3; ++k) { loads[DofsPerNode * n + k] += force[k]; }
    }

    std::vector<std::array<double, BeamDofCount>> beamLoads(model.BeamElements.size());
    ParallelFor(beamLoads.size(), ElementsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            BeamInertialLoads(model.BeamElements[e], acceleration, beamLoads[e].data());
        }
    });
    for (std::size_t e = 0; e < beamLoads.size(); ++e) {
        int map[BeamDofCount];
        ElementDofMap<BeamNodeCount>(model.BeamConnectivity[e].data(), map);
        for (int i = 0; i < BeamDofCount; ++i) { loads[map[i]] += beamLoads[e][i]; }
    }
}

} // namespace tarnvexo
