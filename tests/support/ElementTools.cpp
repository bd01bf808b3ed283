#include "support/ElementTools.h"

#include "elements/ShellSetUp.h"
#include "elements/ShellStiffness.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

namespace tarnvexo::test {

Frame SkewFrame()
{
    const Vector3 e1 = Normalised(Vector3{2.0, -1.0, 1.5});
    const Vector3 e3 = Normalised(Cross(e1, Vector3{0.3, 1.0, 0.8}));
    return {e1, Cross(e3, e1), e3};
}

Vector3 FromFrame(const Frame& frame, const Vector3& v)
{
    return v[0] * frame[0] + v[1] * frame[1] + v[2] * frame[2];
}

Vector3 IntoFrame(const Frame& frame, const Vector3& v)
{
    return {Dot(frame[0], v), Dot(frame[1], v), Dot(frame[2], v)};
}

QuadShellElement MakeQuad(const std::array<Vector3, QuadNodeCount>& nodes, double E, double Mu, double thickness,
                          double density)
{
    QuadShellElement element;
    QuadShellSetUp(element, nodes.data(), QuadNodeCount, E, Mu, density, thickness);
    return element;
}

TriShellElement MakeTri(const std::array<Vector3, TriNodeCount>& nodes, double E, double Mu, double thickness,
                        double density)
{
    TriShellElement element;
    TriShellSetUp(element, nodes.data(), TriNodeCount, E, Mu, thickness, density);
    return element;
}

Motion RigidMotion(int mode, const Vector3& point)
{
    Motion motion;
    if (mode < 3) {
        motion.u[mode] = 1.0;
    } else {
        motion.rotation[mode - 3] = 1.0;
        motion.u = Cross(motion.rotation, point);
    }
    return motion;
}

std::vector<double> Displacements(const std::vector<Vector3>& points,
                                  const std::function<Motion(const Vector3&)>& motion)
{
    std::vector<double> d;
    for (const Vector3& point : points) {
        const Motion m = motion(point);
        d.insert(d.end(), m.u.begin(), m.u.end());
        d.insert(d.end(), m.rotation.begin(), m.rotation.end());
    }
    return d;
}

double UnbalancedForce(const double* K, const double* d, int n)
{
    double largestForce = 0.0, largestTerms = 0.0;
    for (int i = 0; i < n; ++i) {
        double force = 0.0, terms = 0.0;
        for (int j = 0; j < n; ++j) {
            force += K[i * n + j] * d[j];
            terms += std::fabs(K[i * n + j] * d[j]);
        }
        largestForce = std::max(largestForce, std::fabs(force));
        largestTerms = std::max(largestTerms, terms);
    }
    return largestForce / largestTerms;
}

double RigidMotionForce(const double* K, const std::vector<Vector3>& points, double rotationSign)
{
    double largest = 0.0;
    for (int mode = 0; mode < 6; ++mode) {
        const std::vector<double> d = Displacements(points, [&](const Vector3& point) {
            Motion motion = RigidMotion(mode, point);
            motion.rotation = rotationSign * motion.rotation;
            return motion;
        });
        largest = std::max(largest, UnbalancedForce(K, d.data(), static_cast<int>(d.size())));
    }
    return largest;
}

double StrainEnergy(const double* K, const double* d, int n)
{
    double energy = 0.0;
    for (int i = 0; i < n; ++i) {
        for (int j = 0; j < n; ++j) { energy += 0.5 * d[i] * K[i * n + j] * d[j]; }
    }
    return energy;
}

double LargestDifference(const double* a, const double* b, int count)
{
    double difference = 0.0, largest = 0.0;
    for (int i = 0; i < count; ++i) {
        difference = std::max(difference, std::fabs(a[i] - b[i]));
        largest = std::max(largest, std::fabs(a[i]));
    }
    return difference / largest;
}

DenseSystem::DenseSystem(int nodeCount)
    : n(DofsPerNode * nodeCount), K(static_cast<std::size_t>(n) * n), load(n), prescribed(n), value(n)
{
}

void DenseSystem::AddMatrix(const double* Ke, const int* map, int size)
{
    for (int i = 0; i < size; ++i) {
        for (int j = 0; j < size; ++j) { K[static_cast<std::size_t>(map[i]) * n + map[j]] += Ke[i * size + j]; }
    }
}

void DenseSystem::Prescribe(int node, int dof, double prescribedValue)
{
    prescribed[DofsPerNode * node + dof] = 1;
    value[DofsPerNode * node + dof] = prescribedValue;
}

void DenseSystem::Clamp(int node)
{
    for (int k = 0; k < DofsPerNode; ++k) { Prescribe(node, k, 0.0); }
}

std::vector<double> DenseSystem::Solve() const
{
    // Equations of the free displacements; the prescribed ones go to the right-hand side.
    std::vector<int> unknowns;
    for (int i = 0; i < n; ++i) {
        if (!prescribed[i]) {
            unknowns.push_back(i);
        }
    }
    const std::size_t m = unknowns.size();
    std::vector<double> a(m * m), b(m);
    for (std::size_t i = 0; i < m; ++i) {
        const double* row = &K[static_cast<std::size_t>(unknowns[i]) * n];
        b[i] = load[unknowns[i]];
        for (int j = 0; j < n; ++j) {
            if (prescribed[j]) {
                b[i] -= row[j] * value[j];
            }
        }
        for (std::size_t j = 0; j < m; ++j) { a[i * m + j] = row[unknowns[j]]; }
    }

    // Gaussian elimination with row pivoting.
    for (std::size_t k = 0; k < m; ++k) {
        std::size_t pivot = k;
        for (std::size_t i = k + 1; i < m; ++i) {
            if (std::fabs(a[i * m + k]) > std::fabs(a[pivot * m + k])) {
                pivot = i;
            }
        }
        std::swap_ranges(&a[k * m], &a[k * m] + m, &a[pivot * m]);
        std::swap(b[k], b[pivot]);
        for (std::size_t i = k + 1; i < m; ++i) {
            const double factor = a[i * m + k] / a[k * m + k];
            for (std::size_t j = k; j < m; ++j) { a[i * m + j] -= factor * a[k * m + j]; }
            b[i] -= factor * b[k];
        }
    }
    for (std::size_t i = m; i-- > 0;) {
        for (std::size_t j = i + 1; j < m; ++j) { b[i] -= a[i * m + j] * b[j]; }
        b[i] /= a[i * m + i];
    }

    std::vector<double> displacement = value;
    for (std::size_t i = 0; i < m; ++i) { displacement[unknowns[i]] = b[i]; }
    return displacement;
}

ShellMesh QuadPatch()
{
    ShellMesh mesh;
    mesh.nodes = {{0.0, 0.0, 0.0}, {2.4, 0.0, 0.0}, {2.4, 1.2, 0.0}, {0.0, 1.2, 0.0},
                  {0.4, 0.2, 0.0}, {1.8, 0.3, 0.0}, {1.6, 0.8, 0.0}, {0.8, 0.8, 0.0}};
    mesh.inner = {4, 5, 6, 7};
    mesh.quads = {{0, 1, 5, 4}, {5, 1, 2, 6}, {7, 6, 2, 3}, {0, 4, 7, 3}, {4, 5, 6, 7}};
    return mesh;
}

namespace {

// Two triangles instead of a quad, along its diagonal 1–3.
void Split(ShellMesh& mesh, const std::array<int, QuadNodeCount>& quad)
{
    mesh.tris.push_back({quad[0], quad[1], quad[2]});
    mesh.tris.push_back({quad[2], quad[3], quad[0]});
}

} // namespace

ShellMesh TriPatch()
{
    ShellMesh mesh = QuadPatch();
    for (const auto& quad : mesh.quads) { Split(mesh, quad); }
    mesh.quads.clear();
    return mesh;
}

ShellMesh MixedPatch()
{
    ShellMesh mesh = QuadPatch();
    Split(mesh, mesh.quads[1]);
    Split(mesh, mesh.quads[3]);
    mesh.quads = {mesh.quads[0], mesh.quads[2], mesh.quads[4]};
    return mesh;
}

ShellMesh MixedPatchWithStraightJoint()
{
    ShellMesh mesh;
    const double x[3][5] = {{0.0, 1.1, 2.0, 2.8, 4.0}, {0.0, 0.8, 2.0, 3.3, 4.0}, {0.0, 1.0, 2.0, 3.0, 4.0}};
    const double y[3][5] = {{0.0, 0.0, 0.0, 0.0, 0.0}, {1.1, 0.8, 1.2, 0.9, 1.0}, {2.0, 2.0, 2.0, 2.0, 2.0}};
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 5; ++column) { mesh.nodes.push_back({x[row][column], y[row][column], 0.0}); }
    }
    mesh.inner = {6, 7, 8};
    for (int row = 0; row < 2; ++row) {
        for (int column = 0; column < 4; ++column) {
            const int n = 5 * row + column;
            const std::array<int, QuadNodeCount> quad = {n, n + 1, n + 6, n + 5};
            if (column < 2) {
                mesh.quads.push_back(quad);
            } else {
                Split(mesh, quad);
            }
        }
    }
    return mesh;
}

ShellMesh Turned(ShellMesh mesh, const Frame& frame)
{
    for (Vector3& node : mesh.nodes) { node = FromFrame(frame, node); }
    return mesh;
}

DenseSystem MeshSystem(const ShellMesh& mesh, double E, double Mu, double thickness)
{
    DenseSystem system(static_cast<int>(mesh.nodes.size()));
    for (const auto& quad : mesh.quads) {
        double K[QuadDofCount][QuadDofCount];
        QuadShellStiffness(
            MakeQuad({mesh.nodes[quad[0]], mesh.nodes[quad[1]], mesh.nodes[quad[2]], mesh.nodes[quad[3]]}, E, Mu,
                     thickness),
            K);
        system.AddElement<QuadNodeCount>(quad, &K[0][0]);
    }
    for (const auto& tri : mesh.tris) {
        double K[TriDofCount][TriDofCount];
        TriShellStiffness(MakeTri({mesh.nodes[tri[0]], mesh.nodes[tri[1]], mesh.nodes[tri[2]]}, E, Mu, thickness), K);
        system.AddElement<TriNodeCount>(tri, &K[0][0]);
    }
    return system;
}

double PatchError(const ShellMesh& mesh, double E, double Mu, double thickness,
                  const std::function<Motion(const Vector3&)>& motion)
{
    DenseSystem system = MeshSystem(mesh, E, Mu, thickness);
    const std::vector<double> exact = Displacements(mesh.nodes, motion);
    const int nodeCount = static_cast<int>(mesh.nodes.size());
    for (int node = 0; node < nodeCount; ++node) {
        if (std::find(mesh.inner.begin(), mesh.inner.end(), node) == mesh.inner.end()) {
            for (int k = 0; k < DofsPerNode; ++k) { system.Prescribe(node, k, exact[DofsPerNode * node + k]); }
        }
    }
    const std::vector<double> solved = system.Solve();
    return LargestDifference(exact.data(), solved.data(), static_cast<int>(exact.size()));
}

} // namespace tarnvexo::test
