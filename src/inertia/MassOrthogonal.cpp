#include "inertia/MassOrthogonal.h"

#include "core/Parallel.h"
#include "inertia/BalanceSheet.h"
#include "inertia/MassProperties.h"
#include "inertia/SymmetricEigen.h"

#include <array>
#include <cstddef>

namespace tarnvexo {

namespace {

constexpr std::size_t BeamsPerRange = 256;

using Mass6 = SquareMatrix<RigidMotionCount>;

Vector3 UnitVector(int axis)
{
    Vector3 unit = {};
    unit[axis] = 1.0;
    return unit;
}

// Unit motion k of a part as an acceleration: about its reference point, rotations divided by its size.
RigidAcceleration UnitAcceleration(const PartMotions& part, int k)
{
    if (k < RX) {
        return {UnitVector(k), {}};
    }
    const Vector3 alpha = UnitVector(k - RX) / part.size;
    return {-Cross(alpha, part.reference), alpha};
}

// rᵀ·M·u = −f·u for the loads f of the beam in each unit motion r.
MotionVector BeamProducts(const BeamElement& beam, const std::array<int, BeamNodeCount>& nodes, const PartMotions& part,
                          const std::vector<double>& u)
{
    int map[BeamDofCount];
    ElementDofMap<BeamNodeCount>(nodes.data(), map);
    MotionVector products = {};
    for (int k = 0; k < RigidMotionCount; ++k) {
        double f[BeamDofCount];
        BeamInertialLoads(beam, UnitAcceleration(part, k), f);
        for (int i = 0; i < BeamDofCount; ++i) { products[k] -= f[i] * u[map[i]]; }
    }
    return products;
}

// Mass moments of every part about its reference point.
std::vector<MassMoments> MomentsOfParts(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                                        const ConnectedParts& parts, const std::vector<PartMotions>& motions)
{
    std::vector<MassMoments> moments(parts.count);
    for (int n = 0; n < model.NPOIN; ++n) {
        const int p = parts.partOfNode[n];
        if (p >= 0) {
            AddMoments(moments[p], NodeMoments(shellInertia[n], model.NodeCoordinates[n], motions[p].reference));
        }
    }
    for (int e = 0; e < model.NELEM_B; ++e) {
        const int p = parts.partOfNode[model.BeamConnectivity[e][0]];
        AddMoments(moments[p], BeamMoments(model.BeamElements[e], motions[p].reference));
    }
    return moments;
}

// Rᵀ·M·R of the six motions: m·I, the static moment and the inertia tensor, these two divided by the size once and
// twice.
Mass6 MassOfMotions(const PartMotions& part, const MassMoments& moments)
{
    const Matrix3 J = InertiaTensor(moments.second);
    Mass6 mass = {};
    for (int i = 0; i < 3; ++i) {
        mass[i][i] = moments.mass;
        const Vector3 ofRotation = Cross(UnitVector(i), moments.first) / part.size;
        for (int j = 0; j < 3; ++j) {
            mass[RX + i][j] = mass[j][RX + i] = ofRotation[j];
            mass[RX + i][RX + j] = J[i][j] / (part.size * part.size);
        }
    }
    return mass;
}

// The motion q = N·a among the free ones N with Nᵀ·M·R·q = Nᵀ·products.
MotionVector MotionInDisplacement(const PartMotions& part, const Mass6& mass, const MotionVector& products)
{
    const std::size_t count = part.free.size();
    Mass6 freeMass = {}; // Nᵀ·M·N; rows and columns above the number of free motions stay zero
    MotionVector freeProducts = {};
    for (std::size_t i = 0; i < count; ++i) {
        for (int k = 0; k < RigidMotionCount; ++k) {
            freeProducts[i] += part.free[i][k] * products[k];
            for (int l = 0; l < RigidMotionCount; ++l) {
                for (std::size_t j = 0; j < count; ++j) {
                    freeMass[i][j] += part.free[i][k] * mass[k][l] * part.free[j][l];
                }
            }
        }
    }
    const SymmetricEigen<RigidMotionCount> eigen = SolveSymmetricEigen<RigidMotionCount>(freeMass);
    MotionVector q = {};
    for (int e = 0; e < RigidMotionCount; ++e) {
        if (!(eigen.values[e] > InertiaTolerance * eigen.values.back())) {
            continue; // no mass moves
        }
        double along = 0.0;
        for (std::size_t i = 0; i < count; ++i) { along += eigen.vectors[e][i] * freeProducts[i]; }
        for (std::size_t i = 0; i < count; ++i) {
            for (int k = 0; k < RigidMotionCount; ++k) {
                q[k] += along / eigen.values[e] * eigen.vectors[e][i] * part.free[i][k];
            }
        }
    }
    return q;
}

} // namespace

std::vector<MotionVector> MassProducts(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                                       const ConnectedParts& parts, const std::vector<PartMotions>& motions,
                                       const std::vector<double>& u)
{
    std::vector<MotionVector> products(parts.count, MotionVector{});
    for (int n = 0; n < model.NPOIN; ++n) {
        const int p = parts.partOfNode[n];
        if (p < 0) {
            continue;
        }
        // u·(m·e) and u·(e × s) = e·(s × u), s about the reference point.
        const double* un = &u[std::size_t(DofsPerNode) * n];
        const Vector3 displacement = {un[DX], un[DY], un[DZ]};
        const NodeInertia& node = shellInertia[n];
        const Vector3 first = node.moment - node.mass * motions[p].reference;
        const Vector3 angular = Cross(first, displacement) / motions[p].size;
        for (int k = 0; k < 3; ++k) {
            products[p][k] += node.mass * displacement[k];
            products[p][RX + k] += angular[k];
        }
    }

    std::vector<MotionVector> ofBeam(model.BeamElements.size());
    ParallelFor(ofBeam.size(), BeamsPerRange, [&](std::size_t begin, std::size_t end) {
        for (std::size_t e = begin; e < end; ++e) {
            const std::array<int, BeamNodeCount>& nodes = model.BeamConnectivity[e];
            ofBeam[e] = BeamProducts(model.BeamElements[e], nodes, motions[parts.partOfNode[nodes[0]]], u);
        }
    });
    for (std::size_t e = 0; e < ofBeam.size(); ++e) {
        MotionVector& sum = products[parts.partOfNode[model.BeamConnectivity[e][0]]];
        for (int k = 0; k < RigidMotionCount; ++k) { sum[k] += ofBeam[e][k]; }
    }
    return products;
}

void MakeMassOrthogonal(const ModelStore& model, const std::vector<NodeInertia>& shellInertia,
                        const ConnectedParts& parts, const std::vector<PartMotions>& motions, std::vector<double>& u)
{
    const std::vector<MotionVector> products = MassProducts(model, shellInertia, parts, motions, u);
    const std::vector<MassMoments> moments = MomentsOfParts(model, shellInertia, parts, motions);
    for (int p = 0; p < parts.count; ++p) {
        const PartMotions& part = motions[p];
        if (part.free.empty()) {
            continue;
        }
        const MotionVector q = MotionInDisplacement(part, MassOfMotions(part, moments[p]), products[p]);
        for (int i = parts.firstOfPart[p]; i < parts.firstOfPart[p + 1]; ++i) {
            const int n = parts.nodes[i];
            const MotionVector motion = MotionAt(part, q, model.NodeCoordinates[n]);
            double* un = &u[std::size_t(DofsPerNode) * n];
            for (int k = 0; k < 3; ++k) {
                un[k] -= motion[k];
                un[RX + k] -= motion[RX + k] / part.size;
            }
        }
    }
}

} // namespace tarnvexo
