#include "support/FreeBeam.h"

#include "elements/BeamSection.h"
#include "elements/BeamStiffness.h"
#include "elements/Elasticity.h"
#include "inertia/InertialLoads.h"
#include "output/ShellStressRecovery.h"

#include <cmath>

namespace tarnvexo::test {

namespace {

constexpr Material Steel = {2.06e11, 0.3, 7850.0};

// Moments about y at the two ends of an element: K·d without the element's own inertia loads. The element runs along
// global x; its points are given relative to the structure's centroid.
void EndMoments(const BeamElement& element, const double d[BeamDofCount], const Vector3& a, const Vector3& alpha,
                double moments[BeamNodeCount])
{
    double K[BeamDofCount][BeamDofCount], inertial[BeamDofCount];
    BeamStiffness(element, K);
    BeamInertialLoads(element, {a, alpha}, inertial);
    for (int end = 0; end < BeamNodeCount; ++end) {
        const int row = DofsPerNode * end + RY;
        moments[end] = -inertial[row];
        for (int j = 0; j < BeamDofCount; ++j) { moments[end] += K[row][j] * d[j]; }
    }
}

// M = b·(σ− − σ+)·t²/12, σ the mean over all corners of a column's elements: tension below is positive.
template <int Nodes>
double ColumnMoment(const std::vector<ShellElement<Nodes>>& elements, int column, int elementsOfColumn,
                    const FreeStrip& strip)
{
    double sum = 0.0;
    for (int e = column * elementsOfColumn; e < (column + 1) * elementsOfColumn; ++e) {
        for (int k = 0; k < Nodes; ++k) { sum += elements[e].negativeFace[k][SX] - elements[e].positiveFace[k][SX]; }
    }
    const double difference = sum / (Nodes * elementsOfColumn);
    return strip.width * difference * strip.thickness * strip.thickness / 12.0;
}

} // namespace

FreeBeamResult SolveFreeBeam(const FreeBeam& beam, int loadedNode)
{
    const int n = beam.elements;
    const Vector3 up = {0.0, 0.0, 1.0};
    MeshBuilder mesh(Steel);
    for (int i = 0; i <= n; ++i) { mesh.AddNode({beam.length * i / n, 0.0, 0.0}); }
    const double centroid = TSectionConstants(beam.tee, Steel.E, Steel.Mu, 1.0, 0.0).ez;
    for (int i = 0; i < n; ++i) {
        if (beam.isTube) {
            mesh.AddTube(i, i + 1, up, beam.tube);
        } else {
            mesh.AddTBeam(i, i + 1, up, beam.tee, -centroid);
        }
    }
    mesh.Restrain(0, {DX, DY, DZ, RX});
    mesh.Restrain(n, {DY, DZ});
    mesh.AddForce(loadedNode, {0.0, 0.0, beam.force});
    ModelStore& model = mesh.Model();
    SolveFree(model);

    const BeamSectionConstants& section = model.BeamElements[0].section;
    const double elementLength = beam.length / n;
    FreeBeamResult result;
    result.EI = Steel.E * section.I1;
    result.shearRigidity = 12.0 * result.EI / (section.phi1 * elementLength * elementLength);
    for (int i = 0; i <= n; ++i) { result.deflection.push_back(Displacement(model, i, DZ)); }

    // a = F/m; α about y from the moment −x·F of the force about the centroid and the inertia m·L²/12.
    const double mass = Steel.Density * section.A * beam.length;
    const double arm = beam.length * (static_cast<double>(loadedNode) / n - 0.5);
    const Vector3 a = {0.0, 0.0, beam.force / mass};
    const Vector3 alpha = {0.0, -arm * beam.force * 12.0 / (mass * beam.length * beam.length), 0.0};
    result.moment.assign(n + 1, 0.0);
    for (int e = 0; e < n; ++e) {
        BeamElement element = model.BeamElements[e];
        for (Vector3* point : {&element.node1, &element.node2, &element.reference}) {
            *point = *point - model.StructureCentroid;
        }
        double moments[BeamNodeCount];
        EndMoments(element, &model.GlobalDisplacement[std::size_t(DofsPerNode) * e], a, alpha, moments);
        result.moment[e] = moments[0];
        result.moment[e + 1] = -moments[1];
    }
    return result;
}

FreeStripResult SolveFreeStrip(const FreeStrip& strip, Cell cell, int loadedColumn)
{
    MeshBuilder mesh({strip.E, 0.0, 7850.0});
    const Grid grid = AddGrid(mesh, strip.columns, strip.rows, strip.thickness, cell, [&](int i, int j) {
        return Vector3{strip.length * i / strip.columns, strip.width * j / strip.rows, 0.0};
    });
    mesh.Restrain(grid.At(0, 0), {DX, DY, DZ});
    mesh.Restrain(grid.At(strip.columns, 0), {DY, DZ});
    mesh.Restrain(grid.At(0, strip.rows), {DZ});
    for (int j = 0; j <= strip.rows; ++j) {
        const double share = (j == 0 || j == strip.rows ? 0.5 : 1.0) / strip.rows;
        mesh.AddForce(grid.At(loadedColumn, j), {0.0, 0.0, share * strip.force});
    }
    ModelStore& model = mesh.Model();
    SolveFree(model);
    RecoverShellStresses(model);

    FreeStripResult result;
    for (int i = 0; i <= strip.columns; ++i) {
        result.deflection.push_back(Displacement(model, grid.At(i, strip.rows / 2), DZ));
    }
    for (int i = 0; i < strip.columns; ++i) {
        result.moment.push_back(cell == Cell::Quad ? ColumnMoment(model.QuadElements, i, strip.rows, strip)
                                                   : ColumnMoment(model.TriElements, i, 2 * strip.rows, strip));
    }
    return result;
}

} // namespace tarnvexo::test
