#include "support/MixedStructure.h"

#include "inertia/StructureCentroid.h"

#include <cmath>
#include <cstddef>
#include <random>

namespace tarnvexo::test {

MeshBuilder MixedStructure()
{
    const Material steel = {2.1e11, 0.3, 7850.0};
    const TBeamSection tee = {0.3, 0.01, 0.2, 0.02};
    MeshBuilder mesh(steel);
    const Grid grid = AddGrid(mesh, 4, 3, 0.02, Cell::Quad, [](int i, int j) {
        return Vector3{20.0 + 1.1 * i + 0.3 * std::sin(2.0 * j), -7.0 + 0.9 * j, 4.0 + 0.4 * std::cos(3.0 * i * j)};
    });
    const Vector3 corner = mesh.Position(grid.At(0, 0));
    const int top = mesh.AddNode(corner + Vector3{0.5, 1.0, 2.0});
    mesh.AddTri({grid.At(0, 0), grid.At(0, 1), top}, 0.03);
    mesh.AddTri({grid.At(0, 1), grid.At(1, 1), top}, 0.01);
    mesh.AddTBeam(grid.At(0, 0), mesh.AddNode(corner - Vector3{2.0, 0.0, 0.0}), {0.0, 0.3, 1.0}, tee, 0.05);
    mesh.AddTBeam(grid.At(0, 0), mesh.AddNode(corner - Vector3{0.0, 3.0, 0.0}), {1.0, 0.0, 1.0}, tee, -0.2);
    mesh.AddLBeam(grid.At(0, 0), mesh.AddNode(corner - Vector3{0.0, 0.0, 2.5}), {1.0, 1.0, 0.0}, tee, 0.1, true);
    mesh.AddTube(top, grid.At(4, 3), {0.0, 1.0, 1.0}, {0.1, 0.01}, 0.3);
    for (TriShellElement& tri : mesh.Model().TriElements) { tri.Density = 2700.0; }
    for (BeamElement& beam : mesh.Model().BeamElements) { beam.Density *= 0.5; }
    mesh.Model().QuadElements[5].Density *= 4.0;
    return mesh;
}

void MoveOriginToCentroid(ModelStore& model)
{
    model.StructureCentroid = StructureCentroid(model);
    ShiftOrigin(model, -model.StructureCentroid);
}

void LoadAtRandom(ModelStore& model, unsigned seed)
{
    std::mt19937 generator(seed);
    const auto uniform = [&] { return generator() / 2147483648.0 - 1.0; };
    model.GLOAD.resize(std::size_t(DofsPerNode) * model.NPOIN);
    for (double& load : model.GLOAD) { load = uniform(); }
}

} // namespace tarnvexo::test
