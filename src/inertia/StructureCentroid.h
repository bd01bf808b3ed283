// inertia/StructureCentroid.h
// Areas and centroids of the elements, the centroid of the structure's material volume, and the shift of the origin.
// The analysis runs with the origin at that centroid, so that moments and the rotational mass are taken about it.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

// Area in the element's own plane, whatever the direction of the node order.   length²
double QuadArea(const QuadShellElement& element);
double TriArea(const TriShellElement& element);

// Centroid of the quadrilateral's projection on its plane, global axes.
Vector3 QuadCentroid(const QuadShellElement& element);

// Σ volume·centroid / Σ volume over beams, quadrilaterals and triangles. Density is no weight.
// Errors: none reported; a model without volume gives non-finite coordinates.
Vector3 StructureCentroid(const ModelStore& model);

// Adds the vector to every stored coordinate: node table, shell elements, beams with their reference points.
void ShiftOrigin(ModelStore& model, const Vector3& shift);

} // namespace tarnvexo
