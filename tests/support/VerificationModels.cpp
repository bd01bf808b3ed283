#include "support/VerificationModels.h"

#include <algorithm>
#include <cmath>
#include <map>

namespace tarnvexo::test {

namespace {

const double Pi = std::acos(-1.0);

double Radians(double degrees)
{
    return degrees * Pi / 180.0;
}

double PlateRigidity(double E, double thickness)
{
    return E * thickness * thickness * thickness / (12.0 * (1.0 - PlateMu * PlateMu));
}

const std::vector<Dof> AllDofs = {DX, DY, DZ, RX, RY, RZ};

// A plane of symmetry normal to an axis: no displacement along it, no rotation about the other two.
const std::vector<Dof> SymmetryX = {DX, RY, RZ};
const std::vector<Dof> SymmetryY = {DY, RX, RZ};
const std::vector<Dof> SymmetryZ = {DZ, RX, RY};

// A diaphragm normal to the y axis holds the edge of a cylinder in its plane: both displacements there and the rotation
// that would turn the edge's tangent in that plane.
const std::vector<Dof> Diaphragm = {DX, DZ, RY};

std::vector<Dof> EdgeSupport(PlateEdge edge, Dof aboutNormal, Dof aboutEdge)
{
    switch (edge) {
    case PlateEdge::HardSupport:
        return {DZ, aboutNormal};
    case PlateEdge::SoftSupport:
        return {DZ};
    case PlateEdge::Clamped:
        return {DZ, aboutNormal, aboutEdge};
    }
    return {};
}

// Spreads a force over the nodes of a straight edge of equal cells as linear elements do.
void AddEdgeForce(MeshBuilder& mesh, const std::vector<int>& nodes, const Vector3& force)
{
    const double cells = static_cast<double>(nodes.size() - 1);
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        const bool end = i == 0 || i + 1 == nodes.size();
        mesh.AddForce(nodes[i], (end ? 0.5 : 1.0) / cells * force);
    }
}

// Weight of every cell, a quarter to each of its corners; cells are planar.
void AddWeight(MeshBuilder& mesh, const Grid& grid, const Vector3& weightPerArea)
{
    for (int i = 0; i < grid.columns; ++i) {
        for (int j = 0; j < grid.rows; ++j) {
            const int a = grid.At(i, j), b = grid.At(i + 1, j), c = grid.At(i + 1, j + 1), d = grid.At(i, j + 1);
            const double area =
                0.5 * Length(Cross(mesh.Position(c) - mesh.Position(a), mesh.Position(d) - mesh.Position(b)));
            for (const int node : {a, b, c, d}) { mesh.AddForce(node, 0.25 * area * weightPerArea); }
        }
    }
}

} // namespace

double PlateCentre(const SquarePlate& plate, int n)
{
    const double E = 1e7;
    const double h = 0.5 / n;
    MeshBuilder mesh({E, PlateMu, 1.0});
    // The centre stands at the origin, the supported edges at x = 1/2 and y = 1/2.
    const Grid grid = AddGrid(mesh, n, n, plate.thickness, plate.cell, [&](int i, int j) {
        Vector3 X = {i * h, j * h, 0.0};
        if (i > 0 && i < n && j > 0 && j < n) {
            X[0] += plate.distortion * h * std::sin(1.3 + 7.0 * i + 13.0 * j);
            X[1] += plate.distortion * h * std::sin(0.4 + 11.0 * i + 5.0 * j);
        }
        return X;
    });
    for (int k = 0; k <= n; ++k) {
        mesh.Restrain(grid.At(0, k), SymmetryX);
        mesh.Restrain(grid.At(k, 0), SymmetryY);
        mesh.Restrain(grid.At(n, k), EdgeSupport(plate.edge, RX, RY));
        mesh.Restrain(grid.At(k, n), EdgeSupport(plate.edge, RY, RX));
    }
    if (plate.load == PlateLoad::Uniform) {
        mesh.AddPressure(1.0);
    } else {
        mesh.AddForce(grid.At(0, 0), {0.0, 0.0, 0.25});
    }
    SolveSupported(mesh.Model());
    return Displacement(mesh.Model(), grid.At(0, 0), DZ) * PlateRigidity(E, plate.thickness);
}

double NavierCentre(double thickness, PlateLoad load, bool shearDeformable)
{
    // D/(κ·G·t) = t²/(6·(1−ν)·κ): each term of the thin plate grows by the factor 1 + k²·D/(κ·G·t), k² = (m² + n²)·π².
    const double shear = shearDeformable ? thickness * thickness / (6.0 * (1.0 - PlateMu) * (5.0 / 6.0)) : 0.0;
    const int terms = 1001;
    double w = 0.0;
    for (int m = 1; m <= terms; m += 2) {
        for (int n = 1; n <= terms; n += 2) {
            const double k2 = (m * m + n * n) * Pi * Pi;
            const double sign = ((m + n) / 2) % 2 == 1 ? 1.0 : -1.0; // sin(mπ/2)·sin(nπ/2)
            const double loadTerm = load == PlateLoad::Uniform ? sign * 16.0 / (Pi * Pi * m * n) : 4.0;
            w += loadTerm * (1.0 + k2 * shear) / (k2 * k2);
        }
    }
    return w;
}

double ScordelisLoRoof(int n, Cell cell)
{
    const double R = 25.0, halfLength = 25.0, halfAngle = Radians(40.0), t = 0.25;
    MeshBuilder mesh({4.32e8, 0.0, 1.0});
    // i from the diaphragm y = 0 to mid-length, j from the crown to the free edge.
    const Grid grid = AddGrid(mesh, n, n, t, cell, [&](int i, int j) {
        const double angle = halfAngle * j / n;
        return Vector3{R * std::sin(angle), halfLength * i / n, R * std::cos(angle)};
    });
    AddWeight(mesh, grid, {0.0, 0.0, -90.0});
    for (int k = 0; k <= n; ++k) {
        mesh.Restrain(grid.At(0, k), Diaphragm);
        mesh.Restrain(grid.At(n, k), SymmetryY);
        mesh.Restrain(grid.At(k, 0), SymmetryX);
    }
    SolveSupported(mesh.Model());
    return -Displacement(mesh.Model(), grid.At(n, n), DZ);
}

double PinchedCylinder(int n, Cell cell)
{
    const double R = 300.0, halfLength = 300.0, t = 3.0;
    MeshBuilder mesh({3e6, 0.3, 1.0});
    // i from the diaphragm y = 0 to mid-length, j from the top, under the force, to the side.
    const Grid grid = AddGrid(mesh, n, n, t, cell, [&](int i, int j) {
        const double angle = 0.5 * Pi * j / n;
        return Vector3{R * std::sin(angle), halfLength * i / n, R * std::cos(angle)};
    });
    for (int k = 0; k <= n; ++k) {
        mesh.Restrain(grid.At(0, k), Diaphragm);
        mesh.Restrain(grid.At(n, k), SymmetryY);
        mesh.Restrain(grid.At(k, 0), SymmetryX);
        mesh.Restrain(grid.At(k, n), SymmetryZ);
    }
    mesh.AddForce(grid.At(n, 0), {0.0, 0.0, -0.25});
    SolveSupported(mesh.Model());
    return -Displacement(mesh.Model(), grid.At(n, 0), DZ);
}

namespace {

const Material HemisphereMaterial = {6.825e7, 0.3, 1.0};
constexpr double HemisphereRadius = 10.0;
constexpr double HemisphereThickness = 0.04;

Vector3 OnSphere(double longitude, double latitude)
{
    return HemisphereRadius * Vector3{std::cos(latitude) * std::cos(longitude),
                                      std::cos(latitude) * std::sin(longitude), std::sin(latitude)};
}

// Symmetry of the quarter x, y >= 0, the two forces on the equator, and one node held along z.
double SolveHemisphere(MeshBuilder& mesh, int onXAxis, int onYAxis)
{
    const double tolerance = 1e-9 * HemisphereRadius;
    for (int node = 0; node < mesh.Model().NPOIN; ++node) {
        if (mesh.Position(node)[0] < tolerance) {
            mesh.Restrain(node, SymmetryX);
        }
        if (mesh.Position(node)[1] < tolerance) {
            mesh.Restrain(node, SymmetryY);
        }
    }
    mesh.Restrain(onXAxis, {DZ});
    mesh.AddForce(onXAxis, {1.0, 0.0, 0.0});
    mesh.AddForce(onYAxis, {0.0, -1.0, 0.0});
    SolveSupported(mesh.Model());
    return Displacement(mesh.Model(), onXAxis, DX);
}

} // namespace

double HemisphereWithHole(int n, Cell cell)
{
    MeshBuilder mesh(HemisphereMaterial);
    const double topLatitude = Radians(90.0 - 18.0);
    // i along the equator from the x to the y axis, j from the equator to the hole.
    const Grid grid = AddGrid(mesh, n, n, HemisphereThickness, cell,
                              [&](int i, int j) { return OnSphere(0.5 * Pi * i / n, topLatitude * j / n); });
    return SolveHemisphere(mesh, grid.At(0, 0), grid.At(n, 0));
}

double HemisphereOfMeridians(int n, Cell cell)
{
    MeshBuilder mesh(HemisphereMaterial);
    const double topLatitude = 0.5 * Pi * (n - 1) / n;
    const Grid grid = AddGrid(mesh, n, n - 1, HemisphereThickness, cell,
                              [&](int i, int j) { return OnSphere(0.5 * Pi * i / n, topLatitude * j / (n - 1)); });
    const int pole = mesh.AddNode({0.0, 0.0, HemisphereRadius});
    for (int i = 0; i < n; ++i) { mesh.AddTri({grid.At(i, n - 1), grid.At(i + 1, n - 1), pole}, HemisphereThickness); }
    return SolveHemisphere(mesh, grid.At(0, 0), grid.At(n, 0));
}

double HemisphereOfBlocks(int n, Cell cell)
{
    MeshBuilder mesh(HemisphereMaterial);
    // A node is known by its place on the cube's surface, in units of the divisions, so that blocks share their edges.
    std::map<std::array<int, 3>, int> nodeOf;
    const auto node = [&](const std::array<int, 3>& cube) {
        const auto found = nodeOf.find(cube);
        if (found != nodeOf.end()) {
            return found->second;
        }
        Vector3 X;
        for (int k = 0; k < 3; ++k) { X[k] = std::tan(0.25 * Pi * cube[k] / n); }
        return nodeOf[cube] = mesh.AddNode(HemisphereRadius * Normalised(X));
    };
    for (int face = 0; face < 3; ++face) {
        Grid grid{n, n, {}};
        for (int i = 0; i <= n; ++i) {
            for (int j = 0; j <= n; ++j) {
                std::array<int, 3> cube;
                cube[face] = n;
                cube[(face + 1) % 3] = i;
                cube[(face + 2) % 3] = j;
                grid.nodes.push_back(node(cube));
            }
        }
        AddCells(mesh, grid, HemisphereThickness, cell);
    }
    return SolveHemisphere(mesh, node({n, 0, 0}), node({0, n, 0}));
}

double TwistedBeam(int n, Cell cell, TwistedBeamLoad load)
{
    const double length = 12.0, width = 1.1, t = 0.32;
    const int columns = 6 * n;
    MeshBuilder mesh({29e6, 0.22, 1.0});
    const Grid grid = AddGrid(mesh, columns, n, t, cell, [&](int i, int j) {
        const double angle = 0.5 * Pi * i / columns;
        const double s = width * (static_cast<double>(j) / n - 0.5);
        return Vector3{length * i / columns, s * std::cos(angle), s * std::sin(angle)};
    });
    std::vector<int> tip;
    for (int j = 0; j <= n; ++j) {
        mesh.Restrain(grid.At(0, j), AllDofs);
        tip.push_back(grid.At(columns, j));
    }
    // At the tip the width runs along z.
    const Dof direction = load == TwistedBeamLoad::InPlane ? DZ : DY;
    Vector3 force = {};
    force[direction] = 1.0;
    AddEdgeForce(mesh, tip, force);
    SolveSupported(mesh.Model());
    return Displacement(mesh.Model(), tip[n / 2], direction);
}

double RaaschHook(int n, int width, Cell cell)
{
    const double smallRadius = 14.0, smallAngle = Radians(60.0), largeRadius = 46.0, largeAngle = Radians(150.0);
    const double stripWidth = 20.0, t = 2.0;
    const int smallColumns = 3 * n, columns = 9 * n;
    MeshBuilder mesh({3300.0, 0.35, 1.0});
    // Both arcs lie in the plane z = 0 and share the tangent at their joint. The first one turns right about (14, 0),
    // the second one left about the point on the other side of the joint.
    const Vector3 largeCentre = {smallRadius - (smallRadius + largeRadius) * std::cos(smallAngle),
                                 (smallRadius + largeRadius) * std::sin(smallAngle), 0.0};
    const Grid grid = AddGrid(mesh, columns, width, t, cell, [&](int i, int j) {
        const double z = stripWidth * j / width;
        if (i <= smallColumns) {
            const double angle = smallAngle * i / smallColumns;
            return Vector3{smallRadius * (1.0 - std::cos(angle)), smallRadius * std::sin(angle), z};
        }
        const double angle = smallAngle - largeAngle * (i - smallColumns) / (columns - smallColumns);
        return largeCentre + Vector3{largeRadius * std::cos(angle), -largeRadius * std::sin(angle), z};
    });
    std::vector<int> tip;
    for (int j = 0; j <= width; ++j) {
        mesh.Restrain(grid.At(0, j), AllDofs);
        tip.push_back(grid.At(columns, j));
    }
    AddEdgeForce(mesh, tip, {0.0, 0.0, 1.0});
    SolveSupported(mesh.Model());
    double sum = 0.0;
    for (const int node : tip) { sum += Displacement(mesh.Model(), node, DZ); }
    return sum / static_cast<double>(tip.size());
}

} // namespace tarnvexo::test
