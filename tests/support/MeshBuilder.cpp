#include "support/MeshBuilder.h"

#include "app/AssemblyDriver.h"
#include "core/Console.h"
#include "elements/BeamSection.h"
#include "elements/ShellSetUp.h"
#include "inertia/InertiaRelief.h"
#include "inertia/StructureCentroid.h"
#include "solver/SkylineSolver.h"

#include <cstddef>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace tarnvexo::test {

namespace {

#ifdef _WIN32
constexpr const char* Nowhere = "NUL";
#else
constexpr const char* Nowhere = "/dev/null";
#endif

// Standard output goes nowhere while the object lives: the report of a run is longer than a test's own.
class QuietConsole {
public:
    QuietConsole() : standardOutput(dup(STDOUT_FILENO))
    {
        std::fflush(stdout);
        const int nowhere = open(Nowhere, O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~QuietConsole()
    {
        FlushConsole();
        dup2(standardOutput, STDOUT_FILENO);
        close(standardOutput);
    }
    QuietConsole(const QuietConsole&) = delete;
    QuietConsole& operator=(const QuietConsole&) = delete;

private:
    int standardOutput;
};

} // namespace

int MeshBuilder::AddNode(const Vector3& position)
{
    model.NodeCoordinates.push_back(position);
    return model.NPOIN++;
}

int MeshBuilder::AddQuad(const std::array<int, QuadNodeCount>& nodes, double thickness)
{
    Vector3 X[QuadNodeCount];
    for (int i = 0; i < QuadNodeCount; ++i) { X[i] = Position(nodes[i]); }
    QuadShellElement& element = model.QuadElements.emplace_back();
    QuadShellSetUp(element, X, QuadNodeCount, material.E, material.Mu, material.Density, thickness);
    model.QuadConnectivity.push_back(nodes);
    return model.NELEM_S_4ND++;
}

int MeshBuilder::AddTri(const std::array<int, TriNodeCount>& nodes, double thickness)
{
    Vector3 X[TriNodeCount];
    for (int i = 0; i < TriNodeCount; ++i) { X[i] = Position(nodes[i]); }
    TriShellElement& element = model.TriElements.emplace_back();
    TriShellSetUp(element, X, TriNodeCount, material.E, material.Mu, thickness, material.Density);
    model.TriConnectivity.push_back(nodes);
    return model.NELEM_S_3ND++;
}

void MeshBuilder::AddBeam(int node1, int node2, int type, double Oz, bool mirrored)
{
    model.BeamElements.emplace_back();
    model.BeamConnectivity.push_back({node1, node2});
    model.BeamSectionRefs.push_back({type, 0, Oz, mirrored});
    ++model.NELEM_B;
}

int MeshBuilder::AddTBeam(int node1, int node2, const Vector3& orientation, const TBeamSection& section, double Oz)
{
    AddBeam(node1, node2, TSection, Oz, false);
    TBeamSetUp(model.BeamElements.back(), Position(node1), Position(node2), Position(node1) + orientation, material,
               section, Oz);
    return model.NELEM_B - 1;
}

int MeshBuilder::AddLBeam(int node1, int node2, const Vector3& orientation, const LBeamSection& section, double Oz,
                          bool mirrored)
{
    AddBeam(node1, node2, LSection, Oz, mirrored);
    LBeamSetUp(model.BeamElements.back(), Position(node1), Position(node2), Position(node1) + orientation, material,
               section, Oz, mirrored);
    return model.NELEM_B - 1;
}

int MeshBuilder::AddTube(int node1, int node2, const Vector3& orientation, const CBeamSection& section, double Oz)
{
    AddBeam(node1, node2, CSection, Oz, false);
    TubeBeamSetUp(model.BeamElements.back(), Position(node1), Position(node2), Position(node1) + orientation, material,
                  section, Oz);
    return model.NELEM_B - 1;
}

void MeshBuilder::Restrain(int node, const std::vector<Dof>& dofs)
{
    Restraint& restraint = model.Restraints.emplace_back();
    restraint.node = node;
    for (const Dof dof : dofs) { restraint.flags[dof] = 1; }
    ++model.NRN;
}

void MeshBuilder::AddForce(int node, const Vector3& force, const Vector3& moment)
{
    model.NodalForces.push_back({node, {force[0], force[1], force[2], moment[0], moment[1], moment[2]}});
    ++model.NFOR;
}

void MeshBuilder::AddPressure(double pressure)
{
    for (int e = 0; e < model.NELEM_S_4ND; ++e) {
        model.QuadDistributedLoads.push_back({e, {pressure, pressure, pressure}});
        ++model.NDL_S_4ND;
    }
    for (int e = 0; e < model.NELEM_S_3ND; ++e) {
        model.TriDistributedLoads.push_back({e, {pressure, pressure, pressure}});
        ++model.NDL_S_3ND;
    }
}

void AddCells(MeshBuilder& mesh, const Grid& grid, double thickness, Cell cell)
{
    for (int i = 0; i < grid.columns; ++i) {
        for (int j = 0; j < grid.rows; ++j) {
            const int a = grid.At(i, j), b = grid.At(i + 1, j), c = grid.At(i + 1, j + 1), d = grid.At(i, j + 1);
            if (cell == Cell::Quad) {
                mesh.AddQuad({a, b, c, d}, thickness);
            } else if (cell == Cell::Tri || (i + j) % 2 == 0) {
                mesh.AddTri({a, b, c}, thickness);
                mesh.AddTri({a, c, d}, thickness);
            } else {
                mesh.AddTri({a, b, d}, thickness);
                mesh.AddTri({b, c, d}, thickness);
            }
        }
    }
}

Grid AddGrid(MeshBuilder& mesh, int columns, int rows, double thickness, Cell cell,
             const std::function<Vector3(int i, int j)>& position)
{
    Grid grid{columns, rows, {}};
    for (int i = 0; i <= columns; ++i) {
        for (int j = 0; j <= rows; ++j) { grid.nodes.push_back(mesh.AddNode(position(i, j))); }
    }
    AddCells(mesh, grid, thickness, cell);
    return grid;
}

void SolveSupported(ModelStore& model)
{
    const QuietConsole quiet;
    LayOutSkyline(model);
    AssembleStiffness(model);
    AssembleLoads(model);
    ApplyRestraints(model);
    SolveSkyline(model);
}

void BalanceLoads(ModelStore& model)
{
    const QuietConsole quiet;
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
    LayOutSkyline(model);
    AssembleStiffness(model);
    AssembleLoads(model);
    ApplyRestraints(model);
    BalanceByInertiaRelief(model);
}

void SolveFree(ModelStore& model)
{
    BalanceLoads(model);
    const QuietConsole quiet;
    SolveSkyline(model);
    ShiftOrigin(model, model.StructureCentroid);
}

double Displacement(const ModelStore& model, int node, Dof dof)
{
    return model.GlobalDisplacement[std::size_t(DofsPerNode) * node + dof];
}

} // namespace tarnvexo::test
