#include "inertia/RigidMotions.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <span>

namespace tarnvexo {

namespace {

// Box around the nodes: its middle, and the distance of the node farthest from it. One node alone has any size.
void MeasurePart(const ModelStore& model, std::span<const int> nodes, PartMotions& part)
{
    Vector3 low = model.NodeCoordinates[nodes[0]], high = low;
    for (const int n : nodes) {
        for (int d = 0; d < 3; ++d) {
            low[d] = std::min(low[d], model.NodeCoordinates[n][d]);
            high[d] = std::max(high[d], model.NodeCoordinates[n][d]);
        }
    }
    part.reference = 0.5 * (low + high);
    double size = 0.0;
    for (const int n : nodes) { size = std::max(size, Length(model.NodeCoordinates[n] - part.reference)); }
    part.size = size > 0.0 ? size : 1.0;
}

// The direction that the free motions move farthest, and the square of how far.
struct Pivot {
    int equation = -1;
    double square = 0.0;

    bool Serves(double tolerance) const { return square > tolerance * tolerance; }
};

// Among the restrained directions firstDof ... lastDof of the nodes, or among the others.
Pivot FarthestMoved(const ModelStore& model, const PartMotions& part, const std::vector<MotionVector>& free,
                    std::span<const int> nodes, const std::vector<unsigned char>& restrained, bool amongRestrained,
                    Dof firstDof, Dof lastDof)
{
    constexpr double alike = 1.0 + 1e-9; // of directions equal but for round-off the first is taken
    Pivot pivot;
    for (const int n : nodes) {
        double squares[DofsPerNode] = {};
        for (const MotionVector& q : free) {
            const MotionVector motion = MotionAt(part, q, model.NodeCoordinates[n]);
            for (int dof = 0; dof < DofsPerNode; ++dof) { squares[dof] += motion[dof] * motion[dof]; }
        }
        for (int dof = firstDof; dof <= lastDof; ++dof) {
            const int equation = DofsPerNode * n + dof;
            if ((restrained[equation] == 1) == amongRestrained && squares[dof] > alike * pivot.square) {
                pivot = {equation, squares[dof]};
            }
        }
    }
    return pivot;
}

// Takes the motion out of the free ones that moves the direction: with c[j] how far free motion j moves it, reflects
// the basis so that the last motion alone moves it (c becomes a multiple of the last unit vector), and drops that.
void Hold(const ModelStore& model, const PartMotions& part, int equation, std::vector<MotionVector>& free)
{
    const Vector3& node = model.NodeCoordinates[equation / DofsPerNode];
    const std::size_t last = free.size() - 1;
    MotionVector v = {}; // c, then the normal of the mirror
    double square = 0.0;
    for (std::size_t j = 0; j <= last; ++j) {
        v[j] = MotionAt(part, free[j], node)[equation % DofsPerNode];
        square += v[j] * v[j];
    }
    v[last] += std::copysign(std::sqrt(square), v[last]);
    double normal = 0.0;
    for (std::size_t j = 0; j <= last; ++j) { normal += v[j] * v[j]; }
    for (int k = 0; k < RigidMotionCount; ++k) {
        double along = 0.0;
        for (std::size_t j = 0; j <= last; ++j) { along += v[j] * free[j][k]; }
        for (std::size_t j = 0; j < last; ++j) { free[j][k] -= 2.0 / normal * along * v[j]; }
    }
    free.pop_back();
}

std::vector<MotionVector> AllMotions()
{
    std::vector<MotionVector> motions(RigidMotionCount);
    for (int k = 0; k < RigidMotionCount; ++k) { motions[k][k] = 1.0; }
    return motions;
}

std::vector<MotionVector> MotionsLeftBySupports(const ModelStore& model, const PartMotions& part,
                                                std::span<const int> supportedNodes,
                                                const std::vector<unsigned char>& restrained)
{
    std::vector<MotionVector> free = AllMotions();
    while (!free.empty()) {
        const Pivot pivot = FarthestMoved(model, part, free, supportedNodes, restrained, true, DX, RZ);
        if (!pivot.Serves(RankTolerance)) {
            break;
        }
        Hold(model, part, pivot.equation, free);
    }
    return free;
}

// Translations of the preferred nodes, else of any node, else rotations.
std::vector<int> ChooseHolds(const ModelStore& model, const PartMotions& part, std::span<const int> nodes,
                             std::span<const int> preferredNodes, const std::vector<unsigned char>& restrained)
{
    std::vector<MotionVector> free = part.free;
    std::vector<int> holds;
    while (!free.empty()) {
        Pivot pivot = FarthestMoved(model, part, free, preferredNodes, restrained, false, DX, DZ);
        if (!pivot.Serves(TranslationHoldTolerance)) {
            pivot = FarthestMoved(model, part, free, nodes, restrained, false, DX, DZ);
        }
        if (!pivot.Serves(TranslationHoldTolerance)) {
            pivot = FarthestMoved(model, part, free, nodes, restrained, false, RX, RZ);
        }
        if (pivot.equation < 0) {
            break; // coordinates that are not numbers
        }
        holds.push_back(pivot.equation);
        Hold(model, part, pivot.equation, free);
    }
    return holds;
}

} // namespace

MotionVector MotionAt(const PartMotions& part, const MotionVector& q, const Vector3& node)
{
    const Vector3 rotation = {q[RX], q[RY], q[RZ]}; // times the size
    const Vector3 u = Vector3{q[DX], q[DY], q[DZ]} + Cross(rotation, node - part.reference) / part.size;
    return {u[0], u[1], u[2], rotation[0], rotation[1], rotation[2]};
}

std::vector<unsigned char> RestrainedEquations(const ModelStore& model)
{
    std::vector<unsigned char> restrained(std::size_t(DofsPerNode) * model.NPOIN, 0);
    for (const Restraint& restraint : model.Restraints) {
        for (int k = 0; k < DofsPerNode; ++k) {
            if (restraint.flags[k] == 1) {
                restrained[std::size_t(DofsPerNode) * restraint.node + k] = 1;
            }
        }
    }
    return restrained;
}

std::vector<PartMotions> FindPartMotions(const ModelStore& model, const ConnectedParts& parts,
                                         const std::vector<unsigned char>& restrained,
                                         const std::vector<int>& holdNodes)
{
    std::vector<std::vector<int>> preferredNodes(parts.count);
    for (const int n : holdNodes) {
        if (parts.partOfNode[n] >= 0) {
            preferredNodes[parts.partOfNode[n]].push_back(n);
        }
    }
    std::vector<PartMotions> motions(parts.count);
    for (int p = 0; p < parts.count; ++p) {
        PartMotions& part = motions[p];
        const std::span<const int> nodes(&parts.nodes[parts.firstOfPart[p]], std::size_t(parts.NodeCount(p)));
        MeasurePart(model, nodes, part);
        std::vector<int> supportedNodes;
        for (const int n : nodes) {
            const unsigned char* flags = &restrained[std::size_t(DofsPerNode) * n];
            const int count = static_cast<int>(std::count(flags, flags + DofsPerNode, 1));
            part.restrainedDofs += count;
            if (count > 0) {
                supportedNodes.push_back(n);
            }
        }
        part.free = MotionsLeftBySupports(model, part, supportedNodes, restrained);
        part.holds = ChooseHolds(model, part, nodes, preferredNodes[p], restrained);
    }
    return motions;
}

} // namespace tarnvexo
