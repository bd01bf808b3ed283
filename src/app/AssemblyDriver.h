// app/AssemblyDriver.h
// From the model file to a system that is ready to be solved: reading, origin shift, skyline, stiffness, loads,
// supports, inertia relief. Writes structure.dxf on the way. Calls in order, no arithmetic of its own.
#pragma once

#include "core/ModelStore.h"

namespace tarnvexo {

constexpr const char* ModelFileName = "fem_solving.txt";

// Diagonal of a restrained equation.
constexpr double RestraintPenalty = 1e20;

void AssembleGlobalSystem(ModelStore& model);

// The steps of AssembleGlobalSystem that need no model file; tests call them on models they build.
void LayOutSkyline(ModelStore& model);
void AssembleStiffness(ModelStore& model);
void AssembleLoads(ModelStore& model);
void ApplyRestraints(ModelStore& model);

} // namespace tarnvexo
