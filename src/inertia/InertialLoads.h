// inertia/InertialLoads.h
// Consistent nodal loads of a rigid-body acceleration: minus mass times acceleration, the acceleration being a
// everywhere (translational) or α × r with r the position relative to the origin (rotational). Global axes.
//   a, alpha [3]   acceleration, angular acceleration
//   shells:  f [Nodes][3]  three forces per node, no moments
//   beams:   f [12]        six per node; the mass lies on the line through the section centroids, so forces at the
//                          nodes come with the moment of the offset
// The true node positions enter, also for a warped quadrilateral.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

void QuadTranslationalLoads(const QuadShellElement& element, const Vector3& a, Vector3 f[QuadNodeCount]);
void QuadRotationalLoads(const QuadShellElement& element, const Vector3& alpha, Vector3 f[QuadNodeCount]);

void TriTranslationalLoads(const TriShellElement& element, const Vector3& a, Vector3 f[TriNodeCount]);
void TriRotationalLoads(const TriShellElement& element, const Vector3& alpha, Vector3 f[TriNodeCount]);

void BeamTranslationalLoads(const BeamElement& beam, const Vector3& a, double f[BeamDofCount]);
void BeamRotationalLoads(const BeamElement& beam, const Vector3& alpha, double f[BeamDofCount]);

} // namespace tarnvexo
