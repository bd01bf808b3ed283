// support/ElementTools.h
// What the element tests share: skew directions, rigid-body motions, forces that must cancel, distorted patches and a
// small dense solver.
#pragma once

#include "core/BeamElement.h"
#include "core/Dofs.h"
#include "core/ShellElement.h"
#include "core/Vector3.h"

#include <array>
#include <functional>
#include <vector>

namespace tarnvexo::test {

using Frame = std::array<Vector3, 3>; // orthonormal, right-handed, global components

// No axis along or across a global one.
Frame SkewFrame();

// Vector with the components v along the axes of the frame, in global components; and back.
Vector3 FromFrame(const Frame& frame, const Vector3& v);
Vector3 IntoFrame(const Frame& frame, const Vector3& v);

QuadShellElement MakeQuad(const std::array<Vector3, QuadNodeCount>& nodes, double E, double Mu, double thickness,
                          double density = 0.0);
TriShellElement MakeTri(const std::array<Vector3, TriNodeCount>& nodes, double E, double Mu, double thickness,
                        double density = 0.0);

// Infinitesimal motion of a point: translation and rotation.
struct Motion {
    Vector3 u = {};
    Vector3 rotation = {};
};

// Rigid-body motion `mode` of a point: translation along (0, 1, 2) or rotation about (3, 4, 5) a global axis.
Motion RigidMotion(int mode, const Vector3& point);

// Six displacements per point.
std::vector<double> Displacements(const std::vector<Vector3>& points,
                                  const std::function<Motion(const Vector3&)>& motion);

// Largest |Σj K_ij·d_j| over the rows, as a fraction of the largest Σj |K_ij·d_j|: round-off when the forces cancel.
double UnbalancedForce(const double* K, const double* d, int n);

// The largest of it over the six rigid-body motions of the points; rotationSign = -1 turns the rotations of the nodes
// the wrong way, which no element may tolerate.
double RigidMotionForce(const double* K, const std::vector<Vector3>& points, double rotationSign = 1.0);

// ½·dᵀ·K·d
double StrainEnergy(const double* K, const double* d, int n);

// Largest |a_i − b_i| as a fraction of the largest |a_i|.
double LargestDifference(const double* a, const double* b, int count);

// Dense linear equations, six per node.
class DenseSystem {
public:
    explicit DenseSystem(int nodeCount);

    template <int Nodes> void AddElement(const std::array<int, Nodes>& nodes, const double* Ke)
    {
        int map[Nodes * DofsPerNode];
        ElementDofMap<Nodes>(nodes.data(), map);
        AddMatrix(Ke, map, Nodes * DofsPerNode);
    }
    template <int Nodes> void AddLoads(const std::array<int, Nodes>& nodes, const double* f)
    {
        int map[Nodes * DofsPerNode];
        ElementDofMap<Nodes>(nodes.data(), map);
        for (int i = 0; i < Nodes * DofsPerNode; ++i) { load[map[i]] += f[i]; }
    }
    void AddForce(int node, int dof, double value) { load[DofsPerNode * node + dof] += value; }
    void Prescribe(int node, int dof, double value);
    void Clamp(int node);

    // Displacements, six per node.
    std::vector<double> Solve() const;

private:
    void AddMatrix(const double* Ke, const int* map, int n);

    int n;
    std::vector<double> K; // [n][n]
    std::vector<double> load;
    std::vector<char> prescribed;
    std::vector<double> value;
};

// Shell mesh in the plane z = 0; nodes that stand in `inner` are free in a patch test.
struct ShellMesh {
    std::vector<Vector3> nodes;
    std::vector<int> inner;
    std::vector<std::array<int, QuadNodeCount>> quads;
    std::vector<std::array<int, TriNodeCount>> tris;
};

// Rectangle 2.4 x 1.2 of five distorted quads about four inner nodes; its halves as triangles; some of each.
// Source: R. H. MacNeal, R. L. Harder, Finite Elements in Analysis and Design 1 (1985) 3–20.
ShellMesh QuadPatch();
ShellMesh TriPatch();
ShellMesh MixedPatch();

// Rectangle 4 x 2: distorted quads on the left, triangles on the right of the straight line x = 2.
ShellMesh MixedPatchWithStraightJoint();

// The mesh with its plane turned into the first two axes of the frame.
ShellMesh Turned(ShellMesh mesh, const Frame& frame);

DenseSystem MeshSystem(const ShellMesh& mesh, double E, double Mu, double thickness);

// Prescribes the motion on the boundary of the patch, solves for the inner nodes and returns their largest deviation
// from the motion, as a fraction of the largest displacement (lengths of order 1 are taken for granted).
double PatchError(const ShellMesh& mesh, double E, double Mu, double thickness,
                  const std::function<Motion(const Vector3&)>& motion);

} // namespace tarnvexo::test
