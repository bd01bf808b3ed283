// support/LiteralSkyline.h
// The textbook loops of the skyline solution, one term at a time: what the solver must equal to the last bit, and what
// its speed is measured against.
#pragma once

#include "solver/SkylineSolver.h"

namespace tarnvexo::literal {

// In place, column by column.
void FactoriseSkyline(const SkylineView& matrix);

// R [n] becomes the reduced load.
void ForwardReduce(const SkylineView& factor, double* R);

// Row by row with the reach of every later column tested: n²/2 visits.
void BackSubstitute(const SkylineView& factor, const double* R, double* u);

} // namespace tarnvexo::literal
