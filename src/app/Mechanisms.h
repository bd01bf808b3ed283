// app/Mechanisms.h
// Motions that meet no resistance, traced from the equations to the model: node, direction, who takes part, the
// elements that give way and the likely reason.
//
// Every connection between these elements carries all six degrees of freedom, so a mechanism of sound elements does not
// exist: what is left are elements whose stiffness is round-off beside that of their neighbours (a modulus, thickness
// or section of nothing, a needle), and elements whose nodes stand in the wrong order, which give energy away. The
// elements that give way are those that the motion deforms: the others it moves as rigid bodies.
#pragma once

#include "app/SoftMotions.h"
#include "core/ModelStore.h"

#include <string>
#include <vector>

namespace tarnvexo {

// Σ |Ke_ii| over the elements, per equation of the model [DofsPerNode·NPOIN]: the stiffness of each direction, also
// where elements of negative stiffness take it away again. Nodes without elements have 0.
std::vector<double> StiffnessOfDirections(const ModelStore& model);

// Of these motions, which are the reason why a run ends: mechanisms and negative ones. The others are soft.
bool EndsTheRun(const SoftMotion& motion);

// A complete message: an error when a motion ends the run or the factorisation did not come to its end (hasFailed),
// else a warning. One motion for each of the first ten causes, the rest as numbers.
//   found      motions in the model's equations, [DofsPerNode·NPOIN]
//   stiffness  StiffnessOfDirections
std::string MechanismText(const ModelStore& model, const SoftMotions& found, const std::vector<double>& stiffness,
                          bool hasFailed, const std::string& modelFile);

} // namespace tarnvexo
