// support/MeshBuilder.h
// Builds a model store in memory, node by node and element by element, without a model file, and solves it: for
// convergence studies on meshes that a formula gives. Each Add... returns the index of what it added.
#pragma once

#include "core/ModelStore.h"

#include <array>
#include <functional>
#include <vector>

namespace tarnvexo::test {

class MeshBuilder {
public:
    // Elements added from now on are made of it.
    explicit MeshBuilder(const Material& material) : material(material) {}

    int AddNode(const Vector3& position);
    int AddQuad(const std::array<int, QuadNodeCount>& nodes, double thickness);
    int AddTri(const std::array<int, TriNodeCount>& nodes, double thickness);

    // orientation: direction of z', from the web's base towards the flange. Oz: height of the base above the nodes.
    int AddTBeam(int node1, int node2, const Vector3& orientation, const TBeamSection& section, double Oz = 0.0);
    int AddLBeam(int node1, int node2, const Vector3& orientation, const LBeamSection& section, double Oz = 0.0,
                 bool mirrored = false);
    int AddTube(int node1, int node2, const Vector3& orientation, const CBeamSection& section, double Oz = 0.0);

    void Restrain(int node, const std::vector<Dof>& dofs);
    void AddForce(int node, const Vector3& force, const Vector3& moment = {});
    void AddPressure(double pressure); // on every shell element, along its e3

    const Vector3& Position(int node) const { return model.NodeCoordinates[node]; }
    ModelStore& Model() { return model; }

private:
    void AddBeam(int node1, int node2, int type, double Oz, bool mirrored);

    Material material;
    ModelStore model;
};

// Elements that fill a cell a, b, c, d of a grid: one quadrilateral, or two triangles cut along a-c (the diagonals of
// neighbouring cells run alike) or along alternating diagonals.
enum class Cell { Quad, Tri, TriAlternating };

// Nodes of a grid, column by column: at(i, j) for i = 0 ... columns, j = 0 ... rows. Number the shorter side as j: the
// band of the stiffness matrix is proportional to it.
struct Grid {
    int columns = 0;
    int rows = 0;
    std::vector<int> nodes;

    int At(int i, int j) const { return nodes[i * (rows + 1) + j]; }
};

// Fills the cells between existing nodes; e3 is ∂/∂i × ∂/∂j.
void AddCells(MeshBuilder& mesh, const Grid& grid, double thickness, Cell cell);

// A grid of shell elements on new nodes at position(i, j).
Grid AddGrid(MeshBuilder& mesh, int columns, int rows, double thickness, Cell cell,
             const std::function<Vector3(int i, int j)>& position);

// The steps of a run without inertia relief: stiffness, loads, supports, solution into GlobalDisplacement. What they
// print is thrown away.
void SolveSupported(ModelStore& model);

// The steps of a run with it: the origin moves to the centroid, the loads are balanced by inertia, the origin moves
// back after the solution.
void SolveFree(ModelStore& model);

// Those steps up to the balance: GLOAD holds the balanced loads, the origin stands at the centroid.
void BalanceLoads(ModelStore& model);

double Displacement(const ModelStore& model, int node, Dof dof);

} // namespace tarnvexo::test
