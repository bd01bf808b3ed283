#include "inertia/StructureCentroid.h"

#include "elements/BeamSection.h"
#include "elements/ShellTransform.h"

#include <cmath>

namespace tarnvexo {

namespace {

// Signed area and first moments of the closed polygon x, y; the area is negative for counter-clockwise nodes.
struct PolygonIntegrals {
    double area = 0.0;    // ∮ y dx
    double momentX = 0.0; // area·x of the centroid, with the sign of area
    double momentY = 0.0; // area·y of the centroid
};

PolygonIntegrals IntegratePolygon(const double x[QuadNodeCount], const double y[QuadNodeCount])
{
    PolygonIntegrals sum;
    for (int i = 0; i < QuadNodeCount; ++i) {
        const int next = (i + 1) % QuadNodeCount;
        sum.area += (y[i] + y[next]) * (x[next] - x[i]) * 0.5;
        sum.momentX -= (x[i] * x[next] + x[i] * x[i] + x[next] * x[next]) * (y[next] - y[i]) / 6.0;
        sum.momentY += (y[i] * y[next] + y[i] * y[i] + y[next] * y[next]) * (x[next] - x[i]) / 6.0;
    }
    return sum;
}

} // namespace

double QuadArea(const QuadShellElement& element)
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    return std::fabs(IntegratePolygon(x, y).area);
}

double TriArea(const TriShellElement& element)
{
    double x[TriNodeCount], y[TriNodeCount];
    LocalShellCoordinates(element, x, y);
    return 0.5 * std::fabs(x[0] * y[1] + x[1] * y[2] + x[2] * y[0] - x[2] * y[1] - x[1] * y[0] - x[0] * y[2]);
}

Vector3 QuadCentroid(const QuadShellElement& element)
{
    double x[QuadNodeCount], y[QuadNodeCount];
    LocalShellCoordinates(element, x, y);
    const PolygonIntegrals sum = IntegratePolygon(x, y);
    const double localZ = Dot(element.axes[2], element.coordinates[0]);
    return sum.momentX / sum.area * element.axes[0] + sum.momentY / sum.area * element.axes[1] +
           localZ * element.axes[2];
}

Vector3 StructureCentroid(const ModelStore& model)
{
    double volume = 0.0;
    Vector3 moment = {};
    const auto add = [&](double elementVolume, const Vector3& centroid) {
        volume += elementVolume;
        moment = moment + elementVolume * centroid;
    };
    for (const BeamElement& beam : model.BeamElements) {
        Vector3 frame[3];
        BeamFrame(beam, frame);
        add(BeamLength(beam) * beam.section.A, 0.5 * (beam.node1 + beam.node2) + BeamCentroidOffset(beam, frame));
    }
    for (const QuadShellElement& element : model.QuadElements) {
        add(QuadArea(element) * element.thickness, QuadCentroid(element));
    }
    for (const TriShellElement& element : model.TriElements) {
        const Vector3* X = element.coordinates;
        add(TriArea(element) * element.thickness, (X[0] + X[1] + X[2]) / 3.0);
    }
    return moment / volume;
}

void ShiftOrigin(ModelStore& model, const Vector3& shift)
{
    for (Vector3& node : model.NodeCoordinates) { node = node + shift; }
    for (QuadShellElement& element : model.QuadElements) {
        for (Vector3& node : element.coordinates) { node = node + shift; }
    }
    for (TriShellElement& element : model.TriElements) {
        for (Vector3& node : element.coordinates) { node = node + shift; }
    }
    for (BeamElement& beam : model.BeamElements) {
        beam.node1 = beam.node1 + shift;
        beam.node2 = beam.node2 + shift;
        beam.reference = beam.reference + shift;
    }
}

} // namespace tarnvexo
